package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.ByteArrayInputStream;
import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.ObjectInputStream;
import java.io.ObjectOutputStream;
import java.io.UncheckedIOException;
import java.rmi.RemoteException;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

class ClientCallTest {
    private final ClassLoader testsLoader = Thread.currentThread().getContextClassLoader();
    private final MessageClientSocketFactory own = MessageClientSocketFactory.ofClient(null);
    private final ClientCall call = new ClientCall(own);

    @BeforeEach
    void takeTheContextClassLoaderAway() {
        Thread.currentThread().setContextClassLoader(null);
    }

    @AfterEach
    void giveTheContextClassLoaderBack() {
        Thread.currentThread().setContextClassLoader(testsLoader);
    }

    @Test
    void duringACallTheContextClassLoaderKnowsTheClientsClasses() throws RemoteException {
        ClassLoader during = call.run(() -> Thread.currentThread().getContextClassLoader());

        assertSame(ClientCall.class.getClassLoader(), during);
        assertNull(Thread.currentThread().getContextClassLoader());
    }

    @Test
    void aFailedCallLeavesNothingBehind() {
        assertThrows(RemoteException.class, () -> call.run(() -> {
            throw new RemoteException();
        }));

        assertNull(Thread.currentThread().getContextClassLoader());
        assertFalse(received() == own);
    }

    @Test
    void aFactoryThatIsReadDuringACallBecomesTheClientsOwn() throws RemoteException {
        MessageClientSocketFactory read = call.run(ClientCallTest::received);

        assertSame(own, read);
        assertTrue(call.referenceUsesOwnFactory());
    }

    @Test
    void aCallThatReadsNoFactorySaysSo() throws RemoteException {
        call.run(() -> null);

        assertFalse(call.referenceUsesOwnFactory());
    }

    @Test
    void aCallWithinACallLeavesTheOuterOneAsItWas() throws RemoteException {
        MessageClientSocketFactory read = call.run(() -> {
            new ClientCall(MessageClientSocketFactory.ofClient(null)).run(() -> null);
            return received();
        });

        assertSame(own, read);
    }

    @Test
    void aFactoryThatNoClientReadOpensNothing() {
        IOException refusal = assertThrows(IOException.class, () -> received().createSocket("127.0.0.1", 1));

        assertEquals("the reference to the message server was not read by a message client", refusal.getMessage());
    }

    /** What a server's factory becomes on its way. */
    private static MessageClientSocketFactory received() {
        try {
            ByteArrayOutputStream bytes = new ByteArrayOutputStream();
            new ObjectOutputStream(bytes).writeObject(new MessageClientSocketFactory());
            return (MessageClientSocketFactory) new ObjectInputStream(new ByteArrayInputStream(bytes.toByteArray()))
                    .readObject();
        } catch (IOException failure) {
            throw new UncheckedIOException(failure);
        } catch (ClassNotFoundException failure) {
            throw new IllegalStateException(failure);
        }
    }
}
