package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.rmi.RemoteException;
import java.util.Map;

/**
 * Talks to no server: notes each call with all values, and does what the URL orders. Even a host that knows nothing of
 * Java can order so: {@code rmi://host?onStartup=welcome}.
 */
public class DesktopMessageClient {
    private final Orders orders = new Orders();

    public DesktopMessageClient() {
        Calls.note("DesktopMessageClient()");
    }

    public void setProviderUrl(String url) {
        note("setProviderUrl", ModelText.text(url));
        orders.read(url);
    }

    public void initialize(String configDirectory, String certificate) throws RemoteException {
        note("initialize", ModelText.text(configDirectory), ModelText.text(certificate));
        orders.obey("initialize");
    }

    public String onStartup(String clientDescriptor, DesktopConnection connection) throws RemoteException {
        note("onStartup", ModelText.text(clientDescriptor), ModelText.connection(connection));
        return orders.obey("onStartup");
    }

    public String onUserLogon(DesktopConnection connection, DesktopInformation desktop, long id, UserSession session)
            throws RemoteException {
        note("onUserLogon", ModelText.connection(connection), ModelText.desktop(desktop), ModelText.number(id),
                ModelText.session(session));
        return orders.obey("onUserLogon");
    }

    public void onUserLogoff(DesktopConnection connection, long id, UserSession session) throws RemoteException {
        note("onUserLogoff", ModelText.connection(connection), ModelText.number(id), ModelText.session(session));
        orders.obey("onUserLogoff");
    }

    public void onUserDisconnect(DesktopConnection connection, long id, UserSession session) throws RemoteException {
        note("onUserDisconnect", ModelText.connection(connection), ModelText.number(id), ModelText.session(session));
        orders.obey("onUserDisconnect");
    }

    public void onUserReconnect(DesktopConnection connection, long id, UserSession session) throws RemoteException {
        note("onUserReconnect", ModelText.connection(connection), ModelText.number(id), ModelText.session(session));
        orders.obey("onUserReconnect");
    }

    public String onDataCollected(DesktopConnection connection, Sample sample) throws RemoteException {
        note("onDataCollected", ModelText.connection(connection), ModelText.sample(sample));
        return orders.obey("onDataCollected");
    }

    public String onExtendedDataCollected(DesktopConnection connection, Map<String, String> metaData, Sample sample)
            throws RemoteException {
        note("onExtendedDataCollected", ModelText.connection(connection), ModelText.sortedTexts(metaData),
                ModelText.sample(sample));
        return orders.obey("onExtendedDataCollected");
    }

    public void refreshSession(DesktopConnection connection, long id, DesktopInformation desktop, UserSession session)
            throws RemoteException {
        note("refreshSession", ModelText.connection(connection), ModelText.number(id), ModelText.desktop(desktop),
                ModelText.session(session));
        orders.obey("refreshSession");
    }

    public String onDesktopPoll(DesktopConnection connection, long id, String data) throws RemoteException {
        note("onDesktopPoll", ModelText.connection(connection), ModelText.number(id), ModelText.text(data));
        return orders.obey("onDesktopPoll");
    }

    public String onActionPerformed(DesktopConnection connection, Map<String, String> metaData, String result)
            throws RemoteException {
        note("onActionPerformed", ModelText.connection(connection), ModelText.sortedTexts(metaData),
                ModelText.text(result));
        return orders.obey("onActionPerformed");
    }

    /** Obeys one order alone, the one to halt: the bridge may call it under the loader lock. */
    public void dispose() {
        note("dispose");
        orders.haltIn("dispose");
    }

    private static void note(String method, String... values) {
        Calls.note("DesktopMessageClient." + method + "(" + String.join(", ", values) + ")");
    }
}
