#include "Benchmarks/Peers/Peers.h"

#include <optional>
#include <simdjson.h>

namespace quelm::bench::peers {

namespace {

static_assert(JSONLibrary::padding >= simdjson::SIMDJSON_PADDING);

class SimdjsonDOM final : public JSONLibrary {
public:
    std::string_view name() const override { return "simdjson-dom"; }

    bool parse(std::string_view paddedText) override {
        constexpr bool copyIfUnpadded = false;
        parser_.emplace();
        return parser_->parse(paddedText.data(), paddedText.size(), copyIfUnpadded).error() == simdjson::SUCCESS;
    }

    void discardDocument() override { parser_.reset(); }

private:
    /// Owns the document that it parsed last.
    std::optional<simdjson::dom::parser> parser_;
};

} // namespace

std::unique_ptr<JSONLibrary> simdjsonDOM() {
    return std::make_unique<SimdjsonDOM>();
}

bool simdjsonValidatesUTF8(std::string_view bytes) {
    return simdjson::validate_utf8(bytes);
}

} // namespace quelm::bench::peers
