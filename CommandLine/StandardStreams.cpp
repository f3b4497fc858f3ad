#include "CommandLine/StandardStreams.h"

#include "FileCore/FileDescriptor.h"
#include "CommandLine/FileReading.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quelm::standardStreams {

void prepare() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);

    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) >= 0)
            continue;
        // Opened the wrong way round: using the stream fails as it would if it were closed. The lowest free
        // number is given, which is the stream's, since the ones before it are taken.
        (void)::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

std::expected<SharedText, SystemError> readInput(std::size_t limit) {
    return readDescriptor(STDIN_FILENO, limit);
}

std::expected<void, SystemError> writeOutput(std::string_view bytes) {
    return writeAll(STDOUT_FILENO, bytes);
}

void writeError(std::string_view bytes) {
    (void)writeAll(STDERR_FILENO, bytes);
}

std::expected<void, SystemError> closeOutput() {
    return FileDescriptor(STDOUT_FILENO).close();
}

} // namespace quelm::standardStreams
