#pragma once

#include "JSONCore/JSONTree.h"
#include "JSONCore/Storage/TreeBuilder.h"
#include "TextCore/SharedText.h"

#include <memory>

namespace quelm {

/// A tree in the making from a text: memory for as many values as such a text usually has is taken at once.
class DocumentBuilder {
public:
    /// The tree will share the text.
    explicit DocumentBuilder(SharedText source);

    /// Takes the top-level value, and everything in it.
    TreeBuilder& values() { return values_; }

    /// The tree, once the top-level value is whole.
    JSONTree finish();

private:
    std::shared_ptr<TreeStorage> storage_;
    TreeBuilder values_;
};

} // namespace quelm
