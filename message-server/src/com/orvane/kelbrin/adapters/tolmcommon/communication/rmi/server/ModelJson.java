package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import com.google.gson.JsonArray;
import com.google.gson.JsonElement;
import com.google.gson.JsonNull;
import com.google.gson.JsonObject;
import com.google.gson.JsonPrimitive;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Metric;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.NetworkInterface;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.RemoteApp;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.util.Collection;
import java.util.Map;
import java.util.function.Function;

/**
 * The data model as JSON in which every value tells its type, so that a reader can compare exactly: a number is
 * {@code {"long": 5}}, {@code {"int": 5}} or {@code {"double": 0.5}}, with texts for NaN and the infinities; a text is
 * a text and null is null. Lists are arrays; a map is an array of [name, value], which keeps its order.
 */
final class ModelJson {
    private ModelJson() {
    }

    static JsonElement text(String text) {
        return text == null ? JsonNull.INSTANCE : new JsonPrimitive(text);
    }

    static JsonElement number(int value) {
        return typed("int", new JsonPrimitive(value));
    }

    static JsonElement number(long value) {
        return typed("long", new JsonPrimitive(value));
    }

    static JsonElement number(double value) {
        boolean isJson = !Double.isNaN(value) && !Double.isInfinite(value);
        return typed("double", isJson ? new JsonPrimitive(value) : new JsonPrimitive(Double.toString(value)));
    }

    /** Throws for a map that holds anything but texts, as a caller with compiled-in types may send it all the same. */
    static JsonElement texts(Map<String, String> map) {
        if (map == null) {
            return JsonNull.INSTANCE;
        }
        JsonArray pairs = new JsonArray();
        map.forEach((name, value) -> {
            JsonArray pair = new JsonArray();
            pair.add(text(name));
            pair.add(text(value));
            pairs.add(pair);
        });
        return pairs;
    }

    static JsonElement connection(DesktopConnection connection) {
        return object(connection, (c, json) -> {
            json.add("id", text(c.getId()));
            json.add("authToken", text(c.getAuthToken()));
            json.add("uniqueId", text(c.getUniqueId()));
            json.add("version", number(c.getVersion()));
            json.add("deviceType", text(c.getDeviceType()));
        });
    }

    static JsonElement desktop(DesktopInformation desktop) {
        return object(desktop, (d, json) -> {
            json.add("name", text(d.getName()));
            json.add("fqdn", text(d.getFqdn()));
            json.add("totalMemory", number(d.getTotalMemory()));
            json.add("networkInterfaces", list(d.getNetworkInterfaces(), ModelJson::networkInterface));
        });
    }

    static JsonElement session(UserSession session) {
        return object(session, (s, json) -> {
            json.add("id", number(s.getId()));
            json.add("sid", text(s.getSid()));
            json.add("user", text(s.getUser()));
            json.add("domain", text(s.getDomain()));
            json.addProperty("connected", s.isConnected());
            json.add("properties", texts(s.getProperties()));
            json.add("metrics", list(s.getMetrics(), ModelJson::metric));
            json.add("remoteApps", list(s.getRemoteApps(), ModelJson::remoteApp));
        });
    }

    static JsonElement sample(Sample sample) {
        return object(sample, (s, json) -> {
            json.add("time", number(s.getTime()));
            json.add("metrics", list(s.getMetrics(), ModelJson::metric));
            json.add("sessions", list(s.getSessions(), ModelJson::session));
        });
    }

    private static JsonElement networkInterface(NetworkInterface networkInterface) {
        return object(networkInterface, (n, json) -> {
            json.add("description", text(n.getDescription()));
            json.add("macAddress", text(n.getMacAddress()));
            json.add("ipAddress", text(n.getIpAddress()));
            json.add("subnetMask", text(n.getSubnetMask()));
            json.add("subnet", text(n.getSubnet()));
            json.add("linkSpeed", number(n.getLinkSpeed()));
        });
    }

    private static JsonElement remoteApp(RemoteApp remoteApp) {
        return object(remoteApp, (a, json) -> {
            json.add("id", text(a.getId()));
            json.add("properties", texts(a.getProperties()));
            json.add("metrics", list(a.getMetrics(), ModelJson::metric));
        });
    }

    /** Without a "value" where the metric has none, which is something else than a text that is null. */
    private static JsonElement metric(Metric metric) {
        return object(metric, (m, json) -> {
            json.add("name", text(m.getName()));
            switch (m.getKind()) {
                case DOUBLE:
                    json.add("value", number(m.getDoubleValue()));
                    break;
                case LONG:
                    json.add("value", number(m.getLongValue()));
                    break;
                case STRING:
                    json.add("value", text(m.getStringValue()));
                    break;
                case INSTANCES:
                    json.add("instances", list(m.getInstances(), ModelJson::metric));
                    break;
                default:
                    break;
            }
        });
    }

    private interface Filler<T> {
        void fill(T value, JsonObject json);
    }

    private static <T> JsonElement object(T value, Filler<T> filler) {
        if (value == null) {
            return JsonNull.INSTANCE;
        }
        JsonObject json = new JsonObject();
        filler.fill(value, json);
        return json;
    }

    private static <T> JsonElement list(Collection<T> values, Function<T, JsonElement> convert) {
        JsonArray array = new JsonArray();
        values.forEach(value -> array.add(convert.apply(value)));
        return array;
    }

    private static JsonElement typed(String type, JsonPrimitive value) {
        JsonObject json = new JsonObject();
        json.add(type, value);
        return json;
    }
}
