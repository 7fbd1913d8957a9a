package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import java.io.IOException;
import java.net.InetAddress;
import java.net.ServerSocket;
import java.rmi.server.RMIServerSocketFactory;
import javax.net.ServerSocketFactory;

/**
 * Listens on one address only, where RMI's own factory listens on all of the machine's. And remembers the port, since
 * RMI tells nobody what became of port 0. The registry and the server object share an instance, and thereby a port.
 */
final class ListeningSockets implements RMIServerSocketFactory {
    private static final int BACKLOG = 50;

    private final ServerSocketFactory factory;
    private final InetAddress address;
    private volatile int port;

    ListeningSockets(ServerSocketFactory factory, InetAddress address) {
        this.factory = factory;
        this.address = address;
    }

    @Override
    public ServerSocket createServerSocket(int wantedPort) throws IOException {
        ServerSocket socket = factory.createServerSocket(wantedPort, BACKLOG, address);
        port = socket.getLocalPort();
        return socket;
    }

    /** The port of the socket that was made last. */
    int port() {
        return port;
    }
}
