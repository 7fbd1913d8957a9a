package com.orvane.kelbrin.adapters.tolmcommon.datamodel;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.function.Supplier;

/** Objects of each class of the model: with every field filled, and with exactly one field changed. */
public final class ModelObjects {
    private ModelObjects() {
    }

    /** A filled object's maker, and the makers of its variants by the changed field's name. */
    public record Family(Supplier<Object> filled, Map<String, Supplier<Object>> changed) {
        @Override
        public String toString() {
            return filled.get().getClass().getSimpleName();
        }
    }

    public static List<Family> families() {
        return List.of(connections(), informations(), networkInterfaces(), samples(), sessions(), remoteApps(),
                metrics());
    }

    /** Filled as far as can be, empty, and with a null wherever one is taken. */
    public static List<Object> objects() {
        List<Object> objects = new ArrayList<>(List.of(new DesktopConnection(), new DesktopInformation(),
                new NetworkInterface(), new BaseSample(), new BaseUserSession(), new BaseRemoteApp(),
                new BaseMetric()));
        for (Family family : families()) {
            objects.add(family.filled.get());
            family.changed.values().forEach(maker -> objects.add(maker.get()));
        }
        BaseUserSession session = new BaseUserSession(1, null, null, null);
        session.putProperty(null, "of no name");
        session.putProperty("of no value", null);
        objects.add(session);
        objects.add(textMetric("null", null));
        return objects;
    }

    public static DesktopConnection connection() {
        return new DesktopConnection("desktop-1", "token-4711", "unique-0815", 6, "DESKTOP");
    }

    public static DesktopInformation information() {
        return information("PC", "pc.example.org", 8192, "LAN");
    }

    public static BaseSample sample() {
        return sample(1_700_000_000_000L, doubleMetric("cpu", 12.5), session());
    }

    public static BaseUserSession session() {
        return session(3, "S-1-5-21", "ana", "HOME", true, "zone", longMetric("handles", -1), remoteApp());
    }

    public static BaseMetric instancesMetric() {
        BaseMetric metric = new BaseMetric("disk");
        metric.addInstance(longMetric("C:", 1));
        metric.addInstance(textMetric("D:", "gone"));
        return metric;
    }

    private static BaseRemoteApp remoteApp() {
        return remoteApp("app-1", "title", instancesMetric());
    }

    private static Family connections() {
        Map<String, Supplier<Object>> changed = new LinkedHashMap<>();
        changed.put("id", () -> new DesktopConnection("other", "token-4711", "unique-0815", 6, "DESKTOP"));
        changed.put("authToken", () -> new DesktopConnection("desktop-1", null, "unique-0815", 6, "DESKTOP"));
        changed.put("uniqueId", () -> new DesktopConnection("desktop-1", "token-4711", "other", 6, "DESKTOP"));
        changed.put("version", () -> new DesktopConnection("desktop-1", "token-4711", "unique-0815", 7, "DESKTOP"));
        changed.put("deviceType", () -> new DesktopConnection("desktop-1", "token-4711", "unique-0815", 6, ""));
        return new Family(ModelObjects::connection, changed);
    }

    private static Family informations() {
        Map<String, Supplier<Object>> changed = new LinkedHashMap<>();
        changed.put("name", () -> information(null, "pc.example.org", 8192, "LAN"));
        changed.put("fqdn", () -> information("PC", "pc.example.com", 8192, "LAN"));
        changed.put("totalMemory", () -> information("PC", "pc.example.org", -8192, "LAN"));
        changed.put("networkInterfaces", () -> information("PC", "pc.example.org", 8192, "WLAN"));
        return new Family(ModelObjects::information, changed);
    }

    private static Family networkInterfaces() {
        Map<String, Supplier<Object>> changed = new LinkedHashMap<>();
        changed.put("description", () -> networkInterface(null, "00-11", "10.0.0.2", "255.0.0.0", "10.0.0.0", 1000));
        changed.put("macAddress", () -> networkInterface("LAN", "00-12", "10.0.0.2", "255.0.0.0", "10.0.0.0", 1000));
        changed.put("ipAddress", () -> networkInterface("LAN", "00-11", "10.0.0.3", "255.0.0.0", "10.0.0.0", 1000));
        changed.put("subnetMask", () -> networkInterface("LAN", "00-11", "10.0.0.2", null, "10.0.0.0", 1000));
        changed.put("subnet", () -> networkInterface("LAN", "00-11", "10.0.0.2", "255.0.0.0", "", 1000));
        changed.put("linkSpeed", () -> networkInterface("LAN", "00-11", "10.0.0.2", "255.0.0.0", "10.0.0.0", 0));
        return new Family(() -> networkInterface("LAN", "00-11", "10.0.0.2", "255.0.0.0", "10.0.0.0", 1000), changed);
    }

    private static Family samples() {
        Map<String, Supplier<Object>> changed = new LinkedHashMap<>();
        changed.put("time", () -> sample(0, doubleMetric("cpu", 12.5), session()));
        changed.put("metrics", () -> sample(1_700_000_000_000L, doubleMetric("cpu", 12.25), session()));
        changed.put("sessions", () -> sample(1_700_000_000_000L, doubleMetric("cpu", 12.5), new BaseUserSession()));
        return new Family(ModelObjects::sample, changed);
    }

    private static Family sessions() {
        BaseMetric handles = longMetric("handles", -1);
        Map<String, Supplier<Object>> changed = new LinkedHashMap<>();
        changed.put("id", () -> session(4, "S-1-5-21", "ana", "HOME", true, "zone", handles, remoteApp()));
        changed.put("sid", () -> session(3, null, "ana", "HOME", true, "zone", handles, remoteApp()));
        changed.put("user", () -> session(3, "S-1-5-21", "bob", "HOME", true, "zone", handles, remoteApp()));
        changed.put("domain", () -> session(3, "S-1-5-21", "ana", "WORK", true, "zone", handles, remoteApp()));
        changed.put("connected", () -> session(3, "S-1-5-21", "ana", "HOME", false, "zone", handles, remoteApp()));
        changed.put("properties", () -> session(3, "S-1-5-21", "ana", "HOME", true, "zones", handles, remoteApp()));
        changed.put("metrics", () -> session(3, "S-1-5-21", "ana", "HOME", true, "zone", null, remoteApp()));
        changed.put("remoteApps", () -> session(3, "S-1-5-21", "ana", "HOME", true, "zone", handles, null));
        return new Family(ModelObjects::session, changed);
    }

    private static Family remoteApps() {
        Map<String, Supplier<Object>> changed = new LinkedHashMap<>();
        changed.put("id", () -> remoteApp("app-2", "title", instancesMetric()));
        changed.put("properties", () -> remoteApp("app-1", "titles", instancesMetric()));
        changed.put("metrics", () -> remoteApp("app-1", "title", new BaseMetric("disk")));
        return new Family(ModelObjects::remoteApp, changed);
    }

    private static Family metrics() {
        Map<String, Supplier<Object>> changed = new LinkedHashMap<>();
        changed.put("name", () -> doubleMetric("Load", 0));
        changed.put("kind", () -> longMetric("load", 0));
        changed.put("doubleValue", () -> doubleMetric("load", Double.NaN));
        changed.put("longValue", () -> longMetric("load", Long.MIN_VALUE));
        changed.put("stringValue", () -> textMetric("load", "high"));
        changed.put("instances", ModelObjects::instancesMetric);
        return new Family(() -> doubleMetric("load", 0), changed);
    }

    private static DesktopInformation information(String name, String fqdn, int totalMemory, String adapter) {
        DesktopInformation information = new DesktopInformation(name, fqdn);
        information.putTotalMemory(totalMemory);
        information.addNetworkInterface(networkInterface(adapter, "00-11", "10.0.0.2", "255.0.0.0", "10.0.0.0", 1000));
        return information;
    }

    private static NetworkInterface networkInterface(String description, String mac, String ip, String mask,
            String subnet, int speed) {
        NetworkInterface adapter = new NetworkInterface(description);
        adapter.putMacAddress(mac);
        adapter.putIpAddress(ip);
        adapter.putSubnetMask(mask);
        adapter.putSubnet(subnet);
        adapter.putLinkSpeed(speed);
        return adapter;
    }

    private static BaseSample sample(long time, Metric metric, UserSession session) {
        BaseSample sample = new BaseSample(time);
        sample.putMetric(metric);
        sample.putSession(session);
        return sample;
    }

    private static BaseUserSession session(int id, String sid, String user, String domain, boolean connected,
            String property, Metric metric, RemoteApp remoteApp) {
        BaseUserSession session = new BaseUserSession(id, sid, user, domain, connected);
        session.putProperty(property, "1");
        session.putMetric(metric);
        session.putRemoteApp(remoteApp);
        return session;
    }

    private static BaseRemoteApp remoteApp(String id, String property, Metric metric) {
        BaseRemoteApp app = new BaseRemoteApp(id);
        app.putProperty(property, "Editor \u00e9\u4e2d");
        app.putMetric(metric);
        return app;
    }

    private static BaseMetric doubleMetric(String name, double value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putDoubleValue(value);
        return metric;
    }

    private static BaseMetric longMetric(String name, long value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putLongValue(value);
        return metric;
    }

    private static BaseMetric textMetric(String name, String value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putStringValue(value);
        return metric;
    }
}
