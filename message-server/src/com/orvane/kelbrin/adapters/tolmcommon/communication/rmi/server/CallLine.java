package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import com.google.gson.Gson;
import com.google.gson.GsonBuilder;
import com.google.gson.JsonElement;
import com.google.gson.JsonObject;

/** A call as one line of JSON: its method, and its arguments under their names, in the order of passing. */
final class CallLine {
    private static final Gson GSON = new GsonBuilder().serializeNulls().disableHtmlEscaping().create();
    private static final char LAST_ASCII = 0x7E;

    private final String method;
    private final JsonObject call = new JsonObject();
    private final JsonObject arguments = new JsonObject();

    CallLine(String method) {
        this.method = method;
        call.addProperty("method", method);
        call.add("arguments", arguments);
    }

    String method() {
        return method;
    }

    CallLine with(String name, JsonElement argument) {
        arguments.add(name, argument);
        return this;
    }

    /** In ASCII: half a surrogate pair, which a desktop's text may hold, is lost in every encoding of a file. */
    @Override
    public String toString() {
        StringBuilder line = new StringBuilder();
        for (char character : GSON.toJson(call).toCharArray()) {
            if (character <= LAST_ASCII) {
                line.append(character);
            } else {
                line.append(String.format("\\u%04x", (int) character));
            }
        }
        return line.toString();
    }
}
