package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import java.lang.reflect.InvocationHandler;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Proxy;
import java.rmi.Remote;
import java.rmi.RemoteException;
import java.rmi.server.RMIClientSocketFactory;
import java.rmi.server.RMIServerSocketFactory;
import java.rmi.server.UnicastRemoteObject;
import java.util.function.BooleanSupplier;

/**
 * Gives an {@link ObjectFilter} to the runtime. By reflection, because Java 8 has no {@code java.io.ObjectInputFilter};
 * there nothing is filtered.
 */
final class RuntimeFilter implements InvocationHandler {
    private static final Class<?> FILTER_TYPE = typeOrNull("java.io.ObjectInputFilter");

    private final ObjectFilter filter;
    private final BooleanSupplier state;

    private RuntimeFilter(ObjectFilter filter, BooleanSupplier state) {
        this.filter = filter;
        this.state = state;
    }

    static Remote export(Remote server, int port, RMIClientSocketFactory clientSockets,
            RMIServerSocketFactory serverSockets, ObjectFilter filter) throws RemoteException {
        if (FILTER_TYPE == null) {
            return UnicastRemoteObject.exportObject(server, port, clientSockets, serverSockets);
        }
        try {
            return (Remote) UnicastRemoteObject.class
                    .getMethod("exportObject", Remote.class, int.class, RMIClientSocketFactory.class,
                            RMIServerSocketFactory.class, FILTER_TYPE)
                    .invoke(null, server, port, clientSockets, serverSockets, runtimesFilter(filter, () -> true));
        } catch (InvocationTargetException failure) {
            if (failure.getCause() instanceof RemoteException) {
                throw (RemoteException) failure.getCause();
            }
            throw new IllegalStateException(failure.getCause());
        } catch (ReflectiveOperationException failure) {
            throw new IllegalStateException(failure);
        }
    }

    /** Of the whole process, and once for all: false where the runtime has no filters, or has one already. */
    static boolean install(ObjectFilter filter, BooleanSupplier state) {
        if (FILTER_TYPE == null) {
            return false;
        }
        try {
            typeOrNull("java.io.ObjectInputFilter$Config").getMethod("setSerialFilter", FILTER_TYPE)
                    .invoke(null, runtimesFilter(filter, state));
            return true;
        } catch (ReflectiveOperationException refused) {
            return false;
        }
    }

    private static Object runtimesFilter(ObjectFilter filter, BooleanSupplier state) {
        return Proxy.newProxyInstance(RuntimeFilter.class.getClassLoader(), new Class<?>[] {FILTER_TYPE},
                new RuntimeFilter(filter, state));
    }

    @Override
    public Object invoke(Object proxy, Method method, Object[] arguments) throws ReflectiveOperationException {
        switch (method.getName()) {
            case "checkInput":
                return status(arguments[0]);
            case "equals":
                return proxy == arguments[0];
            case "hashCode":
                return System.identityHashCode(proxy);
            default:
                return getClass().getName();
        }
    }

    private Object status(Object info) throws ReflectiveOperationException {
        if (!state.getAsBoolean()) {
            return constant("UNDECIDED");
        }
        Class<?> infoType = typeOrNull("java.io.ObjectInputFilter$FilterInfo");
        Class<?> serialClass = (Class<?>) infoType.getMethod("serialClass").invoke(info);
        long arrayLength = (Long) infoType.getMethod("arrayLength").invoke(info);
        long depth = (Long) infoType.getMethod("depth").invoke(info);
        if (!filter.accepts(serialClass, arrayLength, depth)) {
            return constant("REJECTED");
        }
        return constant(serialClass == null ? "UNDECIDED" : "ALLOWED");
    }

    private static Object constant(String name) throws ReflectiveOperationException {
        return typeOrNull("java.io.ObjectInputFilter$Status").getField(name).get(null);
    }

    private static Class<?> typeOrNull(String name) {
        try {
            return Class.forName(name);
        } catch (ClassNotFoundException olderRuntime) {
            return null;
        }
    }
}
