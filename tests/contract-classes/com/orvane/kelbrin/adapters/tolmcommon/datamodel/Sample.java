package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

/** A sample, as the message client takes it. */
public interface Sample {
}
