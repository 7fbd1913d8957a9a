package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

/** The last call as text, where it is wanted: that two callers have made the same objects shows in their texts. */
public final class Kept {
    /** Read by every call, so no lock guards it: it is set before the calls that it is meant for, on the same thread. */
    static boolean isWanted;

    private static String text = "";

    private Kept() {
    }

    /** From now on each call is written down in the place of the one before, or none is. */
    public static void want(boolean isWantedNow) {
        isWanted = isWantedNow;
        text = "";
    }

    public static String tell() {
        return text;
    }

    static void keep(String method, String... values) {
        text = method + "(" + String.join(", ", values) + ")";
    }
}
