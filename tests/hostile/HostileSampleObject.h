#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>
#include <optional>
#include <string>

#include "CBstr.h"
#include "HostileSampleHost.h"

/// Nobody may call that.
constexpr ULONG_PTR kWildAddress = 0xBAD0BAD0BAD1;

/// An interface whose references are counted.
template <typename Interface>
class CHostileObject : public Interface, public CHostileObjectBase {
public:
    explicit CHostileObject(CHostileHost& host) : m_host(host) {}

    STDMETHODIMP QueryInterface(REFIID /*interfaceId*/, void** object) noexcept override {
        m_host.AddViolation("an interface was asked for that the caller has, or never needs");
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override {
        // From nothing only by the host itself, before anybody knows the object.
        if (m_references == 0 && m_wasReferenced) {
            m_host.AddViolation("referenced after its last release");
        }
        m_wasReferenced = true;
        return static_cast<ULONG>(++m_references);
    }
    STDMETHODIMP_(ULONG) Release() noexcept override {
        CheckAlive();
        return static_cast<ULONG>(--m_references);
    }

    [[nodiscard]] long CountReferences() const noexcept override { return m_references; }

protected:
    void CheckAlive() {
        if (m_references <= 0) {
            m_host.AddViolation("called after its last release");
        }
    }
    HRESULT Refuse() {
        m_host.AddViolation("a reserved operation was called");
        return E_NOTIMPL;
    }
    /// Gives what `answer` says; `make` gives a new object, not referenced yet.
    template <typename Wanted, typename Make>
    HRESULT Give(const ObjectAnswer& answer, Wanted** given, const Make& make) {
        CheckAlive();
        if (*given) {
            m_host.AddViolation("an address that holds something");
        }
        *given = nullptr;
        if (answer.given == Given::eWild) {
            *given = reinterpret_cast<Wanted*>(kWildAddress);
        } else if (answer.given == Given::eObject) {
            *given = make();
            if (SUCCEEDED(answer.result)) {
                (*given)->AddRef();
            }
        }
        return answer.result;
    }
    HRESULT GiveText(const TextAnswer& answer, BSTR* given) {
        GiveName(answer.text, given);
        return answer.result;
    }
    void GiveName(const std::optional<std::wstring>& name, BSTR* given) {
        CheckAlive();
        if (*given) {
            m_host.AddViolation("an address that holds a text");
        }
        *given = name ? CBstr::Make(*name).Detach() : nullptr;
    }

    CHostileHost& m_host;

private:
    long m_references = 0;
    bool m_wasReferenced = false;
};

/// The place in a walk, which nobody asks beyond its end.
class CWalk {
public:
    /// The next answer's number; `count` after the last one.
    std::size_t Take(CHostileHost& host, std::size_t count) {
        if (m_isOver) {
            host.AddViolation("asked for more after the end");
        }
        return m_next < count ? m_next++ : count;
    }
    HRESULT Note(HRESULT result) {
        m_isOver = result != S_OK;
        return result;
    }

private:
    std::size_t m_next = 0;
    bool m_isOver = false;
};
