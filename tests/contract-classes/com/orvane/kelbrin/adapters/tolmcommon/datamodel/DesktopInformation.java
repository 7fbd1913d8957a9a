package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class DesktopInformation {
    public DesktopInformation() {
        Calls.note("DesktopInformation()");
    }

    public DesktopInformation(String name, String fqdn) {
        Calls.note("DesktopInformation(" + name + ", " + fqdn + ")");
    }

    public void putTotalMemory(int value) {
        Calls.note("DesktopInformation.putTotalMemory(" + value + ")");
    }

    public void addNetworkInterface(NetworkInterface value) {
        Calls.note("DesktopInformation.addNetworkInterface(" + value + ")");
    }
}
