package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.DesktopMessageClient;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseSample;
import java.nio.file.Files;
import java.nio.file.Path;
import java.rmi.Remote;
import java.rmi.server.UnicastRemoteObject;
import java.util.Date;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Objects of other classes than the data model's: refused, not recorded, and the server goes on. */
class ForeignObjectsTest {
    @TempDir
    Path folder;

    /** The server does not have this class. */
    private static final class ForeignSample extends BaseSample {
        private static final long serialVersionUID = 1L;
    }

    private interface Calling {
        void call(DesktopMessageClient client) throws Exception;
    }

    private void assertRefused(String reason, Calling calling) throws Exception {
        Path record = folder.resolve("record");
        try (ServerProcess server =
                ServerProcess.start("--record", record.toString(), "--answer", "onStartup=alive")) {
            DesktopMessageClient client = server.connect();

            Exception failure = assertThrows(Exception.class, () -> calling.call(client));

            assertTrue(causes(failure).stream().anyMatch(cause -> cause.toString().startsWith(reason)),
                    () -> causes(failure).toString());
            assertEquals("alive", client.onStartup("", null));
            server.terminate();
        }
        List<String> lines = Files.readAllLines(record);
        assertEquals(1, lines.size(), lines::toString);
        assertTrue(lines.get(0).startsWith("{\"method\":\"onStartup\""), lines::toString);
    }

    private static List<Throwable> causes(Throwable failure) {
        return Stream.iterate(failure, cause -> cause != null, Throwable::getCause).toList();
    }

    @SuppressWarnings("unchecked")
    private static Map<String, String> holding(Object value) {
        Map<String, Object> map = new HashMap<>();
        map.put("name", value);
        return (Map<String, String>) (Map<String, ?>) map;
    }

    @Test
    void anObjectOfTheRuntimesInAMapIsRefusedByTheFilter() throws Exception {
        assertRefused("java.io.InvalidClassException: filter status: REJECTED",
                client -> client.onActionPerformed(null, holding(new Date(0)), ""));
    }

    @Test
    void aReferenceToARemoteObjectIsRefusedByTheFilter() throws Exception {
        Remote object = new Remote() {
        };
        UnicastRemoteObject.exportObject(object, 0);
        assertRefused("java.io.InvalidClassException: filter status: REJECTED",
                client -> client.onActionPerformed(null, holding(object), ""));
        UnicastRemoteObject.unexportObject(object, true);
    }

    @Test
    void aSampleOfTheCallersOwnClassIsRefused() throws Exception {
        assertRefused("java.lang.ClassNotFoundException: " + ForeignSample.class.getName(),
                client -> client.onDataCollected(null, new ForeignSample()));
    }

    @Test
    void aNumberInAMapOfTextsIsRefused() throws Exception {
        Path record = folder.resolve("record");
        try (ServerProcess server = ServerProcess.start("--record", record.toString())) {
            DesktopMessageClient client = server.connect();

            assertThrows(ClassCastException.class, () -> client.onActionPerformed(null, holding(5), ""));

            server.terminate();
        }
        assertEquals(List.of(), Files.readAllLines(record));
    }
}
