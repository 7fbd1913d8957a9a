package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseMetric;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseRemoteApp;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseSample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseUserSession;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.NetworkInterface;

/** Objects of the data model with every kind of value. */
final class ModelObjects {
    static final DesktopConnection CONNECTION =
            new DesktopConnection("desktop", "token", "unique", 0x60200, "DESKTOP");

    private ModelObjects() {
    }

    static DesktopInformation desktop() {
        NetworkInterface adapter = new NetworkInterface("Ethernet");
        adapter.putMacAddress("00-11-22-33-44-55");
        adapter.putIpAddress("10.0.0.2");
        adapter.putSubnetMask("255.255.255.0");
        adapter.putSubnet("10.0.0.0");
        adapter.putLinkSpeed(Integer.MAX_VALUE);
        DesktopInformation desktop = new DesktopInformation("machine", "machine.example");
        desktop.putTotalMemory(Integer.MIN_VALUE);
        desktop.addNetworkInterface(adapter);
        desktop.addNetworkInterface(new NetworkInterface());
        return desktop;
    }

    /** With properties, metrics and an application; texts that are null, empty, and hard to write. */
    static BaseUserSession session() {
        BaseRemoteApp app = new BaseRemoteApp("editor");
        app.putProperty("path", "C:\\tools\\\"editor\".exe");
        app.putMetric(longMetric("threads", 7));
        BaseUserSession session = new BaseUserSession(-3, "S-1-5-21", "", null, true);
        session.putProperty("z", "first in, first out");
        session.putProperty("a", "line\nend");
        session.putProperty("null", null);
        session.putProperty("empty", "");
        session.putMetric(longMetric("idle", -1));
        session.putRemoteApp(app);
        return session;
    }

    static BaseSample sample() {
        BaseSample sample = new BaseSample(1_700_000_000_000L);
        sample.putMetric(longMetric("most", Long.MAX_VALUE));
        sample.putMetric(longMetric("least", Long.MIN_VALUE));
        sample.putMetric(doubleMetric("tenth", 0.1));
        sample.putMetric(doubleMetric("widened", 0.1f));
        sample.putMetric(doubleMetric("minus zero", -0.0));
        sample.putMetric(doubleMetric("smallest", Double.MIN_VALUE));
        sample.putMetric(doubleMetric("greatest", Double.MAX_VALUE));
        sample.putMetric(doubleMetric("no number", Double.NaN));
        sample.putMetric(doubleMetric("infinite", Double.POSITIVE_INFINITY));
        sample.putMetric(doubleMetric("minus infinite", Double.NEGATIVE_INFINITY));
        sample.putMetric(textMetric("umlaut", "\u00e4\ud83d\ude00"));
        sample.putMetric(textMetric("half a pair", "\ud83d"));
        sample.putMetric(textMetric("empty", ""));
        sample.putMetric(textMetric("null", null));
        sample.putMetric(new BaseMetric("no value"));
        sample.putMetric(new BaseMetric(null));
        sample.putSession(session());
        return sample;
    }

    static BaseSample extendedSample() {
        BaseMetric disks = new BaseMetric("disks");
        disks.addInstance(doubleMetric("C:", 0.5));
        disks.addInstance(textMetric("D:", "gone"));
        BaseSample sample = new BaseSample(-1);
        sample.putMetric(disks);
        return sample;
    }

    private static BaseMetric longMetric(String name, long value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putLongValue(value);
        return metric;
    }

    private static BaseMetric doubleMetric(String name, double value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putDoubleValue(value);
        return metric;
    }

    private static BaseMetric textMetric(String name, String value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putStringValue(value);
        return metric;
    }
}
