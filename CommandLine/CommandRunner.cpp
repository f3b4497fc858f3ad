#include "CommandLine/CommandRunner.h"

#include "CommandLine/FileReading.h"
#include "CommandLine/FileWriting.h"
#include "CommandLine/HelpText.h"
#include "CommandLine/StandardStreams.h"
#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONSerializer.h"

#include <algorithm>
#include <array>
#include <new>
#include <variant>

namespace quelm {

namespace {

// One more than the parser takes: it then says itself that the text is too long.
constexpr auto readLimit = static_cast<std::size_t>(JSONParser::maximumTextSize) + 1;

ExitStatus complain(const std::string& name, std::string_view problem, ExitStatus status) {
    standardStreams::writeError(name + ": " + std::string(problem) + "\n");
    return status;
}

ExitStatus complainAboutReading(const std::string& name, SystemError error) {
    return complain(name, "No se puede leer: " + error.description(), ExitStatus::failure);
}

ExitStatus complainAboutWriting(const std::string& name, SystemError error) {
    return complain(name, "No se puede escribir: " + error.description(), ExitStatus::failure);
}

ExitStatus outputStatus(const std::expected<void, SystemError>& written) {
    if (written)
        return ExitStatus::success;
    // A reader that has seen enough, as the first lines in a pager, needs no message.
    if (written.error().code == EPIPE)
        return ExitStatus::failure;
    return complainAboutWriting("salida estándar", written.error());
}

std::string_view styleName(const JSONStyle& style) {
    constexpr std::array<std::string_view, JSONStyle::allIndents.size()> names{"2 espacios", "4 espacios", "tabulador"};
    const auto indent = style.prettyIndent();
    return indent ? names[static_cast<std::size_t>(*indent)] : "compacto";
}

std::string nodeCountText(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " nodo" : " nodos");
}

} // namespace

ExitStatus CommandRunner::run(std::span<const std::string_view> arguments) {
    const auto command = parseCommand(arguments);
    if (!command) {
        standardStreams::writeError("quelm-cli: " + command.error().message + "\n");
        standardStreams::writeError(helpText::usage());
        return ExitStatus::failure;
    }
    const ExitStatus status = std::visit([this](const auto& asked) { return run(asked); }, *command);
    return std::max(status, outputStatus(standardStreams::closeOutput()));
}

ExitStatus CommandRunner::run(const HelpCommand&) {
    return outputStatus(standardStreams::writeOutput(helpText::full()));
}

ExitStatus CommandRunner::run(const VersionCommand&) {
    return outputStatus(standardStreams::writeOutput(helpText::version()));
}

ExitStatus CommandRunner::run(const CheckCommand& command) {
    ExitStatus worst = ExitStatus::success;
    for (const std::string& name : command.files)
        worst = std::max(worst, checkFile(name));
    return worst;
}

ExitStatus CommandRunner::checkFile(const std::string& name) {
    const ExitStatus status = load(name);
    if (status != ExitStatus::success)
        return status;
    return outputStatus(standardStreams::writeOutput(name + ": válido, " + nodeCountText(content_->tree->nodeCount()) +
                                                     ", " + std::string(styleName(content_->style)) + "\n"));
}

ExitStatus CommandRunner::run(const RewriteCommand& command) {
    const ExitStatus status = load(command.input);
    if (status != ExitStatus::success)
        return status;
    if (!command.output)
        return outputStatus(writeResult(command.style, standardStreams::writeOutput));
    const auto produce = [&](const WritePiece& write) { return writeResult(command.style, write); };
    if (const auto written = writeFile(*command.output, produce); !written)
        return complainAboutWriting(*command.output, written.error());
    return ExitStatus::success;
}

/// Writes the document a piece at a time: the whole of it is never in memory.
std::expected<void, SystemError> CommandRunner::writeResult(const JSONStyle& style, const WritePiece& write) {
    try {
        JSONSerializer::serialize(*content_->tree, std::nullopt, style, [&write](std::string_view piece) {
            if (const auto written = write(piece); !written)
                throw written.error();
        });
        return {};
    } catch (const SystemError& error) {
        return std::unexpected(error);
    } catch (const std::bad_alloc&) {
        return std::unexpected(SystemError{ENOMEM});
    }
}

/// Puts the file into `content_`, which has a tree when the status is `success`; tells what is wrong
/// otherwise.
ExitStatus CommandRunner::load(const std::string& name) {
    content_.reset();
    try {
        auto bytes = name == "-" ? standardStreams::readInput(readLimit) : readFile(name, readLimit);
        if (!bytes)
            return complainAboutReading(name, bytes.error());
        auto content = JSONContent::fromData(std::move(*bytes));
        if (!content)
            return complain(name, content.error().errorDescription(), ExitStatus::invalid);
        if (content->parseError)
            return complain(name, content->parseError->errorDescription(), ExitStatus::invalid);
        content_ = std::move(*content);
        return ExitStatus::success;
    } catch (const std::bad_alloc&) {
        return complainAboutReading(name, SystemError{ENOMEM});
    }
}

} // namespace quelm
