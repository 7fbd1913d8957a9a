package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.IOException;
import java.io.ObjectInputStream;
import java.util.ArrayList;
import java.util.Collections;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Objects;

/** A user session that can be filled. */
public class BaseUserSession implements UserSession {
    private static final long serialVersionUID = 1L;

    private final int id;
    private final String sid;
    private final String user;
    private final String domain;
    private final boolean connected;
    private LinkedHashMap<String, String> properties = new LinkedHashMap<>();
    private ArrayList<Metric> metrics = new ArrayList<>();
    private ArrayList<RemoteApp> remoteApps = new ArrayList<>();

    public BaseUserSession() {
        this(0, null, null, null);
    }

    /** A session that nobody has called connected, so it counts as not connected. */
    public BaseUserSession(int id, String sid, String user, String domain) {
        this(id, sid, user, domain, false);
    }

    public BaseUserSession(int id, String sid, String user, String domain, boolean connected) {
        this.id = id;
        this.sid = sid;
        this.user = user;
        this.domain = domain;
        this.connected = connected;
    }

    public void putProperty(String name, String value) {
        properties.put(name, value);
    }

    public void putMetric(Metric metric) {
        if (metric != null) {
            metrics.add(metric);
        }
    }

    public void putRemoteApp(RemoteApp remoteApp) {
        if (remoteApp != null) {
            remoteApps.add(remoteApp);
        }
    }

    @Override
    public int getId() {
        return id;
    }

    @Override
    public String getSid() {
        return sid;
    }

    @Override
    public String getUser() {
        return user;
    }

    @Override
    public String getDomain() {
        return domain;
    }

    @Override
    public boolean isConnected() {
        return connected;
    }

    @Override
    public Map<String, String> getProperties() {
        return Collections.unmodifiableMap(properties);
    }

    @Override
    public List<Metric> getMetrics() {
        return Collections.unmodifiableList(metrics);
    }

    @Override
    public List<RemoteApp> getRemoteApps() {
        return Collections.unmodifiableList(remoteApps);
    }

    @Override
    public boolean equals(Object other) {
        if (other == null || getClass() != other.getClass()) {
            return false;
        }
        BaseUserSession that = (BaseUserSession) other;
        return id == that.id && Objects.equals(sid, that.sid) && Objects.equals(user, that.user)
                && Objects.equals(domain, that.domain) && connected == that.connected
                && properties.equals(that.properties) && metrics.equals(that.metrics)
                && remoteApps.equals(that.remoteApps);
    }

    @Override
    public int hashCode() {
        return Objects.hash(id, sid, user, domain, connected, properties, metrics, remoteApps);
    }

    @Override
    public String toString() {
        return "BaseUserSession{id=" + id + ", sid=" + sid + ", user=" + user + ", domain=" + domain + ", connected="
                + connected + ", properties=" + properties + ", metrics=" + metrics + ", remoteApps=" + remoteApps
                + "}";
    }

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        in.defaultReadObject();
        properties = Received.texts(properties);
        metrics = Received.list(metrics, Metric.class);
        remoteApps = Received.list(remoteApps, RemoteApp.class);
    }
}
