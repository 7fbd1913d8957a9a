#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <memory>
#include <string>
#include <string_view>

#include "CBridgeLog.h"
#include "CJavaObject.h"
#include "CJavaString.h"
#include "CJavaVM.h"
#include "IInstanceEnumerator.h"
#include "INameValueEnumerator.h"
#include "IPropertyBox.h"
#include "ISampleNode.h"
#include "ISessionCollection.h"
#include "ISystemInfo.h"
#include "IUserSessionInfo.h"
#include "JavaCallContext.h"
#include "NetworkInterfaceRecord.h"

class CJavaClass;

/// Turns the host's data into Java objects, on a thread that is attached and inside a local frame of its.
///
/// Bad data and failures of Java's are logged and give an empty result; an element of a collection is skipped then, and
/// the rest goes on. A class that is not loaded gives an empty result without a word, and so does a null pointer in the
/// place of the data. No Java exception is left pending. Only exhausted memory throws, and GetDesktop for an array that
/// has no bounds.
///
/// The host is called back all the time; nothing of a convertor's changes, so one may be used on several threads, and
/// again from inside such a call. Each kind of Java object has a file of its own.
class CJNIConvertor {
public:
    explicit CJNIConvertor(CBridgeLog log) : m_log(std::move(log)) {}

    /// A Java string of `text`; `hideValue` keeps a secret out of the message that a failure is logged with.
    [[nodiscard]] std::shared_ptr<CJavaString> NewJavaString(const std::shared_ptr<CJavaVM>& vm, std::wstring_view text,
                                                             bool hideValue) const;

    /// The DesktopConnection that names the sender in every call of the message client's. Only exactly VARIANT_TRUE of
    /// the host's makes it a desktop.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetConnection(const JavaCallContext& context,
                                                             ISystemInfo& systemInfo) const;

    /// The DesktopInformation of the machine with its network adapters. Throws CHresultException with what
    /// SafeArrayGetLBound or SafeArrayGetUBound returns where the host's array of adapters has no bounds, or where
    /// there is none; an array of anything but NetworkInterfaceRecord in one dimension counts as empty.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetDesktop(const std::shared_ptr<CJavaVM>& vm,
                                                          ISystemInfo* systemInfo) const;
    /// The NetworkInterface of one adapter.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetNetworkInterface(const std::shared_ptr<CJavaVM>& vm,
                                                                   const NetworkInterfaceRecord& record) const;

    /// The BaseUserSession with its properties as texts. Only the state 1 makes it a connected one.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetUserSession(const std::shared_ptr<CJavaVM>& vm,
                                                              IUserSessionInfo* session) const;

    /// The BaseMetric `name`. Of another type than the numbers and texts that Java takes there is none, logged as
    /// invalid. A text that Java has no memory for leaves a metric without a value.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetMetric(const std::shared_ptr<CJavaVM>& vm, std::wstring_view name,
                                                         const VARIANT* value) const;
    /// Puts the node's metrics into `target`: a sample, a session or a remote application.
    /// @return whether there was one at all, be it that it could not be put
    bool AddMetrics(const std::shared_ptr<CJavaVM>& vm, const std::shared_ptr<CJavaObject>& target,
                    ISampleNode* node) const;

    /// The BaseSample of the machine with its metrics and sessions. A session that `sessions` does not have is left
    /// out; instances that cannot be had lose the sample.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetSample(const std::shared_ptr<CJavaVM>& vm, ISampleNode* sample,
                                                         ISessionCollection* sessions) const;

    /// Puts the node's remote applications into `session`, those without a metric left out.
    void AddRemoteApps(const std::shared_ptr<CJavaVM>& vm, const std::shared_ptr<CJavaObject>& session,
                       ISampleNode* sessionNode) const;
    /// The BaseRemoteApp `id`, empty of metrics.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetRemoteApp(const std::shared_ptr<CJavaVM>& vm,
                                                            std::wstring_view id) const;

    /// A java.util.HashMap of the box's values as texts.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetHashMap(const std::shared_ptr<CJavaVM>& vm, IPropertyBox* box) const;
    /// A BaseSample of the node's time with extended metrics, each of which has values by instance.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetExtendedSample(const std::shared_ptr<CJavaVM>& vm, ISampleNode* node,
                                                                 INameValueEnumerator* metrics) const;
    /// Puts extended metrics into `sample`, which failure messages name by the node's time.
    /// @return what ended the walk; E_POINTER when one of the three is null
    [[nodiscard]] HRESULT AddExtendedMetrics(const std::shared_ptr<CJavaVM>& vm,
                                             const std::shared_ptr<CJavaObject>& sample, ISampleNode* node,
                                             INameValueEnumerator* metrics) const;
    /// The BaseMetric `name` with a metric for each of `instances`; with none where that is null.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetExtendedMetric(const std::shared_ptr<CJavaVM>& vm,
                                                                 std::wstring_view name,
                                                                 INameValueEnumerator* instances) const;

private:
    using JavaText = std::shared_ptr<CJavaString>;
    using SessionTextGetter = HRESULT (STDMETHODCALLTYPE IUserSessionInfo::*)(BSTR*);

    [[nodiscard]] JavaText NewJavaString(const std::shared_ptr<CJavaVM>& vm, BSTR text) const;

    /// Whether the Java call just made threw; if so, `log` is given what Java says. What else a message needs is made
    /// in there, and not before: it may run out of memory, and an exception would stay pending then.
    template <typename Log>
    static bool LogIfThrown(CJavaVM& vm, const Log& log) {
        std::wstring exceptionText;
        if (!vm.GetJavaException(exceptionText)) {
            return false;
        }
        log(exceptionText.c_str());
        return true;
    }
    /// The same for a message that needs nothing else.
    bool LogThrown(CJavaVM& vm, const wchar_t* message) const {
        return LogIfThrown(vm, [&](const wchar_t* thrown) { m_log.Error(message, thrown); });
    }

    // Of desktops.
    [[nodiscard]] std::shared_ptr<CJavaObject> MakeDesktop(const std::shared_ptr<CJavaVM>& vm, CJavaClass& desktopClass,
                                                           ISystemInfo& systemInfo) const;
    [[nodiscard]] bool PutTotalMemory(CJavaVM& vm, CJavaObject& desktop, ISystemInfo& systemInfo) const;
    void AddNetworkInterfaces(const std::shared_ptr<CJavaVM>& vm, CJavaObject& desktop, SAFEARRAY* array) const;

    // Of user sessions.
    [[nodiscard]] std::shared_ptr<CJavaObject> MakeUserSession(const std::shared_ptr<CJavaVM>& vm,
                                                               IUserSessionInfo& session) const;
    [[nodiscard]] JavaText GetSessionText(const std::shared_ptr<CJavaVM>& vm, IUserSessionInfo& session,
                                          SessionTextGetter getter) const;
    void PutProperties(const std::shared_ptr<CJavaVM>& vm, CJavaObject& javaSession, IUserSessionInfo& session) const;

    // Of metrics.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetMetric(const std::shared_ptr<CJavaVM>& vm, CJavaClass& metricClass,
                                                         std::wstring_view name, const VARIANT& value) const;
    [[nodiscard]] std::shared_ptr<CJavaObject> MakeMetric(const std::shared_ptr<CJavaVM>& vm, CJavaClass& metricClass,
                                                          std::wstring_view name) const;
    [[nodiscard]] bool PutValue(const std::shared_ptr<CJavaVM>& vm, CJavaObject& metric, const VARIANT& value) const;
    void PutMetric(CJavaVM& vm, CJavaObject& target, const std::shared_ptr<CJavaObject>& metric, std::wstring_view name,
                   ISampleNode& node) const;

    // Of samples and remote applications.
    [[nodiscard]] std::shared_ptr<CJavaObject> MakeSample(const std::shared_ptr<CJavaVM>& vm, ISampleNode& node,
                                                          DATE& time) const;
    [[nodiscard]] HRESULT GetInstances(ISampleNode& node, Microsoft::WRL::ComPtr<IInstanceEnumerator>& instances) const;
    void AddSession(const std::shared_ptr<CJavaVM>& vm, CJavaObject& sample, DATE sampleTime, std::wstring_view key,
                    ISampleNode& sessionNode, ISessionCollection& sessions) const;
    void AddRemoteApp(const std::shared_ptr<CJavaVM>& vm, CJavaObject& session, ISampleNode& sessionNode,
                      std::wstring_view id, ISampleNode& appNode) const;

    const CBridgeLog m_log;
};
