package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.Serializable;
import java.util.Objects;

/** Who sends: every message to the server carries it. */
public class DesktopConnection implements Serializable {
    private static final long serialVersionUID = 1L;

    private final String id;
    private final String authToken;
    private final String uniqueId;
    private final int version;
    private final String deviceType;

    public DesktopConnection() {
        this(null, null, null, 0, null);
    }

    public DesktopConnection(String id, String authToken, String uniqueId, int version, String deviceType) {
        this.id = id;
        this.authToken = authToken;
        this.uniqueId = uniqueId;
        this.version = version;
        this.deviceType = deviceType;
    }

    public String getId() {
        return id;
    }

    /** A secret: whoever has it may speak for the desktop. */
    public String getAuthToken() {
        return authToken;
    }

    /** Marks one machine for good, so it is kept out of logs like the token. */
    public String getUniqueId() {
        return uniqueId;
    }

    /** The version of the protocol that the desktop speaks. */
    public int getVersion() {
        return version;
    }

    public String getDeviceType() {
        return deviceType;
    }

    @Override
    public boolean equals(Object other) {
        if (other == null || getClass() != other.getClass()) {
            return false;
        }
        DesktopConnection that = (DesktopConnection) other;
        return Objects.equals(id, that.id) && Objects.equals(authToken, that.authToken)
                && Objects.equals(uniqueId, that.uniqueId) && version == that.version
                && Objects.equals(deviceType, that.deviceType);
    }

    @Override
    public int hashCode() {
        return Objects.hash(id, authToken, uniqueId, version, deviceType);
    }

    /** Without the secrets, so that it may be logged. */
    @Override
    public String toString() {
        return "DesktopConnection{id=" + id + ", authToken=***, uniqueId=***, version=" + version + ", deviceType="
                + deviceType + "}";
    }
}
