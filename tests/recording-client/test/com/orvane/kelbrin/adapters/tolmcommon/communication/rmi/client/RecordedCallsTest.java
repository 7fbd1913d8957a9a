package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseMetric;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseRemoteApp;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseSample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseUserSession;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.NetworkInterface;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** What a call leaves in the notes. */
class RecordedCallsTest {
    private static final String CONNECTION_TEXT = "DesktopConnection(id=\"desktop\", authToken=\"token\","
            + " uniqueId=null, version=393728, deviceType=\"SERVER\")";
    private static final String SESSION_TEXT = "UserSession(id=2, sid=\"sid\", user=\"user\", domain=\"\","
            + " connected=true, properties={\"z\"=\"1\", \"a\"=null}, metrics=[\"idle\"=-1L],"
            + " remoteApps=[RemoteApp(id=\"editor\", properties={\"path\"=\"c:\\\\e\"}, metrics=[\"cpu\"=0.5])])";
    private static final String DESKTOP_TEXT = "DesktopInformation(name=\"machine\", fqdn=\"\", totalMemory=8,"
            + " networkInterfaces=[NetworkInterface(description=\"Ethernet\", macAddress=\"mac\", ipAddress=null,"
            + " subnetMask=null, subnet=null, linkSpeed=-1)])";

    private final DesktopMessageClient client = new DesktopMessageClient();
    private final DesktopConnection connection = new DesktopConnection("desktop", "token", null, 0x60200, "SERVER");
    private int told;

    @BeforeEach
    void forgetEarlierCalls() {
        told = new Calls().tell().length();
    }

    private List<String> newCalls() {
        return new Calls().tell().substring(told).lines().toList();
    }

    private static BaseMetric metric(String name, long value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putLongValue(value);
        return metric;
    }

    private static BaseMetric metric(String name, double value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putDoubleValue(value);
        return metric;
    }

    private static BaseMetric metric(String name, String value) {
        BaseMetric metric = new BaseMetric(name);
        metric.putStringValue(value);
        return metric;
    }

    private static BaseUserSession session() {
        BaseRemoteApp app = new BaseRemoteApp("editor");
        app.putProperty("path", "c:\\e");
        app.putMetric(metric("cpu", 0.5));
        BaseUserSession session = new BaseUserSession(2, "sid", "user", "", true);
        session.putProperty("z", "1");
        session.putProperty("a", null);
        session.putMetric(metric("idle", -1));
        session.putRemoteApp(app);
        return session;
    }

    private static DesktopInformation desktop() {
        NetworkInterface adapter = new NetworkInterface("Ethernet");
        adapter.putMacAddress("mac");
        adapter.putLinkSpeed(-1);
        DesktopInformation desktop = new DesktopInformation("machine", "");
        desktop.putTotalMemory(8);
        desktop.addNetworkInterface(adapter);
        return desktop;
    }

    @Test
    void eachCallIsNotedWithAllItsValues() throws Exception {
        Map<String, String> metaData = new HashMap<>(Map.of("b", "2", "a", "1"));
        new DesktopMessageClient();
        client.setProviderUrl("rmi://host");
        client.initialize("C:\\config", null);
        client.onStartup("<client/>", connection);
        client.onUserLogon(connection, desktop(), 5, session());
        client.onUserLogoff(connection, -1, session());
        client.onUserDisconnect(null, 0, null);
        client.onUserReconnect(connection, 1, session());
        client.refreshSession(connection, 2, desktop(), session());
        client.onDesktopPoll(connection, 3, "");
        client.onActionPerformed(connection, metaData, "1 hop");
        client.dispose();

        String prefix = "DesktopMessageClient.";
        assertEquals(List.of(
                "DesktopMessageClient()",
                prefix + "setProviderUrl(\"rmi://host\")",
                prefix + "initialize(\"C:\\\\config\", null)",
                prefix + "onStartup(\"<client/>\", " + CONNECTION_TEXT + ")",
                prefix + "onUserLogon(" + CONNECTION_TEXT + ", " + DESKTOP_TEXT + ", 5L, " + SESSION_TEXT + ")",
                prefix + "onUserLogoff(" + CONNECTION_TEXT + ", -1L, " + SESSION_TEXT + ")",
                prefix + "onUserDisconnect(null, 0L, null)",
                prefix + "onUserReconnect(" + CONNECTION_TEXT + ", 1L, " + SESSION_TEXT + ")",
                prefix + "refreshSession(" + CONNECTION_TEXT + ", 2L, " + DESKTOP_TEXT + ", " + SESSION_TEXT + ")",
                prefix + "onDesktopPoll(" + CONNECTION_TEXT + ", 3L, \"\")",
                prefix + "onActionPerformed(" + CONNECTION_TEXT + ", {\"a\"=\"1\", \"b\"=\"2\"}, \"1 hop\")",
                prefix + "dispose()"), newCalls());
    }

    @Test
    void theKindsOfMetricsAreTold() throws Exception {
        BaseMetric disks = new BaseMetric("disks");
        disks.addInstance(metric("C:", 1));
        disks.addInstance(metric("D:", Double.NaN));
        BaseSample sample = new BaseSample(1_700_000_000_000L);
        sample.putMetric(metric("long", Long.MIN_VALUE));
        sample.putMetric(metric("double", 1));
        sample.putMetric(metric("float", (double) 0.1f));
        sample.putMetric(metric("zero", -0.0));
        sample.putMetric(metric("text", "\u00e4\ud83d\n\"1\""));
        sample.putMetric(metric("null", null));
        sample.putMetric(new BaseMetric("none"));
        sample.putMetric(disks);

        client.onDataCollected(null, sample);

        assertEquals(List.of("DesktopMessageClient.onDataCollected(null, Sample(time=1700000000000L, metrics=["
                + "\"long\"=-9223372036854775808L, \"double\"=1L, \"float\"=0.10000000149011612, \"zero\"=-0.0,"
                + " \"text\"=\"\\u00e4\\ud83d\\u000a\\\"1\\\"\", \"null\"=null, \"none\"=none,"
                + " \"disks\"=[\"C:\"=1L, \"D:\"=NaN]], sessions=[]))"), newCalls());
    }
}
