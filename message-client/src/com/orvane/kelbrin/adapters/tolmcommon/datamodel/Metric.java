package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.io.Serializable;
import java.util.List;

/**
 * A metric: a name, and either a value or one metric for each instance of what is measured. Its unit is agreed between
 * the host and the message server by the name.
 */
public interface Metric extends Serializable {
    /** What a metric holds. */
    enum Kind {
        /** No value: none was given, or it could not be converted. */
        NONE,
        DOUBLE,
        LONG,
        STRING,
        /** One metric for each instance, each named after its instance. */
        INSTANCES
    }

    String getName();

    /** Tells which one of the getters below has the value; the others throw {@link IllegalStateException}. */
    Kind getKind();

    double getDoubleValue();

    /** An unsigned 64-bit value of the host arrives as the same bits: above 2^63-1 it is negative here. */
    long getLongValue();

    /** May be null. */
    String getStringValue();

    List<Metric> getInstances();
}
