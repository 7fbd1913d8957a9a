package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class BaseUserSession implements UserSession {
    public BaseUserSession() {
        Calls.note("BaseUserSession()");
    }

    public BaseUserSession(int id, String sid, String user, String domain) {
        Calls.note("BaseUserSession(" + id + ", " + sid + ", " + user + ", " + domain + ")");
    }

    public BaseUserSession(int id, String sid, String user, String domain, boolean connected) {
        Calls.note("BaseUserSession(" + id + ", " + sid + ", " + user + ", " + domain + ", " + connected + ")");
    }

    public void putProperty(String a, String b) {
        Calls.note("BaseUserSession.putProperty(" + a + ", " + b + ")");
    }

    public void putMetric(Metric value) {
        Calls.note("BaseUserSession.putMetric(" + value + ")");
    }

    public void putRemoteApp(RemoteApp value) {
        Calls.note("BaseUserSession.putRemoteApp(" + value + ")");
    }
}
