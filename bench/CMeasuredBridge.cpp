#include "CMeasuredBridge.h"

#include <stdexcept>

#include "BridgeCalls.h"
#include "CreatedMachine.h"
#include "HostText.h"

namespace {

constexpr char kKeptClass[] = "com/orvane/kelbrin/adapters/tolmcommon/communication/rmi/client/Kept";

/// Java's environment of this thread, which has started it through the library.
JNIEnv* StartJava() {
    DumpNothing();
    void* env = nullptr;
    if (FindCreatedMachine().GetEnv(&env, JNI_VERSION_1_6) != JNI_OK) {
        throw std::runtime_error("Java does not know the thread that started it");
    }
    return static_cast<JNIEnv*>(env);
}

/// Where two texts begin to differ, with a little around it.
std::string DescribeDifference(const std::string& floor, const std::string& bridge) {
    constexpr std::size_t kAround = 60;
    std::size_t at = 0;
    while (at < floor.size() && at < bridge.size() && floor[at] == bridge[at]) {
        ++at;
    }
    const std::size_t from = at < kAround ? 0 : at - kAround;
    return "at character " + std::to_string(at) + ":\n  floor:  ..." + floor.substr(from, 2 * kAround) +
           "\n  bridge: ..." + bridge.substr(from, 2 * kAround);
}

}  // namespace

CMeasuredBridge::CMeasuredBridge(CLeanHost& host, const CKitItems& items)
    : m_host(host),
      m_sessions(items.MakeSessions()),
      m_env(StartJava()),
      m_ids(FindJavaIds(m_env)),
      m_floor(CPlainJava(m_env), m_ids, host.System(), kAuthToken),
      m_walk(CNoJava(), m_ids, host.System(), kAuthToken) {}

void CMeasuredBridge::CheckSameObjects(const Workload& workload) {
    const Variants variants = MakeVariants(workload);
    WantKept(true);
    variants.floor();
    const std::string floor = TakeKept();
    WantKept(true);
    variants.bridge();
    const std::string bridge = TakeKept();
    WantKept(false);
    if (floor != bridge) {
        throw std::runtime_error("the two ways make different Java objects of \"" + workload.name + "\" " +
                                 DescribeDifference(floor, bridge));
    }
}

Variants CMeasuredBridge::MakeVariants(const Workload& workload) {
    m_host.SetLeading(workload.isHostSlow);
    m_host.UseSessions(workload.isLean ? nullptr : m_sessions.Get());
    return {[this, workload] { m_floor.Send(workload.type, kItemId, workload.data); },
            [workload] { DumpItem(workload.type, workload.data); },
            [this, workload] { m_walk.Send(workload.type, kItemId, workload.data); }};
}

void CMeasuredBridge::CheckNoErrors() const {
    if (!m_host.GetLastError().empty()) {
        throw std::runtime_error("the library has failed: " + ToUtf8(m_host.GetLastError()));
    }
}

std::string CMeasuredBridge::TakeKept() const {
    const jclass kept = m_env->FindClass(kKeptClass);
    const jmethodID tell = m_env->GetStaticMethodID(kept, "tell", "()Ljava/lang/String;");
    const auto text = static_cast<jstring>(m_env->CallStaticObjectMethod(kept, tell));
    const char* const bytes = m_env->GetStringUTFChars(text, nullptr);
    std::string copy(bytes);
    m_env->ReleaseStringUTFChars(text, bytes);
    m_env->DeleteLocalRef(text);
    m_env->DeleteLocalRef(kept);
    return copy;
}

void CMeasuredBridge::WantKept(bool isWanted) const {
    const jclass kept = m_env->FindClass(kKeptClass);
    m_env->CallStaticVoidMethod(kept, m_env->GetStaticMethodID(kept, "want", "(Z)V"), static_cast<jboolean>(isWanted));
    m_env->DeleteLocalRef(kept);
}
