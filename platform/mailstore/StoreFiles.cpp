#include "mailstore/StoreFiles.h"

#include <system_error>

#include "host/TextFunctions.h"

namespace lorvane::mailstore {

std::u16string quoted(const std::filesystem::path& file) {
    const std::u8string utf8 = file.u8string();
    return u'"' + host::fromUtf8({reinterpret_cast<const char*>(utf8.data()), utf8.size()}) + u'"';
}

std::filesystem::path beside(const std::filesystem::path& file, std::string_view ending) {
    std::filesystem::path other = file;
    return other += ending;
}

std::uintmax_t sizeOf(const std::filesystem::path& file) {
    std::error_code none;
    const std::uintmax_t size = std::filesystem::file_size(file, none);
    return none ? 0 : size;
}

}  // namespace lorvane::mailstore
