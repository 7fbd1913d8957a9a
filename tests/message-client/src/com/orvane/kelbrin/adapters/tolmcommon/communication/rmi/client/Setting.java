package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageClientSocketFactory;

/** A system property's value for as long as a test needs it. */
final class Setting implements AutoCloseable {
    static final String CONNECT_TIMEOUT = MessageClientSocketFactory.CONNECT_TIMEOUT_PROPERTY;
    static final String READ_TIMEOUT = MessageClientSocketFactory.READ_TIMEOUT_PROPERTY;

    private final String name;

    Setting(String name, String value) {
        this.name = name;
        System.setProperty(name, value);
    }

    @Override
    public void close() {
        System.clearProperty(name);
    }

    @Override
    public String toString() {
        return name;
    }
}
