#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

struct IPropertyBox;

/// The machine as the host knows it. The library fetches it once and keeps it to its end.
struct ISystemInfo : IUnknown {
    static constexpr IID kId = {0xAE7AFB5C, 0xDA85, 0x43BA, {0xBB, 0x7B, 0x9A, 0xAC, 0x30, 0xF2, 0x7E, 0x31}};

    /// Slot 3. Reads the machine's state anew; called before each data item.
    virtual HRESULT STDMETHODCALLTYPE Refresh() = 0;
    /// Slot 4. @param interfaces receives a new array of NetworkInterfaceRecord (56 bytes each); the caller destroys it
    virtual HRESULT STDMETHODCALLTYPE get_networkInterfaces(SAFEARRAY** interfaces) = 0;
    /// Slot 5. @param name receives the machine's name; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_machineName(BSTR* name) = 0;

    // Slot 6: the host's own. The library never calls it.
    virtual HRESULT STDMETHODCALLTYPE Reserved6() = 0;

    /// Slot 7. @param isDesktop receives VARIANT_TRUE for a virtual desktop, VARIANT_FALSE for a server
    virtual HRESULT STDMETHODCALLTYPE get_isDesktop(VARIANT_BOOL* isDesktop) = 0;
    /// Slot 8. @param name receives the fully qualified domain name; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_FQDN(BSTR* name) = 0;
    /// Slot 9. @param memory receives the machine's memory as the host measures it; handed on unchanged
    virtual HRESULT STDMETHODCALLTYPE get_totalMemory(LONG* memory) = 0;
    /// Slot 10. @param id receives the id of the virtual machine; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_virtualMachineId(BSTR* id) = 0;
    /// Slot 11. @param id receives the machine's id; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_machineId(BSTR* id) = 0;
    /// Slot 12. @param id receives the machine's unique id; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_machineUniqueId(BSTR* id) = 0;
    /// Slot 13. @param identities receives the identities of the machine's components; one reference goes to the caller
    virtual HRESULT STDMETHODCALLTYPE get_componentsIdentities(IPropertyBox** identities) = 0;

protected:
    ~ISystemInfo() = default;
};
