#include "Benchmarks/Generator/Digits.h"
#include "Benchmarks/Generator/Items.h"
#include "Benchmarks/Generator/Vocabulary.h"

#include <array>
#include <string>

namespace quelm::bench::items {

namespace {

constexpr std::array statuses = std::to_array<std::string_view>({"open", "paid", "shipped", "cancelled", "on hold"});

void appendHexadecimal(std::string& text, int count, Random& random) {
    constexpr std::string_view digits = "0123456789abcdef";
    for (; count > 0; --count)
        text += digits[random.below(16)];
}

void appendUUID(std::string& text, Random& random) {
    appendHexadecimal(text, 8, random);
    for (const int count : {4, 4, 4, 12}) {
        text += '-';
        appendHexadecimal(text, count, random);
    }
}

void appendDecimals(std::string& text, std::uint32_t bound, std::size_t places, Random& random) {
    appendDecimal(text, random.below(bound));
    text += '.';
    std::uint32_t scale = 1;
    for (std::size_t place = 0; place < places; ++place)
        scale *= 10;
    appendPadded(text, random.below(scale), places);
}

void appendTime(std::string& text, Random& random) {
    appendDecimal(text, random.between(2008, 2024));
    text += '-';
    appendPadded(text, random.between(1, 12), 2);
    text += '-';
    appendPadded(text, random.between(1, 28), 2);
    text += 'T';
    appendPadded(text, random.below(24), 2);
    text += ':';
    appendPadded(text, random.below(60), 2);
    text += ':';
    appendPadded(text, random.below(60), 2);
    text += 'Z';
}

/// Writes the members of one record, the text of each built in one string that is used again.
class RecordWriter {
public:
    RecordWriter(JSONEmitter& out, Random& random) : out_(out), random_(random) {}

    void write(std::uint64_t number) {
        out_.beginObject();
        identity(number);
        person(number);
        flags();
        address();
        orders();
        out_.end();
    }

private:
    void identity(std::uint64_t number) {
        out_.key("id");
        text_.clear();
        appendDecimal(text_, 1'000'000 + number);
        out_.literal(text_);
        out_.key("uuid");
        text_.clear();
        appendUUID(text_, random_);
        out_.string(text_);
    }

    void person(std::uint64_t number) {
        const vocabulary::Name& given = vocabulary::givenName(random_);
        const vocabulary::Name& family = vocabulary::familyName(random_);
        out_.key("name");
        text_.assign(given.written).append(" ").append(family.written);
        out_.string(text_);
        out_.key("email");
        text_.assign(given.plain).append(".").append(family.plain);
        appendDecimal(text_, number % 1000);
        text_ += random_.chance(50) ? "@example.com" : "@mail.example.org";
        out_.string(text_);
        out_.key("avatar");
        text_ = "https://images.example.com/people/";
        appendHexadecimal(text_, 24, random_);
        text_ += ".jpg";
        out_.string(text_);
        out_.key("age");
        text_.clear();
        appendDecimal(text_, random_.between(18, 90));
        out_.literal(text_);
        out_.key("bio");
        text_.clear();
        vocabulary::appendProse(text_, random_.between(50, 170), random_);
        out_.string(text_);
    }

    void flags() {
        out_.key("active");
        out_.literal(random_.chance(70) ? "true" : "false");
        out_.key("verified");
        out_.literal(random_.chance(40) ? "true" : "false");
        out_.key("manager");
        text_.clear();
        if (random_.chance(60))
            text_ = "null";
        else
            appendDecimal(text_, random_.between(1'000'000, 1'000'400));
        out_.literal(text_);
        out_.key("balance");
        text_ = random_.chance(20) ? "-" : "";
        appendDecimals(text_, 20'000, 2, random_);
        out_.literal(text_);
    }

    void address() {
        out_.key("address");
        out_.beginObject();
        out_.key("street");
        text_ = vocabulary::street(random_);
        text_ += ' ';
        appendDecimal(text_, random_.between(1, 180));
        out_.string(text_);
        out_.key("city");
        out_.string(vocabulary::city(random_));
        out_.key("location");
        out_.beginArray();
        for (const std::uint32_t bound : {90u, 180u}) {
            text_ = random_.chance(50) ? "-" : "";
            appendDecimals(text_, bound, 6, random_);
            out_.literal(text_);
        }
        out_.end();
        out_.end();
    }

    void orders() {
        out_.key("tags");
        out_.beginArray();
        for (std::uint32_t left = random_.below(4); left > 0; --left)
            out_.string(vocabulary::tag(random_));
        out_.end();
        out_.key("orders");
        out_.beginArray();
        for (std::uint32_t left = random_.below(3); left > 0; --left)
            order();
        out_.end();
        out_.key("created");
        text_.clear();
        appendTime(text_, random_);
        out_.string(text_);
        out_.key("url");
        text_ = "https://api.example.com/v2/";
        text_ += vocabulary::topic(random_);
        text_ += '/';
        appendDecimal(text_, random_.below(10'000'000));
        out_.string(text_);
    }

    void order() {
        out_.beginObject();
        out_.key("sku");
        text_ = "SKU-";
        appendPadded(text_, random_.below(1'000'000'000), 9);
        out_.string(text_);
        out_.key("product");
        text_.clear();
        vocabulary::appendProse(text_, random_.between(12, 40), random_);
        out_.string(text_);
        out_.key("quantity");
        text_.clear();
        appendDecimal(text_, random_.between(1, 12));
        out_.literal(text_);
        out_.key("price");
        text_.clear();
        appendDecimals(text_, 900, 2, random_);
        out_.literal(text_);
        out_.key("status");
        out_.string(random_.pick(statuses));
        out_.end();
    }

    JSONEmitter& out_;
    Random& random_;
    std::string text_;
};

} // namespace

void record(JSONEmitter& out, std::uint64_t number, Random& random) {
    RecordWriter(out, random).write(number);
}

} // namespace quelm::bench::items
