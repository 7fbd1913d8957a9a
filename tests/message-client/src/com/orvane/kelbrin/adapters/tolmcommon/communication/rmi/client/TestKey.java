package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import java.io.File;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.KeyStore;
import java.util.Base64;
import java.util.HashMap;
import java.util.Map;
import javax.net.ServerSocketFactory;
import javax.net.ssl.KeyManagerFactory;
import javax.net.ssl.SSLContext;

/** A key and its self-signed certificate, made when first asked for. */
final class TestKey {
    private static final Map<String, TestKey> MADE = new HashMap<>();
    private static final String PASSWORD = "changeit";
    private static final String ALIAS = "server";

    private final KeyStore store;

    private TestKey(String start) throws Exception {
        Path folder = Files.createTempDirectory("message-client-test");
        Path file = folder.resolve("key.p12");
        try {
            Process keytool = new ProcessBuilder(System.getProperty("java.home") + "/bin/keytool", "-genkeypair",
                    "-alias", ALIAS, "-keyalg", "EC", "-groupname", "secp256r1", "-dname", "CN=somewhere else",
                    "-startdate", start, "-validity", "2", "-storetype", "PKCS12", "-keystore", file.toString(),
                    "-storepass", PASSWORD)
                            .redirectErrorStream(true).start();
            String told = new String(keytool.getInputStream().readAllBytes());
            if (keytool.waitFor() != 0) {
                throw new IllegalStateException("keytool: " + told);
            }
            store = KeyStore.getInstance(new File(file.toString()), PASSWORD.toCharArray());
        } finally {
            Files.deleteIfExists(file);
            Files.delete(folder);
        }
    }

    static TestKey valid() {
        return made("valid", "-1d");
    }

    static TestKey anotherValid() {
        return made("another", "-1d");
    }

    static TestKey expired() {
        return made("expired", "-5d");
    }

    static TestKey notYetValid() {
        return made("early", "+5d");
    }

    private static synchronized TestKey made(String name, String start) {
        return MADE.computeIfAbsent(name, unused -> {
            try {
                return new TestKey(start);
            } catch (Exception failure) {
                throw new IllegalStateException(failure);
            }
        });
    }

    String base64() {
        try {
            return Base64.getEncoder().encodeToString(store.getCertificate(ALIAS).getEncoded());
        } catch (Exception failure) {
            throw new IllegalStateException(failure);
        }
    }

    String pem() {
        return "-----BEGIN CERTIFICATE-----\r\n" + base64().replaceAll("(.{64})", "$1\r\n")
                + "\r\n-----END CERTIFICATE-----\r\n";
    }

    ServerSocketFactory serverSockets() {
        try {
            KeyManagerFactory keys = KeyManagerFactory.getInstance(KeyManagerFactory.getDefaultAlgorithm());
            keys.init(store, PASSWORD.toCharArray());
            SSLContext context = SSLContext.getInstance("TLS");
            context.init(keys.getKeyManagers(), null, null);
            return context.getServerSocketFactory();
        } catch (Exception failure) {
            throw new IllegalStateException(failure);
        }
    }
}
