#include "CImportHook.h"

#include <cstring>
#include <stdexcept>
#include <string>

#include "ImportTable.h"

namespace {

void WriteSlot(void** slot, void* value) noexcept {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof(void*), PAGE_READWRITE, &protection);
    *slot = value;
    VirtualProtect(slot, sizeof(void*), protection, &protection);
}

}  // namespace

void** FindImportSlot(HMODULE module, const char* function) noexcept {
    void** found = nullptr;
    VisitImports(module, [&](const char*, const char* name, void** slot) {
        if (std::strcmp(name, function) == 0) {
            found = slot;
        }
    });
    return found;
}

CImportHook::CImportHook(HMODULE module, const char* function, void* replacement)
    : m_slot(FindImportSlot(module, function)), m_original(m_slot ? *m_slot : nullptr) {
    if (!m_slot) {
        throw std::runtime_error(std::string("not imported: ") + function);
    }
    WriteSlot(m_slot, replacement);
}

CImportHook::~CImportHook() {
    WriteSlot(m_slot, m_original);
}
