package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.rmi.ConnectException;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** What a URL can order. */
class OrdersTest {
    /** For all tests: a file that was ordered is written until another is. */
    @TempDir
    static Path folder;

    private final DesktopMessageClient client = new DesktopMessageClient();

    @AfterEach
    void withdrawOrders() {
        new Calls().throwIn("");
        client.setProviderUrl(null);
    }

    @Test
    void eachMethodReturnsWhatItIsOrderedTo() throws Exception {
        client.setProviderUrl("rmi://host?onStartup=a&onUserLogon=b&onDataCollected=c&onExtendedDataCollected=d"
                + "&onDesktopPoll=&onActionPerformed=f=g");

        assertEquals("a", client.onStartup(null, null));
        assertEquals("b", client.onUserLogon(null, null, 0, null));
        assertEquals("c", client.onDataCollected(null, null));
        assertEquals("d", client.onExtendedDataCollected(null, null, null));
        assertEquals("", client.onDesktopPoll(null, 0, null));
        assertEquals("f=g", client.onActionPerformed(null, null, null));
    }

    @Test
    void withoutOrdersTheAnswerIsNull() throws Exception {
        client.setProviderUrl("rmi://host?onStartup=a");
        client.setProviderUrl("rmi://host");

        assertNull(client.onStartup(null, null));
    }

    @Test
    void aMethodFailsWhenOrderedTo() {
        client.setProviderUrl("rmi://host?fail=onUserLogoff");

        Exception failure = assertThrows(IllegalStateException.class, () -> client.onUserLogoff(null, 0, null));

        assertEquals("ordered: onUserLogoff", failure.getMessage());
    }

    @Test
    void aFailureSaysAndComesFromAsDeepAsOrdered() {
        client.setProviderUrl("rmi://host?fail=onStartup&saying=rmiURLContext&depth=40");

        Exception failure = assertThrows(IllegalStateException.class, () -> client.onStartup(null, null));

        assertEquals("rmiURLContext", failure.getMessage());
        assertTrue(failure.getStackTrace().length > 40);
    }

    @Test
    void theServerIsUnreachableWhenOrdered() {
        client.setProviderUrl("rmi://host?unreachable=initialize");

        Exception failure = assertThrows(ConnectException.class, () -> client.initialize(null, null));

        assertEquals("ordered: initialize", failure.getMessage());
    }

    @Test
    void aCallThrowsThatBeginsAsOrdered() {
        new Calls().throwIn("DesktopMessageClient.onDesktopPoll");

        Exception failure = assertThrows(IllegalStateException.class, () -> client.onDesktopPoll(null, 0, null));

        assertEquals("ordered: DesktopMessageClient.onDesktopPoll", failure.getMessage());
    }

    @Test
    void aStayingMethodMakesItsFileFirst() throws Exception {
        Path file = folder.resolve("stays");
        client.setProviderUrl("rmi://host?stay=" + file);
        client.initialize(null, null);
        assertFalse(Files.exists(file));
        Thread caller = new Thread(() ->
                assertThrows(IllegalStateException.class, () -> client.onStartup(null, null)));

        caller.start();
        while (!Files.exists(file)) {
            Thread.onSpinWait();
        }

        assertTrue(caller.isAlive());
        caller.interrupt();
        caller.join();
    }

    @Test
    void theOrderedFileHasAllCalls() throws Exception {
        Path file = folder.resolve("record");
        client.setProviderUrl("rmi://host?record=" + file);
        client.onStartup(null, null);
        client.setProviderUrl("rmi://host?record=" + file);
        client.dispose();

        assertEquals(new Calls().tell(), Files.readString(file));
    }

    @Test
    void forgottenCallsAreObeyedAllTheSame() throws Exception {
        client.setProviderUrl("rmi://host?forget&onStartup=welcome");
        String before = new Calls().tell();

        assertEquals("welcome", client.onStartup(null, null));

        assertEquals(before, new Calls().tell());
    }
}
