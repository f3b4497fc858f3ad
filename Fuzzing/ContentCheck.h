#pragma once

namespace quelm {
struct JSONContent;
}

namespace quelm::fuzzing {

/// Stops the process unless the content is one that a document may hold: a text that is UTF-8, a tree with its
/// invariants, and bytes for a file.
void checkContent(const JSONContent& content);

} // namespace quelm::fuzzing
