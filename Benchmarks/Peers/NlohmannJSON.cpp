#include "Benchmarks/Peers/Peers.h"

#include <nlohmann/json.hpp>
#include <string>

namespace quelm::bench::peers {

namespace {

class NlohmannJSON final : public JSONLibrary {
public:
    std::string_view name() const override { return "nlohmann"; }
    bool isSlow() const override { return true; }

    bool parse(std::string_view paddedText) override {
        constexpr bool throwing = false;
        document_ = nlohmann::json::parse(paddedText.begin(), paddedText.end(), nullptr, throwing);
        return !document_.is_discarded();
    }

    void discardDocument() override { document_ = nullptr; }

    bool canWrite(WriteLayout layout) const override { return layout != WriteLayout::sorted; }

    bool write(WriteLayout layout) override {
        constexpr int withoutIndent = -1;
        output_ = document_.dump(layout == WriteLayout::pretty ? 2 : withoutIndent);
        return true;
    }

    std::string_view output() const override { return output_; }
    void discardOutput() override { output_ = std::string(); }

private:
    nlohmann::json document_;
    std::string output_;
};

} // namespace

std::unique_ptr<JSONLibrary> nlohmannJSON() {
    return std::make_unique<NlohmannJSON>();
}

} // namespace quelm::bench::peers
