package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class BaseSample implements Sample {
    public BaseSample() {
        Calls.note("BaseSample()");
    }

    public BaseSample(long time) {
        Calls.note("BaseSample(" + time + ")");
    }

    public void putMetric(Metric value) {
        Calls.note("BaseSample.putMetric(" + value + ")");
    }

    public void putSession(UserSession value) {
        Calls.note("BaseSample.putSession(" + value + ")");
    }
}
