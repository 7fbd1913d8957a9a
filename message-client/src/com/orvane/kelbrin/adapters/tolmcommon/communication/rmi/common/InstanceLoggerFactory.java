package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import java.io.File;
import java.io.IOException;
import java.util.logging.FileHandler;
import java.util.logging.Handler;
import java.util.logging.Level;
import java.util.logging.Logger;

/**
 * Decides where the log of this process's message clients goes; the factory made last counts. Without one, or with a
 * folder that cannot be written, nothing is logged and the clients work all the same.
 */
public class InstanceLoggerFactory {
    /** Bytes of one file; with {@link #FILE_COUNT} of them a log never grows beyond 5 MB. */
    private static final int FILE_LIMIT = 1_000_000;
    private static final int FILE_COUNT = 5;

    /** %g is the file's age: 0 is the one being written. */
    private static final String FILE_NAME = "message-client.%g.log";

    /** Held here: the runtime itself would forget a logger, and its handler, that nobody holds. */
    private static final Logger LOGGER = silentLogger();

    /** A log that goes nowhere. */
    public InstanceLoggerFactory() {
        this(null);
    }

    /** A log in files in this folder, which must exist. */
    public InstanceLoggerFactory(String folder) {
        useFolder(folder);
    }

    /** The logger of all message clients. It is given no token, no certificate and nothing that was sent. */
    public static Logger getLogger() {
        return LOGGER;
    }

    private static Handler fileHandlerOrNull(String folder) {
        try {
            // A percent sign in the folder's own name is none of the pattern's.
            String pattern = new File(folder.replace("%", "%%"), FILE_NAME).getPath();
            FileHandler handler = new FileHandler(pattern, FILE_LIMIT, FILE_COUNT, true);
            handler.setEncoding("UTF-8");
            handler.setFormatter(new LogLineFormatter());
            return handler;
        } catch (IOException | RuntimeException unusable) {
            return null;
        }
    }

    /** The former handler goes first: while it has its file, a second one would be given another. */
    private static synchronized void useFolder(String folder) {
        LOGGER.setLevel(Level.OFF);
        for (Handler handler : LOGGER.getHandlers()) {
            LOGGER.removeHandler(handler);
            handler.close();
        }
        Handler handler = folder == null || folder.isEmpty() ? null : fileHandlerOrNull(folder);
        if (handler != null) {
            LOGGER.addHandler(handler);
            LOGGER.setLevel(Level.INFO);
        }
    }

    /** Its own handlers only: the console belongs to the host. */
    private static Logger silentLogger() {
        Logger logger = Logger.getLogger(InstanceLoggerFactory.class.getPackage().getName());
        logger.setUseParentHandlers(false);
        logger.setLevel(Level.OFF);
        return logger;
    }
}
