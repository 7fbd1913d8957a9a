#include "HostileSampleMaker.h"

#include <cmath>
#include <limits>

#include "HostileText.h"

namespace {

constexpr HRESULT kFailures[] = {
    E_FAIL,
    E_ACCESSDENIED,
    E_NOTIMPL,
    E_POINTER,
    E_OUTOFMEMORY,
    E_UNEXPECTED,
    E_NOINTERFACE,
    static_cast<HRESULT>(0x80000000),
    static_cast<HRESULT>(0x8ABCDEF0),
    static_cast<HRESULT>(0x800706BA),
    static_cast<HRESULT>(0xFFFFFFFF),
};

constexpr HRESULT kOtherSuccesses[] = {S_FALSE, static_cast<HRESULT>(0x00040000), static_cast<HRESULT>(0x7FFFFFFF), 2};

HRESULT MakeFailure(CRandom& random) {
    return random.Pick(kFailures);
}

HRESULT MakeSuccess(CRandom& random) {
    return random.OneIn(8) ? random.Pick(kOtherSuccesses) : S_OK;
}

/// What ends a walk: anything but S_OK.
HRESULT MakeEnd(CRandom& random) {
    if (random.OneIn(2)) {
        return S_FALSE;
    }
    return random.OneIn(2) ? random.Pick(kOtherSuccesses) : MakeFailure(random);
}

/// Fails once in `times`.
ObjectAnswer MakeObjectAnswer(CRandom& random, std::size_t times) {
    if (random.OneIn(times)) {
        constexpr Given kLeftBehind[] = {Given::eNothing, Given::eWild, Given::eObject};
        return {MakeFailure(random), random.Pick(kLeftBehind)};
    }
    return {MakeSuccess(random), random.OneIn(times) ? Given::eNothing : Given::eObject};
}

std::optional<std::wstring> MakeName(CRandom& random) {
    if (random.OneIn(20)) {
        return std::nullopt;
    }
    return MakeHostileName(random);
}

TextAnswer MakeTextAnswer(CRandom& random) {
    return {random.OneIn(25) ? MakeFailure(random) : MakeSuccess(random), MakeName(random)};
}

NumberAnswer MakeNumberAnswer(CRandom& random) {
    constexpr LONG kNumbers[] = {0, 1, 1, 1, 2, -1, 7, 0x7FFF, 0xFFFF, 0x10001, 0x7FFFFFFF, -0x7FFFFFFF - 1};
    return {random.OneIn(40) ? MakeFailure(random) : MakeSuccess(random), random.Pick(kNumbers)};
}

TimeAnswer MakeTimeAnswer(CRandom& random) {
    constexpr DATE kTimes[] = {0.0,          -0.0,      25569.0,       25568.999, 45351.5,
                               45351.123456, 2958465.0, 2958465.99999, 2958466.0, -657434.0,
                               -657435.0,    -109205.0, -109206.0,     1e300,     -1e300};
    TimeAnswer answer{random.OneIn(20) ? MakeFailure(random) : MakeSuccess(random)};
    switch (random.Below(8)) {
        case 0:
            break;
        case 1:
            answer.time = random.Pick(kTimes);
            break;
        case 2:
            answer.time = random.OneIn(2) ? std::nan("") : -std::numeric_limits<DATE>::infinity();
            break;
        case 3:
            answer.time = static_cast<DATE>(random.Below(3'620'000)) - 660'000.25;
            break;
        default:
            answer.time = 40'000 + static_cast<DATE>(random.Below(864'000'000)) / 86400;
            break;
    }
    return answer;
}

/// The few that most walks have.
std::size_t MakeCount(CRandom& random, std::size_t most) {
    return random.OneIn(300) ? random.Below(120) : random.Below(most + 1);
}

HostilePair MakePair(CRandom& random, References references) {
    HostilePair pair;
    pair.result = random.OneIn(15) ? MakeEnd(random) : S_OK;
    pair.name = MakeName(random);
    if (!random.OneIn(15)) {
        pair.value = std::make_unique<CHostileVariant>(random, references);
    }
    return pair;
}

HostilePair MakeExtendedPair(CRandom& random) {
    // The last three hold an object that nobody looks for there, or none at all.
    constexpr VARTYPE kTypes[] = {VT_UNKNOWN, VT_UNKNOWN, VT_DISPATCH,           VT_EMPTY,
                                  VT_NULL,    VT_I8,      VT_BYREF | VT_UNKNOWN, VT_BYREF | VT_VARIANT};
    if (random.OneIn(6)) {
        HostilePair pair = MakePair(random, References::eNeverFollowed);
        const VARTYPE type = pair.value ? pair.value->Get().vt : VARTYPE{VT_I4};
        if (type == VT_EMPTY || type == VT_NULL) {
            pair.value.reset();  // what stands there would be taken for an object
        }
        return pair;
    }
    HostilePair pair;
    pair.result = random.OneIn(15) ? MakeEnd(random) : S_OK;
    pair.name = MakeName(random);
    pair.instances = std::make_unique<HostileValues>(MakeHostileValues(random, References::eNeverFollowed));
    pair.instancesType = random.Pick(kTypes);
    pair.instancesQuery = MakeObjectAnswer(random, 8);
    return pair;
}

/// The key of a session, as a rule, or something else.
void MakeKey(CRandom& random, HostileChild& child) {
    const auto number = static_cast<LONG>(random.Below(4));
    switch (random.Below(12)) {
        case 0:
            child.key = std::nullopt;
            return;
        case 1:
            child.key = MakeHostileName(random);
            return;
        case 2:
            child.key = L"no number";
            child.keyNumber = 0;
            return;
        case 3:
            child.key = std::to_wstring(number) + L"%s and more";
            break;
        case 4:
            child.key = L"000" + std::to_wstring(number);
            break;
        case 5:
            child.key = std::to_wstring(number) + std::wstring(L"\0\x31", 2);
            break;
        case 6:
            child.key = L"-" + std::to_wstring(number);
            child.keyNumber = -number;
            return;
        default:
            child.key = std::to_wstring(number);
            break;
    }
    child.keyNumber = number;
}

HostileNode MakeNode(CRandom& random, std::size_t nodes) {
    HostileNode node;
    node.time = MakeTimeAnswer(random);
    node.metricsAnswer = MakeObjectAnswer(random, 20);
    node.metrics = MakeHostileValues(random, References::eNeverFollowed);
    node.instancesAnswer = MakeObjectAnswer(random, 20);
    node.childrenEnd = MakeEnd(random);
    node.children.resize(random.Below(4));
    for (HostileChild& child : node.children) {
        child.answer = MakeObjectAnswer(random, 25);
        if (SUCCEEDED(child.answer.result) && child.answer.result != S_OK && random.OneIn(2)) {
            child.answer.result = S_OK;
        }
        child.node = random.Below(nodes);
        MakeKey(random, child);
    }
    return node;
}

HostileSession MakeSession(CRandom& random) {
    HostileSession session;
    session.key = static_cast<LONG>(random.Below(5)) - 1;
    session.answer = MakeObjectAnswer(random, 15);
    session.id = MakeNumberAnswer(random);
    session.sid = MakeTextAnswer(random);
    session.user = MakeTextAnswer(random);
    session.domain = MakeTextAnswer(random);
    session.state = MakeNumberAnswer(random);
    session.boxAnswer = MakeObjectAnswer(random, 10);
    session.box = MakeHostileBox(random);
    session.label = MakeTextAnswer(random);
    return session;
}

}  // namespace

HostileValues MakeHostileValues(CRandom& random, References references) {
    HostileValues values;
    for (std::size_t left = MakeCount(random, 3); left > 0; --left) {
        values.pairs.push_back(MakePair(random, references));
    }
    values.end = MakeEnd(random);
    return values;
}

HostileBox MakeHostileBox(CRandom& random) {
    return {MakeObjectAnswer(random, 10), MakeHostileValues(random, References::eFollowed)};
}

HostileTree MakeHostileTree(CRandom& random) {
    HostileTree tree;
    tree.nodes.resize(random.Between(1, 4));
    for (HostileNode& node : tree.nodes) {
        node = MakeNode(random, tree.nodes.size());
    }
    tree.sessions.resize(random.Between(2, 5));
    for (HostileSession& session : tree.sessions) {
        session = MakeSession(random);
    }
    constexpr Given kLeftBehind[] = {Given::eNothing, Given::eWild};
    tree.noSession = {MakeFailure(random), random.Pick(kLeftBehind)};
    return tree;
}

HostileTree MakeHostileExtendedTree(CRandom& random) {
    HostileTree tree;
    tree.nodes.push_back(MakeNode(random, 1));
    for (std::size_t left = MakeCount(random, 3); left > 0; --left) {
        tree.extendedMetrics.pairs.push_back(MakeExtendedPair(random));
    }
    tree.extendedMetrics.end = MakeEnd(random);
    return tree;
}
