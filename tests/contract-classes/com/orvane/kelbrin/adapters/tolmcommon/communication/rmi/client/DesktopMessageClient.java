package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.util.Map;

/** Stand-in: has the constructors and methods that the library binds, and notes their calls. */
public class DesktopMessageClient {
    public DesktopMessageClient() {
        Calls.note("DesktopMessageClient()");
    }

    public void initialize(String a, String b) {
        Calls.note("DesktopMessageClient.initialize(" + a + ", " + b + ")");
    }

    public void setProviderUrl(String value) {
        Calls.note("DesktopMessageClient.setProviderUrl(" + value + ")");
    }

    public String onStartup(String a, DesktopConnection b) {
        Calls.note("DesktopMessageClient.onStartup(" + a + ", " + b + ")");
        return null;
    }

    public String onUserLogon(DesktopConnection a, DesktopInformation b, long c, UserSession d) {
        Calls.note("DesktopMessageClient.onUserLogon(" + a + ", " + b + ", " + c + ", " + d + ")");
        return null;
    }

    public void onUserLogoff(DesktopConnection a, long b, UserSession c) {
        Calls.note("DesktopMessageClient.onUserLogoff(" + a + ", " + b + ", " + c + ")");
    }

    public void onUserDisconnect(DesktopConnection a, long b, UserSession c) {
        Calls.note("DesktopMessageClient.onUserDisconnect(" + a + ", " + b + ", " + c + ")");
    }

    public void onUserReconnect(DesktopConnection a, long b, UserSession c) {
        Calls.note("DesktopMessageClient.onUserReconnect(" + a + ", " + b + ", " + c + ")");
    }

    public String onDataCollected(DesktopConnection a, Sample b) {
        Calls.note("DesktopMessageClient.onDataCollected(" + a + ", " + b + ")");
        return null;
    }

    public String onExtendedDataCollected(DesktopConnection a, Map<?, ?> b, Sample c) {
        Calls.note("DesktopMessageClient.onExtendedDataCollected(" + a + ", " + b + ", " + c + ")");
        return null;
    }

    public void refreshSession(DesktopConnection a, long b, DesktopInformation c, UserSession d) {
        Calls.note("DesktopMessageClient.refreshSession(" + a + ", " + b + ", " + c + ", " + d + ")");
    }

    public String onDesktopPoll(DesktopConnection a, long b, String c) {
        Calls.note("DesktopMessageClient.onDesktopPoll(" + a + ", " + b + ", " + c + ")");
        return null;
    }

    public String onActionPerformed(DesktopConnection a, Map<?, ?> b, String c) {
        Calls.note("DesktopMessageClient.onActionPerformed(" + a + ", " + b + ", " + c + ")");
        return null;
    }

    public void dispose() {
        Calls.note("DesktopMessageClient.dispose()");
    }
}
