#include "Tests/JSONCore/Models/NaiveParser.h"

#include "TextCore/Graphemes.h"
#include "TextCore/UTF8.h"

#include <string>
#include <utility>
#include <vector>

namespace quelm::test {

namespace {

/// A fault that ends the parse; caught where the parse began.
struct Fault {
    std::string message;
    std::size_t offset;
};

class NaiveParser {
public:
    explicit NaiveParser(std::string_view text) : text_(text) {}

    NaiveTree parse() {
        if (text_.starts_with("\xEF\xBB\xBF"))
            at_ = 3;
        skipWhiteSpace();
        value("");
        while (!open_.empty())
            step();
        skipWhiteSpace();
        if (at_ < text_.size())
            fail("Contenido inesperado después del valor raíz");
        return std::move(tree_);
    }

private:
    [[noreturn]] void fail(std::string message) const { throw Fault{std::move(message), at_}; }
    [[noreturn]] static void fail(std::string message, std::size_t offset) { throw Fault{std::move(message), offset}; }

    /// The byte at the position, or -1 at the end.
    int byte() const { return at_ < text_.size() ? static_cast<unsigned char>(text_[at_]) : -1; }
    bool take(char expected) {
        if (byte() != expected)
            return false;
        ++at_;
        return true;
    }
    bool isDigit() const { return byte() >= '0' && byte() <= '9'; }
    void skipWhiteSpace() {
        while (byte() == ' ' || byte() == '\t' || byte() == '\n' || byte() == '\r')
            ++at_;
    }

    /// What stands between two values of the innermost open container.
    void step() {
        const NodeID container = open_.back();
        const bool isObject = tree_[container].kind == NodeKind::object;
        const bool isFirst = tree_[container].children.empty();
        skipWhiteSpace();
        if (byte() == (isObject ? '}' : ']')) {
            ++at_;
            open_.pop_back();
            return;
        }
        if (!isFirst) {
            if (byte() < 0)
                fail(isObject ? "Falta '}' para cerrar el objeto" : "Falta ']' para cerrar el arreglo");
            if (!take(','))
                fail(isObject ? "Se esperaba ',' o '}'" : "Se esperaba ',' o ']'");
            skipWhiteSpace();
        }
        std::string key;
        if (isObject) {
            if (byte() != '"')
                fail("Se esperaba una clave entre comillas");
            key = string();
            skipWhiteSpace();
            if (!take(':'))
                fail("Se esperaba ':' después de la clave");
            skipWhiteSpace();
        }
        value(key);
    }

    void value(std::string_view key) {
        switch (byte()) {
        case -1:
            fail("Se esperaba un valor");
        case '{':
        case '[': {
            const bool isObject = text_[at_++] == '{';
            open_.push_back(add(isObject ? NodeKind::object : NodeKind::array, key, ""));
            break;
        }
        case '"':
            add(NodeKind::string, key, string());
            break;
        case 't':
            literal("true");
            add(NodeKind::bool_, key, "true");
            break;
        case 'f':
            literal("false");
            add(NodeKind::bool_, key, "false");
            break;
        case 'n':
            literal("null");
            add(NodeKind::null, key, "");
            break;
        default:
            if (byte() != '-' && !isDigit())
                fail("Valor inesperado");
            add(NodeKind::number, key, number());
        }
    }

    NodeID add(NodeKind kind, std::string_view key, std::string_view scalar) {
        const NodeID parent = open_.empty() ? JSONTree::holder : open_.back();
        const NodeID id = tree_.addNode(kind, key, scalar);
        tree_.attach(id, parent, static_cast<std::int64_t>(tree_[parent].children.size()));
        return id;
    }

    void literal(std::string_view word) {
        if (text_.substr(at_, word.size()) != word)
            fail("Valor inesperado");
        at_ += word.size();
    }

    std::string_view number() {
        const std::size_t start = at_;
        const auto digits = [&] {
            if (!isDigit())
                fail("Número inválido", start);
            while (isDigit())
                ++at_;
        };
        take('-');
        if (!take('0'))
            digits();
        if (take('.'))
            digits();
        if (take('e') || take('E')) {
            if (!take('+'))
                take('-');
            digits();
        }
        return text_.substr(start, at_ - start);
    }

    std::string string() {
        const std::size_t quote = at_++;
        std::string result;
        for (;;) {
            if (byte() < 0)
                fail("Texto sin cerrar", quote);
            if (byte() < 0x20)
                fail("Carácter de control sin escapar dentro de un texto");
            const char character = text_[at_++];
            if (character == '"')
                return result;
            if (character == '\\')
                escape(result, quote);
            else
                result += character;
        }
    }

    void escape(std::string& result, std::size_t quote) {
        const std::size_t backslash = at_ - 1;
        if (byte() < 0)
            fail("Texto sin cerrar", quote);
        static constexpr std::string_view letters = "\"\\/bfnrt";
        static constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        const char letter = text_[at_++];
        if (letter == 'u')
            utf8::append(result, codePoint(backslash));
        else if (const auto which = letters.find(letter); which != letters.npos)
            result += meanings[which];
        else
            fail("Secuencia de escape inválida", backslash);
    }

    char32_t codePoint(std::size_t backslash) {
        const char32_t unit = hexDigits();
        if (unit >= 0xDC00 && unit <= 0xDFFF)
            fail("Surrogate UTF-16 sin pareja", backslash);
        if (unit < 0xD800 || unit > 0xDBFF)
            return unit;
        if (text_.substr(at_, 2) != "\\u")
            fail("Surrogate UTF-16 sin pareja", backslash);
        at_ += 2;
        const char32_t second = hexDigits();
        if (second < 0xDC00 || second > 0xDFFF)
            fail("Surrogate UTF-16 inválido", backslash);
        return 0x10000 + ((unit - 0xD800) << 10) + (second - 0xDC00);
    }

    char32_t hexDigits() {
        if (text_.size() - at_ < 4)
            fail("Escape \\u incompleto");
        const std::string four(text_.substr(at_, 4));
        if (four.find_first_not_of("0123456789abcdefABCDEF") != four.npos)
            fail("Dígito hexadecimal inválido en escape \\u");
        at_ += 4;
        return static_cast<char32_t>(std::stoul(four, nullptr, 16));
    }

    std::string_view text_;
    std::size_t at_ = 0;
    NaiveTree tree_;
    std::vector<NodeID> open_;
};

JSONParseError located(const Fault& fault, std::string_view text) {
    const std::string_view before = text.substr(0, fault.offset);
    std::int64_t line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    return {fault.message, static_cast<std::int64_t>(fault.offset), line,
            1 + graphemes::count(before.substr(lineStart))};
}

} // namespace

std::expected<NaiveTree, JSONParseError> naiveParse(std::string_view text) {
    try {
        return NaiveParser(text).parse();
    } catch (const Fault& fault) {
        return std::unexpected(located(fault, text));
    }
}

} // namespace quelm::test
