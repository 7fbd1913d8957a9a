#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "HostileVariant.h"

// A sample as a host might describe it that contradicts itself: what each of its operations returns, and what it leaves
// at the addresses it is given, are two different things.

/// What stands at an address for an object after the call.
enum class Given {
    eObject,
    eNothing,
    eWild,  ///< an address of nothing, left behind by a call that fails
};

struct ObjectAnswer {
    HRESULT result = S_OK;
    Given given = Given::eObject;

    /// Whether the caller has an object now.
    [[nodiscard]] bool HasObject() const noexcept { return SUCCEEDED(result) && given == Given::eObject; }
};

struct TextAnswer {
    HRESULT result = S_OK;
    std::optional<std::wstring> text{};  ///< a failing call may leave one behind, too; nothing is a null BSTR
};

struct NumberAnswer {
    HRESULT result = S_OK;
    LONG number = 0;
};

struct TimeAnswer {
    HRESULT result = S_OK;
    std::optional<DATE> time{};  ///< nothing: the address is left as it is
};

struct HostileValues;

/// One answer of an enumerator of names and values. One that is not S_OK ends the walk, whatever it gives.
struct HostilePair {
    HRESULT result = S_OK;
    std::optional<std::wstring> name{};
    std::unique_ptr<CHostileVariant> value{};  ///< null: the VARIANT is left as it is, unless there are `instances`

    // The value of an extended metric: an object that is asked for an enumerator of `instances`.
    std::unique_ptr<HostileValues> instances{};
    VARTYPE instancesType = VT_UNKNOWN;
    ObjectAnswer instancesQuery{};
};

/// The answers of an enumerator, one after the other; after the last one `end`.
struct HostileValues {
    std::vector<HostilePair> pairs{};
    HRESULT end = S_FALSE;
};

/// One answer of an enumerator of nodes.
struct HostileChild {
    ObjectAnswer answer{};
    std::optional<std::wstring> key{};
    std::optional<LONG> keyNumber{};  ///< where the key was made of a number
    std::size_t node = 0;             ///< any of the tree's: its parent as well, or itself
};

struct HostileNode {
    TimeAnswer time{};
    ObjectAnswer metricsAnswer{};
    HostileValues metrics{};
    ObjectAnswer instancesAnswer{};
    std::vector<HostileChild> children{};
    HRESULT childrenEnd = S_FALSE;
};

struct HostileBox {
    ObjectAnswer enumeratorAnswer{};
    HostileValues properties{};
};

struct HostileSession {
    LONG key = 0;  ///< what the collection knows it by
    ObjectAnswer answer{};
    NumberAnswer id{};
    TextAnswer sid{};
    TextAnswer user{};
    TextAnswer domain{};
    NumberAnswer state{};
    ObjectAnswer boxAnswer{};
    HostileBox box{};
    TextAnswer label{};
};

struct HostileTree {
    std::vector<HostileNode> nodes{};  ///< the first one is the sample itself
    std::vector<HostileSession> sessions{};
    ObjectAnswer noSession{E_INVALIDARG, Given::eNothing};  ///< for keys that no session has
    HostileValues extendedMetrics{};
};

[[nodiscard]] std::string Describe(const HostileValues& values);
[[nodiscard]] std::string Describe(const HostileBox& box);
/// For a failing case's message.
[[nodiscard]] std::string Describe(const HostileTree& tree);
