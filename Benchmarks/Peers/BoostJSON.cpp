#include "Benchmarks/Peers/Peers.h"

#include <boost/json.hpp>
#include <optional>
#include <string>

namespace quelm::bench::peers {

namespace {

class BoostJSON final : public JSONLibrary {
public:
    std::string_view name() const override { return "boost-json"; }
    bool isSlow() const override { return true; }

    bool parse(std::string_view paddedText) override {
        boost::json::parse_options options;
        options.max_depth = 1024;
        boost::json::error_code error;
        document_.emplace();
        *document_ = boost::json::parse({paddedText.data(), paddedText.size()}, error, {}, options);
        return !error;
    }

    void discardDocument() override { document_.reset(); }

    bool canWrite(WriteLayout layout) const override { return layout == WriteLayout::compact; }

    bool write(WriteLayout) override {
        output_ = boost::json::serialize(*document_);
        return true;
    }

    std::string_view output() const override { return output_; }
    void discardOutput() override { output_ = std::string(); }

private:
    std::optional<boost::json::value> document_;
    std::string output_;
};

} // namespace

std::unique_ptr<JSONLibrary> boostJSON() {
    return std::make_unique<BoostJSON>();
}

} // namespace quelm::bench::peers
