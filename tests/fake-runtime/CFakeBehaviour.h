#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "FakeObjects.h"

/// What a method does instead of what methods do by default.
struct FakeMethodBehaviour {
    std::optional<FakeExceptionOrder> exception;
    std::optional<FakeTextAnswer> result;
};

/// What tests have ordered classes and methods to be like.
class CFakeBehaviour {
public:
    void RemoveClass(std::string_view className) { m_removedClasses.emplace(className); }
    void RemoveMethod(std::string_view className, std::string_view name, std::string_view signature);
    void SetMethod(std::string_view className, std::string_view name, FakeMethodBehaviour behaviour);
    void SetThrowableFrames(long count) noexcept { m_throwableFrames = count; }

    [[nodiscard]] bool IsClassRemoved(const std::string& className) const;
    [[nodiscard]] bool IsMethodRemoved(const std::string& className, const std::string& name,
                                       const std::string& signature) const;
    /// Null when the method is to do what methods do by default.
    [[nodiscard]] const FakeMethodBehaviour* FindMethod(const std::string& className, const std::string& name) const;
    [[nodiscard]] long GetThrowableFrames() const noexcept { return m_throwableFrames; }

private:
    std::unordered_set<std::string> m_removedClasses;
    std::unordered_set<std::string> m_removedMethods;                   // "java/x/Y.put(I)V"
    std::unordered_map<std::string, FakeMethodBehaviour> m_behaviours;  // by "java/x/Y.put"
    long m_throwableFrames = 0;
};
