#include "HostileVariant.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "HostileText.h"

namespace {

using namespace std::string_view_literals;

constexpr std::wstring_view kNameCharacters = L"%sndx*1.\\\"'|\0\r\n"sv;
constexpr std::size_t kLongestName = 5000;

constexpr std::uint64_t kNumbers[] = {
    0,
    1,
    2,
    0xFFFFFFFFFFFFFFFF,  // -1, and "not a number" of any width
    0x7FFF,
    0x8000,
    0xFFFF,
    0x7FFFFFFF,
    0x80000000,
    0xFFFFFFFF,
    0x7FFFFFFFFFFFFFFF,
    0x8000000000000000,  // the least number, and minus zero
    0x7FF0000000000000,  // infinity
    0xFFF0000000000000,
    0x7FF8000000000000,  // quiet
    0x7FF0000000000001,  // and signalling "not a number"
    0x000000007F800000,  // the same of single precision
    0x00000000FF800000,
    0x000000007FC00000,
    0x000000007F800001,
    0x000000003DCCCCCD,  // 0.1
    0x3FB999999999999A,
    1,
};

constexpr DATE kDates[] = {0.0,       -0.0,      0.5,          -0.5,           25569.0,   25569.999999,
                           -657434.0, -657435.0, -657434.9999, 2958465.0,      2958466.0, 2958465.99999,
                           45351.5,   -109205.0, -109206.0,    2958465.999999, 1e300,     -1e300};

constexpr VARTYPE kNumberTypes[] = {VT_I2, VT_I4, VT_R4, VT_R8, VT_UI2, VT_UI4, VT_I8, VT_UI8};

// Types that own nothing and that every reader has to expect, though metrics take none of them.
constexpr VARTYPE kPlainTypes[] = {VT_EMPTY, VT_NULL, VT_CY,  VT_DATE, VT_ERROR, VT_BOOL,    VT_DECIMAL,
                                   VT_I1,    VT_UI1,  VT_INT, VT_UINT, VT_VOID,  VT_HRESULT, VT_RECORD};

constexpr VARTYPE kReferredTypes[] = {
    VT_I1,   VT_I2,      VT_I4,       VT_I8,      VT_UI1,           VT_UI2,   VT_UI4,  VT_UI8,
    VT_R4,   VT_R8,      VT_CY,       VT_DATE,    VT_BOOL,          VT_INT,   VT_UINT, VT_ERROR,
    VT_BSTR, VT_UNKNOWN, VT_DISPATCH, VT_DECIMAL, VT_ARRAY | VT_I4, VT_EMPTY, VT_NULL};

constexpr VARTYPE kElementTypes[] = {VT_I4, VT_BSTR, VT_VARIANT, VT_UI1, VT_R8};

std::uint64_t MakeBits(CRandom& random) {
    return random.OneIn(3) ? random.Next() : random.Pick(kNumbers);
}

DATE MakeDate(CRandom& random) {
    switch (random.Below(4)) {
        case 0:
            return random.Pick(kDates);
        case 1: {
            DATE date = 0;
            const std::uint64_t bits = MakeBits(random);
            std::memcpy(&date, &bits, sizeof(date));
            return date;
        }
        default:
            return static_cast<DATE>(random.Below(3'700'000)) - 700'000 +
                   static_cast<DATE>(random.Below(86400)) / 86400;
    }
}

/// Whether the value owns what it points at, as VariantClear sees it: an array of a type that does not exist is none.
bool IsOwner(const VARIANT& value) {
    switch (value.vt) {
        case VT_BSTR:
        case VT_UNKNOWN:
        case VT_DISPATCH:
            return true;
        default:
            return std::any_of(std::begin(kElementTypes), std::end(kElementTypes),
                               [&](VARTYPE element) { return value.vt == (VT_ARRAY | element); });
    }
}

void Clear(VARIANT& value) {
    if (IsOwner(value)) {
        VariantClear(&value);
    }
}

/// A type that does not exist, or one that only exists outside of a VARIANT.
VARTYPE MakeAbsurdType(CRandom& random) {
    for (;;) {
        const auto type = static_cast<VARTYPE>(random.OneIn(2) ? random.Below(0x10000) : random.Below(0x50));
        const unsigned base = type & VT_TYPEMASK;
        const bool isUnknown = base > VT_UINT && base != VT_RECORD && base != VT_CLSID;
        if ((type & (VT_VECTOR | VT_RESERVED)) != 0 || (isUnknown && (type & VT_ARRAY) == 0) || base == 15) {
            return type;
        }
    }
}

}  // namespace

std::wstring MakeHostileName(CRandom& random) {
    if (random.OneIn(2)) {
        constexpr std::wstring_view kNames[] = {L"cpu", L"load", L"mail", L"a", L"", L"%s", L"7"};
        return std::wstring(random.Pick(kNames));
    }
    return HostileText(random, kNameCharacters, kLongestName);
}

std::wstring PairSurrogates(std::wstring text) {
    const auto isHigh = [](wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; };
    const auto isLow = [](wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; };
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isHigh(text[at]) && at + 1 < text.size() && isLow(text[at + 1])) {
            ++at;
        } else if (isHigh(text[at]) || isLow(text[at])) {
            text[at] = L'\xE000';
        }
    }
    return text;
}

CHostileVariant::CHostileVariant(CRandom& random, References references, Surrogates surrogates)
    : m_surrogates(surrogates) {
    switch (random.Below(12)) {
        case 0:
        case 1:
        case 2:
            MakeNumber(random);
            break;
        case 3:
        case 4:
            MakeText(random);
            break;
        case 5:
        case 6:
            MakePlain(random, m_value);
            break;
        case 7:
            MakeAbsurd(random, references);
            break;
        case 8:
        case 9:
            MakeReference(random, references);
            break;
        case 10:
            MakeArray(random);
            break;
        default:
            MakeObject(random);
            break;
    }
}

CHostileVariant::~CHostileVariant() {
    Clear(m_value);
    Clear(m_referred);
    Clear(m_deepest);
}

void CHostileVariant::MakeNumber(CRandom& random) {
    m_value.vt = random.Pick(kNumberTypes);
    m_value.ullVal = MakeBits(random);
}

void CHostileVariant::MakeText(CRandom& random) {
    m_value.vt = VT_BSTR;
    m_value.bstrVal = MakeBstr(random);
}

/// Of an odd number of bytes at times, which no text has.
BSTR CHostileVariant::MakeBstr(CRandom& random) const {
    if (random.OneIn(8)) {
        return nullptr;
    }
    const std::wstring name = MakeHostileName(random);
    const std::wstring text = m_surrogates == Surrogates::ePaired ? PairSurrogates(name) : name;
    const std::size_t bytes = text.size() * sizeof(wchar_t);
    const bool isOdd = bytes != 0 && random.OneIn(6);
    return SysAllocStringByteLen(reinterpret_cast<const char*>(text.data()),
                                 static_cast<UINT>(bytes - (isOdd ? 1 : 0)));
}

void CHostileVariant::MakePlain(CRandom& random, VARIANT& value) const {
    const VARTYPE type = random.Pick(kPlainTypes);
    if (type == VT_DECIMAL) {
        // It lies over the type. Any sign, and scales that no number has.
        value.decVal.scale = static_cast<BYTE>(random.OneIn(2) ? random.Below(29) : random.Below(256));
        value.decVal.sign = random.OneIn(2) ? BYTE{0} : static_cast<BYTE>(random.Below(256));
        value.decVal.Hi32 = static_cast<ULONG>(MakeBits(random));
        value.decVal.Lo64 = MakeBits(random);
    } else if (type == VT_DATE) {
        value.date = MakeDate(random);
    } else if (type != VT_RECORD) {
        value.ullVal = MakeBits(random);
    }
    value.vt = type;
}

void CHostileVariant::MakeAbsurd(CRandom& random, References references) {
    m_value.vt = MakeAbsurdType(random);
    m_value.ullVal = MakeBits(random);
    if ((m_value.vt & VT_BYREF) != 0 && references == References::eFollowed) {
        m_value.byref = random.OneIn(2) ? &m_referred : nullptr;
    }
}

void CHostileVariant::MakeReference(CRandom& random, References references) {
    if (references == References::eNeverFollowed) {
        m_value.vt = static_cast<VARTYPE>(random.Pick(kReferredTypes) | VT_BYREF);
        m_value.ullVal = random.Next();
        return;
    }
    if (random.OneIn(3)) {
        MakeReferenceToVariant(random);
        return;
    }
    const VARTYPE type = random.Pick(kReferredTypes);
    m_value.vt = static_cast<VARTYPE>(type | VT_BYREF);
    if (random.OneIn(3)) {
        return;  // to nothing
    }
    if (type == VT_DECIMAL) {
        m_referred.decVal.Lo64 = MakeBits(random);
        m_referred.decVal.scale = static_cast<BYTE>(random.Below(256));
        m_value.pdecVal = &m_referred.decVal;
        return;
    }
    if (type == VT_BSTR) {
        m_referred.bstrVal = MakeBstr(random);
        m_referred.vt = VT_BSTR;
    } else if (type == VT_DATE) {
        m_referred.date = MakeDate(random);
    } else if ((type == VT_UNKNOWN || type == VT_DISPATCH) && random.OneIn(2)) {
        m_referred.pdispVal = &m_dispatch;
        m_dispatch.AddRef();
        m_referred.vt = VT_DISPATCH;
    } else if (type != VT_UNKNOWN && type != VT_DISPATCH && (type & VT_ARRAY) == 0) {
        m_referred.ullVal = MakeBits(random);
    }
    m_value.byref = &m_referred.ullVal;
}

/// To a value, to a reference to a value, to a reference to nothing, or to itself.
void CHostileVariant::MakeReferenceToVariant(CRandom& random) {
    m_value.vt = VT_BYREF | VT_VARIANT;
    m_value.pvarVal = &m_referred;
    switch (random.Below(6)) {
        case 0:
            m_value.pvarVal = nullptr;
            break;
        case 1:
            m_value.pvarVal = &m_value;
            break;
        case 2:
            m_referred.vt = static_cast<VARTYPE>(random.Pick(kReferredTypes) | VT_BYREF);
            break;
        case 3:
            MakePlain(random, m_deepest);
            m_referred.vt = VT_BYREF | VT_VARIANT;
            m_referred.pvarVal = &m_deepest;
            break;
        case 4:
            m_referred.vt = VT_BSTR;
            m_referred.bstrVal = MakeBstr(random);
            break;
        default:
            MakePlain(random, m_referred);
            break;
    }
}

void CHostileVariant::MakeArray(CRandom& random) {
    const VARTYPE element = random.Pick(kElementTypes);
    m_value.vt = static_cast<VARTYPE>(VT_ARRAY | element);
    if (random.OneIn(4)) {
        return;  // of nothing
    }
    std::array<SAFEARRAYBOUND, 2> bounds{};
    for (SAFEARRAYBOUND& bound : bounds) {
        bound.cElements = static_cast<ULONG>(random.Below(4));
        bound.lLbound = static_cast<LONG>(random.Below(7)) - 3;
    }
    m_value.parray = SafeArrayCreate(element, static_cast<UINT>(random.Between(1, bounds.size())), bounds.data());
}

void CHostileVariant::MakeObject(CRandom& random) {
    constexpr HRESULT kResults[] = {S_OK, S_OK, S_FALSE, E_FAIL, DISP_E_MEMBERNOTFOUND};
    m_value.vt = random.OneIn(3) ? VT_UNKNOWN : VT_DISPATCH;
    m_dispatch.result = random.Pick(kResults);
    m_dispatch.value = static_cast<LONG>(random.Below(100));
    if (!random.OneIn(3)) {
        m_value.pdispVal = &m_dispatch;
        m_dispatch.AddRef();
    }
}

void CHostileVariant::GiveCopy(VARIANT& given) const {
    given = m_value;
    if (!IsOwner(m_value)) {
        return;
    }
    if ((m_value.vt & VT_ARRAY) != 0) {
        given.parray = nullptr;
        EXPECT_EQ(SafeArrayCopy(m_value.parray, &given.parray), S_OK);
    } else if (m_value.vt == VT_BSTR) {
        given.bstrVal = m_value.bstrVal ? SysAllocStringByteLen(reinterpret_cast<const char*>(m_value.bstrVal),
                                                                SysStringByteLen(m_value.bstrVal))
                                        : nullptr;
    } else if (m_value.punkVal) {
        m_value.punkVal->AddRef();
    }
}

std::string CHostileVariant::Describe() const {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "type 0x%04x bits 0x%016llx", static_cast<unsigned>(m_value.vt),
                  static_cast<unsigned long long>(m_value.ullVal));
    std::string description(text.data());
    if (m_value.vt == VT_BSTR && m_value.bstrVal) {
        description += " text " + testing::PrintToString(std::wstring(m_value.bstrVal, SysStringLen(m_value.bstrVal)));
    }
    return description;
}
