#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "HostileSampleTree.h"
#include "INameValueEnumerator.h"
#include "IPropertyBox.h"
#include "ISampleNode.h"
#include "ISessionCollection.h"

/// The common part of the objects of one case. They live to the case's end, released or not, so that a call that comes
/// too late is told instead of crashing.
class CHostileObjectBase {
public:
    CHostileObjectBase() = default;
    virtual ~CHostileObjectBase() = default;

    CHostileObjectBase(const CHostileObjectBase&) = delete;
    CHostileObjectBase& operator=(const CHostileObjectBase&) = delete;

    [[nodiscard]] virtual long CountReferences() const noexcept = 0;
};

/// Makes and keeps the objects that answer from a description, for one case. Beside the references it watches that the
/// caller keeps to the rules of the interfaces: no reserved operation, no other interface asked for, no call after the
/// end of a walk or after the last release, addresses that hold nothing yet.
class CHostileHost {
public:
    CHostileHost() = default;
    ~CHostileHost();

    CHostileHost(const CHostileHost&) = delete;
    CHostileHost& operator=(const CHostileHost&) = delete;

    // Each gives a new object with one reference, which the test gives back with ReleaseOwn. The descriptions outlive
    // it.
    [[nodiscard]] ISampleNode* MakeNode(const HostileTree& tree);
    [[nodiscard]] ISessionCollection* MakeSessions(const HostileTree& tree);
    [[nodiscard]] INameValueEnumerator* MakeValues(const HostileValues& values);
    [[nodiscard]] IPropertyBox* MakeBox(const HostileBox& box);

    /// Gives the test's own references back.
    void ReleaseOwn();
    /// What callers did wrong, and what is still referenced; empty when all is well.
    [[nodiscard]] std::string DescribeViolations() const;

    // For the objects.
    template <typename Object, typename... Arguments>
    [[nodiscard]] Object* Make(const Arguments&... arguments) {
        auto made = std::make_unique<Object>(*this, arguments...);
        Object* const object = made.get();
        m_objects.push_back(std::move(made));
        return object;
    }
    void AddViolation(const char* what);
    /// Keeps a reference of the host's own: for an object in a value that does not own it.
    void KeepOwn(IUnknown* object);

private:
    std::vector<std::unique_ptr<CHostileObjectBase>> m_objects;
    std::vector<IUnknown*> m_own;
    std::string m_violations;
};
