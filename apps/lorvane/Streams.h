#pragma once

#include <fstream>
#include <istream>
#include <span>
#include <string>
#include <string_view>

#include "host/Object.h"

/// Files and standard streams of a command; "-" stands for standard input or output. Failures end the command with a line that names the file.
namespace lorvane::cli {

/// A file or standard input, read piece by piece.
class Input {
public:
    explicit Input(const std::string& file);
    /// Fills the buffer from its start and tells how much came; 0 at the end.
    std::size_t read(std::span<std::uint8_t> buffer);

private:
    std::string name_;
    std::ifstream file_;
    std::istream& stream_;
};

host::Bytes readInput(const std::string& file);
/// The whole of an input, which must be UTF-8: a byte order mark goes, line ends become CR LF.
std::u16string readTextInput(const std::string& file);

/// Ends the command where `writeOutput` could not even begin, before anything is done.
void requireWritable(const std::string& file);
/// Writes everything or nothing: a file is made beside its place and moved there when it is whole. A link stays, and so do the rights of a file that was there.
void writeOutput(const std::string& file, const host::Bytes& bytes);
/// The whole result of a command on standard output.
void print(std::u16string_view text);

/// A text as one line of a list: tabs and line ends are blanks, other control characters, which a terminal would obey, are U+FFFD.
std::u16string onOneLine(std::u16string_view text);
/// A text of several lines, each with its end; tabs stay, other control characters are as above.
std::u16string asLines(std::u16string_view text);
/// A line, or a text of several, on standard error; control characters as above, but for line ends.
void tell(std::u16string_view text);
void tell(std::string_view text);

}  // namespace lorvane::cli
