#include "services/SurfacePath.h"

#include <algorithm>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "services/FileErrors.h"

namespace lorvane::services {

std::filesystem::path systemPath(std::u16string_view path) {
    if (path.empty()) throw host::HostError(host::runtime_error::PathFileAccess);
    if (path.find(u'\0') != std::u16string_view::npos) throw host::HostError(BadFileName);
    std::string utf8 = host::toUtf8(path);
    std::ranges::replace(utf8, '\\', '/');
    return std::filesystem::path(utf8).lexically_normal();
}

std::optional<std::u16string> surfacePath(const std::filesystem::path& path) {
    const std::string& bytes = path.native();
    std::u16string text = host::fromUtf8(bytes);
    if (bytes.find('\\') != std::string::npos || host::toUtf8(text) != bytes) return std::nullopt;
    std::ranges::replace(text, u'/', u'\\');
    return text;
}

}  // namespace lorvane::services
