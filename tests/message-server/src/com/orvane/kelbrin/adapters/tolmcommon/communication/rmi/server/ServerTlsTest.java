package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.rmi.RemoteException;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Keys and certificates are made by keytool, as a user would. */
class ServerTlsTest {
    private static final String PASSWORD = "secret";

    @TempDir
    static Path folder;

    private static Path store;
    private static String certificate;
    private static Path otherStore;
    private static String otherCertificate;

    @BeforeAll
    static void makeKeys() throws Exception {
        store = makeKey("server.p12");
        certificate = export(store);
        otherStore = makeKey("other.p12");
        otherCertificate = export(otherStore);
    }

    private static Path makeKey(String name) throws Exception {
        Path file = folder.resolve(name);
        keytool("-genkeypair", "-alias", "server", "-keyalg", "EC", "-dname", "CN=localhost", "-storetype", "PKCS12",
                "-keystore", file.toString(), "-storepass", PASSWORD);
        return file;
    }

    private static String export(Path keyStore) throws Exception {
        Path file = folder.resolve(keyStore.getFileName() + ".pem");
        keytool("-exportcert", "-rfc", "-alias", "server", "-keystore", keyStore.toString(), "-storepass", PASSWORD,
                "-file", file.toString());
        return Files.readString(file);
    }

    private static void keytool(String... arguments) throws IOException, InterruptedException {
        List<String> command = new ArrayList<>(List.of(System.getProperty("java.home") + "/bin/keytool"));
        command.addAll(List.of(arguments));
        Process process = new ProcessBuilder(command).redirectErrorStream(true).start();
        String said = new String(process.getInputStream().readAllBytes());
        assertEquals(0, process.waitFor(), said);
    }

    @Test
    void aClientThatHasTheCertificateIsAnswered() throws Exception {
        try (ServerProcess server = ServerProcess.start("--tls", store.toString(), "--password", PASSWORD, "--answer",
                "onStartup=welcome")) {
            assertEquals("welcome", server.connect(certificate).onStartup("", null));
            assertEquals(new ServerProcess.End(0, List.of("stopped"), List.of()), server.terminate());
        }
    }

    @Test
    void thePasswordMayComeFromAFile() throws Exception {
        Path password = Files.writeString(folder.resolve("password"), PASSWORD + "\n");
        try (ServerProcess server = ServerProcess.start("--tls", store.toString(), "--password-file",
                password.toString(), "--answer", "onStartup=welcome")) {
            assertEquals("welcome", server.connect(certificate).onStartup("", null));
        }
    }

    @Test
    void aClientThatHasAnotherCertificateIsNot() throws Exception {
        try (ServerProcess server = ServerProcess.start("--tls", store.toString(), "--password", PASSWORD)) {
            assertThrows(RemoteException.class, () -> server.connect(otherCertificate).onDesktopPoll(null, 0, ""));
        }
    }

    @Test
    void aClientThatSpeaksPlainlyIsNot() throws Exception {
        try (ServerProcess server = ServerProcess.start("--tls", store.toString(), "--password", PASSWORD)) {
            assertThrows(RemoteException.class, () -> server.connect(null).onDesktopPoll(null, 0, ""));
        }
    }

    @Test
    void aPlainServerIsNoneForAClientWithACertificate() throws Exception {
        try (ServerProcess server = ServerProcess.start()) {
            assertThrows(RemoteException.class, () -> server.connect(certificate).onDesktopPoll(null, 0, ""));
        }
    }

    @Test
    void aWrongPasswordGetsOneLine() throws Exception {
        ServerProcess.End end =
                ServerProcess.run("--port", "0", "--tls", store.toString(), "--password", "wrong");

        assertEquals(1, end.result());
        assertEquals(1, end.errors().size());
        assertTrue(end.errors().get(0).startsWith("telvar-message-server: --tls " + store
                + ": cannot be opened; check the file and its password ("), end::toString);
    }

    @Test
    void aPasswordFileThatIsMissingGetsOneLine() throws Exception {
        ServerProcess.End end =
                ServerProcess.run("--port", "0", "--tls", store.toString(), "--password-file", "/no/password");

        assertEquals(new ServerProcess.End(1, List.of(), List.of("telvar-message-server: --password-file /no/password"
                + ": cannot be read as UTF-8 text; name a file that can be")), end);
    }

    @Test
    void aStoreWithoutAKeyGetsOneLine() throws Exception {
        Path certificates = folder.resolve("certificates.p12");
        keytool("-importcert", "-noprompt", "-alias", "server", "-storetype", "PKCS12", "-keystore",
                certificates.toString(), "-storepass", PASSWORD, "-file", folder.resolve("server.p12.pem").toString());

        ServerProcess.End end =
                ServerProcess.run("--port", "0", "--tls", certificates.toString(), "--password", PASSWORD);

        assertEquals(new ServerProcess.End(1, List.of(), List.of("telvar-message-server: --tls " + certificates
                + ": holds no private key; make one with keytool -genkeypair")), end);
    }
}
