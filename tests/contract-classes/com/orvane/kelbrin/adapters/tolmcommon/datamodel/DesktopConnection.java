package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class DesktopConnection {
    private final String text;

    public DesktopConnection() {
        text = "DesktopConnection()";
        Calls.note(text);
    }

    public DesktopConnection(String id, String authToken, String uniqueId, int version, String deviceType) {
        text = "DesktopConnection(" + id + ", " + authToken + ", " + uniqueId + ", " + version + ", " + deviceType + ")";
        Calls.note(text);
    }

    @Override
    public String toString() {
        return text;
    }
}
