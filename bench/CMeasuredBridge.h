#pragma once

#include <jni.h>

#include <memory>
#include <string>

#include "CItemReader.h"
#include "CKitItems.h"
#include "CLeanHost.h"
#include "PlainJava.h"
#include "SliceRunner.h"
#include "Workloads.h"

/// The library, as a host calls it, with Java started in this process; and, beside it, the hand-written way to the same
/// Java. On the thread that made it. Throws std::runtime_error where something does not run as it is measured.
class CMeasuredBridge {
public:
    /// `items` are all made by now.
    CMeasuredBridge(CLeanHost& host, const CKitItems& items);

    /// Sends the item both ways and compares what the client heard.
    void CheckSameObjects(const Workload& workload);

    /// The ways to send it; sets the host up for them, until another workload is asked for.
    [[nodiscard]] Variants MakeVariants(const Workload& workload);

    /// The library has logged no failure so far.
    void CheckNoErrors() const;

private:
    /// What the client heard last, as text.
    [[nodiscard]] std::string TakeKept() const;
    void WantKept(bool isWanted) const;

    CLeanHost& m_host;
    const CHostReference<ISessionCollection> m_sessions;  // of the items
    JNIEnv* const m_env;
    const JavaIds m_ids;
    const CItemReader<CPlainJava> m_floor;
    const CItemReader<CNoJava> m_walk;
};
