package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class BaseMetric implements Metric {
    public BaseMetric() {
        Calls.note("BaseMetric()");
    }

    public BaseMetric(String name) {
        Calls.note("BaseMetric(" + name + ")");
    }

    public void putDoubleValue(double value) {
        Calls.note("BaseMetric.putDoubleValue(" + value + ")");
    }

    public void putLongValue(long value) {
        Calls.note("BaseMetric.putLongValue(" + value + ")");
    }

    public void putStringValue(String value) {
        Calls.note("BaseMetric.putStringValue(" + value + ")");
    }

    public void addInstance(Metric value) {
        Calls.note("BaseMetric.addInstance(" + value + ")");
    }
}
