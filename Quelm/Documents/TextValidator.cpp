#include "Quelm/Documents/TextValidator.h"

#include "JSONCore/JSONParser.h"

#include <QPointer>

#include <new>
#include <utility>

namespace quelm {

namespace {

/// On another thread, where the tree is freed as well.
TextValidator::State validated(const TextValidator::Parse& parse, const TextRope& text, const std::stop_token& stop) {
    using State = TextValidator::State;
    try {
        std::expected<JSONTree, JSONParseError> tree = parse(text, stop);
        if (tree)
            return State::valid(tree->nodeCount());
        return tree.error() == JSONParseError::cancelled() ? State::idle() : State::invalid(std::move(tree.error()));
    } catch (const std::bad_alloc&) {
        return State::idle();
    }
}

} // namespace

std::optional<std::int64_t> TextValidator::State::nodeCount() const {
    const auto* valid = std::get_if<Valid>(&case_);
    return valid ? std::optional(valid->nodeCount) : std::nullopt;
}

TextValidator::TextValidator(Clock& clock, QObject* parent)
    : TextValidator(
          clock, [](const TextRope& text, const std::stop_token& stop) { return JSONParser::parse(text, stop); },
          parent) {}

TextValidator::TextValidator(Clock& clock, Parse parse, QObject* parent)
    : QObject(parent), clock_(clock), parse_(std::move(parse)) {}

TextValidator::~TextValidator() = default;

void TextValidator::schedule(std::chrono::milliseconds delay, std::function<TextRope()> textProvider) {
    cancelRequest();
    pause_ = clock_.callAfter(delay, [this, request = request_, textProvider = std::move(textProvider)] {
        // Whoever is asked may go away with this object, or know better than to have that text validated.
        const QPointer<TextValidator> self(this);
        TextRope text = textProvider();
        if (self && self->request_ == request)
            self->validate(std::move(text));
    });
}

void TextValidator::adopt(State state) {
    cancelRequest();
    setState(std::move(state));
}

bool TextValidator::isPending() const {
    return pause_ || task_.isRunning();
}

void TextValidator::cancelRequest() {
    ++request_;
    pause_.reset();
    task_.cancel();
}

void TextValidator::validate(TextRope text) {
    task_ = startInBackground(
        this,
        [parse = parse_, text = std::move(text)](const std::stop_token& stop) { return validated(parse, text, stop); },
        [this](State state) { setState(std::move(state)); });
    pause_.reset();
}

void TextValidator::setState(State state) {
    if (state_ == state)
        return;
    state_ = std::move(state);
    Q_EMIT stateChanged();
}

} // namespace quelm
