package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertInstanceOf;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseMetric;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseSample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects;
import foreign.ForeignException;
import foreign.ForeignMetric;
import foreign.ForeignSockets;
import foreign.Readings;
import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.InvalidClassException;
import java.io.ObjectInputStream;
import java.io.ObjectOutputStream;
import java.rmi.RemoteException;
import java.rmi.ServerException;
import java.util.HashMap;
import java.util.Map;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

class ObjectFilterTest {
    @BeforeEach
    void forgetReadings() {
        Readings.forget();
    }

    @Test
    void aServerReadsNoForeignObjectInPlaceOfOneOfTheModel() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);
            BaseSample sample = new BaseSample(1);
            sample.putMetric(new ForeignMetric());

            assertRefusedByTheServer(server, assertThrows(ServerException.class,
                    () -> client.onDataCollected(ModelObjects.connection(), sample)));
        }
    }

    @Test
    @SuppressWarnings({"unchecked", "rawtypes"})
    void aServerReadsNoForeignObjectInAMap() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);
            Map metaData = new HashMap(Map.of("key", new ForeignMetric()));

            assertRefusedByTheServer(server, assertThrows(ServerException.class,
                    () -> client.onActionPerformed(ModelObjects.connection(), metaData, "")));
        }
    }

    @Test
    void aServerReadsNothingThatNestsWithoutEnd() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);
            BaseMetric metric = new BaseMetric("innermost");
            for (int level = 0; level < 50; ++level) {
                BaseMetric outer = new BaseMetric("level " + level);
                outer.addInstance(metric);
                metric = outer;
            }
            BaseSample sample = new BaseSample(1);
            sample.putMetric(metric);

            assertRefusedByTheServer(server, assertThrows(ServerException.class,
                    () -> client.onDataCollected(ModelObjects.connection(), sample)));
        }
    }

    @Test
    void aClientReadsNoForeignException() throws Exception {
        try (TestServer server = new TestServer(null)) {
            server.answer = () -> {
                throw new ForeignException();
            };
            DesktopMessageClient client = Clients.connected(server);

            assertRefused(assertThrows(RemoteException.class, () -> client.onStartup("", ModelObjects.connection())));
        }
    }

    @Test
    void aClientReadsNoForeignCauseOfAnException() throws Exception {
        try (TestServer server = new TestServer(null)) {
            server.answer = () -> {
                throw new IllegalStateException(new ForeignException());
            };
            DesktopMessageClient client = Clients.connected(server);

            assertRefused(assertThrows(RemoteException.class, () -> client.onStartup("", ModelObjects.connection())));
        }
    }

    @Test
    void aClientReadsNoForeignPartOfAReference() throws Exception {
        try (TestServer server = new TestServer(null, null, 0, new ForeignSockets())) {
            DesktopMessageClient client = Clients.pointedAt(server.url());

            assertRefused(assertThrows(RemoteException.class, () -> Clients.reach(client, "")));
        }
    }

    @Test
    void whatElseIsReadInTheProcessIsNotFiltered() throws Exception {
        try (TestServer server = new TestServer(null)) {
            Clients.connected(server).onStartup("", ModelObjects.connection());
            ByteArrayOutputStream bytes = new ByteArrayOutputStream();
            new ObjectOutputStream(bytes).writeObject(new ForeignMetric());

            Object read = new ObjectInputStream(new ByteArrayInputStream(bytes.toByteArray())).readObject();

            assertInstanceOf(ForeignMetric.class, read);
            assertEquals(1, Readings.count());
        }
    }

    private static void assertRefusedByTheServer(TestServer server, Throwable failure) {
        assertRefused(failure);
        assertEquals(0, server.calls.size());
    }

    private static void assertRefused(Throwable failure) {
        Throwable deepest = failure;
        while (deepest.getCause() != null) {
            deepest = deepest.getCause();
        }
        assertInstanceOf(InvalidClassException.class, deepest);
        assertTrue(deepest.getMessage().contains("REJECTED"), deepest.getMessage());
        assertEquals(0, Readings.count());
    }
}
