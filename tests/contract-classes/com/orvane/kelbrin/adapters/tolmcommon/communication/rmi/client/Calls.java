package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

/** What the stand-ins were asked, in order; and what they are told to throw. */
public class Calls {
    private static final StringBuilder CALLS = new StringBuilder();
    private static String throwing = "";

    /** Notes a call, and throws if it was ordered to. */
    public static void note(String call) {
        synchronized (CALLS) {
            CALLS.append(call).append('\n');
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

    /** Forgets the calls so far, and gives their memory back. */
    public void forget() {
        synchronized (CALLS) {
            CALLS.setLength(0);
            CALLS.trimToSize();
        }
    }

    /** Calls that begin like this throw from now on; none for an empty text. */
    public void throwIn(String beginning) {
        synchronized (CALLS) {
            throwing = beginning;
        }
    }
}
