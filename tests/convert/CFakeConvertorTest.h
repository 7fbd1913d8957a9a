#pragma once

#include <memory>
#include <string>
#include <vector>

#include "BindingTable.h"
#include "CConvertorHost.h"
#include "CFakeJvmTest.h"
#include "CJNIConvertor.h"

/// What the fake runtime's ordered failures say.
inline const std::wstring kOutOfMemory = L"java.lang.OutOfMemoryError: injected";

/// The convertor between a host and the fake runtime, which fails on demand and counts exactly. No class is loaded yet.
class CFakeConvertorTest : public CFakeJvmTest {
protected:
    using Names = std::vector<std::string>;
    using Texts = std::vector<std::wstring>;

    void SetUp() override {
        CFakeJvmTest::SetUp();
        // Not the owner: the fixture's machine ends in TearDown, and anything that kept this alive would be seen then.
        m_sharedVm = std::shared_ptr<CJavaVM>(std::shared_ptr<CJavaVM>(), &VM());
    }

    [[nodiscard]] const std::shared_ptr<CJavaVM>& SharedVM() const { return m_sharedVm; }
    [[nodiscard]] CConvertorHost& Host() { return m_host; }
    [[nodiscard]] CJNIConvertor MakeConvertor() const { return CJNIConvertor(m_host.MakeLog()); }
    [[nodiscard]] static CJNIConvertor MakeConvertorWithoutLogger() { return CJNIConvertor(CBridgeLog()); }

    /// Has a class of the binding table loaded, as the product's start has it.
    void LoadBoundClass(const char* className) {
        const Binding::ClassRows rows = Binding::FindRows(className);
        ASSERT_NE(VM().LoadClass(className, rows.firstRow, rows.rowCount), nullptr);
    }

private:
    CConvertorHost m_host;
    std::shared_ptr<CJavaVM> m_sharedVm;
};
