#pragma once

#include <windows.h>

#include <unknwn.h>
#include <wrl/client.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "BindingTable.h"
#include "CBridgeLog.h"
#include "CCallbackRegistry.h"
#include "CJNIConvertor.h"
#include "DataType.h"
#include "IPropertyBox.h"
#include "ISystemInfo.h"
#include "IUserSessionInfo.h"
#include "JavaBridge.h"
#include "JavaCallContext.h"
#include "MachineIdentity.h"

class CVariant;

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
/// that is attached, inside a local frame, under the manager's lock; the host, callbacks and Java, which it calls, may
/// call in again on the same thread.
///
/// The table of kinds and what they have in common is in CDataDispatch.cpp; each kind's own part is in a Dispatch*.cpp.
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
    /// How one kind of data item is sent.
    struct Kind {
        unsigned char type;
        bool isSessionEvent;  ///< the data is a session, which is converted
        bool takesDesktop;    ///< the machine is described with it
        HRESULT (CDataDispatch::*send)();
    };
    static const Kind s_kinds[];
    [[nodiscard]] static const Kind* FindKind(unsigned char type) noexcept;

    // In the order of the types.
    [[nodiscard]] HRESULT SendNothing();
    [[nodiscard]] HRESULT SendLogon();
    [[nodiscard]] HRESULT SendLogoff();
    [[nodiscard]] HRESULT SendRefresh();
    [[nodiscard]] HRESULT SendReconnect();
    [[nodiscard]] HRESULT SendDisconnect();
    [[nodiscard]] HRESULT SendExtendedData();
    [[nodiscard]] HRESULT SendStartup();
    [[nodiscard]] HRESULT SendSample();
    [[nodiscard]] HRESULT SendTraceRoute();
    [[nodiscard]] HRESULT SendDesktopPoll();

    [[nodiscard]] std::wstring MakeClientDescriptor() const;
    void AddLogoffFigures();
    /// The item's number, which Java has no unsigned type for.
    [[nodiscard]] jlong GetJavaId() const noexcept { return static_cast<jlong>(m_item.id); }
    [[nodiscard]] HRESULT ReadMetadata(Microsoft::WRL::ComPtr<IPropertyBox>& box, CVariant& metadata) const;
    [[nodiscard]] HRESULT ReadRoute(IPropertyBox& box, CVariant& route) const;
    [[nodiscard]] std::shared_ptr<CJavaString> MakeRouteString(const CVariant& route) const;

    /// Calls a method of the message client's that returns nothing.
    template <typename Method, typename... Arguments>
    [[nodiscard]] HRESULT Tell(const Method& method, const Arguments&... arguments) {
        return CallPointed([&] { m_context.messageClient->CallVoidMethod(method, arguments...); });
    }
    /// Calls one whose text nobody acts on, nor reads.
    template <typename Method, typename... Arguments>
    [[nodiscard]] HRESULT TellUnanswered(const Method& method, const Arguments&... arguments) {
        return CallPointed([&] { static_cast<void>(m_context.messageClient->CallStringMethod(method, arguments...)); });
    }
    /// Calls one that may return a text.
    /// @return S_OK with the text in `answer`; S_FALSE when there is none; a failure
    template <typename Method, typename... Arguments>
    [[nodiscard]] HRESULT Ask(std::wstring& answer, const Method& method, const Arguments&... arguments) {
        std::shared_ptr<CJavaString> returned;
        const HRESULT sent =
            CallPointed([&] { returned = m_context.messageClient->CallStringMethod(method, arguments...); });
        return FAILED(sent) ? sent : ReadAnswer(returned, answer);
    }

    /// Points the client at the item's server, has `call` call it, and looks at once at what that came to.
    template <typename Call>
    [[nodiscard]] HRESULT CallPointed(const Call& call) {
        const HRESULT pointed = m_pointClient();
        if (FAILED(pointed)) {
            return pointed;
        }
        call();
        return CheckSent();
    }

    [[nodiscard]] HRESULT CheckSent() const;
    [[nodiscard]] HRESULT ReadAnswer(const std::shared_ptr<CJavaString>& answer, std::wstring& text) const;
    void LogNotSent(const std::wstring& exceptionText) const;

    /// What the call returns where nothing else says: the failure of `result`, else what asking for the machine's
    /// components gave. Kept: hosts see there that it failed, though everything was sent.
    [[nodiscard]] HRESULT OrComponents(HRESULT result) const noexcept {
        return FAILED(result) ? result : m_componentsResult;
    }

    // What becomes of an answer. `asked` is the result of Ask: without an answer nothing becomes of it.
    [[nodiscard]] HRESULT TellCallbacks(HRESULT asked, DataType type, const wchar_t* failure,
                                        const std::wstring& answer) const;
    [[nodiscard]] HRESULT ExecuteAction(HRESULT asked, const std::wstring& answer) const;

    const CBridgeLog& m_log;
    ISystemInfo& m_systemInfo;
    CCallbackRegistry& m_callbacks;
    const PointClient m_pointClient;
    const DataItem m_item;
    const HRESULT m_componentsResult;
    const JavaCallContext m_context;
    const CJNIConvertor m_convertor;

    Microsoft::WRL::ComPtr<IUserSessionInfo> m_session;  // the data's, where it has one
    std::shared_ptr<CJavaObject> m_connection;
    std::shared_ptr<CJavaObject> m_javaSession;  // of a session event
    std::shared_ptr<CJavaObject> m_desktop;      // where the kind takes one
};
