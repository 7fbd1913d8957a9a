#pragma once

#include <windows.h>

#include <unknwn.h>

/// What a host implements to hear the message server's answers to start-ups and logons; see
/// CRMICommManager::RegisterDataDumpCallback. The library asks it for no other interface. It is called on the thread
/// that called CRMICommManager::DumpData, while that call lasts and with the library's lock held: it may call the
/// library itself, but must not wait for another thread that does.
struct IDataDumpCallback : IUnknown {
    /// Slot 3.
    /// @param type the DataType of the item that was answered: eStartup or eUserSessionLogon
    /// @param text the answer, this callback's own copy, valid during the call
    /// @return ignored
    virtual HRESULT STDMETHODCALLTYPE OnDataDump(ULONG type, const wchar_t* text) = 0;

protected:
    ~IDataDumpCallback() = default;
};
