package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageClientSocketFactory;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.ObjectFilter;
import java.lang.reflect.InvocationHandler;
import java.lang.reflect.Method;
import java.lang.reflect.Proxy;
import java.rmi.NoSuchObjectException;
import java.rmi.registry.LocateRegistry;
import java.rmi.registry.Registry;
import java.rmi.server.RMIClientSocketFactory;
import java.rmi.server.UnicastRemoteObject;
import java.util.Arrays;
import java.util.List;
import java.util.concurrent.Callable;
import java.util.concurrent.CopyOnWriteArrayList;

/** A message server with a registry of its own: notes what arrives, and answers as it is told. */
final class TestServer implements AutoCloseable, InvocationHandler {
    static final String HOST = "127.0.0.1";

    /** What arrived, in order: a method's name and its arguments. */
    final List<List<Object>> calls = new CopyOnWriteArrayList<>();

    /** What the methods that answer with a text return or throw. */
    volatile Callable<String> answer = () -> "answer";

    private final ListeningSockets sockets;
    private final MessageServer server;
    private final Registry registry;

    /** @param key the key to speak TLS with, null to speak without */
    TestServer(TestKey key) throws Exception {
        this(key, 0);
    }

    TestServer(TestKey key, int port) throws Exception {
        this(key, key, port, new MessageClientSocketFactory());
    }

    /** A server that is registered with one key and called with another, by the client's means that it chooses. */
    TestServer(TestKey registryKey, TestKey key, int port, RMIClientSocketFactory clientSockets) throws Exception {
        System.setProperty("java.rmi.server.hostname", HOST);
        sockets = new ListeningSockets(registryKey);
        server = (MessageServer) Proxy.newProxyInstance(getClass().getClassLoader(),
                new Class<?>[] {MessageServer.class}, this);
        registry = LocateRegistry.createRegistry(port, new MessageClientSocketFactory(), sockets);
        ObjectFilter.MESSAGES.export(server, 0, clientSockets, new ListeningSockets(key));
        registry.rebind(MessageServer.REGISTRY_NAME, server);
    }

    String url() {
        return "rmi://" + HOST + ":" + port();
    }

    int port() {
        return sockets.port();
    }

    /** Takes the server's object away and registers it as a new one; references to the former are stale. */
    void replaceObject() throws Exception {
        UnicastRemoteObject.unexportObject(server, true);
        ObjectFilter.MESSAGES.export(server, 0, new MessageClientSocketFactory(), new ListeningSockets(null));
        registry.rebind(MessageServer.REGISTRY_NAME, server);
    }

    void unregister() throws Exception {
        registry.unbind(MessageServer.REGISTRY_NAME);
    }

    @Override
    public Object invoke(Object proxy, Method method, Object[] arguments) throws Throwable {
        if (method.getDeclaringClass() == Object.class) {
            return switch (method.getName()) {
                case "hashCode" -> System.identityHashCode(proxy);
                case "equals" -> proxy == arguments[0];
                default -> "the test's server";
            };
        }
        calls.add(Arrays.asList(callAndArguments(method.getName(), arguments)));
        return method.getReturnType() == void.class ? null : answer.call();
    }

    private static Object[] callAndArguments(String name, Object[] arguments) {
        Object[] all = new Object[arguments.length + 1];
        all[0] = name;
        System.arraycopy(arguments, 0, all, 1, arguments.length);
        return all;
    }

    @Override
    public void close() throws NoSuchObjectException {
        UnicastRemoteObject.unexportObject(server, true);
        UnicastRemoteObject.unexportObject(registry, true);
    }
}
