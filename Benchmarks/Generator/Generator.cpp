#include "Benchmarks/Generator/Generator.h"

#include "Benchmarks/Generator/Items.h"
#include "Benchmarks/Generator/Random.h"

#include <utility>

namespace quelm::bench {

namespace {

constexpr std::array<std::string_view, allDocumentKinds.size()> names{"records", "strings", "escapes", "nonlatin",
                                                                      "deep",    "numbers", "mixed"};

using Item = void (*)(JSONEmitter&, std::uint64_t number, Random&);

/// What the array of a kind is made of; none for `deep`, which is no list of items.
constexpr std::array<Item, allDocumentKinds.size()> itemOfKind{
    items::record, items::longString, items::escapedString, items::nonLatinRecord,
    nullptr,       items::numberRow,  items::mixedItem};

} // namespace

std::string_view name(DocumentKind kind) {
    return names[static_cast<std::size_t>(kind)];
}

std::optional<DocumentKind> documentKindFromName(std::string_view text) {
    for (const DocumentKind kind : allDocumentKinds)
        if (name(kind) == text)
            return kind;
    return std::nullopt;
}

void generate(const DocumentRequest& request, JSONEmitter::Destination destination) {
    JSONEmitter out(request.layout, std::move(destination));
    Random random(request.seed);
    if (request.kind == DocumentKind::deep) {
        items::deepNesting(out, request.size, random);
    } else {
        const Item item = itemOfKind[static_cast<std::size_t>(request.kind)];
        out.beginArray();
        for (std::uint64_t number = 0; out.sizeIfClosed() < request.size; ++number)
            item(out, number, random);
        out.end();
    }
    out.finish();
}

} // namespace quelm::bench
