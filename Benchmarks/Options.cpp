#include "Benchmarks/Options.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace quelm::bench {

namespace {

std::optional<std::uint32_t> parseMegabytes(std::string_view text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || number == 0)
        return std::nullopt;
    return number;
}

std::string listed(std::span<const std::string_view> names) {
    std::string text;
    for (const std::string_view name : names)
        text.append(text.empty() ? "" : ", ").append(name);
    return text;
}

/// Takes arguments one by one and stops at the first that it cannot make sense of.
class ArgumentParser {
public:
    ArgumentParser(std::span<const std::string_view> arguments, std::span<const std::string_view> groups)
        : arguments_(arguments), groups_(groups) {}

    std::expected<Options, std::string> parse() {
        while (next_ < arguments_.size() && error_.empty())
            take(arguments_[next_++]);
        if (!error_.empty())
            return std::unexpected(error_);
        return options_;
    }

private:
    void take(std::string_view argument) {
        if (argument == "--all-peers")
            options_.allPeers = true;
        else if (argument == "--warm")
            options_.warm = true;
        else if (argument == "--corpus")
            takeCorpora();
        else if (argument == "--size")
            takeSize();
        else if (argument == "--only")
            options_.only = value(argument);
        else if (argument == "--cache-folder")
            options_.cacheFolder = value(argument);
        else if (argument == "--shared-folder")
            options_.sharedFolder = value(argument);
        else if (argument.starts_with("-"))
            error_ = "unknown option '" + std::string(argument) + "'";
        else
            takeGroup(argument);
    }

    bool isGroup(std::string_view name) const { return std::ranges::find(groups_, name) != groups_.end(); }

    void takeGroup(std::string_view name) {
        if (isGroup(name))
            options_.groups.emplace_back(name);
        else
            error_ = "unknown group '" + std::string(name) + "' (there are: " + listed(groups_) + ")";
    }

    /// All arguments up to the next option or group.
    void takeCorpora() {
        const std::size_t before = options_.corpora.size();
        while (next_ < arguments_.size() && !arguments_[next_].starts_with("-") && !isGroup(arguments_[next_]))
            options_.corpora.emplace_back(arguments_[next_++]);
        if (options_.corpora.size() == before)
            error_ = "--corpus needs the name of a file";
    }

    void takeSize() {
        if (const auto megabytes = parseMegabytes(value("--size")))
            options_.recordSizes.push_back(*megabytes);
        else
            error_ = "--size needs a number of megabytes";
    }

    std::string_view value(std::string_view option) {
        if (next_ < arguments_.size())
            return arguments_[next_++];
        error_ = std::string(option) + " needs a value";
        return {};
    }

    std::span<const std::string_view> arguments_;
    std::span<const std::string_view> groups_;
    std::size_t next_ = 0;
    Options options_;
    std::string error_;
};

} // namespace

std::expected<Options, std::string> Options::parse(std::span<const std::string_view> arguments,
                                                   std::span<const std::string_view> groups) {
    return ArgumentParser(arguments, groups).parse();
}

} // namespace quelm::bench
