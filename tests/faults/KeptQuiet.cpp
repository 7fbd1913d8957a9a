#include "KeptQuiet.h"

#include <algorithm>
#include <iterator>

namespace {

/// Calls of any object's, or of one that is named.
constexpr const char* kQuietCalls[] = {
    // The item's result tells: the data is not what its kind needs.
    "QueryInterface(IUserSessionInfo)",
    "QueryInterface(IPropertyBox)",
    "GetProperty(meta-data)",
    "GetProperty(metrics)",
    "Data metrics: QueryInterface(INameValueEnumerator)",
    "Map: get_enumerator",
    // And so it does for a host that does not give its sessions, or nothing at all.
    "CLSIDFromString",
    "CoCreateInstance",
    "QueryInterface(IClassFactory)",
    "CreateInstance(IHostServiceProvider)",
    "QueryInterface(IHostServiceProvider)",
    "GetHostObject(ISessionCollection)",
    "QueryInterface(ISessionCollection)",
    // What does not answer is left out: a session, an adapter, a metric, what was measured in a session.
    "GetSession(5)",
    "get_id",
    "get_sid",
    "get_user",
    "get_domain",
    "get_state",
    "QueryInterface(ISampleNode)",
    "Data metrics disk: QueryInterface(INameValueEnumerator)",
    "SafeArrayAccessData",
    // A walk ends where its enumerator does, for whichever reason.
    "Next",
    // What stands in the result's place is taken as it is: a name or a number that is not there, a text for a value
    // that
    // has none, a time that the system does not understand.
    "get_machineName",
    "get_FQDN",
    "get_totalMemory",
    "get_isDesktop",
    "GetProperty(Calderin)",
    "GetProperty(route)",
    "VariantChangeType",
    "VariantTimeToSystemTime",
    "SystemTimeToFileTime",
};

}  // namespace

bool IsKeptQuiet(const std::string& call) {
    const std::size_t object = call.find(": ");
    const std::string operation = object == std::string::npos ? call : call.substr(object + 2);
    return std::any_of(std::begin(kQuietCalls), std::end(kQuietCalls),
                       [&](const char* quiet) { return call == quiet || operation == quiet; });
}
