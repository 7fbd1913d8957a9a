package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.DesktopMessageClient;
import java.nio.file.Files;
import java.nio.file.Path;
import java.rmi.RemoteException;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** However it is asked to stop, the server says so, ends with 0, and leaves a record of everything it answered. */
class ServerEndTest {
    private static final int CALLS = 20;
    private static final ServerProcess.End CLEAN = new ServerProcess.End(0, List.of("stopped"), List.of());

    @TempDir
    Path folder;

    private interface Stop {
        ServerProcess.End stop(ServerProcess server) throws Exception;
    }

    private void assertCleanEnd(Stop stop, String... options) throws Exception {
        Path record = folder.resolve("record");
        List<String> arguments = new ArrayList<>(List.of("--record", record.toString()));
        arguments.addAll(List.of(options));
        try (ServerProcess server = ServerProcess.start(arguments.toArray(String[]::new))) {
            DesktopMessageClient client = server.connect();
            for (int call = 0; call < CALLS; call++) {
                client.onDesktopPoll(ModelObjects.CONNECTION, call, "");
            }

            ServerProcess.End end = stop.stop(server);

            assertEquals(CLEAN, end);
            assertEquals(CALLS, Files.readAllLines(record).size());
        }
    }

    @Test
    void aTerminationIsACleanEnd() throws Exception {
        assertCleanEnd(ServerProcess::terminate);
    }

    @Test
    void anInterruptIsACleanEnd() throws Exception {
        assertCleanEnd(ServerProcess::interrupt);
    }

    @Test
    void theEndOfTheInputIsACleanEndWhereAskedFor() throws Exception {
        assertCleanEnd(ServerProcess::closeInput, "--stop-with-stdin");
    }

    @Test
    void theEndOfTheInputStopsNothingUnasked() throws Exception {
        try (ServerProcess server = ServerProcess.start("--answer", "onStartup=here")) {
            server.endInput();

            assertEquals("here", server.connect().onStartup("", null));
        }
    }

    @Test
    void aCallInProgressDoesNotHoldTheEndUp() throws Exception {
        Path record = folder.resolve("record");
        try (ServerProcess server =
                ServerProcess.start("--record", record.toString(), "--delay", "onStartup=3600000")) {
            DesktopMessageClient client = server.connect();
            Thread caller = new Thread(() -> {
                try {
                    client.onStartup("", null);
                } catch (RemoteException cutOff) {
                    // As it has to be.
                }
            });
            caller.start();
            while (Files.size(record) == 0) {
                Thread.onSpinWait();
            }

            assertEquals(CLEAN, server.terminate());

            caller.join();
            assertEquals(1, Files.readAllLines(record).size());
        }
    }

    @Test
    void thePortIsFreeAgainAfterwards() throws Exception {
        int port;
        try (ServerProcess server = ServerProcess.start()) {
            port = server.url().getPort();
            server.connect().onStartup("", null);
            server.terminate();
        }

        try (ServerProcess again = ServerProcess.startOn(port)) {
            assertEquals(port, again.url().getPort());
        }
    }
}
