package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.IOException;
import java.io.ObjectInputStream;
import java.io.Serializable;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import java.util.Objects;

/** What the machine is. */
public class DesktopInformation implements Serializable {
    private static final long serialVersionUID = 1L;

    private final String name;
    private final String fqdn;
    private int totalMemory;
    private ArrayList<NetworkInterface> networkInterfaces = new ArrayList<>();

    public DesktopInformation() {
        this(null, null);
    }

    /**
     * @param name the machine's short name
     * @param fqdn its fully qualified domain name
     */
    public DesktopInformation(String name, String fqdn) {
        this.name = name;
        this.fqdn = fqdn;
    }

    /** @param totalMemory in the host's unit */
    public void putTotalMemory(int totalMemory) {
        this.totalMemory = totalMemory;
    }

    public void addNetworkInterface(NetworkInterface networkInterface) {
        if (networkInterface != null) {
            networkInterfaces.add(networkInterface);
        }
    }

    public String getName() {
        return name;
    }

    /** The fully qualified domain name. */
    public String getFqdn() {
        return fqdn;
    }

    /** In the unit in which the host measures it, handed on unchanged; 0 where the host gave none. */
    public int getTotalMemory() {
        return totalMemory;
    }

    public List<NetworkInterface> getNetworkInterfaces() {
        return Collections.unmodifiableList(networkInterfaces);
    }

    @Override
    public boolean equals(Object other) {
        if (other == null || getClass() != other.getClass()) {
            return false;
        }
        DesktopInformation that = (DesktopInformation) other;
        return Objects.equals(name, that.name) && Objects.equals(fqdn, that.fqdn) && totalMemory == that.totalMemory
                && networkInterfaces.equals(that.networkInterfaces);
    }

    @Override
    public int hashCode() {
        return Objects.hash(name, fqdn, totalMemory, networkInterfaces);
    }

    @Override
    public String toString() {
        return "DesktopInformation{name=" + name + ", fqdn=" + fqdn + ", totalMemory=" + totalMemory
                + ", networkInterfaces=" + networkInterfaces + "}";
    }

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        in.defaultReadObject();
        networkInterfaces = Received.list(networkInterfaces, NetworkInterface.class);
    }
}
