package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.rmi.ConnectException;
import java.util.HashMap;
import java.util.Map;

/**
 * What a URL orders the recording client to do, as "name=value" pairs behind a question mark, ampersands between them:
 *
 * <ul>
 * <li>a method's name, and the text that it returns;
 * <li>"fail" and the method that throws; "saying" and its message; "depth" and how many frames deeper it is thrown;
 * <li>"unreachable" and the method that throws what an unreachable server gives;
 * <li>"garbage" and the method that has the machine collect its garbage;
 * <li>"stay" and a file that the next method but initialize makes before it stays for ever;
 * <li>"halt" and the method that ends the process at once, with exit code 98;
 * <li>"record" and a file that gets the calls as well, the ones before included;
 * <li>"forget": calls are not noted, so that tests can watch the memory.
 * </ul>
 */
class Orders {
    private static final int HALTED = 98;

    private final Map<String, String> orders = new HashMap<>();

    void read(String url) {
        orders.clear();
        int start = url == null ? -1 : url.indexOf('?');
        if (start >= 0) {
            for (String order : url.substring(start + 1).split("&")) {
                String[] parts = order.split("=", 2);
                orders.put(parts[0], parts.length == 2 ? parts[1] : "");
            }
        }
        Calls.forget(orders.containsKey("forget"));
        if (orders.containsKey("record")) {
            Calls.recordTo(Paths.get(orders.get("record")));
        }
    }

    /** Ends the process where the method is ordered to. */
    void haltIn(String method) {
        if (method.equals(orders.get("halt"))) {
            Runtime.getRuntime().halt(HALTED);
        }
    }

    /** The text that the method is ordered to return, null for none. */
    String obey(String method) throws ConnectException {
        haltIn(method);
        if (method.equals(orders.get("fail"))) {
            fail(orders.getOrDefault("saying", "ordered: " + method),
                    Integer.parseInt(orders.getOrDefault("depth", "0")));
        }
        if (method.equals(orders.get("unreachable"))) {
            throw new ConnectException("ordered: " + method);
        }
        if (method.equals(orders.get("garbage"))) {
            System.gc();
        }
        if (orders.containsKey("stay") && !method.equals("initialize")) {
            stay(orders.get("stay"));
        }
        return orders.get(method);
    }

    private static void fail(String message, int depth) {
        if (depth > 0) {
            fail(message, depth - 1);
        }
        throw new IllegalStateException(message);
    }

    private static void stay(String file) {
        try {
            Files.createFile(Paths.get(file));
            while (true) {
                Thread.sleep(Long.MAX_VALUE);
            }
        } catch (IOException failure) {
            throw new UncheckedIOException(failure);
        } catch (InterruptedException interruption) {
            throw new IllegalStateException(interruption);
        }
    }
}
