// Single properties of every type: a component's identity, and the objects that items are made of.

#include <memory>
#include <string>

#include "CBridgeLog.h"
#include "CLeakCheckedTest.h"
#include "HostProperty.h"
#include "HostileCases.h"
#include "HostileSampleNote.h"
#include "HostileVariant.h"
#include "HostileVariantModel.h"
#include "MachineIdentity.h"
#include "StackObjects.h"

namespace {

/// A box with one property, whose name it is not particular about.
class CHostileProperty final : public CStackObject<IPropertyBox> {
public:
    CHostileProperty(const CHostileVariant* value, HRESULT result) : m_value(value), m_result(result) {}

    STDMETHODIMP get_enumerator(INameValueEnumerator**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetProperty(BSTR name, VARIANT* value) noexcept override {
        m_name = name;
        EXPECT_EQ(value->vt, VT_EMPTY);
        if (m_value) {
            m_value->GiveCopy(*value);
        }
        return m_result;
    }

    [[nodiscard]] const std::wstring& GetName() const noexcept { return m_name; }

private:
    const CHostileVariant* const m_value;
    const HRESULT m_result;
    std::wstring m_name;
};

/// A machine with one component.
class CHostileSystem final : public CStackObject<ISystemInfo> {
public:
    explicit CHostileSystem(IPropertyBox* components) : m_components(components) {}

    STDMETHODIMP Refresh() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_networkInterfaces(SAFEARRAY**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_machineName(BSTR*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved6() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_isDesktop(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_FQDN(BSTR*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_totalMemory(LONG*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_virtualMachineId(BSTR* id) noexcept override { return GiveText(L"virtual", id); }
    STDMETHODIMP get_machineId(BSTR* id) noexcept override { return GiveText(L"machine", id); }
    STDMETHODIMP get_machineUniqueId(BSTR* id) noexcept override { return GiveText(L"unique", id); }
    STDMETHODIMP get_componentsIdentities(IPropertyBox** components) noexcept override {
        return Give(m_components, components, S_OK);
    }

private:
    IPropertyBox* const m_components;
};

class HostileVariantPropertyTest : public CLeakCheckedTest {
protected:
    [[nodiscard]] static std::unique_ptr<CHostileVariant> MakeValue(CRandom& random) {
        return random.OneIn(20) ? nullptr : std::make_unique<CHostileVariant>(random, References::eFollowed);
    }
    [[nodiscard]] static HRESULT MakeResult(CRandom& random) {
        constexpr HRESULT kResults[] = {S_OK, S_OK, S_OK, S_OK, S_FALSE, E_FAIL, DISP_E_UNKNOWNNAME};
        return random.Pick(kResults);
    }
    [[nodiscard]] static const VARIANT& ValueOf(const CHostileVariant* value) {
        static const VARIANT nothing{};
        return value ? value->Get() : nothing;
    }
    [[nodiscard]] static std::string Describe(const CHostileVariant* value, HRESULT result) {
        return std::to_string(result) + " " + (value ? value->Describe() : "untouched");
    }
};

TEST_F(HostileVariantPropertyTest, AnIdentityThatIsATextStandsForTheMachines) {
    CHostileCases cases({"the component's", "the component's, empty", "the machine's"});
    cases.Run([&](CRandom& random) {
        const std::unique_ptr<CHostileVariant> value = MakeValue(random);
        const HRESULT result = MakeResult(random);
        const CNoteOfFailure note([&] { return Describe(value.get(), result); });
        const std::optional<std::wstring> text = SUCCEEDED(result) ? ModelText(ValueOf(value.get())) : std::nullopt;
        const ResourceCounts before = CResourceLedger::Get().Count();

        {
            CHostileProperty components(value.get(), result);
            CHostileSystem system(&components);
            MachineIdentity identity;
            EXPECT_EQ(ReadMachineIdentity(CBridgeLog(), system, identity), S_OK);

            EXPECT_EQ(identity.id, text.value_or(L"machine"));
            EXPECT_EQ(identity.virtualMachineId, L"virtual");
            EXPECT_EQ(identity.componentsResult, S_OK);
            EXPECT_EQ(components.GetName(), L"Calderin");
        }
        EXPECT_EQ(CResourceLedger::Get().Count(), before);

        return !text ? "the machine's" : text->empty() ? "the component's, empty" : "the component's";
    });
}

TEST_F(HostileVariantPropertyTest, AnObjectIsWhatTheSystemMakesOfTheValue) {
    CHostileCases cases({"an object", "null", "none", "not there"});
    cases.Run([&](CRandom& random) {
        const std::unique_ptr<CHostileVariant> value = MakeValue(random);
        const HRESULT result = MakeResult(random);
        const CNoteOfFailure note([&] { return Describe(value.get(), result); });
        IUnknown* expected = nullptr;
        const HRESULT modelled = SUCCEEDED(result) ? ModelObject(ValueOf(value.get()), expected) : result;
        const ResourceCounts before = CResourceLedger::Get().Count();

        {
            CHostileProperty box(value.get(), result);
            CVariant object;
            EXPECT_EQ(ReadObject(box, L"route%s", object), modelled);

            if (SUCCEEDED(modelled)) {
                EXPECT_EQ(object.vt, VT_UNKNOWN);
                EXPECT_EQ(object.punkVal, expected);
            }
            EXPECT_EQ(box.GetName(), L"route%s");
        }
        EXPECT_EQ(CResourceLedger::Get().Count(), before);

        if (FAILED(result)) {
            return "not there";
        }
        return FAILED(modelled) ? "none" : expected ? "an object" : "null";
    });
}

}  // namespace
