#include "Streams.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "ExitStatus.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

namespace {

constexpr std::string_view standardStream = "-";

[[noreturn]] void failOn(std::string_view what, const std::string& file, int error) {
    throw CommandEnd(ExitStatus::Fault, std::string(what) + " " + file + ": " + std::strerror(error));
}

void writeAll(std::ostream& stream, std::string_view bytes) {
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.flush();
}

void writeStandardOutput(std::string_view bytes) {
    errno = 0;
    writeAll(std::cout, bytes);
    if (!std::cout) failOn("cannot write", "standard output", errno ? errno : EIO);
}

bool isStandardOutput(const std::string& file) {
    return file.empty() || file == standardStream;
}

/// Where the file of this name really lies: behind the links, also one that leads to nothing yet.
std::filesystem::path targetOf(const std::string& file) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::weakly_canonical(std::filesystem::absolute(file), error);
    return error ? std::filesystem::path(file) : target;
}

/// A device or a pipe is written to as it is; moving a file there would replace it.
bool isPlainFile(const std::filesystem::path& target) {
    std::error_code ignored;
    return !std::filesystem::exists(target, ignored) || std::filesystem::is_regular_file(target, ignored);
}

/// Where a file is made until it is whole.
std::filesystem::path placeBeside(std::filesystem::path target) {
    target += ".part-" + std::to_string(::getpid());
    return target;
}

bool isControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

/// What is shown of a text, with these in the place of a line end and of a tab.
std::u16string shown(std::u16string_view text, char16_t lineEnd, char16_t tab) {
    std::u16string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (unit == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') continue;
        if (unit == u'\r' || unit == u'\n')
            result += lineEnd;
        else
            result += unit == u'\t' ? tab : isControl(unit) ? u'\uFFFD' : unit;
    }
    return result;
}

}  // namespace

Input::Input(const std::string& file) : name_(file), stream_(file == standardStream ? std::cin : file_) {
    if (file == standardStream) return;
    if (std::filesystem::is_directory(file)) failOn("cannot read", file, EISDIR);
    errno = 0;
    file_.open(file, std::ios::binary);
    if (!file_) failOn("cannot read", file, errno ? errno : EIO);
}

std::size_t Input::read(std::span<std::uint8_t> buffer) {
    stream_.read(reinterpret_cast<char*>(buffer.data()), static_cast<std::streamsize>(buffer.size()));
    if (stream_.bad()) failOn("cannot read", name_, EIO);
    return static_cast<std::size_t>(stream_.gcount());
}

host::Bytes readInput(const std::string& file) {
    constexpr std::size_t piece = std::size_t{1} << 16;
    Input input(file);
    host::Bytes bytes;
    for (;;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + piece);
        const std::size_t count = input.read(std::span(bytes).subspan(before));
        bytes.resize(before + count);
        if (count == 0) return bytes;
    }
}

std::u16string readTextInput(const std::string& file) {
    const host::Bytes bytes = readInput(file);
    const std::string_view utf8(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::u16string text = host::fromUtf8(utf8);
    if (host::toUtf8(text) != utf8) throw CommandEnd(ExitStatus::Fault, "cannot read " + file + ": it is not text in UTF-8");
    if (!text.empty() && text.front() == u'\uFEFF') text.erase(0, 1);
    return host::Replace(host::Replace(text, u"\r\n", u"\n"), u"\n", u"\r\n");
}

void requireWritable(const std::string& file) {
    if (isStandardOutput(file)) return;
    const std::filesystem::path target = targetOf(file);
    std::error_code ignored;
    if (std::filesystem::is_directory(target, ignored)) failOn("cannot write", file, EISDIR);
    if (!isPlainFile(target)) {
        if (::access(target.c_str(), W_OK) != 0) failOn("cannot write", file, errno);
        return;
    }
    // Trying tells more than rights do: a file system may be read-only, or full of rules of its own.
    const std::filesystem::path place = placeBeside(target);
    errno = 0;
    if (!std::ofstream(place)) failOn("cannot write", file, errno ? errno : EIO);
    std::filesystem::remove(place, ignored);
}

void writeOutput(const std::string& file, const host::Bytes& bytes) {
    const std::string_view content(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (isStandardOutput(file)) return writeStandardOutput(content);
    const std::filesystem::path target = targetOf(file);
    const bool plainFile = isPlainFile(target);
    const std::filesystem::path place = plainFile ? placeBeside(target) : target;
    std::error_code ignored;
    {
        errno = 0;
        std::ofstream stream(place, std::ios::binary | std::ios::trunc);
        if (!stream) failOn("cannot write", file, errno ? errno : EIO);
        writeAll(stream, content);
        if (!stream) {
            const int error = errno ? errno : EIO;
            if (plainFile) std::filesystem::remove(place, ignored);
            failOn("cannot write", file, error);
        }
    }
    if (!plainFile) return;
    if (const auto before = std::filesystem::status(target, ignored); std::filesystem::exists(before))
        std::filesystem::permissions(place, before.permissions(), ignored);
    std::error_code moved;
    std::filesystem::rename(place, target, moved);
    if (moved) {
        std::filesystem::remove(place, ignored);
        failOn("cannot write", file, moved.value());
    }
}

void print(std::u16string_view text) {
    if (!text.empty()) writeStandardOutput(host::toUtf8(text));
}

std::u16string onOneLine(std::u16string_view text) {
    return shown(text, u' ', u' ');
}

std::u16string asLines(std::u16string_view text) {
    std::u16string lines = shown(text, u'\n', u'\t');
    if (!lines.empty() && lines.back() != u'\n') lines += u'\n';
    return lines;
}

void tell(std::u16string_view text) {
    std::cerr << host::toUtf8(shown(text, u'\n', u' ')) << '\n';
}

void tell(std::string_view text) {
    tell(host::fromUtf8(text));
}

}  // namespace lorvane::cli
