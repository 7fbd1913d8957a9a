package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.ClientCall;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.InstanceLoggerFactory;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageClientSocketFactory;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import java.io.EOFException;
import java.net.SocketException;
import java.rmi.ConnectException;
import java.rmi.ConnectIOException;
import java.rmi.MarshalException;
import java.rmi.NoSuchObjectException;
import java.rmi.NotBoundException;
import java.rmi.Remote;
import java.rmi.RemoteException;
import java.rmi.UnknownHostException;
import java.rmi.UnmarshalException;
import java.rmi.registry.LocateRegistry;
import java.rmi.registry.Registry;
import java.util.logging.Logger;

/**
 * The way to one message server, with one certificate or none. Finds the server anew when it was away meanwhile. For
 * any number of threads at once; nothing is locked while the server is called.
 */
final class ServerConnection {
    /** Of a call that the server may have heard, so that it is not made again; tells itself as its parent class. */
    private static final class BrokenCallException extends ConnectIOException {
        private static final long serialVersionUID = 1L;

        BrokenCallException(String message, Exception cause) {
            super(message, cause);
        }

        @Override
        public String toString() {
            return ConnectIOException.class.getName() + ": " + getMessage();
        }
    }

    /** One method of the server. */
    interface Call<T> {
        T to(MessageServer server) throws RemoteException;
    }

    private static final Logger LOGGER = InstanceLoggerFactory.getLogger();

    private final ProviderUrl url;
    private final MessageClientSocketFactory sockets;
    private volatile MessageServer server;

    ServerConnection(ProviderUrl url, MessageClientSocketFactory sockets) {
        this.url = url;
        this.sockets = sockets;
    }

    private MessageServer open() throws RemoteException {
        MessageServer found = find();
        server = found;
        LOGGER.info("connected to " + url + (sockets.isSecure() ? " over TLS" : ""));
        return found;
    }

    /** Calls the server; a second time only where it cannot have heard the first. */
    <T> T make(Call<T> call) throws RemoteException {
        MessageServer known = server;
        if (known != null) {
            try {
                return make(call, known);
            } catch (BrokenCallException perhapsHeard) {
                server = null;
                throw perhapsHeard;
            } catch (ConnectException | ConnectIOException | UnknownHostException | NoSuchObjectException unheard) {
                LOGGER.info("looking for " + url + " anew: " + unheard.getClass().getName());
                server = null;  // as long as it is away, each call tries once
            }
        }
        return make(call, open());
    }

    /** A connection that breaks amid a call is told as what the bridge knows as an unreachable server. */
    private <T> T make(Call<T> call, MessageServer target) throws RemoteException {
        try {
            return new ClientCall(sockets).run(() -> call.to(target));
        } catch (MarshalException | UnmarshalException failure) {
            if (failure.getCause() instanceof EOFException || failure.getCause() instanceof SocketException) {
                throw new BrokenCallException("the connection to " + url + " broke during the call", failure);
            }
            throw failure;
        }
    }

    /** Without JNDI, for which runtimes may lack the RMI provider. */
    private MessageServer find() throws RemoteException {
        ClientCall call = new ClientCall(sockets);
        Remote found = call.run(this::lookUp);
        if (!(found instanceof MessageServer)) {
            throw new ConnectException("what is registered at " + url + " is no message server");
        }
        if (!call.referenceUsesOwnFactory()) {
            checkForeignSockets();
        }
        return (MessageServer) found;
    }

    /** Failures that only tell that there is no server are told as what the bridge knows as such. */
    private Remote lookUp() throws RemoteException {
        try {
            Registry registry = LocateRegistry.getRegistry(url.host(), url.port(), sockets);
            return registry.lookup(url.name());
        } catch (NotBoundException | UnknownHostException away) {
            throw new ConnectException("no message server is registered at " + url, away);
        }
    }

    /** The server's reference brings sockets of the runtime's own: plain ones, without our timeouts. */
    private void checkForeignSockets() throws ConnectIOException {
        if (sockets.isSecure()) {
            throw new ConnectIOException("the message server at " + url + " is registered over TLS but called without");
        }
        LOGGER.warning("calls to " + url + " have no timeouts: the server's reference does not ask for them");
    }
}
