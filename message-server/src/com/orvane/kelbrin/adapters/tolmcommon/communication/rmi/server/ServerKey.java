package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.GeneralSecurityException;
import java.security.KeyStore;
import java.util.Collections;
import javax.net.ServerSocketFactory;
import javax.net.ssl.KeyManagerFactory;
import javax.net.ssl.SSLContext;

/** The key that the server speaks TLS with, from a key store. */
final class ServerKey {
    private ServerKey() {
    }

    /** Makes the sockets of a server: plain ones without a key store. */
    static ServerSocketFactory makeSocketFactory(ServerOptions options) throws CannotStartException {
        if (options.keyStore == null) {
            return ServerSocketFactory.getDefault();
        }
        char[] password = readPassword(options).toCharArray();
        KeyStore store = load(options.keyStore, password);
        try {
            KeyManagerFactory keys = KeyManagerFactory.getInstance(KeyManagerFactory.getDefaultAlgorithm());
            keys.init(store, password);
            SSLContext context = SSLContext.getInstance("TLS");
            context.init(keys.getKeyManagers(), null, null);
            return context.getServerSocketFactory();
        } catch (GeneralSecurityException failure) {
            throw new CannotStartException("--tls " + options.keyStore
                    + ": its key cannot be used; give key and store one password (" + failure.getMessage() + ")");
        }
    }

    private static String readPassword(ServerOptions options) throws CannotStartException {
        if (options.password != null) {
            return options.password;
        }
        try {
            return Files.readString(options.passwordFile, StandardCharsets.UTF_8).lines().findFirst().orElse("");
        } catch (IOException failure) {
            throw new CannotStartException("--password-file " + options.passwordFile
                    + ": cannot be read as UTF-8 text; name a file that can be");
        }
    }

    private static KeyStore load(Path file, char[] password) throws CannotStartException {
        try {
            KeyStore store = KeyStore.getInstance(file.toFile(), password);
            for (String alias : Collections.list(store.aliases())) {
                if (store.isKeyEntry(alias)) {
                    return store;
                }
            }
        } catch (IOException | GeneralSecurityException | IllegalArgumentException failure) {
            throw new CannotStartException("--tls " + file
                    + ": cannot be opened; check the file and its password (" + failure.getMessage() + ")");
        }
        throw new CannotStartException("--tls " + file + ": holds no private key; make one with keytool -genkeypair");
    }
}
