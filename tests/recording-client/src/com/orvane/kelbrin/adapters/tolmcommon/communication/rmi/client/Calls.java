package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;

/** What the recording client was asked, in order; and what it is told to throw. Any thread. */
public class Calls {
    private static final StringBuilder CALLS = new StringBuilder();
    private static String throwing = "";
    private static boolean isForgetting;
    private static Path file;

    /** Notes a call, and throws if it was ordered to. */
    public static void note(String call) {
        synchronized (CALLS) {
            if (!isForgetting) {
                CALLS.append(call).append('\n');
                if (file != null) {
                    write(call + "\n", StandardOpenOption.APPEND);
                }
            }
            if (!throwing.isEmpty() && call.startsWith(throwing)) {
                throw new IllegalStateException("ordered: " + throwing);
            }
        }
    }

    /** All calls so far, a line each. */
    public String tell() {
        synchronized (CALLS) {
            return CALLS.toString();
        }
    }

    /** Calls that begin like this throw from now on; none for an empty text. */
    public void throwIn(String beginning) {
        synchronized (CALLS) {
            throwing = beginning;
        }
    }

    /** From now on calls leave nothing behind, for tests that watch the machine's memory. */
    static void forget(boolean isOrdered) {
        synchronized (CALLS) {
            isForgetting = isOrdered;
        }
    }

    /** The file gets all calls so far and all to come, until another file is ordered. */
    static void recordTo(Path ordered) {
        synchronized (CALLS) {
            if (!ordered.equals(file)) {
                file = ordered;
                write(CALLS.toString(), StandardOpenOption.TRUNCATE_EXISTING);
            }
        }
    }

    private static void write(String lines, StandardOpenOption how) {
        try {
            Files.write(file, lines.getBytes(StandardCharsets.UTF_8), StandardOpenOption.CREATE,
                    StandardOpenOption.WRITE, how);
        } catch (IOException failure) {
            throw new UncheckedIOException(failure);
        }
    }
}
