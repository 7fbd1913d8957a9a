package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.util.Map;

/** Returns at once, with nothing: what is measured then is the way to it alone. */
public class DesktopMessageClient {
    public void setProviderUrl(String url) {
    }

    public void initialize(String configDirectory, String certificate) {
    }

    public String onStartup(String clientDescriptor, DesktopConnection connection) {
        if (Kept.isWanted) {
            Kept.keep("onStartup", ModelText.text(clientDescriptor), ModelText.connection(connection));
        }
        return null;
    }

    public String onUserLogon(DesktopConnection connection, DesktopInformation desktop, long id, UserSession session) {
        if (Kept.isWanted) {
            Kept.keep("onUserLogon", ModelText.connection(connection), ModelText.desktop(desktop),
                    ModelText.number(id), ModelText.session(session));
        }
        return null;
    }

    public void onUserLogoff(DesktopConnection connection, long id, UserSession session) {
        keepEvent("onUserLogoff", connection, id, session);
    }

    public void onUserDisconnect(DesktopConnection connection, long id, UserSession session) {
        keepEvent("onUserDisconnect", connection, id, session);
    }

    public void onUserReconnect(DesktopConnection connection, long id, UserSession session) {
        keepEvent("onUserReconnect", connection, id, session);
    }

    public String onDataCollected(DesktopConnection connection, Sample sample) {
        if (Kept.isWanted) {
            Kept.keep("onDataCollected", ModelText.connection(connection), ModelText.sample(sample));
        }
        return null;
    }

    public String onExtendedDataCollected(DesktopConnection connection, Map<String, String> metaData, Sample sample) {
        if (Kept.isWanted) {
            Kept.keep("onExtendedDataCollected", ModelText.connection(connection), ModelText.sortedTexts(metaData),
                    ModelText.sample(sample));
        }
        return null;
    }

    public void refreshSession(DesktopConnection connection, long id, DesktopInformation desktop,
            UserSession session) {
        if (Kept.isWanted) {
            Kept.keep("refreshSession", ModelText.connection(connection), ModelText.number(id),
                    ModelText.desktop(desktop), ModelText.session(session));
        }
    }

    public String onDesktopPoll(DesktopConnection connection, long id, String data) {
        if (Kept.isWanted) {
            Kept.keep("onDesktopPoll", ModelText.connection(connection), ModelText.number(id), ModelText.text(data));
        }
        return null;
    }

    public String onActionPerformed(DesktopConnection connection, Map<String, String> metaData, String result) {
        if (Kept.isWanted) {
            Kept.keep("onActionPerformed", ModelText.connection(connection), ModelText.sortedTexts(metaData),
                    ModelText.text(result));
        }
        return null;
    }

    public void dispose() {
    }

    private static void keepEvent(String method, DesktopConnection connection, long id, UserSession session) {
        if (Kept.isWanted) {
            Kept.keep(method, ModelText.connection(connection), ModelText.number(id), ModelText.session(session));
        }
    }
}
