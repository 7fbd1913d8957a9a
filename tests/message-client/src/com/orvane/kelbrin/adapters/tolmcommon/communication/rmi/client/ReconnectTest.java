package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Clients.assertTellsThatTheServerCannotBeReached;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects;
import java.net.ServerSocket;
import java.net.SocketTimeoutException;
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
            for (int call = 0; call < 3; call++) {  // an old connection breaks amid the first, a new one is not to be had
                assertTellsThatTheServerCannotBeReached(
                        assertThrows(RemoteException.class, () -> client.onStartup("", ModelObjects.connection())));
            }
            try (ServerProcess second = new ServerProcess(first.port())) {
                assertEquals("answer", client.onStartup("", ModelObjects.connection()));
                assertEquals(first.port(), second.port());
            }
        }
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
        try (ServerSocket server = new ServerSocket(0)) {
            Clients.pointedAt("rmi://" + TestServer.HOST + ":" + server.getLocalPort())
                    .initialize("", TestKey.valid().pem());

            server.setSoTimeout(200);
            assertThrows(SocketTimeoutException.class, server::accept);
        }
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
            DesktopMessageClient client = Clients.connected(server);
            client.onDesktopPoll(null, 0, "");  // by now the server is known, and a call could be made once more
            server.calls.clear();
            server.answer = () -> {
                end.await();
                return "late";
            };

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
