#include "CFakeBehaviour.h"

#include <utility>

namespace {

std::string MethodKey(std::string_view className, std::string_view name, std::string_view signature = {}) {
    return std::string(className).append(".").append(name).append(signature);
}

}  // namespace

void CFakeBehaviour::RemoveMethod(std::string_view className, std::string_view name, std::string_view signature) {
    m_removedMethods.insert(MethodKey(className, name, signature));
}

void CFakeBehaviour::SetMethod(std::string_view className, std::string_view name, FakeMethodBehaviour behaviour) {
    m_behaviours.insert_or_assign(MethodKey(className, name), std::move(behaviour));
}

bool CFakeBehaviour::IsClassRemoved(const std::string& className) const {
    return m_removedClasses.count(className) != 0;
}

bool CFakeBehaviour::IsMethodRemoved(const std::string& className, const std::string& name,
                                     const std::string& signature) const {
    return m_removedMethods.count(MethodKey(className, name, signature)) != 0;
}

const FakeMethodBehaviour* CFakeBehaviour::FindMethod(const std::string& className, const std::string& name) const {
    const auto found = m_behaviours.find(MethodKey(className, name));
    return found == m_behaviours.end() ? nullptr : &found->second;
}
