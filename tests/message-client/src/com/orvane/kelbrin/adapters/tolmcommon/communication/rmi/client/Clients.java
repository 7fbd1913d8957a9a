package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.stream.Stream;

/** What the tests of the client do again and again. */
final class Clients {
    private Clients() {
    }

    static DesktopMessageClient connected(TestServer server, String certificate) throws Exception {
        DesktopMessageClient client = new DesktopMessageClient();
        client.setProviderUrl(server.url());
        client.initialize("", certificate);
        return client;
    }

    static DesktopMessageClient connected(TestServer server) throws Exception {
        return connected(server, "");
    }

    static DesktopMessageClient pointedAt(String url) {
        DesktopMessageClient client = new DesktopMessageClient();
        client.setProviderUrl(url);
        return client;
    }

    /** Makes a call, the first of which connects. */
    static void reach(DesktopMessageClient client, String certificate) throws Exception {
        client.initialize("", certificate);
        client.onDesktopPoll(null, 0, null);
    }

    /** By the exception's own text, as the bridge reads it: causes are not looked at. */
    static void assertTellsThatTheServerCannotBeReached(Throwable failure) {
        assertTrue(Stream.of("rmiURLContext", "java.rmi.ConnectException", "java.rmi.ConnectIOException",
                "java.security.cert.").anyMatch(failure.toString()::contains), failure.toString());
    }
}
