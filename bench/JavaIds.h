#pragma once

#include <jni.h>

#include "BindingTable.h"

/// A constructor with its class, as hand-written JNI caches them.
struct JavaMaker {
    jclass javaClass = nullptr;
    jmethodID constructor = nullptr;
};

/// Everything of Java's that the hand-written way calls, looked up once. All null where nothing is called.
struct JavaIds {
    JavaMaker connection, desktop, adapter, session, application, sample, metric, map;
    jmethodID sessionPutProperty, sessionPutMetric, sessionPutApplication;
    jmethodID applicationPutMetric;
    jmethodID samplePutMetric, samplePutSession;
    jmethodID metricPutLong, metricPutDouble, metricPutText, metricAddInstance;
    jmethodID mapPut;
    jmethodID desktopPutMemory, desktopAddAdapter;
    jmethodID adapterPutMac, adapterPutIp, adapterPutMask, adapterPutSubnet, adapterPutSpeed;

    jobject client;  ///< a message client of its own
    jmethodID onStartup, onUserLogon, onUserLogoff, onUserDisconnect, onUserReconnect, refreshSession;
    jmethodID onDataCollected, onExtendedDataCollected, onDesktopPoll;
};

/// Looks everything up and keeps it by global references, to the end of the process. Throws std::runtime_error.
[[nodiscard]] JavaIds FindJavaIds(JNIEnv* env);
