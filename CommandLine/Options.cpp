#include "CommandLine/Options.h"

#include <algorithm>
#include <array>

namespace quelm {

namespace {

/// A command's name and what may follow it.
struct Grammar {
    std::string_view name;
    bool hasLayoutOptions;
    bool hasOutputOption;
    bool takesSeveralFiles;
};

constexpr std::array grammars{
    Grammar{"check", false, false, true},
    Grammar{"format", true, true, false},
    Grammar{"compact", false, true, false},
};

/// The arguments that follow a command's name, sorted out.
struct Operands {
    JSONStyle::Indent indent = JSONStyle::Indent::twoSpaces;
    bool sortKeys = false;
    bool wantsHelp = false;
    std::optional<std::string> output;
    std::vector<std::string> files;
};

std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

std::unexpected<UsageError> usageError(std::string message) {
    return std::unexpected(UsageError{std::move(message)});
}

bool isOption(std::string_view argument) {
    return argument.size() > 1 && argument.starts_with('-');
}

bool isHelpOption(std::string_view argument) {
    return argument == "--help" || argument == "-h";
}

/// Goes through the arguments of one command.
class OperandParser {
public:
    OperandParser(const Grammar& grammar, std::span<const std::string_view> arguments)
        : grammar_(grammar), rest_(arguments) {}

    std::expected<Operands, UsageError> parse() {
        bool optionsEnded = false;
        while (!rest_.empty()) {
            const std::string_view argument = next();
            if (optionsEnded || !isOption(argument)) {
                operands_.files.emplace_back(argument);
            } else if (argument == "--") {
                optionsEnded = true;
            } else if (isHelpOption(argument)) {
                operands_.wantsHelp = true;
            } else if (auto taken = takeOption(argument); !taken) {
                return std::unexpected(std::move(taken.error()));
            }
        }
        return std::move(operands_);
    }

private:
    std::string_view next() {
        const std::string_view first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }

    std::expected<void, UsageError> takeOption(std::string_view argument) {
        constexpr std::string_view indentPrefix = "--indent=";
        if (grammar_.hasLayoutOptions && argument == "--sort-keys") {
            operands_.sortKeys = true;
            return {};
        }
        if (grammar_.hasLayoutOptions && argument.starts_with(indentPrefix))
            return takeIndent(argument.substr(indentPrefix.size()));
        const bool isIndent = grammar_.hasLayoutOptions && argument == "--indent";
        const bool isOutput = grammar_.hasOutputOption && argument == "-o";
        if (!isIndent && !isOutput)
            return usageError("La orden " + quoted(grammar_.name) + " no tiene la opción " + quoted(argument));
        if (rest_.empty())
            return usageError("Falta el valor de la opción " + quoted(argument));
        if (isIndent)
            return takeIndent(next());
        operands_.output = next();
        return {};
    }

    std::expected<void, UsageError> takeIndent(std::string_view value) {
        const auto indent = JSONStyle::indentFromRawValue(value);
        if (!indent)
            return usageError("No existe la sangría " + quoted(value) + "; puede ser twoSpaces, fourSpaces o tab");
        operands_.indent = *indent;
        return {};
    }

    const Grammar& grammar_;
    std::span<const std::string_view> rest_;
    Operands operands_;
};

Command makeCommand(const Grammar& grammar, Operands operands) {
    if (operands.wantsHelp)
        return HelpCommand{};
    if (grammar.takesSeveralFiles)
        return CheckCommand{std::move(operands.files)};
    if (operands.output == "-")
        operands.output.reset();
    const JSONStyle style =
        grammar.hasLayoutOptions ? JSONStyle::pretty(operands.indent, operands.sortKeys) : JSONStyle::compact();
    return RewriteCommand{style, std::move(operands.files.front()), std::move(operands.output)};
}

} // namespace

std::expected<Command, UsageError> parseCommand(std::span<const std::string_view> arguments) {
    if (arguments.empty())
        return usageError("Falta una orden");
    const std::string_view name = arguments.front();
    if (isHelpOption(name))
        return HelpCommand{};
    if (name == "--version")
        return VersionCommand{};

    const auto* grammar = std::ranges::find(grammars, name, &Grammar::name);
    if (grammar == grammars.end())
        return usageError((isOption(name) ? "No existe la opción " : "No existe la orden ") + quoted(name));

    auto operands = OperandParser(*grammar, arguments.subspan(1)).parse();
    if (!operands)
        return std::unexpected(std::move(operands.error()));
    if (!operands->wantsHelp && operands->files.empty())
        return usageError("Falta el archivo");
    if (!operands->wantsHelp && operands->files.size() > 1 && !grammar->takesSeveralFiles)
        return usageError("La orden " + quoted(name) + " lee un solo archivo y sobra " + quoted(operands->files[1]));
    return makeCommand(*grammar, std::move(*operands));
}

} // namespace quelm
