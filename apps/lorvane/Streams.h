#pragma once

#include <string>
#include <string_view>

#include "host/Object.h"

/// Files and standard streams of a command; "-" stands for standard input or output. Failures end the command with a line that names the file.
namespace lorvane::cli {

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
/// A line, or a text of several, on standard error; control characters as above, but for line ends.
void tell(std::u16string_view text);
void tell(std::string_view text);

}  // namespace lorvane::cli
