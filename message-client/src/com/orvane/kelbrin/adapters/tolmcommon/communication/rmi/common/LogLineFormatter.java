package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import java.time.Instant;
import java.util.logging.Formatter;
import java.util.logging.LogRecord;

/** One line each: the time in UTC, the level, the thread's number, the message. */
final class LogLineFormatter extends Formatter {
    @Override
    public String format(LogRecord entry) {
        String message = formatMessage(entry).replace("\r", "").replace("\n", " ");
        return Instant.ofEpochMilli(entry.getMillis()) + " " + entry.getLevel().getName() + " [" + entry.getThreadID()
                + "] " + message + System.lineSeparator();
    }
}
