#include "HostileSampleModel.h"

#include <shlwapi.h>

#include <utility>

#include "HostileSampleTime.h"
#include "HostileSampleWalk.h"

namespace {

constexpr DATE kUntouchedTime = 0;

}  // namespace

HRESULT CSampleModel::Walk(const HostileValues& values, const VisitPair& visit) {
    for (const HostilePair& pair : values.pairs) {
        if (pair.result != S_OK) {
            return pair.result;
        }
        if (pair.name) {
            visit(pair);
        }
    }
    return values.end;
}

void CSampleModel::Walk(const HostileNode& node, const VisitChild& visit) {
    for (const HostileChild& child : node.children) {
        if (child.answer.result != S_OK) {
            return;
        }
        if (child.key && child.answer.HasObject()) {
            visit(child);
        }
    }
}

std::wstring CSampleModel::NameOf(const HostileNode& node) {
    return SUCCEEDED(node.time.result) ? ModelTimeName(node.time.time.value_or(kUntouchedTime)) : L"Invalid DateTime";
}

bool CSampleModel::Text(const std::wstring& text) {
    if (m_java.MakeString()) {
        return true;
    }
    m_java.Error(L"Failed to create a new Java string for " + InMessage(text) + L".  " + m_java.Thrown());
    return false;
}

bool CSampleModel::MakeSample() {
    const TimeAnswer& time = m_tree.nodes[0].time;
    if (FAILED(time.result)) {
        m_java.Error(L"Failed to get time from sample" + ModelErrorText(time.result, L"  "));
        return false;
    }
    const std::int64_t javaTime = ModelJavaTime(time.time.value_or(kUntouchedTime));
    if (!m_java.MakeObject("BaseSample.<init>(" + std::to_string(javaTime) + ")")) {
        m_java.Error(L"Failed to create a new Java sample object.  " + m_java.Thrown());
        return false;
    }
    return true;
}

bool CSampleModel::AreInstancesToBeHad(const HostileNode& node) {
    const ObjectAnswer& answer = node.instancesAnswer;
    if (FAILED(answer.result)) {
        m_java.Error(L"Failed to get instances from sample" + ModelErrorText(answer.result, L"  "));
    }
    return SUCCEEDED(answer.result);
}

bool CSampleModel::Sample(bool hasSessions) {
    const HostileNode& root = m_tree.nodes[0];
    if (!MakeSample()) {
        return false;
    }
    static_cast<void>(AddMetrics("BaseSample", root));
    if (!AreInstancesToBeHad(root)) {
        return false;
    }
    if (root.instancesAnswer.HasObject() && hasSessions) {
        Walk(root, [&](const HostileChild& child) { AddSession(child); });
    }
    return true;
}

const HostileSession* CSampleModel::FindSession(const HostileChild& child) const {
    const LONG key = child.keyNumber ? *child.keyNumber : StrToIntW(child.key->c_str());
    for (const HostileSession& session : m_tree.sessions) {
        if (session.key == key) {
            return session.answer.HasObject() ? &session : nullptr;
        }
    }
    return nullptr;
}

void CSampleModel::AddSession(const HostileChild& child) {
    const HostileNode& node = m_tree.nodes[child.node];
    const HostileSession* const session = FindSession(child);
    if (!session || !MakeSession(*session)) {
        return;
    }
    PutProperties(*session);
    static_cast<void>(AddMetrics("BaseUserSession", node));
    AddApps(node);
    m_java.Verbose(L"Adding session to sample: '" + InMessage(*child.key) + L"'");
    if (!m_java.Call("BaseSample.putSession(BaseUserSession@instance)")) {
        m_java.Error(L"Failed to add session '" + InMessage(*child.key) + L"' to sample '" + NameOf(m_tree.nodes[0]) +
                     L"'.  " + m_java.Thrown());
    }
}

bool CSampleModel::SessionText(const TextAnswer& answer) {
    return SUCCEEDED(answer.result) && Text(answer.text.value_or(L""));
}

bool CSampleModel::MakeSession(const HostileSession& session) {
    if (FAILED(session.id.result) || !SessionText(session.sid) || !SessionText(session.user) ||
        !SessionText(session.domain) || FAILED(session.state.result)) {
        return false;
    }
    const bool isConnected = (session.state.number & 0xFFFF) == 1;
    const std::string call =
        "BaseUserSession.<init>(" + std::to_string(session.id.number) + ", " +
        QuoteForEvent(session.sid.text.value_or(L"")) + ", " + QuoteForEvent(session.user.text.value_or(L"")) + ", " +
        QuoteForEvent(session.domain.text.value_or(L"")) + ", " + (isConnected ? "true" : "false") + ")";
    if (!m_java.MakeObject(call)) {
        m_java.Error(L"Failed to create a new Java user session object.  " + m_java.Thrown());
        return false;
    }
    return true;
}

void CSampleModel::PutProperties(const HostileSession& session) {
    if (FAILED(session.boxAnswer.result)) {
        m_java.Error(L"Failed to get property box" + ModelErrorText(session.boxAnswer.result, L""));
        return;
    }
    if (!session.boxAnswer.HasObject()) {
        return;
    }
    if (FAILED(session.box.enumeratorAnswer.result)) {
        m_java.Error(L"Failed to get enumerator from property box" +
                     ModelErrorText(session.box.enumeratorAnswer.result, L""));
        return;
    }
    if (!session.box.enumeratorAnswer.HasObject()) {
        return;
    }
    Walk(session.box.properties, [&](const HostilePair& pair) {
        const std::wstring text = ModelText(ValueOf(pair)).value_or(L"");
        const bool hasName = Text(*pair.name);
        const bool hasText = Text(text);
        if (!hasName || !hasText) {
            return;
        }
        if (!m_java.Call("BaseUserSession.putProperty(" + QuoteForEvent(*pair.name) + ", " + QuoteForEvent(text) +
                         ")")) {
            const std::wstring user =
                SUCCEEDED(session.label.result) ? InMessage(session.label.text.value_or(L"")) : L"NULL";
            m_java.Error(L"Failed to set user property " + InMessage(*pair.name) + L" for user " + user + L".  " +
                         m_java.Thrown());
        }
    });
}

void CSampleModel::AddApps(const HostileNode& node) {
    if (AreInstancesToBeHad(node) && node.instancesAnswer.HasObject()) {
        Walk(node, [&](const HostileChild& child) { AddApp(node, child); });
    }
}

void CSampleModel::AddApp(const HostileNode& node, const HostileChild& child) {
    if (!Text(*child.key)) {
        return;
    }
    if (!m_java.MakeObject("BaseRemoteApp.<init>(" + QuoteForEvent(*child.key) + ")")) {
        m_java.Error(L"Failed to create a new Java remote app object.  " + m_java.Thrown());
        return;
    }
    if (!AddMetrics("BaseRemoteApp", m_tree.nodes[child.node])) {
        return;
    }
    m_java.Verbose(L"Adding remote app to sample: '" + InMessage(*child.key) + L"'");
    if (!m_java.Call("BaseUserSession.putRemoteApp(BaseRemoteApp@instance)")) {
        m_java.Error(L"Failed to add app '" + InMessage(*child.key) + L"' to sample '" + NameOf(node) + L"'.  " +
                     m_java.Thrown());
    }
}

Prediction PredictSample(const HostileTree& tree, bool hasSessions, const OrderedFault& fault) {
    CModelJava java(fault);
    const bool hasObject = CSampleModel(tree, java).Sample(hasSessions);
    return {hasObject, std::move(java.events)};
}

Prediction PredictExtendedSample(const HostileTree& tree, bool hasMetrics, const OrderedFault& fault) {
    CModelJava java(fault);
    const bool hasObject = CSampleModel(tree, java).ExtendedSample(hasMetrics);
    return {hasObject, std::move(java.events)};
}

Prediction PredictMetric(const std::wstring& name, const VARIANT& value, const OrderedFault& fault) {
    CModelJava java(fault);
    const HostileTree nothingElse;
    const bool hasObject = CSampleModel(nothingElse, java).Metric(name, value);
    return {hasObject, std::move(java.events)};
}

Prediction PredictMap(const HostileBox& box, const OrderedFault& fault) {
    CModelJava java(fault);
    const HostileTree nothingElse;
    const bool hasObject = CSampleModel(nothingElse, java).Map(box);
    return {hasObject, std::move(java.events)};
}
