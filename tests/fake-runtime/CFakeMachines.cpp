#include "CFakeMachines.h"

#include <algorithm>
#include <iterator>
#include <utility>

void CFakeMachines::RememberArguments(const JavaVMInitArgs& arguments) {
    options.clear();
    for (jint i = 0; arguments.options && i < arguments.nOptions; ++i) {
        const char* const option = arguments.options[i].optionString;
        options.emplace_back(option ? option : "");
    }
    requestedVersion = arguments.version;
    ignoreUnrecognized = arguments.ignoreUnrecognized != JNI_FALSE;
    wasOptionsPointerNull = !arguments.options;
}

JavaVM* CFakeMachines::Start(const JNIInvokeInterface_* functions) {
    m_machines.push_back(std::make_unique<JavaVM>());
    m_alive = m_machines.back().get();
    m_alive->functions = functions;
    return m_alive;
}

void CFakeMachines::Forget() {
    auto machines = std::move(m_machines);
    *this = CFakeMachines();
    m_machines = std::move(machines);
}

bool IsKnownJniVersion(jint version) noexcept {
    constexpr jint kKnown[] = {JNI_VERSION_1_2, JNI_VERSION_1_4, JNI_VERSION_1_6,
                               JNI_VERSION_1_8, JNI_VERSION_9,   JNI_VERSION_10};
    return std::find(std::begin(kKnown), std::end(kKnown), version) != std::end(kKnown);
}
