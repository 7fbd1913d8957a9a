package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageClientSocketFactory;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.ObjectFilter;
import java.net.InetAddress;
import java.net.UnknownHostException;
import java.rmi.NoSuchObjectException;
import java.rmi.Remote;
import java.rmi.RemoteException;
import java.rmi.registry.LocateRegistry;
import java.rmi.registry.Registry;
import java.rmi.server.RMIClientSocketFactory;
import java.rmi.server.UnicastRemoteObject;

/** A registry with the server object in it, on one port, until closed. */
final class RunningServer implements AutoCloseable {
    private final ListeningSockets sockets;
    private final MessageServer server;
    private Registry registry;

    private RunningServer(ListeningSockets sockets, MessageServer server) {
        this.sockets = sockets;
        this.server = server;
    }

    /** One in a process: what RMI writes into its references as the host is one setting for all. */
    static RunningServer start(ServerOptions options, MessageServer server) throws CannotStartException {
        InetAddress address = findAddress(options.host);
        ListeningSockets sockets = new ListeningSockets(ServerKey.makeSocketFactory(options), address);
        System.setProperty("java.rmi.server.hostname", options.host);
        RunningServer running = new RunningServer(sockets, server);
        try {
            running.listen(options);
        } catch (RemoteException failure) {
            running.close();
            throw new CannotStartException("cannot listen on " + options.host + " port " + options.port + " ("
                    + deepest(failure).getMessage() + "); choose another --port (0: any free one) or --host");
        }
        return running;
    }

    private void listen(ServerOptions options) throws RemoteException {
        RMIClientSocketFactory clientSockets = new MessageClientSocketFactory();
        registry = LocateRegistry.createRegistry(options.port, clientSockets, sockets);
        // With the very same factories, so that RMI lets both objects share the port.
        ObjectFilter.MESSAGES.export(server, sockets.port(), clientSockets, sockets);
        registry.rebind(options.name, server);
    }

    int port() {
        return sockets.port();
    }

    /** Calls that are being answered are not waited for. */
    @Override
    public void close() {
        withdraw(server);
        if (registry != null) {
            withdraw(registry);
        }
    }

    private static void withdraw(Remote object) {
        try {
            UnicastRemoteObject.unexportObject(object, true);
        } catch (NoSuchObjectException neverExported) {
            // A start that failed half-way leaves it so.
        }
    }

    private static InetAddress findAddress(String host) throws CannotStartException {
        try {
            return InetAddress.getByName(host);
        } catch (UnknownHostException failure) {
            throw new CannotStartException("--host " + host + ": no such address; give one of this machine's own");
        }
    }

    private static Throwable deepest(Throwable failure) {
        return failure.getCause() == null ? failure : deepest(failure.getCause());
    }
}
