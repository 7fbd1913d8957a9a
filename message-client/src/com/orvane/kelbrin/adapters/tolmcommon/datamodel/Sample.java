package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.Serializable;
import java.util.List;

/** What was measured on a machine at one time. */
public interface Sample extends Serializable {
    /** Milliseconds since 1970-01-01 00:00 UTC; hosts measure whole seconds. */
    long getTime();

    /** The metrics of the machine. */
    List<Metric> getMetrics();

    /** The user sessions, each with metrics of its own. */
    List<UserSession> getSessions();
}
