package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.google.gson.Gson;
import com.google.gson.GsonBuilder;
import com.google.gson.JsonArray;
import com.google.gson.JsonElement;
import com.google.gson.JsonParser;
import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.DesktopMessageClient;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Collections;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** What stands in the record after a call, compared as text: value, type, order, null and empty. */
class ServerRecordTest {
    private static final Gson GSON = new GsonBuilder().serializeNulls().disableHtmlEscaping().create();

    private static final String CONNECTION = """
            "connection": {"id": "desktop", "authToken": "token", "uniqueId": "unique", "version": {"int": 393728},
                           "deviceType": "DESKTOP"}""";
    private static final String DESKTOP = """
            "desktop": {"name": "machine", "fqdn": "machine.example", "totalMemory": {"int": -2147483648},
                        "networkInterfaces": [
                {"description": "Ethernet", "macAddress": "00-11-22-33-44-55", "ipAddress": "10.0.0.2",
                 "subnetMask": "255.255.255.0", "subnet": "10.0.0.0", "linkSpeed": {"int": 2147483647}},
                {"description": null, "macAddress": null, "ipAddress": null, "subnetMask": null, "subnet": null,
                 "linkSpeed": {"int": 0}}]}""";
    private static final String SESSION_VALUE = """
            {"id": {"int": -3}, "sid": "S-1-5-21", "user": "", "domain": null, "connected": true,
             "properties": [["z", "first in, first out"], ["a", "line\\nend"], ["null", null], ["empty", ""]],
             "metrics": [{"name": "idle", "value": {"long": -1}}],
             "remoteApps": [{"id": "editor", "properties": [["path", "C:\\\\tools\\\\\\"editor\\".exe"]],
                             "metrics": [{"name": "threads", "value": {"long": 7}}]}]}""";
    private static final String SESSION = "\"session\": " + SESSION_VALUE;
    private static final String SAMPLE = """
            "sample": {"time": {"long": 1700000000000}, "metrics": [
                {"name": "most", "value": {"long": 9223372036854775807}},
                {"name": "least", "value": {"long": -9223372036854775808}},
                {"name": "tenth", "value": {"double": 0.1}},
                {"name": "widened", "value": {"double": 0.10000000149011612}},
                {"name": "minus zero", "value": {"double": -0.0}},
                {"name": "smallest", "value": {"double": 4.9E-324}},
                {"name": "greatest", "value": {"double": 1.7976931348623157E308}},
                {"name": "no number", "value": {"double": "NaN"}},
                {"name": "infinite", "value": {"double": "Infinity"}},
                {"name": "minus infinite", "value": {"double": "-Infinity"}},
                {"name": "umlaut", "value": "\\u00e4\\ud83d\\ude00"},
                {"name": "half a pair", "value": "\\ud83d"},
                {"name": "empty", "value": ""},
                {"name": "null", "value": null},
                {"name": "no value"},
                {"name": null}],
             "sessions": [""" + SESSION_VALUE + "]}";
    private static final String EXTENDED_SAMPLE = """
            "sample": {"time": {"long": -1}, "metrics": [
                {"name": "disks", "instances": [{"name": "C:", "value": {"double": 0.5}},
                                                {"name": "D:", "value": "gone"}]}],
             "sessions": []}""";

    @TempDir
    Path folder;

    private interface Calling {
        void call(DesktopMessageClient client) throws Exception;
    }

    /** The lines that a server writes that is called like this. */
    private List<String> record(Calling calling) throws Exception {
        Path file = folder.resolve("record");
        try (ServerProcess server = ServerProcess.start("--record", file.toString())) {
            calling.call(server.connect());
            assertEquals(new ServerProcess.End(0, List.of("stopped"), List.of()), server.terminate());
        }
        return Files.readAllLines(file, StandardCharsets.US_ASCII);
    }

    private static void assertRecorded(String method, String arguments, List<String> lines) {
        assertEquals(1, lines.size(), lines::toString);
        assertEquals(oneLine("{\"method\": \"" + method + "\", \"arguments\": {" + arguments + "}}"),
                oneLine(lines.get(0)));
    }

    /** Keeps the order of members and the digits of numbers. */
    private static String oneLine(String json) {
        return GSON.toJson(JsonParser.parseString(json));
    }

    @Test
    void aStartUpIsRecorded() throws Exception {
        List<String> lines = record(client -> client.onStartup("<client/>", ModelObjects.CONNECTION));

        assertRecorded("onStartup", "\"clientDescriptor\": \"<client/>\", " + CONNECTION, lines);
    }

    @Test
    void aLogonIsRecorded() throws Exception {
        List<String> lines = record(client ->
                client.onUserLogon(ModelObjects.CONNECTION, ModelObjects.desktop(), -1, ModelObjects.session()));

        assertRecorded("onUserLogon", CONNECTION + ", " + DESKTOP + ", \"id\": {\"long\": -1}, " + SESSION, lines);
    }

    @Test
    void aLogoffIsRecorded() throws Exception {
        List<String> lines = record(client ->
                client.onUserLogoff(ModelObjects.CONNECTION, Long.MIN_VALUE, ModelObjects.session()));

        assertRecorded("onUserLogoff", CONNECTION + ", \"id\": {\"long\": -9223372036854775808}, " + SESSION, lines);
    }

    @Test
    void aDisconnectIsRecorded() throws Exception {
        List<String> lines = record(client ->
                client.onUserDisconnect(ModelObjects.CONNECTION, 0, ModelObjects.session()));

        assertRecorded("onUserDisconnect", CONNECTION + ", \"id\": {\"long\": 0}, " + SESSION, lines);
    }

    @Test
    void aReconnectIsRecorded() throws Exception {
        List<String> lines = record(client ->
                client.onUserReconnect(ModelObjects.CONNECTION, 1, ModelObjects.session()));

        assertRecorded("onUserReconnect", CONNECTION + ", \"id\": {\"long\": 1}, " + SESSION, lines);
    }

    @Test
    void aSampleIsRecordedWithEveryKindOfValue() throws Exception {
        List<String> lines = record(client -> client.onDataCollected(ModelObjects.CONNECTION, ModelObjects.sample()));

        assertRecorded("onDataCollected", CONNECTION + ", " + SAMPLE, lines);
    }

    @Test
    void extendedDataIsRecordedWithItsInstances() throws Exception {
        Map<String, String> metaData = new LinkedHashMap<>();
        metaData.put("z", "first");
        metaData.put(null, null);
        metaData.put("", "");

        List<String> lines = record(client -> client.onExtendedDataCollected(
                ModelObjects.CONNECTION, metaData, ModelObjects.extendedSample()));

        assertRecorded("onExtendedDataCollected", CONNECTION
                + ", \"metaData\": [[\"z\", \"first\"], [null, null], [\"\", \"\"]], " + EXTENDED_SAMPLE, lines);
    }

    @Test
    void aRefreshIsRecorded() throws Exception {
        List<String> lines = record(client ->
                client.refreshSession(ModelObjects.CONNECTION, 2, ModelObjects.desktop(), ModelObjects.session()));

        assertRecorded("refreshSession", CONNECTION + ", \"id\": {\"long\": 2}, " + DESKTOP + ", " + SESSION, lines);
    }

    @Test
    void aPollIsRecorded() throws Exception {
        List<String> lines = record(client -> client.onDesktopPoll(ModelObjects.CONNECTION, 3, ""));

        assertRecorded("onDesktopPoll", CONNECTION + ", \"id\": {\"long\": 3}, \"data\": \"\"", lines);
    }

    @Test
    void anActionsResultIsRecorded() throws Exception {
        List<String> lines = record(client ->
                client.onActionPerformed(ModelObjects.CONNECTION, new HashMap<>(Map.of("target", "server")), "1 hop"));

        assertRecorded("onActionPerformed",
                CONNECTION + ", \"metaData\": [[\"target\", \"server\"]], \"result\": \"1 hop\"", lines);
    }

    @Test
    void nullIsRecordedAsNull() throws Exception {
        List<String> lines = record(client -> client.onExtendedDataCollected(null, null, null));

        assertRecorded("onExtendedDataCollected", "\"connection\": null, \"metaData\": null, \"sample\": null", lines);
    }

    @Test
    void callsAreRecordedInTheirOrder() throws Exception {
        List<String> lines = record(client -> {
            for (int id = 0; id < 100; id++) {
                client.onDesktopPoll(null, id, null);
            }
        });

        JsonArray ids = new JsonArray();
        JsonArray expected = new JsonArray();
        for (int id = 0; id < 100; id++) {
            expected.add(id);
        }
        for (String line : lines) {
            JsonElement call = JsonParser.parseString(line);
            ids.add(call.getAsJsonObject().getAsJsonObject("arguments").getAsJsonObject("id").get("long").getAsInt());
        }
        assertEquals(expected, ids);
    }

    @Test
    void aRecordIsContinued() throws Exception {
        List<String> first = record(client -> client.onDesktopPoll(null, 1, "first"));

        List<String> both = record(client -> client.onDesktopPoll(null, 2, "second"));

        assertEquals(2, both.size(), both::toString);
        assertEquals(first, both.subList(0, 1));
        assertTrue(both.get(1).contains("\"second\""), both::toString);
    }

    @Test
    void withoutARecordCallsAreAnswered() throws Exception {
        try (ServerProcess server = ServerProcess.start("--answer", "onDesktopPoll=ok")) {
            assertEquals("ok", server.connect().onDesktopPoll(null, 1, ""));
            assertEquals(Collections.emptyList(), server.terminate().errors());
        }
    }
}
