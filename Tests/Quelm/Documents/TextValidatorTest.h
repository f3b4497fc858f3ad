#pragma once

#include "JSONCore/JSONParser.h"
#include "Quelm/Documents/TextValidator.h"
#include "Quelm/Foundation/BackgroundThreads.h"
#include "Tests/Quelm/Support/FakeClock.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <atomic>
#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

inline TextRope rope(std::string_view text) {
    return TextRope(SharedText(text));
}

/// A parser each of whose parses waits until a test lets it go on, or stops it.
class HeldParser {
public:
    explicit HeldParser(bool heedsStops) : heedsStops_(heedsStops) {}

    std::expected<JSONTree, JSONParseError> parse(const TextRope& text, const std::stop_token& stop) {
        std::unique_lock lock(mutex_);
        const std::size_t number = texts_.size();
        texts_.emplace_back(text.contiguous().view());
        const auto mayGoOn = [&] { return number < released_; };
        if (heedsStops_)
            changed_.wait(lock, stop, mayGoOn);
        else
            changed_.wait(lock, mayGoOn);
        lock.unlock();
        const bool isStopped = stop.stop_requested();
        stopped_ += isStopped;
        auto result = isStopped && heedsStops_ ? std::unexpected(JSONParseError::cancelled()) : JSONParser::parse(text);
        ++ended_;
        return result;
    }

    /// Lets go the first `count` parses.
    void release(std::size_t count) {
        const std::scoped_lock lock(mutex_);
        released_ = count;
        changed_.notify_all();
    }

    std::vector<std::string> texts() {
        const std::scoped_lock lock(mutex_);
        return texts_;
    }
    bool awaitBegun(std::size_t count) {
        return QTest::qWaitFor([&] { return texts().size() == count; });
    }
    bool awaitEnded(int count) {
        return QTest::qWaitFor([&] { return ended_ == count; });
    }
    int stoppedCount() const { return stopped_; }

private:
    const bool heedsStops_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::vector<std::string> texts_;
    std::size_t released_ = 0;
    std::atomic<int> stopped_ = 0;
    std::atomic<int> ended_ = 0;
};

/// A validator on a clock that stands still.
class TextValidatorTest : public testing::Test {
protected:
    // Parses that are held must not hold each other up.
    TextValidatorTest() { pool().setMaxThreadCount(4); }
    ~TextValidatorTest() override {
        if (parser)
            parser->release(1000);
        validator.reset();
        pool().waitForDone();
        pool().setMaxThreadCount(threadCount);
    }
    static QThreadPool& pool() { return backgroundThreads(); }

    void use(TextValidator::Parse parse) {
        validator = std::make_unique<TextValidator>(clock, std::move(parse));
        states.emplace(validator.get(), &TextValidator::stateChanged);
    }
    void useHeldParser(bool heedsStops) {
        parser = std::make_shared<HeldParser>(heedsStops);
        use([parser = parser](const TextRope& text, const std::stop_token& stop) { return parser->parse(text, stop); });
    }
    /// Once the pause is over.
    void validate(std::string_view text) {
        validator->schedule({}, [text = std::string(text)] { return rope(text); });
        clock.advance({});
    }
    bool awaitResult() {
        return QTest::qWaitFor([this] { return !validator->isPending(); });
    }
    int announcements() const { return static_cast<int>(states->count()); }

    const int threadCount = pool().maxThreadCount();
    FakeClock clock;
    std::shared_ptr<HeldParser> parser;
    std::unique_ptr<TextValidator> validator = std::make_unique<TextValidator>(clock);
    std::optional<QSignalSpy> states{std::in_place, validator.get(), &TextValidator::stateChanged};
};

} // namespace quelm
