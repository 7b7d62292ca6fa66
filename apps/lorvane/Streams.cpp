#include "Streams.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

#include "ExitStatus.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

namespace {

constexpr std::string_view standardStream = "-";

[[noreturn]] void failOn(std::string_view what, const std::string& file, int error) {
    throw CommandEnd(ExitStatus::Fault, std::string(what) + " " + file + ": " + std::strerror(error));
}

host::Bytes allOf(std::istream& stream) { return host::Bytes(std::istreambuf_iterator<char>(stream), {}); }

void writeAll(std::ostream& stream, const host::Bytes& bytes) {
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.flush();
}

}  // namespace

host::Bytes readInput(const std::string& file) {
    if (file == standardStream) return allOf(std::cin);
    if (std::filesystem::is_directory(file)) failOn("cannot read", file, EISDIR);
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) failOn("cannot read", file, errno ? errno : EIO);
    host::Bytes bytes = allOf(stream);
    if (stream.bad()) failOn("cannot read", file, EIO);
    return bytes;
}

std::u16string readTextInput(const std::string& file) {
    const host::Bytes bytes = readInput(file);
    std::u16string text = host::fromUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (!text.empty() && text.front() == u'\uFEFF') text.erase(0, 1);
    return host::Replace(host::Replace(text, u"\r\n", u"\n"), u"\n", u"\r\n");
}

void writeOutput(const std::string& file, const host::Bytes& bytes) {
    if (file.empty() || file == standardStream) {
        writeAll(std::cout, bytes);
        if (!std::cout) failOn("cannot write", "standard output", errno ? errno : EIO);
        return;
    }
    // A device or a pipe is written to as it is; moving a file there would replace it.
    const bool plainFile = !std::filesystem::exists(file) || std::filesystem::is_regular_file(file);
    const std::string place = plainFile ? file + ".part-" + std::to_string(::getpid()) : file;
    {
        errno = 0;
        std::ofstream stream(place, std::ios::binary | std::ios::trunc);
        if (!stream) failOn("cannot write", file, errno ? errno : EIO);
        writeAll(stream, bytes);
        if (!stream) {
            const int error = errno ? errno : EIO;
            std::error_code ignored;
            if (plainFile) std::filesystem::remove(place, ignored);
            failOn("cannot write", file, error);
        }
    }
    if (!plainFile) return;
    std::error_code moved;
    std::filesystem::rename(place, file, moved);
    if (moved) {
        std::error_code ignored;
        std::filesystem::remove(place, ignored);
        failOn("cannot write", file, moved.value());
    }
}

void printLine(std::u16string_view text) { std::cout << host::toUtf8(text) << '\n'; }

void tell(std::u16string_view text) { std::cerr << host::toUtf8(text) << '\n'; }

void tell(std::string_view text) { std::cerr << text << '\n'; }

}  // namespace lorvane::cli
