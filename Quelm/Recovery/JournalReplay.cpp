#include "Quelm/Recovery/JournalReplay.h"

#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONSerializer.h"
#include "Quelm/Recovery/TextAssembly.h"
#include "TextCore/UTF8.h"

#include <algorithm>
#include <new>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace quelm {

namespace {

std::unexpected<ReplayError> impossible() {
    return std::unexpected(ReplayError::impossible);
}

/// Its result, or the error that an exception stands for.
template <class Repeat>
std::invoke_result_t<Repeat&> completed(Repeat repeat) {
    try {
        return repeat();
    } catch (const std::bad_alloc&) {
        return std::unexpected(ReplayError::noMemory);
    } catch (const std::length_error&) {
        return std::unexpected(ReplayError::tooLarge);
    }
}

std::expected<JSONTree, ReplayError> parsed(const TextRope& text, const std::stop_token& stop) {
    std::expected<JSONTree, JSONParseError> tree = JSONParser::parse(text, stop);
    if (tree)
        return *std::move(tree);
    if (tree.error() == JSONParseError::cancelled())
        return std::unexpected(ReplayError::cancelled);
    return std::unexpected(tree.error() == JSONParseError::tooLarge() ? ReplayError::tooLarge
                                                                      : ReplayError::impossible);
}

/// How long the text of the tree is, no further than `longest`: indentation can make it much longer than the tree is
/// large.
std::expected<std::int64_t, ReplayError> measuredText(const JSONTree& tree, const JSONStyle& style,
                                                      std::int64_t longest, const std::stop_token& stop) {
    std::int64_t size = 0;
    try {
        JSONSerializer::serialize(tree, std::nullopt, style, [&](std::string_view bytes) {
            size += static_cast<std::int64_t>(bytes.size());
            if (stop.stop_requested())
                throw ReplayError::cancelled;
            if (size > longest)
                throw ReplayError::tooLarge;
        });
    } catch (ReplayError error) {
        // Thrown out of the serialiser: there is no other way to end it early.
        return std::unexpected(error);
    }
    return size;
}

} // namespace

JournalReplay::JournalReplay(TextRope file, ReturnCounts returns, std::stop_token stop, const ReplayLimits& limits)
    : file_(std::move(file)), returns_(std::move(returns)), stop_(std::move(stop)), limits_(limits) {}

std::expected<JournalReplay, ReplayError> JournalReplay::start(const journal::Base& base, SharedText file,
                                                               ReturnCounts returns, std::stop_token stop,
                                                               const ReplayLimits& limits) {
    return completed([&]() -> std::expected<JournalReplay, ReplayError> {
        if (!utf8::isValid(file.view()))
            return impossible();
        JournalReplay replay(TextRope(std::move(file)), std::move(returns), std::move(stop), limits);
        if (Repeated begun = replay.begin(base); !begun)
            return std::unexpected(begun.error());
        return replay;
    });
}

JournalReplay::Repeated JournalReplay::begin(const journal::Base& base) {
    if (base.checksum) {
        if (file_.byteCount() > limits_.longestText)
            return std::unexpected(ReplayError::tooLarge);
        held_.content.text = file_;
    } else {
        held_.content = JSONContent::empty();
        file_ = {};
    }
    held_.content.style = base.style;
    mode_ = base.mode;
    // The tree of a text is not parsed before it is asked for.
    return mode_ == EditorMode::tree ? makeTree(held_) : makeText(held_);
}

std::expected<void, ReplayError> JournalReplay::apply(const journal::Record& record) {
    if (stop_.stop_requested())
        return std::unexpected(ReplayError::cancelled);
    return completed([&] { return std::visit([this](const auto& each) { return repeat(each); }, record); });
}

std::expected<JSONContent, ReplayError> JournalReplay::content() && {
    return completed([&]() -> std::expected<JSONContent, ReplayError> {
        if (mode_ == EditorMode::text)
            if (Repeated made = makeText(held_); !made)
                return std::unexpected(made.error());
        return std::move(held_.content);
    });
}

JournalReplay::Repeated JournalReplay::repeat(const journal::Base&) {
    return {};
}

JournalReplay::Repeated JournalReplay::repeat(const journal::EditText& edit) {
    if (mode_ != EditorMode::text)
        return impossible();
    if (Repeated made = makeText(held_); !made)
        return made;
    const TextRope& text = *held_.content.text;
    if (!isRangeOfCharacters(text, edit.location, edit.removed))
        return impossible();
    const TextRope removed = text.slice({edit.location, edit.removed});
    const auto inserted =
        assembleText(edit.inserted, removed, file_, limits_.longestText - (text.byteCount() - edit.removed));
    if (!inserted)
        return std::unexpected(inserted.error());
    held_.content.text = text.replacing({edit.location, edit.removed}, *inserted);
    held_.content.tree.reset();
    held_.content.parseError.reset();
    isModified_ = true;
    return {};
}

JournalReplay::Repeated JournalReplay::repeat(const journal::EditTree& edit) {
    if (mode_ != EditorMode::tree || !held_.content.tree)
        return impossible();
    // The copy shares all but what the edits touch, and an error leaves the tree of before.
    auto edited = repeatTreeEdits(*held_.content.tree, edit, held_.detached, stop_);
    if (!edited)
        return std::unexpected(edited.error());
    held_.content.tree = *std::move(edited);
    held_.content.text.reset();
    held_.content.parseError.reset();
    held_.isTextPending = false;
    isModified_ = true;
    return {};
}

JournalReplay::Repeated JournalReplay::repeat(const journal::Reformat& reformat) {
    Held formatted{.content = held_.content, .isTextPending = held_.isTextPending, .detached = {}};
    if (Repeated made = makeTree(formatted); !made)
        return made;
    formatted.content.text.reset();
    formatted.content.style = reformat.style;
    formatted.isTextPending = true;
    return replaceHeld(reformat.numberBefore, reformat.number, std::move(formatted));
}

JournalReplay::Repeated JournalReplay::repeat(const journal::Return& back) {
    const auto found = kept_.find(back.number);
    if (found == kept_.end() || back.number == back.numberBefore)
        return impossible();
    if (const auto count = returns_.find(back.number); count != returns_.end())
        --count->second;
    return replaceHeld(back.numberBefore, back.number, std::move(found->second));
}

JournalReplay::Repeated JournalReplay::repeat(const journal::Replace& replace) {
    const auto copiesRemoved = [](const journal::TextSource& source) {
        return source.origin == journal::TextSource::Origin::removed;
    };
    if (std::ranges::any_of(replace.text, copiesRemoved))
        if (Repeated made = makeText(held_); !made)
            return made;
    const auto text = assembleText(replace.text, held_.content.text.value_or(TextRope()), file_, limits_.longestText);
    if (!text)
        return std::unexpected(text.error());
    auto held = replacement(replace, *text);
    if (!held)
        return std::unexpected(held.error());
    return replaceHeld(replace.numberBefore, replace.number, *std::move(held));
}

std::expected<JournalReplay::Held, ReplayError> JournalReplay::replacement(const journal::Replace& replace,
                                                                           const TextRope& text) {
    Held held;
    held.content.style = replace.style;
    if (!replace.hasText && !replace.hasTree)
        return impossible();
    held.content.text = text;
    if (replace.hasTree) {
        if (Repeated made = makeTree(held); !made)
            return std::unexpected(made.error());
        if (!replace.hasText || replace.isTextMadeOfTree)
            held.content.text.reset();
        held.isTextPending = replace.hasText && replace.isTextMadeOfTree;
    } else if (replace.isTextMadeOfTree) {
        return impossible();
    }
    return held;
}

/// The content gives way to another, and is kept when a later record returns to it.
JournalReplay::Repeated JournalReplay::replaceHeld(std::int64_t numberBefore, std::int64_t number, Held held) {
    if (!canShow(held, mode_))
        return impossible();
    // A number is that of one content: of the one that is there now.
    kept_.erase(number);
    const auto count = returns_.find(numberBefore);
    if (number != numberBefore && count != returns_.end() && count->second > 0)
        kept_.insert_or_assign(numberBefore, std::exchange(held_, std::move(held)));
    else
        held_ = std::move(held);
    isModified_ = true;
    return {};
}

bool JournalReplay::canShow(const Held& held, EditorMode mode) const {
    return mode == EditorMode::tree ? held.content.tree.has_value() : held.content.text || held.isTextPending;
}

JournalReplay::Repeated JournalReplay::repeat(const journal::ChangeMode& change) {
    if (change.mode == mode_)
        return {};
    if (Repeated made = change.mode == EditorMode::tree ? makeTree(held_) : makeText(held_); !made)
        return made;
    mode_ = change.mode;
    // Nodes are detached in one tree, and the next one may be parsed anew.
    held_.detached.clear();
    return {};
}

JournalReplay::Repeated JournalReplay::repeat(const journal::Modified& modified) {
    isModified_ = modified.isModified;
    return {};
}

JournalReplay::Repeated JournalReplay::repeat(const journal::SaveOutcome&) {
    return {};
}

JournalReplay::Repeated JournalReplay::makeText(Held& held) {
    JSONContent& content = held.content;
    if (content.text)
        return {};
    if (!content.tree)
        return impossible();
    const auto size = measuredText(*content.tree, content.style, limits_.longestText, stop_);
    if (!size)
        return std::unexpected(size.error());
    if (Repeated spent = spend(*size); !spent)
        return spent;
    TextBuilder builder(static_cast<std::size_t>(*size));
    JSONSerializer::serialize(*content.tree, std::nullopt, content.style,
                              [&builder](std::string_view bytes) { builder.append(bytes); });
    content.text = TextRope(builder.finish());
    held.isTextPending = false;
    return {};
}

JournalReplay::Repeated JournalReplay::makeTree(Held& held) {
    JSONContent& content = held.content;
    if (content.tree)
        return {};
    if (!content.text)
        return impossible();
    if (Repeated spent = spend(content.text->byteCount()); !spent)
        return spent;
    auto tree = parsed(*content.text, stop_);
    if (!tree)
        return std::unexpected(tree.error());
    content.tree = *std::move(tree);
    content.parseError.reset();
    return {};
}

JournalReplay::Repeated JournalReplay::spend(std::int64_t bytes) {
    if (bytes > limits_.work - workDone_)
        return std::unexpected(ReplayError::tooLarge);
    workDone_ += bytes;
    return {};
}

} // namespace quelm
