package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.rmi.ConnectException;
import java.util.HashMap;
import java.util.Map;

/**
 * What a URL orders a stand-in to do, as "name=value" pairs behind a question mark, an ampersand between them: a method's
 * name and the text that it returns; "fail" and the method that throws; "unreachable" and the method that throws what
 * an unreachable server gives; "garbage" and the method that has the machine collect its garbage; "stay" and a file
 * that the next method makes before it stays for ever; "halt" and the method that ends the process at once, with 98.
 */
class Orders {
    private final Map<String, String> orders = new HashMap<>();

    void read(String url) {
        orders.clear();
        int start = url.indexOf('?');
        if (start < 0) {
            return;
        }
        for (String order : url.substring(start + 1).split("&")) {
            String[] parts = order.split("=", 2);
            orders.put(parts[0], parts.length == 2 ? parts[1] : "");
        }
    }

    /** Ends the process where the method is ordered to. */
    void haltIn(String method) {
        if (method.equals(orders.get("halt"))) {
            Runtime.getRuntime().halt(98);
        }
    }

    /** The text that the method is ordered to return, null for none. */
    String obey(String method) throws ConnectException {
        if (method.equals(orders.get("fail"))) {
            throw new IllegalStateException("ordered: " + method);
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
