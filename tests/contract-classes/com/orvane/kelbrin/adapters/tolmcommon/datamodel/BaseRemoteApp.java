package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class BaseRemoteApp implements RemoteApp {
    public BaseRemoteApp() {
        Calls.note("BaseRemoteApp()");
    }

    public BaseRemoteApp(String id) {
        Calls.note("BaseRemoteApp(" + id + ")");
    }

    public void putProperty(String a, String b) {
        Calls.note("BaseRemoteApp.putProperty(" + a + ", " + b + ")");
    }

    public void putMetric(Metric value) {
        Calls.note("BaseRemoteApp.putMetric(" + value + ")");
    }
}
