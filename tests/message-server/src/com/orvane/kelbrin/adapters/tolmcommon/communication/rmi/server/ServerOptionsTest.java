package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.net.InetAddress;
import java.net.ServerSocket;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.MethodSource;

class ServerOptionsTest {
    private static final String PROGRAM = "telvar-message-server: ";
    private static final String ANSWERING =
            "onStartup, onUserLogon, onDataCollected, onExtendedDataCollected, onDesktopPoll, onActionPerformed";

    @TempDir
    Path folder;

    static Stream<Arguments> badOptions() {
        return Stream.of(
                bad("Unknown option: '--prot=0' (--help tells the options)", "--prot=0"),
                bad("Unmatched argument at index 0: 'start' (--help tells the options)", "start"),
                bad("Missing required parameter for option '--port' (N) (--help tells the options)", "--port"),
                bad("Invalid value for option '--port': 'many' is not an int (--help tells the options)",
                        "--port", "many"),
                bad("--port 65536: a port is a number from 0 to 65535", "--port", "65536"),
                bad("--port -1: a port is a number from 0 to 65535", "--port=-1"),
                bad("--answer onStartup: has no '='; write METHOD=TEXT", "--answer", "onStartup"),
                bad("--answer onFire=run: no such method; take one of " + ANSWERING, "--answer", "onFire=run"),
                bad("--answer onUserLogoff=bye: no such method; take one of " + ANSWERING, "--answer",
                        "onUserLogoff=bye"),
                bad("--answer onStartup/0=x: behind the '/' goes a number from 1", "--answer", "onStartup/0=x"),
                bad("--answer onStartup: given twice; leave one out", "--answer", "onStartup=a", "--answer",
                        "onStartup=b"),
                bad("--answer onStartup: /no/such/file cannot be read as UTF-8 text; name a file that can be",
                        "--answer", "onStartup=@/no/such/file"),
                bad("--delay onStartup=soon: behind the '=' goes a number of milliseconds", "--delay",
                        "onStartup=soon"),
                bad("--tls needs the store's password; give one of --password, --password-file", "--tls", "store"),
                bad("a password without a key store; name the store with --tls", "--password", "secret"));
    }

    private static Arguments bad(String line, String... arguments) {
        return Arguments.of(line, arguments);
    }

    @ParameterizedTest
    @MethodSource("badOptions")
    void aBadOptionGetsOneLineThatSaysTheCure(String line, String[] arguments) throws Exception {
        ServerProcess.End end = ServerProcess.run(arguments);

        assertEquals(new ServerProcess.End(2, List.of(), List.of(PROGRAM + line)), end);
    }

    @Test
    void aPortInUseGetsOneLine() throws Exception {
        try (ServerSocket taken = new ServerSocket(0, 1, InetAddress.getByName("127.0.0.1"))) {
            ServerProcess.End end = ServerProcess.run("--port", Integer.toString(taken.getLocalPort()));

            assertEquals(new ServerProcess.End(1, List.of(), List.of(PROGRAM + "cannot listen on 127.0.0.1 port "
                    + taken.getLocalPort()
                    + " (Address already in use); choose another --port (0: any free one) or --host")), end);
        }
    }

    @Test
    void anUnknownHostGetsOneLine() throws Exception {
        ServerProcess.End end = ServerProcess.run("--host", "no.such.invalid", "--port", "0");

        assertEquals(new ServerProcess.End(1, List.of(), List.of(
                PROGRAM + "--host no.such.invalid: no such address; give one of this machine's own")), end);
    }

    @Test
    void aRecordThatCannotBeWrittenGetsOneLine() throws Exception {
        Path record = folder.resolve("missing").resolve("record");

        ServerProcess.End end = ServerProcess.run("--port", "0", "--record", record.toString());

        assertEquals(new ServerProcess.End(1, List.of(), List.of(PROGRAM + "--record " + record
                + ": cannot be written; name a file in a folder that can be")), end);
    }

    @Test
    void aMissingKeyStoreGetsOneLine() throws Exception {
        ServerProcess.End end = ServerProcess.run("--port", "0", "--tls", "/no/store", "--password", "secret");

        assertEquals(1, end.result());
        assertEquals(1, end.errors().size());
        assertTrue(end.errors().get(0).startsWith(
                PROGRAM + "--tls /no/store: cannot be opened; check the file and its password ("), end::toString);
    }

    @Test
    void aFileThatIsNoKeyStoreGetsOneLine() throws Exception {
        Path store = Files.writeString(folder.resolve("store"), "no key here");

        ServerProcess.End end = ServerProcess.run("--port", "0", "--tls", store.toString(), "--password", "secret");

        assertEquals(1, end.result());
        assertEquals(1, end.errors().size());
        assertTrue(end.errors().get(0).startsWith(
                PROGRAM + "--tls " + store + ": cannot be opened; check the file and its password ("), end::toString);
    }

    @Test
    void theStartUpLineTellsTheUrl() throws Exception {
        try (ServerProcess server = ServerProcess.start("--host", "localhost", "--name", "Other")) {
            assertEquals("rmi", server.url().getScheme());
            assertEquals("localhost", server.url().getHost());
            assertFalse(server.url().getPort() <= 0, server.url()::toString);
            assertEquals("/Other", server.url().getPath());
        }
    }

    @Test
    void helpNamesEveryOption() throws Exception {
        ServerProcess.End end = ServerProcess.run("--help");

        assertEquals(0, end.result());
        assertEquals(List.of(), end.errors());
        String help = String.join("\n", end.output());
        for (String option : List.of("--host", "--port", "--name", "--tls", "--password", "--password-file", "--record",
                "--answer", "--fail", "--delay", "--stop-with-stdin", "--help", "--version")) {
            assertTrue(help.contains(option), option);
        }
    }

    @Test
    void versionTellsThatOfTheProduct() throws Exception {
        ServerProcess.End end = ServerProcess.run("--version");

        assertEquals(new ServerProcess.End(0,
                List.of("telvar-message-server " + System.getProperty("telvar.version")), List.of()), end);
    }
}
