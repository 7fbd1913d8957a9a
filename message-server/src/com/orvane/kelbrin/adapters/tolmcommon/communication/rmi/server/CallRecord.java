package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.io.Writer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;

/**
 * The file with a line for each call. A line is whole, and handed to the system, before its call is answered. For any
 * thread.
 */
final class CallRecord implements AutoCloseable {
    private final Writer file;

    private CallRecord(Writer file) {
        this.file = file;
    }

    /** The file is made or continued; without one, lines go nowhere. */
    static CallRecord open(Path file) throws CannotStartException {
        if (file == null) {
            return new CallRecord(Writer.nullWriter());
        }
        try {
            return new CallRecord(Files.newBufferedWriter(file, StandardCharsets.UTF_8, StandardOpenOption.CREATE,
                    StandardOpenOption.APPEND));
        } catch (IOException failure) {
            throw new CannotStartException(
                    "--record " + file + ": cannot be written; name a file in a folder that can be");
        }
    }

    /** Throws where the line could not be written: a call missing in the record must not look like a success. */
    void add(String line) {
        synchronized (file) {
            try {
                file.write(line + "\n");
                file.flush();
            } catch (IOException failure) {
                throw new UncheckedIOException("the record cannot be written", failure);
            }
        }
    }

    @Override
    public void close() throws IOException {
        synchronized (file) {
            file.close();
        }
    }
}
