package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.Serializable;
import java.util.List;
import java.util.Map;

/** A user's session on a machine. */
public interface UserSession extends Serializable {
    /** The number that the machine gives to the session. */
    int getId();

    /** The user's security identifier, as text. */
    String getSid();

    String getUser();

    String getDomain();

    boolean isConnected();

    Map<String, String> getProperties();

    List<Metric> getMetrics();

    List<RemoteApp> getRemoteApps();
}
