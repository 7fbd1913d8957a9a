package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

/** A remote application, as it is put into sessions. */
public interface RemoteApp {
}
