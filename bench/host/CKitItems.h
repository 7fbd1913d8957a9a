#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "HostObjects.h"
#include "MeasuredContent.h"

/// Measured items of the objects that the tests' host consists of: what they say is copied when they are asked, as
/// hosts do whose data goes on changing, and every enumerator and node is a new object. Their record keeps no calls.
/// The items live as long as this.
class CKitItems {
public:
    CKitItems();

    CKitItems(const CKitItems&) = delete;
    CKitItems& operator=(const CKitItems&) = delete;

    /// A sample; its sessions are added to the machine's.
    [[nodiscard]] IUnknown& MakeSample(const SampleSize& size);
    /// One of the machine's sessions, with the figures that a logoff has; other events do not look at these.
    [[nodiscard]] IUnknown& MakeSession(const SampleSize& size);
    /// Extended metrics, each with so many instances.
    [[nodiscard]] IUnknown& MakeExtendedData(int metrics, int instances);

    /// All sessions of the samples that have been made.
    [[nodiscard]] CHostReference<ISessionCollection> MakeSessions() const;

private:
    [[nodiscard]] IUnknown& Keep(DataObjectData data);

    const CRecordPointer m_record = std::make_shared<CCallRecord>();
    std::vector<SessionData> m_sessions;
    std::vector<CHostReference<IUnknown>> m_items;
};
