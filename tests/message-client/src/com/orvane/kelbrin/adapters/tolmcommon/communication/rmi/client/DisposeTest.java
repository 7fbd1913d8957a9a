package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.ModelObjects;
import java.util.List;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.FutureTask;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

class DisposeTest {
    @Test
    void everyCallAfterDisposeIsAnError() throws Exception {
        try (TestServer server = new TestServer(null)) {
            DesktopMessageClient client = Clients.connected(server);
            DesktopConnection desktop = ModelObjects.connection();
            client.dispose();

            for (Executable call : List.<Executable>of(() -> client.setProviderUrl(server.url()),
                    () -> client.initialize("", ""), () -> client.onStartup("", desktop),
                    () -> client.onUserLogon(desktop, null, 1, null), () -> client.onUserLogoff(desktop, 1, null),
                    () -> client.onUserDisconnect(desktop, 1, null), () -> client.onUserReconnect(desktop, 1, null),
                    () -> client.onDataCollected(desktop, null),
                    () -> client.onExtendedDataCollected(desktop, null, null),
                    () -> client.refreshSession(desktop, 1, null, null), () -> client.onDesktopPoll(desktop, 1, ""),
                    () -> client.onActionPerformed(desktop, null, ""))) {
                assertThrows(IllegalStateException.class, call);
            }
            assertEquals(0, server.calls.size());
        }
    }

    @Test
    void aClientMayBeDisposedTwiceAndWithoutEverHavingConnected() {
        DesktopMessageClient client = new DesktopMessageClient();

        client.dispose();
        client.dispose();
    }

    @Test
    void disposeDoesNotWaitForACallWhichThenEndsAsItWould() throws Exception {
        CountDownLatch arrived = new CountDownLatch(1);
        CountDownLatch disposed = new CountDownLatch(1);
        try (TestServer server = new TestServer(null)) {
            server.answer = () -> {
                arrived.countDown();
                disposed.await();
                return "late";
            };
            DesktopMessageClient client = Clients.connected(server);
            FutureTask<String> call = new FutureTask<>(() -> client.onStartup("", ModelObjects.connection()));
            new Thread(call).start();
            arrived.await();

            client.dispose();
            disposed.countDown();

            assertEquals("late", call.get());
        }
    }
}
