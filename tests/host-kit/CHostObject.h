#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CCallRecord.h"
#include "CHostReference.h"

class CHostObject;

/// The references to one interface of an object.
class CInterfaceReferences {
public:
    CInterfaceReferences(CHostObject& object, REFIID interfaceId) noexcept
        : m_object(object), m_interfaceIndex(IndexHostInterface(interfaceId)) {}

    ULONG Add() noexcept;
    ULONG Release() noexcept;
    [[nodiscard]] const char* GetInterfaceName() const noexcept { return NameHostInterface(m_interfaceIndex); }

private:
    CHostObject& m_object;
    const std::size_t m_interfaceIndex;
    std::atomic<long> m_count{0};
};

/// One interface of an object, counted by itself. See CHostFacet, which implements it.
class CHostFacetBase {
public:
    CHostFacetBase() = default;
    virtual ~CHostFacetBase() = default;

    CHostFacetBase(const CHostFacetBase&) = delete;
    CHostFacetBase& operator=(const CHostFacetBase&) = delete;

    [[nodiscard]] virtual REFIID GetInterfaceId() const noexcept = 0;
    /// The interface's pointer, not counted.
    [[nodiscard]] virtual IUnknown* GetInterface() noexcept = 0;
    /// The object has lost its last reference: what the facet holds is given back.
    virtual void Drop() noexcept = 0;
};

/// An object of the host's: an identity and the interfaces that were added to it. It lives while any of its interfaces
/// is referenced; each is counted by itself, as if it were a separate object, so that a release through the wrong
/// interface is seen. Facets are added before anybody else knows the object; after that any thread may call.
class CHostObject final : public IUnknown {
public:
    /// A new object without interfaces of its own, with one reference to its IUnknown.
    [[nodiscard]] static CHostReference<CHostObject> Make(std::shared_ptr<CCallRecord> record, std::string name);
    /// A new object with one interface, that of `Facet`.
    template <typename Interface, typename Facet, typename... Arguments>
    [[nodiscard]] static CHostReference<Interface> MakeWith(std::shared_ptr<CCallRecord> record, std::string name,
                                                            Arguments&&... arguments) {
        const CHostReference<CHostObject> object = Make(std::move(record), std::move(name));
        return CHostReference<Interface>::Share(&object->Add<Facet>(std::forward<Arguments>(arguments)...));
    }

    template <typename Facet, typename... Arguments>
    Facet& Add(Arguments&&... arguments) {
        auto facet = std::make_unique<Facet>(*this, std::forward<Arguments>(arguments)...);
        Facet& added = *facet;
        m_facets.push_back(std::move(facet));
        return added;
    }
    /// Queries for `interfaceId` are answered with `target` itself, whose identity is another.
    void AddForward(REFIID interfaceId, IUnknown* target);

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return m_identity.Add(); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return m_identity.Release(); }

    [[nodiscard]] const std::string& GetName() const noexcept { return m_name; }
    [[nodiscard]] const std::shared_ptr<CCallRecord>& GetRecord() const noexcept { return m_keepsRecord; }
    [[nodiscard]] bool IsDestroyed() const noexcept { return m_isDestroyed; }

    /// How a query is recorded, and how a fault names it.
    [[nodiscard]] static std::string DescribeQuery(const std::string& objectName, REFIID interfaceId);
    [[nodiscard]] Fault Enter(const std::string& operation, const std::string& what) {
        return m_record.Enter(operation, m_name + ": " + what);
    }
    void AddViolation(const std::string& what) { m_record.AddViolation(m_name + ": " + what); }

    // For the record.
    [[nodiscard]] CHostObject* GetDestroyedBefore() const noexcept { return m_destroyedBefore; }
    void SetDestroyedBefore(CHostObject* object) noexcept { m_destroyedBefore = object; }
    ~CHostObject() = default;

private:
    friend class CInterfaceReferences;

    CHostObject(std::shared_ptr<CCallRecord> record, std::string name);

    [[nodiscard]] IUnknown* Find(REFIID interfaceId) noexcept;
    void LoseLastReference() noexcept;

    CCallRecord& m_record;                       // which outlives a destroyed object too: it owns that
    std::shared_ptr<CCallRecord> m_keepsRecord;  // empty from the last reference's end on
    const std::string m_name;
    CInterfaceReferences m_identity{*this, IID_IUnknown};
    std::atomic<long> m_references{0};  // to all its interfaces
    std::atomic<bool> m_isDestroyed{false};
    std::vector<std::unique_ptr<CHostFacetBase>> m_facets;
    std::vector<std::pair<IID, CHostReference<IUnknown>>> m_forwards;
    CHostObject* m_destroyedBefore = nullptr;
};
