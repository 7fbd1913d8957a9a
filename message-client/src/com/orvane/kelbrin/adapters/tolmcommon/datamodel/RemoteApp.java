package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.Serializable;
import java.util.List;
import java.util.Map;

/** An application that a user session runs remotely. */
public interface RemoteApp extends Serializable {
    String getId();

    Map<String, String> getProperties();

    List<Metric> getMetrics();
}
