package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.rmi.ConnectException;
import java.rmi.RemoteException;
import java.rmi.ServerException;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.FutureTask;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

class DesktopMessageClientTest {
    private final DesktopConnection desktop = ModelObjects.connection();
    private final DesktopInformation information = ModelObjects.information();
    private final UserSession session = ModelObjects.session();
    private final Sample sample = ModelObjects.sample();
    private final Map<String, String> metaData = new HashMap<>(Map.of("query", "disk", "unit", "\u00b5s"));

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void everyCallReachesTheServerWithAllItsValuesAndReturnsTheAnswer(boolean secure) throws Exception {
        TestKey key = secure ? TestKey.valid() : null;
        try (TestServer server = new TestServer(key)) {
            DesktopMessageClient client = Clients.connected(server, secure ? key.pem() : null);

            assertEquals("answer", client.onStartup("<client/>", desktop));
            assertEquals("answer", client.onUserLogon(desktop, information, -1L, session));
            client.onUserLogoff(desktop, Long.MAX_VALUE, session);
            client.onUserDisconnect(desktop, 2, session);
            client.onUserReconnect(desktop, 3, session);
            assertEquals("answer", client.onDataCollected(desktop, sample));
            assertEquals("answer", client.onExtendedDataCollected(desktop, metaData, sample));
            client.refreshSession(desktop, 4, information, session);
            assertEquals("answer", client.onDesktopPoll(desktop, 5, ""));
            assertEquals("answer", client.onActionPerformed(desktop, metaData, "route"));

            assertEquals(List.of(List.of("onStartup", "<client/>", desktop),
                    List.of("onUserLogon", desktop, information, -1L, session),
                    List.of("onUserLogoff", desktop, Long.MAX_VALUE, session),
                    List.of("onUserDisconnect", desktop, 2L, session), List.of("onUserReconnect", desktop, 3L, session),
                    List.of("onDataCollected", desktop, sample),
                    List.of("onExtendedDataCollected", desktop, metaData, sample),
                    List.of("refreshSession", desktop, 4L, information, session),
                    List.of("onDesktopPoll", desktop, 5L, ""),
                    List.of("onActionPerformed", desktop, metaData, "route")), server.calls);
        }
    }

    @Test
    void nullArgumentsAndNullAnswersTravel() throws Exception {
        try (TestServer server = new TestServer(null)) {
            server.answer = () -> null;
            DesktopMessageClient client = Clients.connected(server);

            assertNull(client.onUserLogon(null, null, 0, null));

            assertEquals(List.of(Arrays.asList("onUserLogon", null, null, 0L, null)), server.calls);
        }
    }

    @Test
    void everyObjectOfTheModelTravels() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);

            for (Object object : ModelObjects.objects()) {
                if (object instanceof Sample) {
                    client.onDataCollected(desktop, (Sample) object);
                    assertEquals(object, server.calls.get(server.calls.size() - 1).get(2));
                } else if (object instanceof UserSession) {
                    client.onUserLogoff(desktop, 1, (UserSession) object);
                    assertEquals(object, server.calls.get(server.calls.size() - 1).get(3));
                }
            }
        }
    }

    @Test
    void anExceptionOfTheServersArrivesWithItsCause() throws Exception {
        try (TestServer server = new TestServer(null)) {
            server.answer = () -> {
                IllegalStateException thrown = new IllegalStateException("full", new java.io.IOException("disk"));
                thrown.addSuppressed(new java.sql.SQLException("rolled back"));
                throw thrown;
            };
            DesktopMessageClient client = Clients.connected(server);

            IllegalStateException failure = assertThrows(IllegalStateException.class,
                    () -> client.onStartup("", desktop));

            assertEquals("full", failure.getMessage());
            assertEquals("java.io.IOException: disk", failure.getCause().toString());
            assertEquals("java.sql.SQLException: rolled back", failure.getSuppressed()[0].toString());
        }
    }

    @Test
    void aRemoteExceptionOfTheServersArrivesAsSuchAndIsNotTriedAgain() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);
            client.onDesktopPoll(desktop, 0, "");  // by now the server is known, and a call could be made once more
            for (RemoteException failure : List.of(new RemoteException("full"), new ConnectException("behind it"))) {
                server.answer = () -> {
                    throw failure;
                };
                server.calls.clear();

                assertThrows(ServerException.class, () -> client.onStartup("", desktop));

                assertEquals(1, server.calls.size());
            }
        }
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void aThreadWithoutContextClassLoaderIsServedAndLeftWithoutOne(boolean secure) throws Exception {
        TestKey key = secure ? TestKey.valid() : null;
        try (TestServer server = new TestServer(key)) {
            server.answer = () -> {
                throw new IllegalStateException("full");
            };
            FutureTask<ClassLoader> work = new FutureTask<>(() -> {
                DesktopMessageClient client = Clients.connected(server, secure ? key.pem() : "");
                client.onUserLogoff(desktop, 1, session);
                assertThrows(IllegalStateException.class, () -> client.onDataCollected(desktop, sample));
                return Thread.currentThread().getContextClassLoader();
            });
            Thread thread = new Thread(work);
            thread.setContextClassLoader(null);

            thread.start();

            assertNull(work.get());
            assertEquals(List.of(List.of("onUserLogoff", desktop, 1L, session),
                    List.of("onDataCollected", desktop, sample)), server.calls);
        }
    }

    @Test
    void theCallersContextClassLoaderIsGivenBack() throws Exception {
        ClassLoader before = Thread.currentThread().getContextClassLoader();
        try (TestServer server = new TestServer(null)) {
            Clients.connected(server).onStartup("", desktop);

            assertSame(before, Thread.currentThread().getContextClassLoader());
        }
    }

    @Test
    void aServerWhoseReferenceBringsNoSocketsOfOursIsCalledAllTheSame() throws Exception {
        try (TestServer server = new TestServer(null, null, 0, null)) {
            assertEquals("answer", Clients.connected(server).onStartup("", desktop));
        }
    }

    @Test
    void anotherUrlLeadsToTheOtherServer() throws Exception {
        try (TestServer first = new TestServer(null); TestServer second = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(first);
            client.setProviderUrl(second.url());
            client.initialize("", "");
            client.onStartup("", desktop);

            assertEquals(0, first.calls.size());
            assertEquals(1, second.calls.size());
        }
    }

    @Test
    void afterAnotherUrlNothingIsCalledBeforeInitialize() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);
            client.setProviderUrl(server.url());

            assertThrows(IllegalStateException.class, () -> client.onStartup("", desktop));
        }
    }

    @Test
    void initializeNeedsAUrl() {
        assertThrows(IllegalStateException.class, () -> new DesktopMessageClient().initialize("", ""));
    }
}
