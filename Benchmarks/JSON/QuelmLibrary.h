#pragma once

#include "Benchmarks/Peers/JSONLibrary.h"
#include "JSONCore/JSONTree.h"
#include "TextCore/SharedText.h"

#include <optional>

namespace quelm::bench {

/// JSONCore behind the interface of its peers.
class QuelmLibrary final : public JSONLibrary {
public:
    /// Reads no other text than this one, which must be padded.
    explicit QuelmLibrary(SharedText text);

    std::string_view name() const override { return "quelm"; }

    bool parse(std::string_view paddedText) override;
    void discardDocument() override { tree_.reset(); }

    bool canWrite(WriteLayout) const override { return true; }
    bool writesNumbersAsGiven() const override { return true; }
    bool write(WriteLayout layout) override;
    std::string_view output() const override { return output_.view(); }
    void discardOutput() override { output_ = SharedText(); }

    /// The document that is held.
    const JSONTree& tree() const { return *tree_; }

private:
    SharedText text_;
    std::optional<JSONTree> tree_;
    SharedText output_;
};

} // namespace quelm::bench
