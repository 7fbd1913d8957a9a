#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

#include "CRandom.h"
#include "HostileVariantDispatch.h"

/// Whether the reader under test follows a VT_BYREF value. Where nobody may, the address is any number.
enum class References { eFollowed, eNeverFollowed };

/// Whether texts hold halves of surrogate pairs. Wine's XML parser tells of each on the program's error output, several
/// lines a time.
enum class Surrogates { eAny, ePaired };

/// A VARIANT of any type and any content that its type does not make deadly, with all that it refers to. What it refers
/// to is its own: it neither moves nor is copied.
class CHostileVariant {
public:
    CHostileVariant(CRandom& random, References references, Surrogates surrogates = Surrogates::eAny);
    ~CHostileVariant();

    CHostileVariant(const CHostileVariant&) = delete;
    CHostileVariant& operator=(const CHostileVariant&) = delete;

    [[nodiscard]] const VARIANT& Get() const noexcept { return m_value; }
    /// A copy as a host hands it out, into a zeroed VARIANT: what the value owns is copied, what it refers to is not.
    void GiveCopy(VARIANT& given) const;
    /// For a failing case's message.
    [[nodiscard]] std::string Describe() const;

private:
    void MakeNumber(CRandom& random);
    void MakeText(CRandom& random);
    void MakePlain(CRandom& random, VARIANT& value) const;
    [[nodiscard]] BSTR MakeBstr(CRandom& random) const;
    void MakeAbsurd(CRandom& random, References references);
    void MakeReference(CRandom& random, References references);
    void MakeReferenceToVariant(CRandom& random);
    void MakeArray(CRandom& random);
    void MakeObject(CRandom& random);

    const Surrogates m_surrogates;

    // References point at these; the value dies first.
    CHostileDispatch m_dispatch;
    VARIANT m_deepest{};
    VARIANT m_referred{};
    VARIANT m_value{};
};

/// A name or value as hosts would not write it: percent signs, quotes, zeros in the middle, halves of pairs.
[[nodiscard]] std::wstring MakeHostileName(CRandom& random);

/// The text with something else in place of halves of pairs.
[[nodiscard]] std::wstring PairSurrogates(std::wstring text);
