#pragma once

#include "JSONCore/JSONParseError.h"
#include "JSONCore/JSONTree.h"
#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/Foundation/Clock.h"
#include "TextCore/TextRope.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <stop_token>
#include <variant>

namespace quelm {

/// Validates the text of a text editor in the background while the user types. Every request takes the place of the one
/// before, whether that waits or runs; a result arrives only while its request is the last. For the main thread.
class TextValidator : public QObject {
    Q_OBJECT

public:
    /// What is known of the text.
    class State {
    public:
        /// JSON with that many nodes.
        static State valid(std::int64_t nodeCount) { return State(Valid{nodeCount}); }
        static State invalid(JSONParseError error) { return State(std::move(error)); }
        /// Nothing.
        static State idle() { return State(Idle{}); }

        bool isValid() const { return std::holds_alternative<Valid>(case_); }
        bool isInvalid() const { return error() != nullptr; }
        bool isIdle() const { return std::holds_alternative<Idle>(case_); }

        /// Of a valid text.
        std::optional<std::int64_t> nodeCount() const;
        /// Of an invalid text; null for others.
        const JSONParseError* error() const { return std::get_if<JSONParseError>(&case_); }

        friend bool operator==(const State&, const State&) = default;

    private:
        struct Valid {
            std::int64_t nodeCount;
            friend bool operator==(const Valid&, const Valid&) = default;
        };
        struct Idle {
            friend bool operator==(Idle, Idle) = default;
        };
        template <class Case>
        explicit State(Case value) : case_(std::move(value)) {}

        std::variant<Valid, JSONParseError, Idle> case_;
    };

    /// Parses on another thread; `JSONParser::parse` but in tests.
    using Parse = std::function<std::expected<JSONTree, JSONParseError>(const TextRope&, const std::stop_token&)>;

    explicit TextValidator(Clock& clock = Clock::system(), QObject* parent = nullptr);
    TextValidator(Clock& clock, Parse parse, QObject* parent = nullptr);
    /// Does not wait for what is running.
    ~TextValidator() override;

    /// Idle at first.
    const State& state() const { return state_; }

    /// How long the user's typing has to pause before the text is validated.
    static constexpr std::chrono::milliseconds typingPause{300};

    /// Asks for the text when the delay has passed, here on the main thread, and validates it. O(1).
    void schedule(std::chrono::milliseconds delay, std::function<TextRope()> textProvider);

    /// The text is another one, of which that much is known without validating it. Requests of before are cancelled.
    void adopt(State state);

    /// Whether a request waits or runs.
    bool isPending() const;

Q_SIGNALS:
    void stateChanged();

private:
    void cancelRequest();
    void validate(TextRope text);
    void setState(State state);

    Clock& clock_;
    const Parse parse_;
    State state_ = State::idle();
    /// The number of the last request.
    std::uint64_t request_ = 0;
    DelayedCall pause_;
    BackgroundTask task_;
};

} // namespace quelm
