package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.util.Map;

/** The server object: writes each call down, then does what the rules say. Called by any number of RMI's threads. */
final class RecordingServer implements MessageServer {
    private final CallRules rules;
    private final CallRecord record;

    RecordingServer(CallRules rules, CallRecord record) {
        this.rules = rules;
        this.record = record;
    }

    @Override
    public String onStartup(String clientDescriptor, DesktopConnection connection) {
        return handle(new CallLine("onStartup")
                .with("clientDescriptor", ModelJson.text(clientDescriptor))
                .with("connection", ModelJson.connection(connection)));
    }

    @Override
    public String onUserLogon(DesktopConnection connection, DesktopInformation desktop, long id, UserSession session) {
        return handle(new CallLine("onUserLogon")
                .with("connection", ModelJson.connection(connection))
                .with("desktop", ModelJson.desktop(desktop))
                .with("id", ModelJson.number(id))
                .with("session", ModelJson.session(session)));
    }

    @Override
    public void onUserLogoff(DesktopConnection connection, long id, UserSession session) {
        handle(new CallLine("onUserLogoff")
                .with("connection", ModelJson.connection(connection))
                .with("id", ModelJson.number(id))
                .with("session", ModelJson.session(session)));
    }

    @Override
    public void onUserDisconnect(DesktopConnection connection, long id, UserSession session) {
        handle(new CallLine("onUserDisconnect")
                .with("connection", ModelJson.connection(connection))
                .with("id", ModelJson.number(id))
                .with("session", ModelJson.session(session)));
    }

    @Override
    public void onUserReconnect(DesktopConnection connection, long id, UserSession session) {
        handle(new CallLine("onUserReconnect")
                .with("connection", ModelJson.connection(connection))
                .with("id", ModelJson.number(id))
                .with("session", ModelJson.session(session)));
    }

    @Override
    public String onDataCollected(DesktopConnection connection, Sample sample) {
        return handle(new CallLine("onDataCollected")
                .with("connection", ModelJson.connection(connection))
                .with("sample", ModelJson.sample(sample)));
    }

    @Override
    public String onExtendedDataCollected(DesktopConnection connection, Map<String, String> metaData, Sample sample) {
        return handle(new CallLine("onExtendedDataCollected")
                .with("connection", ModelJson.connection(connection))
                .with("metaData", ModelJson.texts(metaData))
                .with("sample", ModelJson.sample(sample)));
    }

    @Override
    public void refreshSession(DesktopConnection connection, long id, DesktopInformation desktop, UserSession session) {
        handle(new CallLine("refreshSession")
                .with("connection", ModelJson.connection(connection))
                .with("id", ModelJson.number(id))
                .with("desktop", ModelJson.desktop(desktop))
                .with("session", ModelJson.session(session)));
    }

    @Override
    public String onDesktopPoll(DesktopConnection connection, long id, String data) {
        return handle(new CallLine("onDesktopPoll")
                .with("connection", ModelJson.connection(connection))
                .with("id", ModelJson.number(id))
                .with("data", ModelJson.text(data)));
    }

    @Override
    public String onActionPerformed(DesktopConnection connection, Map<String, String> metaData, String result) {
        return handle(new CallLine("onActionPerformed")
                .with("connection", ModelJson.connection(connection))
                .with("metaData", ModelJson.texts(metaData))
                .with("result", ModelJson.text(result)));
    }

    /** The call's own method is what the rules go by; a method without a result drops the text. */
    private String handle(CallLine call) {
        record.add(call.toString());
        return rules.obey(call.method());
    }
}
