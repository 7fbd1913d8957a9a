package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.IOException;
import java.io.ObjectInputStream;
import java.util.ArrayList;
import java.util.Collections;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Objects;

/** A remote application that can be filled. */
public class BaseRemoteApp implements RemoteApp {
    private static final long serialVersionUID = 1L;

    private final String id;
    private LinkedHashMap<String, String> properties = new LinkedHashMap<>();
    private ArrayList<Metric> metrics = new ArrayList<>();

    public BaseRemoteApp() {
        this(null);
    }

    public BaseRemoteApp(String id) {
        this.id = id;
    }

    public void putProperty(String name, String value) {
        properties.put(name, value);
    }

    public void putMetric(Metric metric) {
        if (metric != null) {
            metrics.add(metric);
        }
    }

    @Override
    public String getId() {
        return id;
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
    public boolean equals(Object other) {
        if (other == null || getClass() != other.getClass()) {
            return false;
        }
        BaseRemoteApp that = (BaseRemoteApp) other;
        return Objects.equals(id, that.id) && properties.equals(that.properties) && metrics.equals(that.metrics);
    }

    @Override
    public int hashCode() {
        return Objects.hash(id, properties, metrics);
    }

    @Override
    public String toString() {
        return "BaseRemoteApp{id=" + id + ", properties=" + properties + ", metrics=" + metrics + "}";
    }

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        in.defaultReadObject();
        properties = Received.texts(properties);
        metrics = Received.list(metrics, Metric.class);
    }
}
