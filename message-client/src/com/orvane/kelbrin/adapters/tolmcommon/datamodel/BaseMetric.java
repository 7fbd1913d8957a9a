package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.IOException;
import java.io.InvalidObjectException;
import java.io.ObjectInputStream;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import java.util.Objects;

/** A metric that can be filled. What was put last counts: a value replaces instances, an instance replaces a value. */
public class BaseMetric implements Metric {
    private static final long serialVersionUID = 1L;

    private final String name;
    private Kind kind = Kind.NONE;
    private double doubleValue;
    private long longValue;
    private String stringValue;
    private ArrayList<Metric> instances = new ArrayList<>();

    public BaseMetric() {
        this(null);
    }

    public BaseMetric(String name) {
        this.name = name;
    }

    public void putDoubleValue(double value) {
        become(Kind.DOUBLE);
        doubleValue = value;
    }

    public void putLongValue(long value) {
        become(Kind.LONG);
        longValue = value;
    }

    public void putStringValue(String value) {
        become(Kind.STRING);
        stringValue = value;
    }

    public void addInstance(Metric instance) {
        if (instance == null) {
            return;
        }
        if (kind != Kind.INSTANCES) {
            become(Kind.INSTANCES);
        }
        instances.add(instance);
    }

    @Override
    public String getName() {
        return name;
    }

    @Override
    public Kind getKind() {
        return kind;
    }

    @Override
    public double getDoubleValue() {
        expect(Kind.DOUBLE);
        return doubleValue;
    }

    @Override
    public long getLongValue() {
        expect(Kind.LONG);
        return longValue;
    }

    @Override
    public String getStringValue() {
        expect(Kind.STRING);
        return stringValue;
    }

    @Override
    public List<Metric> getInstances() {
        expect(Kind.INSTANCES);
        return Collections.unmodifiableList(instances);
    }

    /** Two NaN are equal, 0.0 and -0.0 are not: as {@link Double#compare} has it. */
    @Override
    public boolean equals(Object other) {
        if (other == null || getClass() != other.getClass()) {
            return false;
        }
        BaseMetric that = (BaseMetric) other;
        return Objects.equals(name, that.name) && kind == that.kind
                && Double.compare(doubleValue, that.doubleValue) == 0 && longValue == that.longValue
                && Objects.equals(stringValue, that.stringValue) && instances.equals(that.instances);
    }

    /** The kind counts by its name: its own hash code would be another one in each process. */
    @Override
    public int hashCode() {
        return Objects.hash(name, kind.name(), doubleValue, longValue, stringValue, instances);
    }

    @Override
    public String toString() {
        return "BaseMetric{name=" + name + ", " + valueText() + "}";
    }

    private String valueText() {
        switch (kind) {
            case DOUBLE:
                return "double=" + doubleValue;
            case LONG:
                return "long=" + longValue;
            case STRING:
                return "string=" + stringValue;
            case INSTANCES:
                return "instances=" + instances;
            default:
                return "no value";
        }
    }

    /** Forgets the former value, so that two metrics of the same value are equal whatever they held before. */
    private void become(Kind newKind) {
        kind = newKind;
        doubleValue = 0;
        longValue = 0;
        stringValue = null;
        instances.clear();
    }

    private void expect(Kind asked) {
        if (kind != asked) {
            throw new IllegalStateException("metric " + name + " holds " + kind + ", not " + asked);
        }
    }

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        in.defaultReadObject();
        if (kind == null) {
            throw new InvalidObjectException("a metric's kind is missing");
        }
        instances = Received.list(instances, Metric.class);
    }
}
