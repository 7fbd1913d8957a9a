package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import java.rmi.RemoteException;

/**
 * One call of a client to the message server or to its registry. While it runs, what this thread reads is filtered, the
 * reference to the server gets the client's own socket factory, and RMI has a class loader to find classes with: the
 * host's threads come into Java with none. For one call on one thread.
 */
public final class ClientCall {
    /** What the call does. */
    public interface Action<T> {
        T run() throws RemoteException;
    }

    private static final ThreadLocal<ClientCall> CURRENT = new ThreadLocal<>();

    private final MessageClientSocketFactory ownFactory;
    private boolean referenceUsesOwnFactory;

    static {
        ObjectFilter.REPLIES.installWhile(() -> CURRENT.get() != null);
    }

    public ClientCall(MessageClientSocketFactory ownFactory) {
        this.ownFactory = ownFactory;
    }

    public <T> T run(Action<T> action) throws RemoteException {
        Thread thread = Thread.currentThread();
        ClassLoader callersLoader = thread.getContextClassLoader();
        ClientCall outer = CURRENT.get();
        thread.setContextClassLoader(ClientCall.class.getClassLoader());
        CURRENT.set(this);
        try {
            return action.run();
        } finally {
            if (outer == null) {
                CURRENT.remove();
            } else {
                CURRENT.set(outer);
            }
            thread.setContextClassLoader(callersLoader);
        }
    }

    /** Whether a reference to a server came in that will be called through the client's factory. */
    public boolean referenceUsesOwnFactory() {
        return referenceUsesOwnFactory;
    }

    static MessageClientSocketFactory ownFactoryInsteadOf(MessageClientSocketFactory received) {
        ClientCall current = CURRENT.get();
        if (current == null) {
            return received;
        }
        current.referenceUsesOwnFactory = true;
        return current.ownFactory;
    }
}
