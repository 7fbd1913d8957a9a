package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class NetworkInterface {
    public NetworkInterface() {
        Calls.note("NetworkInterface()");
    }

    public NetworkInterface(String description) {
        Calls.note("NetworkInterface(" + description + ")");
    }

    public void putMacAddress(String value) {
        Calls.note("NetworkInterface.putMacAddress(" + value + ")");
    }

    public void putIpAddress(String value) {
        Calls.note("NetworkInterface.putIpAddress(" + value + ")");
    }

    public void putSubnetMask(String value) {
        Calls.note("NetworkInterface.putSubnetMask(" + value + ")");
    }

    public void putSubnet(String value) {
        Calls.note("NetworkInterface.putSubnet(" + value + ")");
    }

    public void putLinkSpeed(int value) {
        Calls.note("NetworkInterface.putLinkSpeed(" + value + ")");
    }
}
