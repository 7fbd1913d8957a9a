package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class DesktopConnection {
    public DesktopConnection() {
        Calls.note("DesktopConnection()");
    }

    public DesktopConnection(String id, String authToken, String uniqueId, int version, String deviceType) {
        Calls.note("DesktopConnection(" + id + ", " + authToken + ", " + uniqueId + ", " + version + ", " + deviceType + ")");
    }
}
