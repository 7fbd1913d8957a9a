package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

/** A user session, as the message client takes it. */
public interface UserSession {
}
