package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

/** A metric, as it is put into samples, sessions and applications. */
public interface Metric {
}
