package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class InstanceLoggerFactory {
    public InstanceLoggerFactory() {
        Calls.note("InstanceLoggerFactory()");
    }

    public InstanceLoggerFactory(String folder) {
        Calls.note("InstanceLoggerFactory(" + folder + ")");
    }
}
