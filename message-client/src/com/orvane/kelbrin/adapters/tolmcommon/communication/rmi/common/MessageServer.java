package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopConnection;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.DesktopInformation;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.Sample;
import com.orvane.kelbrin.adapters.tolmcommon.datamodel.UserSession;
import java.rmi.Remote;
import java.rmi.RemoteException;
import java.util.Map;

/**
 * The message server, as desktops call it. An id is the identifier that the desktop gave to the message, handed on
 * unchanged: the bits of an unsigned number. Any object may be null, also an answer. A server throws exceptions of the
 * Java runtime only: a desktop has no other's class.
 */
public interface MessageServer extends Remote {
    /** The name in the registry where a URL gives none. */
    String REGISTRY_NAME = "DesktopMessageServer";

    /** The registry's port where a URL gives none. */
    int DEFAULT_PORT = 1099;

    /** Answers with a text for whoever waits for the start-up's answer at the desktop, or null. */
    String onStartup(String clientDescriptor, DesktopConnection connection) throws RemoteException;

    /** Answers with a text for whoever waits for the logon's answer at the desktop, or null. */
    String onUserLogon(DesktopConnection connection, DesktopInformation desktop, long id, UserSession session)
            throws RemoteException;

    /** The session may carry its last metrics and remote applications. */
    void onUserLogoff(DesktopConnection connection, long id, UserSession session) throws RemoteException;

    void onUserDisconnect(DesktopConnection connection, long id, UserSession session) throws RemoteException;

    void onUserReconnect(DesktopConnection connection, long id, UserSession session) throws RemoteException;

    /** Answers with an action for the desktop to execute, or null. */
    String onDataCollected(DesktopConnection connection, Sample sample) throws RemoteException;

    /** Answers like {@link #onDataCollected}; the sample's metrics are made of instances. */
    String onExtendedDataCollected(DesktopConnection connection, Map<String, String> metaData, Sample sample)
            throws RemoteException;

    void refreshSession(DesktopConnection connection, long id, DesktopInformation desktop, UserSession session)
            throws RemoteException;

    /** Answers like {@link #onDataCollected}; desktops send an empty text. */
    String onDesktopPoll(DesktopConnection connection, long id, String data) throws RemoteException;

    /** What an action resulted in; the desktop takes no notice of an answer. */
    String onActionPerformed(DesktopConnection connection, Map<String, String> metaData, String result)
            throws RemoteException;
}
