#pragma once

#include <cstddef>
#include <string_view>

#include "JavaMethodBinding.h"

/// Every Java class and method that the library calls: the contract with the Java message client and its data model. A
/// namespace is a class; a row is a method under its alias, with its JNI name and signature.
namespace Binding {

/// The client of the message server: every data item goes through it.
namespace DesktopMessageClient {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/DesktopMessageClient";

/// Of the events that only tell that a session has changed.
inline constexpr char kSessionEvent[] =
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;J"
    "Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/UserSession;)V";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaMethod<void(jstring, jstring)> kInitialize{"initialize", "initialize",
                                                                "(Ljava/lang/String;Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jstring)> kSetProviderUrl{"setProviderUrl", "setProviderUrl", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<jstring(jstring, jobject)> kOnStartup{
    "onStartup", "onStartup",
    "(Ljava/lang/String;Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;)Ljava/lang/String;"};
inline constexpr JavaMethod<jstring(jobject, jobject, jlong, jobject)> kOnUserLogon{
    "onUserLogon", "onUserLogon",
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;Lcom/orvane/kelbrin/adapters/tolmcommon/"
    "datamodel/DesktopInformation;JLcom/orvane/kelbrin/adapters/tolmcommon/datamodel/UserSession;)Ljava/lang/String;"};
inline constexpr JavaMethod<void(jobject, jlong, jobject)> kOnUserLogoff{"onUserLogoff", "onUserLogoff", kSessionEvent};
inline constexpr JavaMethod<void(jobject, jlong, jobject)> kOnUserDisconnect{"onUserDisconnect", "onUserDisconnect",
                                                                             kSessionEvent};
inline constexpr JavaMethod<void(jobject, jlong, jobject)> kOnUserReconnect{"onUserReconnect", "onUserReconnect",
                                                                            kSessionEvent};
inline constexpr JavaMethod<jstring(jobject, jobject)> kOnDataCollected{
    "onDataCollected", "onDataCollected",
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;Lcom/orvane/kelbrin/adapters/tolmcommon/"
    "datamodel/Sample;)Ljava/lang/String;"};
inline constexpr JavaMethod<jstring(jobject, jobject, jobject)> kOnExtendedDataCollected{
    "onExtendedDataCollected", "onExtendedDataCollected",
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;Ljava/util/Map;Lcom/orvane/kelbrin/adapters/"
    "tolmcommon/datamodel/Sample;)Ljava/lang/String;"};
inline constexpr JavaMethod<void(jobject, jlong, jobject, jobject)> kRefreshSession{
    "refreshSession", "refreshSession",
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;JLcom/orvane/kelbrin/adapters/tolmcommon/"
    "datamodel/DesktopInformation;Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/UserSession;)V"};
inline constexpr JavaMethod<jstring(jobject, jlong, jstring)> kOnDesktopPoll{
    "onDesktopPoll", "onDesktopPoll",
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;JLjava/lang/String;)Ljava/lang/String;"};
inline constexpr JavaMethod<jstring(jobject, jobject, jstring)> kOnActionPerformed{
    "onActionPerformed", "onActionPerformed",
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection;Ljava/util/Map;Ljava/lang/String;)Ljava/lang/"
    "String;"};
inline constexpr JavaMethod<void()> kDispose{"dispose", "dispose", "()V"};
}  // namespace DesktopMessageClient

/// A user session.
namespace BaseUserSession {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/BaseUserSession";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jint, jstring, jstring, jstring> kCtorIdSidUserDomain{
    "ctor(id,sid,user,domain)", "(ILjava/lang/String;Ljava/lang/String;Ljava/lang/String;)V"};
inline constexpr JavaConstructor<jint, jstring, jstring, jstring, jboolean> kCtorIdSidUserDomainConnected{
    "ctor(id,sid,user,domain,connected)", "(ILjava/lang/String;Ljava/lang/String;Ljava/lang/String;Z)V"};
inline constexpr JavaMethod<void(jstring, jstring)> kPutProperty{"putProperty", "putProperty",
                                                                 "(Ljava/lang/String;Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jobject)> kPutMetric{"putMetric", "putMetric",
                                                      "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/Metric;)V"};
inline constexpr JavaMethod<void(jobject)> kPutRemoteApp{
    "putRemoteApp", "putRemoteApp", "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/RemoteApp;)V"};
}  // namespace BaseUserSession

/// The map of extended data and of answered actions.
namespace HashMap {
inline constexpr char kClass[] = "java/util/HashMap";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaMethod<jobject(jobject, jobject)> kPut{"put", "put",
                                                            "(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;"};
}  // namespace HashMap

/// A sample of the machine.
namespace BaseSample {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/BaseSample";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jlong> kCtorTime{"ctor(time)", "(J)V"};
inline constexpr JavaMethod<void(jobject)> kPutMetric{"putMetric", "putMetric",
                                                      "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/Metric;)V"};
inline constexpr JavaMethod<void(jobject)> kPutSession{
    "putSession", "putSession", "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/UserSession;)V"};
}  // namespace BaseSample

/// Sets up the Java side's own log.
namespace InstanceLoggerFactory {
inline constexpr char kClass[] =
    "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/common/InstanceLoggerFactory";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring> kCtorFolder{"ctor(folder)", "(Ljava/lang/String;)V"};
}  // namespace InstanceLoggerFactory

/// What the machine is.
namespace DesktopInformation {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopInformation";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring, jstring> kCtorNameFqdn{"ctor(name,FQDN)",
                                                                 "(Ljava/lang/String;Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jint)> kPutTotalMemory{"putTotalMemory", "putTotalMemory", "(I)V"};
inline constexpr JavaMethod<void(jobject)> kAddNetworkInterface{
    "addNetworkInterface", "addNetworkInterface",
    "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/NetworkInterface;)V"};
}  // namespace DesktopInformation

/// Who sends a data item.
namespace DesktopConnection {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/DesktopConnection";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring, jstring, jstring, jint, jstring> kCtorIdAuthTokenUniqueIdVersionDeviceType{
    "ctor(id,authToken,uniqueId,version,deviceType)",
    "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;ILjava/lang/String;)V"};
}  // namespace DesktopConnection

/// An application that a session runs remotely.
namespace BaseRemoteApp {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/BaseRemoteApp";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring> kCtorId{"ctor(id)", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jstring, jstring)> kPutProperty{"putProperty", "putProperty",
                                                                 "(Ljava/lang/String;Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jobject)> kPutMetric{"putMetric", "putMetric",
                                                      "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/Metric;)V"};
}  // namespace BaseRemoteApp

/// A metric and its value.
namespace BaseMetric {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/BaseMetric";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring> kCtorName{"ctor(name)", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jdouble)> kPutDoubleValue{"putDoubleValue", "putDoubleValue", "(D)V"};
inline constexpr JavaMethod<void(jlong)> kPutLongValue{"putLongValue", "putLongValue", "(J)V"};
inline constexpr JavaMethod<void(jstring)> kPutStringValue{"putStringValue", "putStringValue", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jobject)> kAddInstance{"addInstance", "addInstance",
                                                        "(Lcom/orvane/kelbrin/adapters/tolmcommon/datamodel/Metric;)V"};
}  // namespace BaseMetric

/// A network adapter of the machine.
namespace NetworkInterface {
inline constexpr char kClass[] = "com/orvane/kelbrin/adapters/tolmcommon/datamodel/NetworkInterface";

inline constexpr JavaConstructor<> kCtor{"ctor()", "()V"};
inline constexpr JavaConstructor<jstring> kCtorDescription{"ctor(description)", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jstring)> kPutMacAddress{"putMacAddress", "putMacAddress", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jstring)> kPutIpAddress{"putIpAddress", "putIpAddress", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jstring)> kPutSubnetMask{"putSubnetMask", "putSubnetMask", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jstring)> kPutSubnet{"putSubnet", "putSubnet", "(Ljava/lang/String;)V"};
inline constexpr JavaMethod<void(jint)> kPutLinkSpeed{"putLinkSpeed", "putLinkSpeed", "(I)V"};
}  // namespace NetworkInterface

/// The rows of one class, which lie together.
struct ClassRows {
    const JavaMethodBinding* firstRow;
    std::size_t rowCount;
};

/// The rows of a class of this table, none for another. Any thread.
[[nodiscard]] ClassRows FindRows(std::string_view className) noexcept;

/// All rows, class after class.
[[nodiscard]] ClassRows AllRows() noexcept;

}  // namespace Binding
