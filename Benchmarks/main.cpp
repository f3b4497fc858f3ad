#include "Benchmarks/Groups.h"
#include "Benchmarks/Options.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <vector>

using namespace quelm::bench;

namespace {

struct Group {
    std::string_view name;
    bool (*run)(const Options&);
};

constexpr std::array groups = std::to_array<Group>(
    {{"json", runJSONGroup},
                                                    {"outline", runOutlineGroup},
                                                    {"text", runTextGroup},
                                                    {"window", runWindowGroup},
                                                    {"files", runFilesGroup}});

constexpr char usage[] =
    "Usage: quelm-bench [GROUP...] [--corpus FILE...] [--size MB] [--only TEXT] [--all-peers] [--warm]\n"
    "                   [--cache-folder FOLDER] [--shared-folder FOLDER]\n";

} // namespace

int main(int count, char** arguments) {
    std::array<std::string_view, groups.size()> names;
    std::ranges::transform(groups, names.begin(), &Group::name);
    const auto options = Options::parse(std::vector<std::string_view>(arguments + 1, arguments + count), names);
    if (!options) {
        std::fprintf(stderr, "quelm-bench: %s\n%s", options.error().c_str(), usage);
        return 2;
    }
    bool isComplete = true;
    for (const Group& group : groups)
        if (options->groups.empty() || std::ranges::find(options->groups, group.name) != options->groups.end())
            isComplete = group.run(*options) && isComplete;
    return isComplete ? 0 : 1;
}
