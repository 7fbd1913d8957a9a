#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CRandom.h"

struct HostileElement;

/// Something between an element's tags.
struct HostilePart {
    enum class Kind { eText, eCharacterData, eComment, eInstruction, eElement };

    Kind kind = Kind::eText;
    std::wstring text{};  ///< as it is meant, nothing escaped
    std::unique_ptr<HostileElement> element{};
};

struct HostileElement {
    std::wstring name{};                             ///< with a prefix, or without
    std::optional<std::wstring> defaultNamespace{};  ///< where it declares one, be it that of none
    std::wstring attributes{};                       ///< as they are written
    std::vector<HostilePart> parts{};
};

/// A document as its author meant it, and as it is written: every outcome that the loader can come to is told from the
/// former.
struct HostileDocument {
    std::wstring introduction{};
    HostileElement root{};
    std::wstring end{};

    // Written by WriteDocument.
    std::wstring text{};
    std::size_t rootBegin = 0;
    std::size_t rootEnd = 0;
    std::vector<std::size_t> contentPlaces{};  ///< where a part begins: a reference or a tag may be put in

    /// The text of the first element that names the path; nothing where there is none.
    [[nodiscard]] std::optional<std::wstring> FindPath() const;
};

/// A well-formed document without a type. The element that names a path is in most of them, once or more often,
/// wherever elements can be; other elements have nearly its name.
[[nodiscard]] HostileDocument MakeHostileDocument(CRandom& random);
/// The same; if it names a path, it is this one.
[[nodiscard]] HostileDocument MakeHostileDocumentNaming(CRandom& random, const std::wstring& path);

/// Writes down what the document means; MakeHostileDocument has done that.
void WriteDocument(CRandom& random, HostileDocument& document);

/// Its text with one thing wrong that makes it no document.
[[nodiscard]] std::wstring BreakDocument(CRandom& random, const HostileDocument& document);

/// Its text with a document type: it declares entities, points at files, or does nothing.
[[nodiscard]] std::wstring AddDocumentType(CRandom& random, const HostileDocument& document);
