#include "CBstr.h"
#include "CDataDispatch.h"
#include "CVariant.h"
#include "HostObject.h"
#include "HostProperty.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr wchar_t kMetadata[] = L"metadata";
constexpr wchar_t kRoute[] = L"route";

constexpr wchar_t kNoMetadata[] = L"Failed to handle metadata property for traceroute msg";
constexpr wchar_t kNoRoute[] = L"Failed to handle route property for traceroute msg";
constexpr wchar_t kNoMetadataMap[] = L"Failed to GetMetadata for traceroute msg";
constexpr wchar_t kNoTraceResult[] = L"No traceResult.";

}  // namespace

HRESULT CDataDispatch::SendTraceRoute() {
    ComPtr<IPropertyBox> box;
    CVariant metadata;
    const HRESULT gotMetadata = ReadMetadata(box, metadata);
    if (FAILED(gotMetadata)) {
        m_log.ErrorWithResult(gotMetadata, kNoMetadata);
        return gotMetadata;
    }
    CVariant route;
    const HRESULT gotRoute = ReadRoute(*box.Get(), route);
    if (FAILED(gotRoute)) {
        m_log.ErrorWithResult(gotRoute, kNoRoute);
        return gotRoute;
    }

    const std::shared_ptr<CJavaObject> map =
        m_convertor.GetHashMap(m_context.vm, QueryHostObject<IPropertyBox>(metadata.punkVal).Get());
    if (!map) {
        m_log.Error(kNoMetadataMap);
        return E_FAIL;
    }
    const std::shared_ptr<CJavaString> routeString = MakeRouteString(route);
    if (!routeString) {
        m_log.Error(kNoTraceResult);
        return S_OK;
    }
    return OrComponents(
        TellUnanswered(Binding::DesktopMessageClient::kOnActionPerformed, m_connection, map, routeString));
}

HRESULT CDataDispatch::ReadMetadata(ComPtr<IPropertyBox>& box, CVariant& metadata) const {
    const HRESULT queried = QueryPropertyBox(m_item.data, box);
    return FAILED(queried) ? queried : ReadObject(*box.Get(), kMetadata, metadata);
}

/// Kept, one-sided as it is: a route that is there is taken as it stands, whatever its type; in the place of one that
/// is not to be had, the text of what stands there is taken, which is an empty one as a rule.
HRESULT CDataDispatch::ReadRoute(IPropertyBox& box, CVariant& route) const {
    const HRESULT read = box.GetProperty(CBstr::Make(kRoute).Get(), route.Receive());
    return FAILED(read) ? route.ChangeTo(VT_BSTR) : S_OK;
}

/// Empty where the route is no text.
std::shared_ptr<CJavaString> CDataDispatch::MakeRouteString(const CVariant& route) const {
    if (route.vt != VT_BSTR) {
        return {};
    }
    return m_convertor.NewJavaString(m_context.vm, ViewBstr(route.bstrVal), false);
}
