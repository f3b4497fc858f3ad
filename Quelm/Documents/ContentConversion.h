#pragma once

#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/ConversionError.h"

#include <expected>
#include <functional>
#include <stop_token>
#include <string_view>

/// Other forms of a document's content, made of copies of it on any thread; those that return a result throw nothing
/// but what `take` throws. When `stop` is requested they end soon, with a cancellation.
namespace quelm::ContentConversion {

using Result = std::expected<JSONContent, ConversionError>;

/// Makes what the first look at a tree needs: the index by which a large top-level object marks duplicate keys. O(n),
/// meant for another thread than the one that shows it. Throws std::bad_alloc.
void prepareForDisplay(const JSONTree& tree);

/// The content with a text, which is there already or is the tree in the content's own style; its places are prepared
/// for a text editor.
Result toText(JSONContent content, const std::stop_token& stop);

/// The content with a tree, which is there already or is parsed from the text; the index of the keys that are seen
/// first is prepared. The text stays.
Result toTree(JSONContent content, const std::stop_token& stop);

/// The content with its tree, parsed if need be and prepared, and the text of that tree in the style, which becomes the
/// content's. The text's places are prepared for a text editor.
Result reformat(JSONContent content, const JSONStyle& style, const std::stop_token& stop);

/// Gives the bytes of the content in the style to `take`, in order, in pieces of about a megabyte, each valid during
/// its call; `take` returns whether it wants more, and that it does not is no failure. The text is parsed first if
/// there is no tree: nothing is taken of a text that is not JSON.
std::expected<void, ConversionError> write(const JSONContent& content, const JSONStyle& style,
                                           const std::function<bool(std::string_view)>& take,
                                           const std::stop_token& stop);

} // namespace quelm::ContentConversion
