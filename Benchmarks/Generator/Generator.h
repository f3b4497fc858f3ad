#pragma once

#include "Benchmarks/Generator/JSONEmitter.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quelm::bench {

/// What a generated document holds.
enum class DocumentKind : std::uint8_t { records, strings, escapes, nonlatin, deep, numbers, mixed };

inline constexpr std::array allDocumentKinds{DocumentKind::records,  DocumentKind::strings, DocumentKind::escapes,
                                             DocumentKind::nonlatin, DocumentKind::deep,    DocumentKind::numbers,
                                             DocumentKind::mixed};

/// The name of a kind on the command line and in results.
std::string_view name(DocumentKind kind);
std::optional<DocumentKind> documentKindFromName(std::string_view text);

struct DocumentRequest {
    DocumentKind kind = DocumentKind::records;
    /// Bytes to reach. The text ends after the first item beyond it: within a few percent from 100 KB on.
    std::uint64_t size = 0;
    Layout layout = Layout::compact;
    std::uint64_t seed = 1;
};

/// Changes whenever the same request would give other bytes, so that files kept from before are not taken for
/// new ones.
inline constexpr int generatorVersion = 1;

/// Writes a JSON document that depends on nothing but the request: the same bytes on every machine. No member
/// of an object has the key of another. Needs no memory to speak of at any size.
void generate(const DocumentRequest& request, JSONEmitter::Destination destination);

} // namespace quelm::bench
