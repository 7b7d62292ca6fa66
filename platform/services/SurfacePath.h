#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Paths of the surface are the file system's with "\" for "/". They are turned round here and nowhere else.
namespace lorvane::services {

/// The file system's path; "\" and "/" both part folders. Error 75 for an empty path, 52 for one that holds a NUL.
std::filesystem::path systemPath(std::u16string_view path);

/// The surface's path; none for one that the surface cannot name: with "\" in a name, or with bytes that are no text.
std::optional<std::u16string> surfacePath(const std::filesystem::path& path);

}  // namespace lorvane::services
