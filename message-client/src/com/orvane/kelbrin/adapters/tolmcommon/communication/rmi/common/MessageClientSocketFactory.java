package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import java.io.IOException;
import java.io.Serializable;
import java.net.InetSocketAddress;
import java.net.Socket;
import java.rmi.server.RMIClientSocketFactory;
import java.security.cert.CertificateException;
import java.util.Objects;
import javax.net.ssl.SSLHandshakeException;
import javax.net.ssl.SSLSocket;

/**
 * Opens a client's connections to the message server: with timeouts, and over TLS where the client has a certificate.
 *
 * <p>RMI takes the factory out of the server's reference, so it is the server that sends it, and the server cannot know
 * what a client trusts. What travels is therefore a factory that can open nothing; the {@link ClientCall} that reads it
 * puts the client's own in its place. A table of certificates by host and port would not do: the reference may name the
 * server by another name than the client's URL does.
 *
 * <p>Factories are equal only when they trust the same: RMI shares connections between equal factories, and a
 * connection that was opened for one certificate must not serve a client that was given another.
 */
public final class MessageClientSocketFactory implements RMIClientSocketFactory, Serializable {
    /** Milliseconds for a connection to be made, TLS handshake included; a system property of this name changes it. */
    public static final String CONNECT_TIMEOUT_PROPERTY = "orvane.messageclient.connectTimeoutMs";
    private static final int CONNECT_TIMEOUT_MS = 10_000;

    /** Milliseconds of silence after which an answer is given up; a system property of this name changes it. */
    public static final String READ_TIMEOUT_PROPERTY = "orvane.messageclient.readTimeoutMs";
    private static final int READ_TIMEOUT_MS = 60_000;

    private static final long serialVersionUID = 1L;

    /** RMI waits for a plain server's first words by a limit of its own, a minute, whatever the socket says. */
    private static final String RMI_HANDSHAKE_TIMEOUT = "sun.rmi.transport.tcp.handshakeTimeout";

    static {
        if (System.getProperty(RMI_HANDSHAKE_TIMEOUT) == null) {
            System.setProperty(RMI_HANDSHAKE_TIMEOUT, Integer.toString(CONNECT_TIMEOUT_MS));
        }
    }

    private final transient boolean ofClient;
    private final transient CertificatePin pin;

    /** For a server to export its objects with. */
    public MessageClientSocketFactory() {
        this(false, null);
    }

    private MessageClientSocketFactory(boolean ofClient, CertificatePin pin) {
        this.ofClient = ofClient;
        this.pin = pin;
    }

    /** For a client; without a pin its connections are plain. */
    public static MessageClientSocketFactory ofClient(CertificatePin pinOrNull) {
        return new MessageClientSocketFactory(true, pinOrNull);
    }

    public boolean isSecure() {
        return pin != null;
    }

    @Override
    public Socket createSocket(String host, int port) throws IOException {
        if (!ofClient) {
            throw new IOException("the reference to the message server was not read by a message client");
        }
        checkCertificate();
        Socket socket = new Socket();
        try {
            int connectTimeoutMs = Integer.getInteger(CONNECT_TIMEOUT_PROPERTY, CONNECT_TIMEOUT_MS);
            socket.connect(new InetSocketAddress(host, port), connectTimeoutMs);
            socket.setSoTimeout(connectTimeoutMs);
            Socket ready = isSecure() ? secured(socket, host, port) : socket;
            ready.setSoTimeout(Integer.getInteger(READ_TIMEOUT_PROPERTY, READ_TIMEOUT_MS));
            return ready;
        } catch (IOException | RuntimeException failure) {
            socket.close();
            throw failure;
        }
    }

    private void checkCertificate() throws SSLHandshakeException {
        if (pin == null) {
            return;
        }
        try {
            pin.checkValidity();
        } catch (CertificateException invalid) {
            SSLHandshakeException refusal = new SSLHandshakeException(invalid.toString());
            refusal.initCause(invalid);
            throw refusal;
        }
    }

    /** Shakes hands at once: later, RMI would report a refusal as a failure of the call. */
    private Socket secured(Socket socket, String host, int port) throws IOException {
        SSLSocket secured = (SSLSocket) pin.sockets().createSocket(socket, host, port, true);
        secured.startHandshake();
        return secured;
    }

    private Object readResolve() {
        return ClientCall.ownFactoryInsteadOf(this);
    }

    @Override
    public boolean equals(Object other) {
        if (!(other instanceof MessageClientSocketFactory)) {
            return false;
        }
        MessageClientSocketFactory that = (MessageClientSocketFactory) other;
        return ofClient == that.ofClient && Objects.equals(pin, that.pin);
    }

    @Override
    public int hashCode() {
        return Objects.hash(ofClient, pin);
    }
}
