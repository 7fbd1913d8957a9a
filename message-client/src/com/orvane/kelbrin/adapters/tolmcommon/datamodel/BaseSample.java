package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.IOException;
import java.io.ObjectInputStream;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import java.util.Objects;

/** A sample that can be filled. */
public class BaseSample implements Sample {
    private static final long serialVersionUID = 1L;

    private final long time;
    private ArrayList<Metric> metrics = new ArrayList<>();
    private ArrayList<UserSession> sessions = new ArrayList<>();

    public BaseSample() {
        this(0);
    }

    /** @param time milliseconds since 1970-01-01 00:00 UTC */
    public BaseSample(long time) {
        this.time = time;
    }

    public void putMetric(Metric metric) {
        if (metric != null) {
            metrics.add(metric);
        }
    }

    public void putSession(UserSession session) {
        if (session != null) {
            sessions.add(session);
        }
    }

    @Override
    public long getTime() {
        return time;
    }

    @Override
    public List<Metric> getMetrics() {
        return Collections.unmodifiableList(metrics);
    }

    @Override
    public List<UserSession> getSessions() {
        return Collections.unmodifiableList(sessions);
    }

    @Override
    public boolean equals(Object other) {
        if (other == null || getClass() != other.getClass()) {
            return false;
        }
        BaseSample that = (BaseSample) other;
        return time == that.time && metrics.equals(that.metrics) && sessions.equals(that.sessions);
    }

    @Override
    public int hashCode() {
        return Objects.hash(time, metrics, sessions);
    }

    @Override
    public String toString() {
        return "BaseSample{time=" + time + ", metrics=" + metrics + ", sessions=" + sessions + "}";
    }

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        in.defaultReadObject();
        metrics = Received.list(metrics, Metric.class);
        sessions = Received.list(sessions, UserSession.class);
    }
}
