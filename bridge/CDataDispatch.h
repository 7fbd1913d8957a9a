#pragma once

#include <windows.h>

#include <unknwn.h>
#include <wrl/client.h>

#include <functional>
#include <memory>
#include <string>

#include "CBridgeLog.h"
#include "CCallbackRegistry.h"
#include "CJNIConvertor.h"
#include "ISystemInfo.h"
#include "IUserSessionInfo.h"
#include "JavaBridge.h"
#include "JavaCallContext.h"
#include "MachineIdentity.h"

/// What a host handed to CRMICommManager::DumpData. Nothing is owned; the texts may be null.
struct DataItem {
    const wchar_t* url;
    const wchar_t* authToken;
    const wchar_t* certificate;
    unsigned __int64 id;
    unsigned char type;
    IUnknown* data;
};

/// The sending of one data item, from the host's object to the answer. It lives for the length of one call, on a thread
/// that is attached, inside a local frame, under the manager's lock; callbacks and Java, which it calls, may call in
/// again on the same thread.
class CDataDispatch {
public:
    /// Points the message client at the item's server, if it is not pointed there. Nothing calls in from outside
    /// between its return and the next call out.
    using PointClient = std::function<HRESULT()>;

    /// References everything it is given except what of `identity` and `item` it copies; all that outlives it.
    CDataDispatch(const CBridgeLog& log, const JavaBridge& bridge, ISystemInfo& systemInfo,
                  CCallbackRegistry& callbacks, PointClient pointClient, const MachineIdentity& identity,
                  const DataItem& item);

    CDataDispatch(const CDataDispatch&) = delete;
    CDataDispatch& operator=(const CDataDispatch&) = delete;

    /// @return see CRMICommManager::DumpData
    [[nodiscard]] HRESULT Send();

private:
    void FindSession();
    [[nodiscard]] HRESULT SendStartup();

    [[nodiscard]] std::wstring MakeClientDescriptor() const;
    [[nodiscard]] HRESULT CheckSent() const;
    [[nodiscard]] HRESULT ReadAnswer(const std::shared_ptr<CJavaString>& answer, std::wstring& text) const;
    void LogNotSent(const std::wstring& exceptionText) const;
    [[nodiscard]] HRESULT TellCallbacks(DataType type, const wchar_t* failure, const std::wstring& text) const;

    const CBridgeLog& m_log;
    ISystemInfo& m_systemInfo;
    CCallbackRegistry& m_callbacks;
    const PointClient m_pointClient;
    const DataItem m_item;
    const HRESULT m_componentsResult;
    const JavaCallContext m_context;
    const CJNIConvertor m_convertor;
    Microsoft::WRL::ComPtr<IUserSessionInfo> m_session;  // the data's, where it has one
};
