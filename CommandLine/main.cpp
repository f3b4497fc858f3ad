#include "CommandLine/CommandRunner.h"
#include "CommandLine/StandardStreams.h"

#include <cstdlib>
#include <string_view>
#include <vector>

int main(int argc, char** argv) {
    quelm::standardStreams::prepare();
    const int firstArgument = argc > 0 ? 1 : 0;
    const std::vector<std::string_view> arguments(argv + firstArgument, argv + argc);

    quelm::CommandRunner runner;
    const quelm::ExitStatus status = runner.run(arguments);
    // Everything is written, unbuffered: the system takes the memory back faster in one piece than block by
    // block.
    std::_Exit(static_cast<int>(status));
}
