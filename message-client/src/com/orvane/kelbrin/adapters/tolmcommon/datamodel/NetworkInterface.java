package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.Serializable;
import java.util.Objects;

/** A network adapter of the machine. Addresses are texts as the host formats them. */
public class NetworkInterface implements Serializable {
    private static final long serialVersionUID = 1L;

    private final String description;
    private String macAddress;
    private String ipAddress;
    private String subnetMask;
    private String subnet;
    private int linkSpeed;

    public NetworkInterface() {
        this(null);
    }

    public NetworkInterface(String description) {
        this.description = description;
    }

    public void putMacAddress(String macAddress) {
        this.macAddress = macAddress;
    }

    public void putIpAddress(String ipAddress) {
        this.ipAddress = ipAddress;
    }

    public void putSubnetMask(String subnetMask) {
        this.subnetMask = subnetMask;
    }

    public void putSubnet(String subnet) {
        this.subnet = subnet;
    }

    /** @param linkSpeed in the host's unit */
    public void putLinkSpeed(int linkSpeed) {
        this.linkSpeed = linkSpeed;
    }

    public String getDescription() {
        return description;
    }

    public String getMacAddress() {
        return macAddress;
    }

    public String getIpAddress() {
        return ipAddress;
    }

    public String getSubnetMask() {
        return subnetMask;
    }

    public String getSubnet() {
        return subnet;
    }

    /** In the unit in which the host measures it, handed on unchanged; 0 where the host gave none. */
    public int getLinkSpeed() {
        return linkSpeed;
    }

    @Override
    public boolean equals(Object other) {
        if (other == null || getClass() != other.getClass()) {
            return false;
        }
        NetworkInterface that = (NetworkInterface) other;
        return Objects.equals(description, that.description) && Objects.equals(macAddress, that.macAddress)
                && Objects.equals(ipAddress, that.ipAddress) && Objects.equals(subnetMask, that.subnetMask)
                && Objects.equals(subnet, that.subnet) && linkSpeed == that.linkSpeed;
    }

    @Override
    public int hashCode() {
        return Objects.hash(description, macAddress, ipAddress, subnetMask, subnet, linkSpeed);
    }

    @Override
    public String toString() {
        return "NetworkInterface{description=" + description + ", macAddress=" + macAddress + ", ipAddress=" + ipAddress
                + ", subnetMask=" + subnetMask + ", subnet=" + subnet + ", linkSpeed=" + linkSpeed + "}";
    }
}
