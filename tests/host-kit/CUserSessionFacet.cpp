#include "CUserSessionFacet.h"

#include <algorithm>

#include "HostObjects.h"

HRESULT CUserSessionFacet::get_propertyBox(IPropertyBox** properties) noexcept {
    return GiveObject(
        "get_propertyBox", kNoInputs, [&] { return MakePropertyBox(m_object.GetRecord(), m_data.properties); },
        properties);
}

CHostReference<IUserSessionInfo> MakeUserSession(CRecordPointer record, SessionData data) {
    const std::string name = "Session " + std::to_string(data.id);
    return CHostObject::MakeWith<IUserSessionInfo, CUserSessionFacet>(std::move(record), name, std::move(data));
}

namespace {

class CSessionCollectionFacet final : public CHostFacet<ISessionCollection, std::vector<SessionData>> {
public:
    CSessionCollectionFacet(CHostObject& object, std::vector<SessionData> sessions)
        : CHostFacet(object, ISessionCollection::kId, std::move(sessions)) {}

    STDMETHODIMP GetSession(LONG id, IUserSessionInfo** session) noexcept override {
        return Perform(
            "GetSession", [&] { return std::to_string(id); },
            [&] {
                const auto found = std::find_if(m_data.begin(), m_data.end(),
                                                [&](const SessionData& candidate) { return candidate.id == id; });
                if (found == m_data.end()) {
                    return E_INVALIDARG;
                }
                *session = MakeUserSession(m_object.GetRecord(), *found).Detach();
                return S_OK;
            },
            session);
    }
};

}  // namespace

CHostReference<ISessionCollection> MakeSessionCollection(CRecordPointer record, std::vector<SessionData> sessions) {
    return CHostObject::MakeWith<ISessionCollection, CSessionCollectionFacet>(std::move(record), "Sessions",
                                                                              std::move(sessions));
}
