package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.InstanceLoggerFactory;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class LogTest {
    @TempDir
    Path folder;

    @AfterEach
    void closeTheLog() {
        new InstanceLoggerFactory();
    }

    @Test
    void connectionsAndFailuresAreLoggedWithoutAnythingThatWasSent() throws Exception {
        new InstanceLoggerFactory(folder.toString());
        String token = ModelObjects.connection().getAuthToken();
        String descriptor = "<client><uniqueid>" + ModelObjects.connection().getUniqueId() + "</uniqueid></client>";
        String url;
        try (TestServer server = new TestServer(TestKey.valid())) {
            server.answer = () -> {
                throw new IllegalStateException(token + descriptor);
            };
            url = server.url() + "/DesktopMessageServer";
            DesktopMessageClient client = Clients.connected(server, TestKey.valid().pem());
            client.onUserLogoff(ModelObjects.connection(), 1, ModelObjects.session());
            assertThrows(IllegalStateException.class, () -> client.onStartup(descriptor, ModelObjects.connection()));
            assertThrows(Exception.class, () -> Clients.reach(client, TestKey.anotherValid().pem()));
        }

        String log = Files.readString(folder.resolve("message-client.0.log"));
        assertEquals(List.of("INFO connected to " + url + " over TLS",
                "WARNING onStartup failed: java.lang.IllegalStateException",
                "WARNING onDesktopPoll failed: java.rmi.ConnectIOException because of javax.net.ssl.SSLHandshakeException"
                        + " because of java.security.cert.CertificateException"),
                log.lines().map(line -> line.replaceAll("^\\S+ (\\w+) \\[\\d+\\]", "$1")).toList());
        for (String secret : List.of(token, ModelObjects.connection().getUniqueId(), "<client>",
                TestKey.valid().base64().substring(0, 40))) {
            assertFalse(log.contains(secret), secret);
        }
    }
}
