#include "Tests/CommandLine/CommandLineProcess.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <ostream>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quelm {

namespace {

struct Pipe {
    int reading = -1;
    int writing = -1;

    Pipe() {
        std::array<int, 2> ends{};
        require(::pipe2(ends.data(), O_CLOEXEC) == 0, "a pipe can be made");
        reading = ends[0];
        writing = ends[1];
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        close(reading);
        close(writing);
    }

    static void close(int& end) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
};

std::string readToEnd(int descriptor) {
    std::string bytes;
    std::array<char, 65536> piece{};
    ssize_t count = 0;
    while ((count = ::read(descriptor, piece.data(), piece.size())) > 0)
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    return bytes;
}

void writeInPieces(int descriptor, std::string_view bytes) {
    constexpr std::size_t pieceSize = 1000;
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), std::min(bytes.size(), pieceSize));
        if (written < 0)
            return; // the program read no further
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

// Between fork and exec only calls that POSIX lists as safe there.
[[noreturn]] void startProgram(const CommandLineProcess& process, char* const* arguments, const Pipe& input,
                               const Pipe& output, const Pipe& errors) {
    using Stream = CommandLineProcess::Stream;
    std::signal(SIGPIPE, SIG_DFL);
    ::dup2(errors.writing, STDERR_FILENO);

    const int full = ::open("/dev/full", O_RDWR | O_CLOEXEC);
    ::dup2(input.reading, STDIN_FILENO);
    ::dup2(process.outputStream == Stream::full ? full : output.writing, STDOUT_FILENO);
    if (process.inputStream == Stream::closed)
        ::close(STDIN_FILENO);
    if (process.outputStream == Stream::closed)
        ::close(STDOUT_FILENO);

    if (process.largestFile) {
        const auto limit = static_cast<rlim_t>(*process.largestFile);
        const rlimit limits{limit, limit};
        ::setrlimit(RLIMIT_FSIZE, &limits);
    }
    if (::chdir(process.folder.c_str()) == 0)
        ::execv(QUELM_CLI_PATH, arguments);
    ::_exit(127);
}

} // namespace

CommandLineProcess::Result CommandLineProcess::run() const {
    // A program that reads no further must not end the test.
    std::signal(SIGPIPE, SIG_IGN);

    std::vector<std::string> texts = arguments;
    texts.insert(texts.begin(), "quelm-cli");
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    Pipe in;
    Pipe out;
    Pipe err;
    if (outputStream == Stream::broken)
        Pipe::close(out.reading);
    const pid_t child = ::fork();
    require(child >= 0, "a process can be started");
    if (child == 0)
        startProgram(*this, pointers.data(), in, out, err);
    Pipe::close(in.reading);
    Pipe::close(out.writing);
    Pipe::close(err.writing);

    // All three streams at once: a program that waits for one of them must not wait for ever.
    Result result;
    std::thread feeding([&] {
        writeInPieces(in.writing, input);
        Pipe::close(in.writing);
    });
    std::thread collecting([&] { result.errors = readToEnd(err.reading); });
    if (out.reading >= 0)
        result.output = readToEnd(out.reading);
    feeding.join();
    collecting.join();

    int status = 0;
    require(::waitpid(child, &status, 0) == child, "the process can be waited for");
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

CommandLineProcess::Result runCommandLine(std::vector<std::string> arguments) {
    return CommandLineProcess{.arguments = std::move(arguments)}.run();
}

std::ostream& operator<<(std::ostream& out, const CommandLineProcess::Result& result) {
    return out << "status " << result.status << "\noutput: " << result.output << "\nerrors: " << result.errors;
}

} // namespace quelm
