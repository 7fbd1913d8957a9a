package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

/** The server cannot start; the message is the one line that its user reads, with the cure. */
final class CannotStartException extends Exception {
    private static final long serialVersionUID = 1L;

    CannotStartException(String message) {
        super(message);
    }
}
