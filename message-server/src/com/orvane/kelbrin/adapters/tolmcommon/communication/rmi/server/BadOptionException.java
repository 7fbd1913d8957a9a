package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

/** The command line asks for something that does not exist; the message is the one line that its user reads. */
final class BadOptionException extends Exception {
    private static final long serialVersionUID = 1L;

    BadOptionException(String message) {
        super(message);
    }
}
