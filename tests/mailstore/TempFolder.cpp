#include "mailstore/TempFolder.h"

#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace lorvane::mailstore::test {

TempFolder::TempFolder(const std::filesystem::path& root) {
    std::string pattern = (root / "lorvane-mailstore-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    path_ = pattern;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path memoryFolder() {
    const std::filesystem::path shared = "/dev/shm";
    return ::access(shared.c_str(), W_OK) == 0 ? shared : std::filesystem::temp_directory_path();
}

std::vector<std::uint8_t> readBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeBytes(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

}  // namespace lorvane::mailstore::test
