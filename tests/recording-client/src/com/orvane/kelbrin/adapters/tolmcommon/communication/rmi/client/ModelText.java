package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Metric;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.NetworkInterface;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.RemoteApp;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.function.Function;

/**
 * The data model as one line of text that tells each value's type: 5 is an int, 5L a long, 0.5 a double; a text is
 * quoted, null is not. What the model's own texts leave out, secrets above all, stands here as well.
 */
final class ModelText {
    private static final char FIRST_PRINTABLE = 0x20;
    private static final char LAST_ASCII = 0x7E;

    private ModelText() {
    }

    /** In ASCII, on one line: other characters, and line ends, stand as their UTF-16 codes. */
    static String text(String text) {
        if (text == null) {
            return "null";
        }
        StringBuilder quoted = new StringBuilder("\"");
        for (char character : text.toCharArray()) {
            if (character == '"' || character == '\\') {
                quoted.append('\\').append(character);
            } else if (character >= FIRST_PRINTABLE && character <= LAST_ASCII) {
                quoted.append(character);
            } else {
                quoted.append(String.format("\\u%04x", (int) character));
            }
        }
        return quoted.append('"').toString();
    }

    static String number(long value) {
        return value + "L";
    }

    static String connection(DesktopConnection connection) {
        return connection == null ? "null"
                : "DesktopConnection(id=" + text(connection.getId()) + ", authToken=" + text(connection.getAuthToken())
                        + ", uniqueId=" + text(connection.getUniqueId()) + ", version=" + connection.getVersion()
                        + ", deviceType=" + text(connection.getDeviceType()) + ")";
    }

    static String desktop(DesktopInformation desktop) {
        return desktop == null ? "null"
                : "DesktopInformation(name=" + text(desktop.getName()) + ", fqdn=" + text(desktop.getFqdn())
                        + ", totalMemory=" + desktop.getTotalMemory() + ", networkInterfaces="
                        + list(desktop.getNetworkInterfaces(), ModelText::networkInterface) + ")";
    }

    static String session(UserSession session) {
        return session == null ? "null"
                : "UserSession(id=" + session.getId() + ", sid=" + text(session.getSid()) + ", user="
                        + text(session.getUser()) + ", domain=" + text(session.getDomain()) + ", connected="
                        + session.isConnected() + ", properties=" + texts(session.getProperties()) + ", metrics="
                        + list(session.getMetrics(), ModelText::metric) + ", remoteApps="
                        + list(session.getRemoteApps(), ModelText::remoteApp) + ")";
    }

    static String sample(Sample sample) {
        return sample == null ? "null"
                : "Sample(time=" + number(sample.getTime()) + ", metrics="
                        + list(sample.getMetrics(), ModelText::metric) + ", sessions="
                        + list(sample.getSessions(), ModelText::session) + ")";
    }

    /** Sorted by name: the order of a hash map is nobody's. */
    static String sortedTexts(Map<String, String> map) {
        if (map == null) {
            return "null";
        }
        Map<String, String> sorted = new TreeMap<>();
        map.forEach((name, value) -> sorted.put(text(name), text(value)));
        return sorted.toString();
    }

    private static String texts(Map<String, String> map) {
        StringBuilder pairs = new StringBuilder("{");
        map.forEach((name, value) ->
                pairs.append(pairs.length() == 1 ? "" : ", ").append(text(name)).append('=').append(text(value)));
        return pairs.append('}').toString();
    }

    private static String networkInterface(NetworkInterface adapter) {
        return "NetworkInterface(description=" + text(adapter.getDescription()) + ", macAddress="
                + text(adapter.getMacAddress()) + ", ipAddress=" + text(adapter.getIpAddress()) + ", subnetMask="
                + text(adapter.getSubnetMask()) + ", subnet=" + text(adapter.getSubnet()) + ", linkSpeed="
                + adapter.getLinkSpeed() + ")";
    }

    private static String remoteApp(RemoteApp app) {
        return "RemoteApp(id=" + text(app.getId()) + ", properties=" + texts(app.getProperties()) + ", metrics="
                + list(app.getMetrics(), ModelText::metric) + ")";
    }

    private static String metric(Metric metric) {
        return text(metric.getName()) + "=" + value(metric);
    }

    private static String value(Metric metric) {
        switch (metric.getKind()) {
            case DOUBLE:
                return Double.toString(metric.getDoubleValue());
            case LONG:
                return number(metric.getLongValue());
            case STRING:
                return text(metric.getStringValue());
            case INSTANCES:
                return list(metric.getInstances(), ModelText::metric);
            default:
                return "none";
        }
    }

    private static <T> String list(List<T> values, Function<T, String> tell) {
        StringBuilder list = new StringBuilder("[");
        values.forEach(value -> list.append(list.length() == 1 ? "" : ", ").append(tell.apply(value)));
        return list.append(']').toString();
    }
}
