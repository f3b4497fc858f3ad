#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace quelm {

/// What a victim does to its text, one key a step, beside a plain string. The caret stays at the end.
class VictimTyping {
public:
    explicit VictimTyping(unsigned seed) : random_(seed) {}

    static std::string file() { return "[\n  1\n]\n"; }

    /// The key of the next step: a character, or a backspace.
    char next() {
        const bool isErasing = typed_ > 0 && random_() % 6 == 0;
        const char key = isErasing ? '\b' : "abc123, {}"[random_() % 10];
        typed_ += isErasing ? -1 : 1;
        if (isErasing)
            text_.pop_back();
        else
            text_ += key;
        return key;
    }
    /// What the document holds after it.
    const std::string& bytes() const { return text_; }

private:
    std::mt19937 random_;
    std::string text_ = file();
    int typed_ = 0;
};

/// What a victim does to its tree, a list of numbers: one gets another value, or goes.
class VictimTreeEditing {
public:
    explicit VictimTreeEditing(unsigned seed) : random_(seed) {}

    static std::string file() { return VictimTreeEditing(0).bytes(); }

    struct Step {
        std::size_t index = 0;
        /// Empty when the number goes.
        std::string value;
    };
    Step next() {
        Step step{.index = random_() % numbers_.size(), .value = {}};
        if (numbers_.size() > 3 && random_() % 10 == 0) {
            numbers_.erase(numbers_.begin() + static_cast<std::ptrdiff_t>(step.index));
        } else {
            step.value = std::to_string(++lastNumber_);
            numbers_[step.index] = step.value;
        }
        return step;
    }
    std::string bytes() const {
        std::string text = "[";
        for (const std::string& number : numbers_)
            text += (text.size() > 1 ? ",\n  " : "\n  ") + number;
        return text + "\n]\n";
    }

private:
    std::mt19937 random_;
    std::vector<std::string> numbers_{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"};
    int lastNumber_ = 10;
};

} // namespace quelm
