#include "HostileSampleHost.h"

#include <algorithm>

#include "HostileSampleObject.h"
#include "IInstanceEnumerator.h"
#include "IUserSessionInfo.h"

namespace {

class CHostileValues final : public CHostileObject<INameValueEnumerator> {
public:
    CHostileValues(CHostileHost& host, const HostileValues* values) : CHostileObject(host), m_values(*values) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse(); }
    STDMETHODIMP Next(BSTR* name, VARIANT* value) noexcept override {
        CheckAlive();
        const std::size_t at = m_walk.Take(m_host, m_values.pairs.size());
        if (at == m_values.pairs.size()) {
            return m_walk.Note(m_values.end);
        }
        const HostilePair& pair = m_values.pairs[at];
        GiveName(pair.name, name);
        if (value->vt != VT_EMPTY) {
            m_host.AddViolation("a VARIANT that holds something");
        }
        if (pair.instances) {
            GiveInstances(pair, *value);
        } else if (pair.value) {
            pair.value->GiveCopy(*value);
        }
        return m_walk.Note(pair.result);
    }

private:
    void GiveInstances(const HostilePair& pair, VARIANT& value);

    const HostileValues& m_values;
    CWalk m_walk;
};

/// The value of an extended metric.
class CHostileInstances final : public CHostileObject<IUnknown> {
public:
    CHostileInstances(CHostileHost& host, const HostilePair* pair) : CHostileObject(host), m_pair(*pair) {}

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override {
        if (!IsEqualGUID(interfaceId, INameValueEnumerator::kId)) {
            return CHostileObject::QueryInterface(interfaceId, object);
        }
        return Give(m_pair.instancesQuery, reinterpret_cast<INameValueEnumerator**>(object),
                    [&] { return m_host.Make<CHostileValues>(m_pair.instances.get()); });
    }

private:
    const HostilePair& m_pair;
};

void CHostileValues::GiveInstances(const HostilePair& pair, VARIANT& value) {
    IUnknown* const object = m_host.Make<CHostileInstances>(&pair);
    object->AddRef();
    value.vt = pair.instancesType;
    value.punkVal = object;
    if (pair.instancesType != VT_UNKNOWN && pair.instancesType != VT_DISPATCH) {
        m_host.KeepOwn(object);
    }
}

class CHostileNode;

class CHostileNodes final : public CHostileObject<IInstanceEnumerator> {
public:
    CHostileNodes(CHostileHost& host, const HostileTree* tree, std::size_t node)
        : CHostileObject(host), m_tree(*tree), m_node(tree->nodes[node]) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse(); }
    STDMETHODIMP Next(BSTR* key, ISampleNode** instance) noexcept override;

private:
    const HostileTree& m_tree;
    const HostileNode& m_node;
    CWalk m_walk;
};

class CHostileNode final : public CHostileObject<ISampleNode> {
public:
    CHostileNode(CHostileHost& host, const HostileTree* tree, std::size_t number)
        : CHostileObject(host), m_tree(*tree), m_number(number) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved4() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved5() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved6() noexcept override { return Refuse(); }
    STDMETHODIMP get_time(DATE* time) noexcept override {
        CheckAlive();
        const TimeAnswer& answer = Node().time;
        *time = answer.time.value_or(*time);
        return answer.result;
    }
    STDMETHODIMP get_instances(IInstanceEnumerator** instances) noexcept override {
        return Give(Node().instancesAnswer, instances, [&] { return m_host.Make<CHostileNodes>(&m_tree, m_number); });
    }
    STDMETHODIMP get_metrics(INameValueEnumerator** metrics, LONG flag) noexcept override {
        if (flag != 1) {
            m_host.AddViolation("a flag that was not agreed on");
        }
        return Give(Node().metricsAnswer, metrics, [&] { return m_host.Make<CHostileValues>(&Node().metrics); });
    }

private:
    [[nodiscard]] const HostileNode& Node() const { return m_tree.nodes[m_number]; }

    const HostileTree& m_tree;
    const std::size_t m_number;
};

HRESULT CHostileNodes::Next(BSTR* key, ISampleNode** instance) noexcept {
    CheckAlive();
    const std::size_t at = m_walk.Take(m_host, m_node.children.size());
    if (at == m_node.children.size()) {
        return m_walk.Note(m_node.childrenEnd);
    }
    const HostileChild& child = m_node.children[at];
    GiveName(child.key, key);
    return m_walk.Note(Give(child.answer, instance, [&] { return m_host.Make<CHostileNode>(&m_tree, child.node); }));
}

class CHostileBox final : public CHostileObject<IPropertyBox> {
public:
    CHostileBox(CHostileHost& host, const HostileBox* box) : CHostileObject(host), m_box(*box) {}

    STDMETHODIMP get_enumerator(INameValueEnumerator** properties) noexcept override {
        return Give(m_box.enumeratorAnswer, properties, [&] { return m_host.Make<CHostileValues>(&m_box.properties); });
    }
    STDMETHODIMP GetProperty(BSTR /*name*/, VARIANT* /*value*/) noexcept override { return Refuse(); }

private:
    const HostileBox& m_box;
};

class CHostileSession final : public CHostileObject<IUserSessionInfo> {
public:
    CHostileSession(CHostileHost& host, const HostileSession* session) : CHostileObject(host), m_session(*session) {}

    STDMETHODIMP get_propertyBox(IPropertyBox** box) noexcept override {
        return Give(m_session.boxAnswer, box, [&] { return m_host.Make<CHostileBox>(&m_session.box); });
    }
    STDMETHODIMP get_id(LONG* id) noexcept override {
        CheckAlive();
        *id = m_session.id.number;
        return m_session.id.result;
    }
    STDMETHODIMP get_sid(BSTR* sid) noexcept override { return GiveText(m_session.sid, sid); }
    STDMETHODIMP get_user(BSTR* user) noexcept override { return GiveText(m_session.user, user); }
    STDMETHODIMP get_domain(BSTR* domain) noexcept override { return GiveText(m_session.domain, domain); }
    STDMETHODIMP get_state(SHORT* state) noexcept override {
        CheckAlive();
        *state = static_cast<SHORT>(m_session.state.number);
        return m_session.state.result;
    }
    STDMETHODIMP Reserved9() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved10() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved11() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved12() noexcept override { return Refuse(); }
    STDMETHODIMP Reserved13() noexcept override { return Refuse(); }
    STDMETHODIMP get_userLabel(BSTR* label) noexcept override { return GiveText(m_session.label, label); }

private:
    const HostileSession& m_session;
};

class CHostileSessions final : public CHostileObject<ISessionCollection> {
public:
    CHostileSessions(CHostileHost& host, const HostileTree* tree) : CHostileObject(host), m_tree(*tree) {}

    STDMETHODIMP GetSession(LONG id, IUserSessionInfo** session) noexcept override {
        const auto found = std::find_if(m_tree.sessions.begin(), m_tree.sessions.end(),
                                        [&](const HostileSession& candidate) { return candidate.key == id; });
        const bool isKnown = found != m_tree.sessions.end();
        return Give(isKnown ? found->answer : m_tree.noSession, session,
                    [&] { return m_host.Make<CHostileSession>(&*found); });
    }

private:
    const HostileTree& m_tree;
};

template <typename Object>
Object* Own(CHostileHost& host, Object* object) {
    object->AddRef();
    host.KeepOwn(object);
    return object;
}

}  // namespace

CHostileHost::~CHostileHost() = default;

ISampleNode* CHostileHost::MakeNode(const HostileTree& tree) {
    return Own(*this, Make<CHostileNode>(&tree, std::size_t{0}));
}

ISessionCollection* CHostileHost::MakeSessions(const HostileTree& tree) {
    return Own(*this, Make<CHostileSessions>(&tree));
}

INameValueEnumerator* CHostileHost::MakeValues(const HostileValues& values) {
    return Own(*this, Make<CHostileValues>(&values));
}

IPropertyBox* CHostileHost::MakeBox(const HostileBox& box) {
    return Own(*this, Make<CHostileBox>(&box));
}

void CHostileHost::KeepOwn(IUnknown* object) {
    m_own.push_back(object);
}

void CHostileHost::ReleaseOwn() {
    for (IUnknown* const object : m_own) {
        object->Release();
    }
    m_own.clear();
}

void CHostileHost::AddViolation(const char* what) {
    m_violations.append(what).append("; ");
}

std::string CHostileHost::DescribeViolations() const {
    std::string violations = m_violations;
    for (const auto& object : m_objects) {
        if (object->CountReferences() != 0) {
            violations += std::to_string(object->CountReferences()) + " references left; ";
        }
    }
    return violations;
}
