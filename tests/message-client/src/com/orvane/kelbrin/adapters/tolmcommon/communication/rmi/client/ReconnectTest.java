package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Clients.assertTellsThatTheServerCannotBeReached;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects;
import java.net.ServerSocket;
import java.rmi.MarshalException;
import java.rmi.RemoteException;
import java.rmi.UnmarshalException;
import java.util.concurrent.CountDownLatch;
import org.junit.jupiter.api.Test;

class ReconnectTest {
    @Test
    void afterTheServersProcessWasAwayTheNextCallReachesTheNewOne() throws Exception {
        try (ServerProcess first = new ServerProcess(0)) {
            DesktopMessageClient client = Clients.pointedAt(first.url());
            client.initialize("", "");
            assertEquals("answer", client.onStartup("", ModelObjects.connection()));

            first.goAway();
            assertTellsThatTheServerCannotBeReached(failureOnceOldConnectionsAreUsedUp(client));
            try (ServerProcess second = new ServerProcess(first.port())) {
                assertEquals("answer", client.onStartup("", ModelObjects.connection()));
                assertEquals(first.port(), second.port());
            }
        }
    }

    /** A connection that was in use a moment ago breaks amid the call; only a new one cannot be made at all. */
    private static RemoteException failureOnceOldConnectionsAreUsedUp(DesktopMessageClient client) {
        RemoteException failure;
        int calls = 0;
        do {
            failure = assertThrows(RemoteException.class, () -> client.onStartup("", ModelObjects.connection()));
        } while ((failure instanceof UnmarshalException || failure instanceof MarshalException) && ++calls < 10);
        return failure;
    }

    @Test
    void aServerThatIsAwayAtFirstIsReachedOnceItIsThere() throws Exception {
        int port;
        try (ServerSocket free = new ServerSocket(0)) {
            port = free.getLocalPort();
        }
        DesktopMessageClient client = Clients.pointedAt("rmi://" + TestServer.HOST + ":" + port);
        assertTellsThatTheServerCannotBeReached(assertThrows(RemoteException.class, () -> Clients.reach(client, "")));

        try (TestServer server = new TestServer(null, port)) {
            assertEquals("answer", client.onStartup("", ModelObjects.connection()));
            assertEquals(1, server.calls.size());
        }
    }

    @Test
    void aStaleReferenceIsLookedUpAnewAndTheCallArrivesOnce() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);
            client.onDesktopPoll(ModelObjects.connection(), 0, "");
            server.replaceObject();

            assertEquals("answer", client.onStartup("", ModelObjects.connection()));
            assertEquals(2, server.calls.size());
        }
    }

    @Test
    void aServerThatIsNotRegisteredCannotBeReached() throws Exception {
        try (TestServer server = new TestServer(null)) {
            server.unregister();
            DesktopMessageClient client = Clients.pointedAt(server.url());

            assertTellsThatTheServerCannotBeReached(
                    assertThrows(RemoteException.class, () -> Clients.reach(client, "")));
        }
    }

    @Test
    void initializeAsksNobody() throws Exception {
        Clients.pointedAt("rmi://no-such-host.invalid").initialize("", TestKey.valid().pem());
    }

    @Test
    void anUnknownHostCannotBeReached() {
        DesktopMessageClient client = Clients.pointedAt("rmi://no-such-host.invalid");

        assertTellsThatTheServerCannotBeReached(assertThrows(RemoteException.class, () -> Clients.reach(client, "")));
    }

    @Test
    void anAnswerThatDoesNotComeIsGivenUpAndTheCallIsNotRepeated() throws Exception {
        CountDownLatch end = new CountDownLatch(1);
        try (TestServer server = new TestServer(null);
                Setting shortly = new Setting(Setting.READ_TIMEOUT, "300")) {
            server.answer = () -> {
                end.await();
                return "late";
            };
            DesktopMessageClient client = Clients.connected(server);

            RemoteException failure =
                    assertThrows(RemoteException.class, () -> client.onStartup("", ModelObjects.connection()));

            assertEquals(UnmarshalException.class, failure.getClass());
            assertEquals("java.net.SocketTimeoutException: Read timed out", failure.getCause().toString());
            assertEquals(1, server.calls.size(), shortly.toString());
        } finally {
            end.countDown();
        }
    }

    @Test
    void aServerThatKeepsSilentAboutItsCertificateIsGivenUp() throws Exception {
        try (ServerSocket silent = new ServerSocket(0);
                Setting shortly = new Setting(Setting.CONNECT_TIMEOUT, "300")) {
            DesktopMessageClient client = Clients.pointedAt("rmi://" + TestServer.HOST + ":" + silent.getLocalPort());

            assertTellsThatTheServerCannotBeReached(assertThrows(RemoteException.class,
                    () -> Clients.reach(client, TestKey.valid().pem()), shortly.toString()));
        }
    }
}
