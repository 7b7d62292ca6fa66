#pragma once

#include <string>
#include <string_view>

#include "host/Object.h"

/// Files and standard streams of a command; "-" stands for standard input or output. Failures end the command with a line that names the file.
namespace lorvane::cli {

host::Bytes readInput(const std::string& file);
/// The whole of an input as UTF-8 text: a byte order mark goes, line ends become CR LF.
std::u16string readTextInput(const std::string& file);

/// Writes everything or nothing: a file is made beside its place and moved there when it is whole.
void writeOutput(const std::string& file, const host::Bytes& bytes);

/// A line on standard output or error.
void printLine(std::u16string_view text);
void tell(std::u16string_view text);
void tell(std::string_view text);

}  // namespace lorvane::cli
