package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.CertificatePin;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.InstanceLoggerFactory;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageClientSocketFactory;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.rmi.RemoteException;
import java.security.cert.CertificateException;
import java.util.Map;
import java.util.logging.Logger;

/**
 * A desktop's client of the {@link MessageServer}; each method named like one of the server's calls that one, and
 * throws what it throws. To be used in the order {@link #setProviderUrl}, {@link #initialize}, calls; and from the
 * first once more for another server.
 *
 * <p>An unreachable or distrusted server shows as a {@code java.rmi.ConnectException}, a {@code
 * java.rmi.ConnectIOException} or a {@code java.security.cert.CertificateException}: by these names in an exception's
 * text, its causes unread, the bridge tells its host so.
 *
 * <p>For any thread, also one without a context class loader. The lock guards the fields and is never held during a
 * call, so that {@link #dispose} waits for nothing.
 */
public class DesktopMessageClient {
    private static final Logger LOGGER = InstanceLoggerFactory.getLogger();

    private static final int DEEPEST_CAUSE = 10;

    private final Object lock = new Object();
    private ProviderUrl url;
    private ServerConnection connection;
    private boolean disposed;

    public DesktopMessageClient() {
    }

    /**
     * Names the server and forgets the former one.
     *
     * @param providerUrl "rmi://host[:port][/name]"; see {@link MessageServer} for what is left out
     * @throws IllegalArgumentException if it is no such URL; the former server is kept
     */
    public void setProviderUrl(String providerUrl) {
        ProviderUrl newUrl = ProviderUrl.parse(providerUrl);
        synchronized (lock) {
            checkNotDisposed();
            url = newUrl;
            connection = null;
        }
    }

    /**
     * Says how to connect. The first call connects: a server that cannot be reached, or is not to be trusted, shows there,
     * where the bridge tells its host so.
     *
     * @param configDirectory not needed: this client keeps no settings in files
     * @param certificate the server's certificate as PEM or its bare Base64 text, for TLS with exactly this certificate;
     *     null or blank for a connection without TLS
     * @throws CertificateException if there is no certificate in the text
     */
    public void initialize(String configDirectory, String certificate) throws CertificateException {
        synchronized (lock) {
            checkNotDisposed();
            if (url == null) {
                throw new IllegalStateException("the message server's URL is not set");
            }
            // Whatever the certificate turns out to be, the connection that trusts the former one is not used again.
            connection = null;
        }
        // Outside the lock: what sets up TLS may load libraries, and dispose must not wait for that.
        MessageClientSocketFactory sockets = MessageClientSocketFactory.ofClient(pinOrNull(certificate));
        synchronized (lock) {
            checkNotDisposed();
            connection = new ServerConnection(url, sockets);
        }
    }

    public String onStartup(String clientDescriptor, DesktopConnection desktop) throws RemoteException {
        return call("onStartup", server -> server.onStartup(clientDescriptor, desktop));
    }

    public String onUserLogon(DesktopConnection desktop, DesktopInformation information, long id, UserSession session)
            throws RemoteException {
        return call("onUserLogon", server -> server.onUserLogon(desktop, information, id, session));
    }

    public void onUserLogoff(DesktopConnection desktop, long id, UserSession session) throws RemoteException {
        call("onUserLogoff", server -> {
            server.onUserLogoff(desktop, id, session);
            return null;
        });
    }

    public void onUserDisconnect(DesktopConnection desktop, long id, UserSession session) throws RemoteException {
        call("onUserDisconnect", server -> {
            server.onUserDisconnect(desktop, id, session);
            return null;
        });
    }

    public void onUserReconnect(DesktopConnection desktop, long id, UserSession session) throws RemoteException {
        call("onUserReconnect", server -> {
            server.onUserReconnect(desktop, id, session);
            return null;
        });
    }

    public String onDataCollected(DesktopConnection desktop, Sample sample) throws RemoteException {
        return call("onDataCollected", server -> server.onDataCollected(desktop, sample));
    }

    public String onExtendedDataCollected(DesktopConnection desktop, Map<String, String> metaData, Sample sample)
            throws RemoteException {
        return call("onExtendedDataCollected", server -> server.onExtendedDataCollected(desktop, metaData, sample));
    }

    public void refreshSession(DesktopConnection desktop, long id, DesktopInformation information, UserSession session)
            throws RemoteException {
        call("refreshSession", server -> {
            server.refreshSession(desktop, id, information, session);
            return null;
        });
    }

    public String onDesktopPoll(DesktopConnection desktop, long id, String data) throws RemoteException {
        return call("onDesktopPoll", server -> server.onDesktopPoll(desktop, id, data));
    }

    public String onActionPerformed(DesktopConnection desktop, Map<String, String> metaData, String result)
            throws RemoteException {
        return call("onActionPerformed", server -> server.onActionPerformed(desktop, metaData, result));
    }

    /**
     * Forgets the server, for good: every later call throws {@link IllegalStateException}, except this one. Starts
     * nothing and waits for nothing, since the bridge may be in the middle of being unloaded; RMI closes what is idle
     * by itself.
     */
    public void dispose() {
        synchronized (lock) {
            disposed = true;
            connection = null;
        }
    }

    private <T> T call(String method, ServerConnection.Call<T> call) throws RemoteException {
        ServerConnection server = current();
        try {
            return server.make(call);
        } catch (RemoteException | RuntimeException failure) {
            logFailure(method, failure);
            throw failure;
        }
    }

    private ServerConnection current() {
        synchronized (lock) {
            checkNotDisposed();
            if (connection == null) {
                throw new IllegalStateException("the message client is not initialized");
            }
            return connection;
        }
    }

    private void checkNotDisposed() {
        if (disposed) {
            throw new IllegalStateException("the message client is disposed");
        }
    }

    private static CertificatePin pinOrNull(String certificate) throws CertificateException {
        return certificate == null || certificate.trim().isEmpty() ? null : CertificatePin.parse(certificate);
    }

    /** By the exceptions' names alone: a server's text may quote the token or the descriptor that it was sent. */
    private static void logFailure(String method, Throwable failure) {
        StringBuilder names = new StringBuilder(failure.getClass().getName());
        Throwable cause = failure.getCause();
        // A server's exception may be its own cause, around some corners.
        for (int depth = 0; cause != null && depth < DEEPEST_CAUSE; depth++) {
            names.append(" because of ").append(cause.getClass().getName());
            cause = cause.getCause();
        }
        LOGGER.warning(method + " failed: " + names);
    }
}
