package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Clients.assertTellsThatTheServerCannotBeReached;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageClientSocketFactory;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects;
import java.rmi.RemoteException;
import java.security.cert.CertificateException;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

class PinnedCertificateTest {
    @Test
    void theGivenCertificateIsAcceptedAsPemAndAsBareText() throws Exception {
        try (TestServer server = new TestServer(TestKey.valid())) {
            for (String text : new String[] {TestKey.valid().pem(), TestKey.valid().base64(),
                "of the server:\n" + TestKey.valid().pem() + "\n"}) {
                assertEquals("answer", Clients.connected(server, text).onStartup("", ModelObjects.connection()));
            }
        }
    }

    @Test
    void theServersOtherNameMakesNoDifference() throws Exception {
        try (TestServer server = new TestServer(TestKey.valid())) {
            DesktopMessageClient client = Clients.pointedAt("rmi://localhost:" + server.port());
            client.initialize("", TestKey.valid().pem());

            assertEquals("answer", client.onStartup("", ModelObjects.connection()));
        }
    }

    @Test
    void anotherCertificateIsRefused() throws Exception {
        try (TestServer server = new TestServer(TestKey.valid())) {
            Throwable refusal = assertRefused(server, TestKey.anotherValid());

            assertTrue(refusal.toString().contains("another certificate"), refusal.toString());
        }
    }

    @Test
    void anotherCertificateIsRefusedAlsoWhileAConnectionOfTheRightOneIsOpen() throws Exception {
        try (TestServer server = new TestServer(TestKey.valid())) {
            DesktopMessageClient client = Clients.connected(server, TestKey.valid().pem());
            client.onStartup("", ModelObjects.connection());

            Throwable refusal = assertThrows(RemoteException.class,
                    () -> Clients.reach(client, TestKey.anotherValid().pem()));
            Throwable second = assertThrows(RemoteException.class,
                    () -> client.onStartup("", ModelObjects.connection()));

            assertTellsThatTheServerCannotBeReached(refusal);
            assertTellsThatTheServerCannotBeReached(second);
            assertEquals(1, server.calls.size());
        }
    }

    @Test
    void anExpiredCertificateIsRefused() throws Exception {
        try (TestServer server = new TestServer(TestKey.expired())) {
            Throwable refusal = assertRefused(server, TestKey.expired());

            assertTrue(refusal.toString().contains("java.security.cert.CertificateExpiredException"),
                    refusal.toString());
        }
    }

    @Test
    void aCertificateThatIsNotYetValidIsRefused() throws Exception {
        try (TestServer server = new TestServer(TestKey.notYetValid())) {
            Throwable refusal = assertRefused(server, TestKey.notYetValid());

            assertTrue(refusal.toString().contains("java.security.cert.CertificateNotYetValidException"),
                    refusal.toString());
        }
    }

    @Test
    void aServerWithoutTlsIsRefusedWhenACertificateIsGiven() throws Exception {
        try (TestServer server = new TestServer(null)) {
            assertRefused(server, TestKey.valid());
        }
    }

    @Test
    void aServerThatIsOnlyRegisteredOverTlsIsRefused() throws Exception {
        try (TestServer server = new TestServer(TestKey.valid(), null, 0, new MessageClientSocketFactory())) {
            DesktopMessageClient client = Clients.connected(server, TestKey.valid().pem());

            assertTellsThatTheServerCannotBeReached(
                    assertThrows(RemoteException.class, () -> client.onStartup("", ModelObjects.connection())));
            assertEquals(0, server.calls.size());
        }
    }

    @Test
    void aReferenceThatWouldBeCalledWithoutTlsIsRefused() throws Exception {
        try (TestServer server = new TestServer(TestKey.valid(), null, 0, null)) {
            assertRefused(server, TestKey.valid());
        }
    }

    @Test
    void aServerWithTlsIsNotReachedWithoutCertificate() throws Exception {
        try (TestServer server = new TestServer(TestKey.valid())) {
            DesktopMessageClient client = Clients.pointedAt(server.url());

            assertTellsThatTheServerCannotBeReached(
                    assertThrows(RemoteException.class, () -> Clients.reach(client, " \r\n")));
        }
    }

    @ParameterizedTest
    @ValueSource(strings = {"no certificate", "bm8gY2VydGlmaWNhdGU=", "-----BEGIN CERTIFICATE-----"})
    void aTextWithoutCertificateIsRefusedAndNotQuoted(String text) {
        DesktopMessageClient client = Clients.pointedAt("rmi://" + TestServer.HOST);

        Throwable refusal = assertThrows(CertificateException.class, () -> client.initialize("", text));

        assertTellsThatTheServerCannotBeReached(refusal);
        assertFalse(refusal.toString().contains(text));
    }

    private static Throwable assertRefused(TestServer server, TestKey expected) {
        DesktopMessageClient client = Clients.pointedAt(server.url());
        Throwable refusal = assertThrows(RemoteException.class, () -> Clients.reach(client, expected.pem()));
        assertTellsThatTheServerCannotBeReached(refusal);
        assertEquals(0, server.calls.size());
        return refusal;
    }
}
