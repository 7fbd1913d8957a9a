#pragma once

#include <windows.h>

#include <unknwn.h>

struct IDataDumpCallback;

// Defined empty where the library itself is built.
#ifndef TELVAR_RMI_API
#define TELVAR_RMI_API __declspec(dllimport)
#endif

/// The bridge to the message server: takes the host's data items and sends them on through the Java machine that it
/// runs in the host's process. There is one object in the process, from the library's load to its unload.
///
/// Any thread may call; COM is initialised on it. One call runs at a time, the others wait. The thread whose DumpData
/// comes first starts Java, and Java's side ends with that thread: make it one that lives as long as items come.
/// docs/host-guide.md says more of threads and of how a process ends.
///
/// Texts are UTF-16, closed by a zero, stay the caller's, and may be null, which counts as empty. Three of them say
/// which message server is meant: its URL, the authentication token, and the server's certificate.
///
/// Exhausted memory leaves as an exception: CHresultException, `_com_error`, or std::bad_alloc. So does, as a
/// CHresultException, an ISystemInfo that gives no array of network adapters when a logon, a refresh or a poll
/// describes the machine. Hosts that are built with MinGW-w64 can catch these by type, hosts of Microsoft's compiler
/// cannot. No other failure throws.
class CRMICommManager {
public:
    CRMICommManager(const CRMICommManager&) = delete;
    CRMICommManager& operator=(const CRMICommManager&) = delete;

    /// The one object. Never fails, starts nothing.
    static TELVAR_RMI_API CRMICommManager& GetInstance();

    /// Sends one data item and acts on the server's answer: start-ups and logons go to the callbacks, an answer to a
    /// sample, extended data or a poll is an action for the host's executor. The first call starts the Java machine,
    /// and whenever the three texts differ from those of the last successful switch, the message client is pointed at
    /// the other server. Java's failures are in the host's log. Takes IUnknown only.
    ///
    /// @param url         the message server; letter case does not count in comparisons
    /// @param authToken   the token that the server asks for
    /// @param certificate the server's certificate
    /// @param id          handed on with session events and polls, in Java's 64 bits
    /// @param type        a DataType; 255 is a poll of the desktop; 11 to 254 are accepted and send nothing
    /// @param data        the host's object with the interfaces that the type asks for; null where it asks for none:
    ///                    0 to 6   IUserSessionInfo, a logoff (2) ISampleNode as well where there are figures
    ///                    7        IPropertyBox ("meta-data", "metrics") and ISampleNode
    ///                    9        ISampleNode
    ///                    10       IPropertyBox ("metadata", "route")
    /// @return S_OK, or what the host's component identities were got with where that failed and nothing else did; the
    ///         executor's result where there was an action; 0x800713AB when the message server cannot be reached;
    ///         E_FAIL for every other failure of Java's, for data without the interface (of 7 and 10 what the query
    ///         gave), for an answer that no callback is registered for or that Java does not tell, after a start that
    ///         failed or the starting thread's end, and for a call out of the midst of a start or a switch on the same
    ///         thread; else the HRESULT of what failed. Success does not mean that the server heard: a session, or the
    ///         machine, that cannot be converted is logged and not sent, and so is a route that is no text.
    template <typename Data>
    TELVAR_RMI_API long DumpData(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate,
                                 unsigned __int64 id, unsigned char type, Data* data);

    /// Has the server's answers to start-ups and logons sent under the same three texts given to `callback`, which is
    /// referenced once however often it is registered. The texts are compared exactly here. With callbacks under one
    /// triple only, these hear the answers to all others as well. May be called before the first item and after the
    /// end. Null changes nothing.
    /// @return S_OK
    TELVAR_RMI_API long RegisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken,
                                                 const wchar_t* certificate, IDataDumpCallback* callback);

    /// Ends a registration and releases the callback; it may be called out of a callback.
    /// @return S_OK, also when there is no such registration
    TELVAR_RMI_API long UnregisterDataDumpCallback(const wchar_t* url, const wchar_t* authToken,
                                                   const wchar_t* certificate, IDataDumpCallback* callback);

protected:
    CRMICommManager() = default;
    ~CRMICommManager() = default;
};

template <>
TELVAR_RMI_API long CRMICommManager::DumpData<IUnknown>(const wchar_t* url, const wchar_t* authToken,
                                                        const wchar_t* certificate, unsigned __int64 id,
                                                        unsigned char type, IUnknown* data);
