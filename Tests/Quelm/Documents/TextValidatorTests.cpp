#include "Tests/Quelm/Documents/TextValidatorTest.h"

#include <QThread>

#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <string>

namespace quelm {
namespace {

using namespace std::chrono_literals;
using State = TextValidator::State;
using testing::ElementsAre;

class TextValidatorTests : public TextValidatorTest {};

TEST_F(TextValidatorTests, StatesAreEqualWhenCaseAndPayloadAre) {
    const JSONParseError error{.message = "Valor inesperado", .offset = 1, .line = 1, .column = 2};
    EXPECT_EQ(State::valid(3), State::valid(3));
    EXPECT_NE(State::valid(3), State::valid(4));
    EXPECT_EQ(State::invalid(error), State::invalid(error));
    for (auto change :
         {+[](JSONParseError& other) { other.message = "Otro"; }, +[](JSONParseError& other) { other.offset = 2; },
          +[](JSONParseError& other) { other.line = 2; }, +[](JSONParseError& other) { other.column = 3; }}) {
        JSONParseError other = error;
        change(other);
        EXPECT_NE(State::invalid(error), State::invalid(other));
    }
    EXPECT_EQ(State::idle(), State::idle());
    EXPECT_NE(State::idle(), State::valid(0));
    EXPECT_NE(State::idle(), State::invalid(error));
}

TEST_F(TextValidatorTests, AStateTellsItsCaseAndPayload) {
    const JSONParseError error{.message = "Valor inesperado", .offset = 1, .line = 1, .column = 2};
    EXPECT_TRUE(State::valid(3).isValid());
    EXPECT_EQ(State::valid(3).nodeCount(), 3);
    EXPECT_EQ(State::valid(3).error(), nullptr);
    const State invalid = State::invalid(error);
    EXPECT_TRUE(invalid.isInvalid());
    EXPECT_FALSE(invalid.isValid());
    EXPECT_EQ(invalid.nodeCount(), std::nullopt);
    ASSERT_NE(invalid.error(), nullptr);
    EXPECT_EQ(*invalid.error(), error);
    EXPECT_TRUE(State::idle().isIdle());
    EXPECT_FALSE(State::idle().isInvalid());
}

TEST_F(TextValidatorTests, NothingIsKnownAtFirst) {
    EXPECT_TRUE(validator->state().isIdle());
    EXPECT_FALSE(validator->isPending());
}

TEST_F(TextValidatorTests, AValidTextIsPublishedWithItsNodesAndAnInvalidOneWithItsError) {
    validate("{\"a\": [1, 2], \"b\": null}");
    EXPECT_TRUE(validator->isPending());
    EXPECT_TRUE(validator->state().isIdle());
    ASSERT_TRUE(awaitResult());
    EXPECT_EQ(validator->state(), State::valid(5));
    validate("[1,\n x]");
    EXPECT_EQ(validator->state(), State::valid(5));
    ASSERT_TRUE(awaitResult());
    ASSERT_TRUE(validator->state().isInvalid());
    EXPECT_EQ(validator->state().error()->errorDescription(), "Línea 2, columna 2: Valor inesperado");
    EXPECT_EQ(announcements(), 2);
}

TEST_F(TextValidatorTests, TheSameStateAgainIsNotAnnounced) {
    for (const char* text : {"[1,2]", "[3,4]", "{\"a\":1,\"b\":2}"}) {
        validate(text);
        ASSERT_TRUE(awaitResult());
        EXPECT_EQ(validator->state(), State::valid(3));
    }
    EXPECT_EQ(announcements(), 1);
    validator->adopt(State::valid(3));
    EXPECT_EQ(announcements(), 1);
}

TEST_F(TextValidatorTests, TenRequestsWithinThePauseAreOneParseOfTheTextAtItsEnd) {
    useHeldParser(true);
    parser->release(1000);
    std::string text;
    int asked = 0;
    for (int request = 0; request < 10; ++request) {
        text += '1';
        validator->schedule(TextValidator::typingPause, [&] {
            ++asked;
            return rope(text);
        });
        clock.advance(29ms);
    }
    clock.advance(270ms);
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(validator->isPending());
    text = "[1,2,3]";
    clock.advance(1ms);
    EXPECT_EQ(asked, 1);
    text = "[";
    ASSERT_TRUE(awaitResult());
    EXPECT_THAT(parser->texts(), ElementsAre("[1,2,3]"));
    EXPECT_EQ(validator->state(), State::valid(4));
    clock.advance(10s);
    EXPECT_EQ(asked, 1);
}

TEST_F(TextValidatorTests, ThePauseOfTypingIsThreeTenthsOfASecond) {
    EXPECT_EQ(TextValidator::typingPause, 300ms);
}

TEST_F(TextValidatorTests, ARequestWhileAParseRunsStopsItAndAloneSetsTheState) {
    useHeldParser(true);
    validate("[1]");
    ASSERT_TRUE(parser->awaitBegun(1));
    validator->schedule(300ms, [] { return rope("[1,2]"); });
    ASSERT_TRUE(parser->awaitEnded(1));
    EXPECT_EQ(parser->stoppedCount(), 1);
    EXPECT_TRUE(validator->isPending());
    parser->release(2);
    clock.advance(300ms);
    ASSERT_TRUE(awaitResult());
    EXPECT_THAT(parser->texts(), ElementsAre("[1]", "[1,2]"));
    EXPECT_EQ(validator->state(), State::valid(3));
    EXPECT_EQ(announcements(), 1);
}

TEST_F(TextValidatorTests, AResultThatComesAfterALaterRequestIsDropped) {
    useHeldParser(false);
    validate("[1]");
    ASSERT_TRUE(parser->awaitBegun(1));
    validator->schedule(300ms, [] { return rope("[1,2]"); });
    parser->release(1);
    ASSERT_TRUE(parser->awaitEnded(1));
    pool().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(validator->state().isIdle());
    parser->release(2);
    clock.advance(300ms);
    ASSERT_TRUE(awaitResult());
    EXPECT_EQ(validator->state(), State::valid(3));
    EXPECT_EQ(announcements(), 1);
}

TEST_F(TextValidatorTests, AParseThatSaysCancelledOfItselfIsIdle) {
    use([](const TextRope&, const std::stop_token&) -> std::expected<JSONTree, JSONParseError> {
        return std::unexpected(JSONParseError::cancelled());
    });
    validator->adopt(State::valid(1));
    validate("[1]");
    ASSERT_TRUE(awaitResult());
    EXPECT_TRUE(validator->state().isIdle());
    EXPECT_EQ(announcements(), 2);
}

TEST_F(TextValidatorTests, OnlyTheWholeCancellationIsOne) {
    use([](const TextRope&, const std::stop_token&) -> std::expected<JSONTree, JSONParseError> {
        JSONParseError error = JSONParseError::cancelled();
        error.column = 1;
        return std::unexpected(error);
    });
    validate("[1]");
    ASSERT_TRUE(awaitResult());
    EXPECT_TRUE(validator->state().isInvalid());
}

TEST_F(TextValidatorTests, ALackOfMemoryIsIdle) {
    use([](const TextRope&, const std::stop_token&) -> std::expected<JSONTree, JSONParseError> {
        throw std::bad_alloc();
    });
    validator->adopt(State::valid(1));
    validate("[1]");
    ASSERT_TRUE(awaitResult());
    EXPECT_TRUE(validator->state().isIdle());
}

TEST_F(TextValidatorTests, TheTextIsAskedForHereAndParsedElsewhere) {
    const QThread* here = QThread::currentThread();
    const QThread* askedOn = nullptr;
    std::atomic<const QThread*> parsedOn = nullptr;
    use([&](const TextRope& text, const std::stop_token&) {
        parsedOn = QThread::currentThread();
        return JSONParser::parse(text);
    });
    validator->schedule(1ms, [&] {
        askedOn = QThread::currentThread();
        return rope("[]");
    });
    clock.advance(1ms);
    ASSERT_TRUE(awaitResult());
    EXPECT_EQ(askedOn, here);
    EXPECT_NE(parsedOn.load(), here);
}

} // namespace
} // namespace quelm
