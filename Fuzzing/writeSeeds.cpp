// Writes the seeds of the target into a folder: fuzz-seeds TARGET FOLDER EXAMPLES.

#include "Fuzzing/Seeds.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string_view>

int main(int count, char** arguments) {
    if (count != 4) {
        std::fputs("usage: fuzz-seeds TARGET FOLDER EXAMPLES\n", stderr);
        return 2;
    }
    const std::string_view target = arguments[1];
    const std::filesystem::path folder = arguments[2];
    const auto seeds =
        target == "journal" ? quelm::fuzzing::journalSeeds() : quelm::fuzzing::openingSeeds(arguments[3]);
    std::filesystem::create_directories(folder);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream file(folder / ("seed-" + std::to_string(i)), std::ios::binary);
        file << seeds[i];
        if (!file.flush()) {
            std::fprintf(stderr, "%s cannot be written\n", folder.c_str());
            return 1;
        }
    }
    return 0;
}
