#include "CFakeThreads.h"

#include <algorithm>

#include "FakeJniTable.h"

CFakeEnv* CFakeThreads::GetCurrent() const noexcept {
    auto* const env = static_cast<CFakeEnv*>(TlsGetValue(m_slot));
    return env && env->isAttached ? env : nullptr;
}

CFakeEnv& CFakeThreads::Attach(bool isCreator) {
    m_envs.push_back(std::make_unique<CFakeEnv>());
    CFakeEnv& env = *m_envs.back();
    env.functions = GetJniTable();
    env.isAttached = true;
    env.isCreator = isCreator;
    m_attachedEnvs.push_back(&env);
    if (isCreator) {
        m_isCreatorAttached = true;
    } else {
        ++m_attached;
    }
    TlsSetValue(m_slot, &env);
    return env;
}

void CFakeThreads::Detach(CFakeEnv& env, CFakeReferences& references, FakeReferenceEnd end) {
    references.ReleaseThread(env.locals, end);
    env.pending.reset();
    env.isAttached = false;
    m_attachedEnvs.erase(std::find(m_attachedEnvs.begin(), m_attachedEnvs.end(), &env));
    if (env.isCreator) {
        m_isCreatorAttached = false;
    } else {
        --m_attached;
    }
}

void CFakeThreads::DetachAll(CFakeReferences& references, FakeReferenceEnd end) {
    while (!m_attachedEnvs.empty()) {
        Detach(*m_attachedEnvs.back(), references, end);
    }
}
