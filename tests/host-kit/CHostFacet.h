#pragma once

#include <windows.h>

#include <comdef.h>

#include <algorithm>
#include <initializer_list>
#include <new>
#include <string>
#include <utility>

#include "CBstr.h"
#include "CHostObject.h"
#include "CHresultException.h"

/// For operations without inputs.
inline constexpr auto kNoInputs = [] { return std::string(); };

/// One interface of a CHostObject, with the data it answers from. What derives from it implements the interface's
/// operations, each by Perform or, for the slots that nobody may call, Refuse.
template <typename Interface, typename Data>
class CHostFacet : public Interface, public CHostFacetBase {
public:
    CHostFacet(CHostObject& object, REFIID interfaceId, Data data)
        : m_object(object), m_interfaceId(interfaceId), m_references(object, interfaceId), m_data(std::move(data)) {}

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override {
        return m_object.QueryInterface(interfaceId, object);
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return m_references.Add(); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return m_references.Release(); }

    [[nodiscard]] REFIID GetInterfaceId() const noexcept override { return m_interfaceId; }
    [[nodiscard]] IUnknown* GetInterface() noexcept override { return static_cast<Interface*>(this); }
    void Drop() noexcept override { m_data = Data(); }

protected:
    /// Records the call, lets a fault have its way, else does `work`, which writes its results only when it succeeds.
    /// Memory that runs out in it, or here, is the call's failure.
    /// @param inputs gives the call's inputs as text; called here so that it may run out of memory, too
    /// @param outs   the addresses of the results; none may be null
    template <typename Inputs, typename Work, typename... Outs>
    HRESULT Perform(const char* operation, const Inputs& inputs, const Work& work, Outs*... outs) noexcept {
        try {
            const std::string input = inputs();
            const std::string shown = input.empty() ? operation : std::string(operation) + "(" + input + ")";
            if (m_object.IsDestroyed()) {
                m_object.AddViolation(shown + " after the last release");
                return CO_E_OBJNOTCONNECTED;
            }
            if (HasNull({outs...})) {
                m_object.AddViolation(shown + " without an address for the result");
                return E_POINTER;
            }
            const Fault fault = m_object.Enter(std::string(m_references.GetInterfaceName()) + "::" + operation, shown);
            if (m_object.IsDestroyed()) {
                m_object.AddViolation(shown + " was running at the last release");
                return CO_E_OBJNOTCONNECTED;
            }
            if (fault.kind == FaultKind::eNone) {
                return work();
            }
            if (fault.kind == FaultKind::eNull) {
                ((*outs = Outs()), ...);
            }
            return fault.result;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (const _com_error& failure) {
            return failure.Error();
        } catch (const CHresultException& failure) {
            return failure.GetResult();
        }
    }

    /// Perform for one text.
    HRESULT GiveText(const char* operation, const std::wstring& text, BSTR* given) noexcept {
        return Perform(
            operation, kNoInputs,
            [&] {
                *given = CBstr::Make(text).Detach();
                return S_OK;
            },
            given);
    }

    /// Perform for one number.
    template <typename Number>
    HRESULT GiveNumber(const char* operation, Number number, Number* given) noexcept {
        return Perform(
            operation, kNoInputs,
            [&] {
                *given = number;
                return S_OK;
            },
            given);
    }

    /// Perform for an object that `make` returns a reference to.
    template <typename Inputs, typename Given, typename Make>
    HRESULT GiveObject(const char* operation, const Inputs& inputs, const Make& make, Given** given) noexcept {
        return Perform(
            operation, inputs,
            [&] {
                *given = make().Detach();
                return S_OK;
            },
            given);
    }

    HRESULT Refuse(const char* operation) {
        m_object.AddViolation(std::string(m_references.GetInterfaceName()) + "::" + operation + " is reserved");
        return E_NOTIMPL;
    }

    CHostObject& m_object;

private:
    [[nodiscard]] static bool HasNull(std::initializer_list<const void*> addresses) noexcept {
        return std::find(addresses.begin(), addresses.end(), nullptr) != addresses.end();
    }

    const IID m_interfaceId;
    CInterfaceReferences m_references;

protected:
    Data m_data;
};
