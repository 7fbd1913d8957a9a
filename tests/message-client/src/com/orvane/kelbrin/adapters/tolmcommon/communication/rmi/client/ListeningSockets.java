package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import java.io.IOException;
import java.net.InetAddress;
import java.net.ServerSocket;
import java.rmi.server.RMIServerSocketFactory;
import javax.net.ServerSocketFactory;

/** A test server's ears, over TLS with a key; remembers the port that it was given. */
final class ListeningSockets implements RMIServerSocketFactory {
    private final ServerSocketFactory factory;
    private volatile int port;

    ListeningSockets(TestKey keyOrNull) {
        factory = keyOrNull == null ? ServerSocketFactory.getDefault() : keyOrNull.serverSockets();
    }

    @Override
    public ServerSocket createServerSocket(int wantedPort) throws IOException {
        ServerSocket socket = factory.createServerSocket(wantedPort, 50, InetAddress.getByName(TestServer.HOST));
        port = socket.getLocalPort();
        return socket;
    }

    int port() {
        return port;
    }
}
