#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace lorvane::mailstore::test {

/// A folder of its own for one test; it goes with the object.
class TempFolder {
public:
    TempFolder() : TempFolder(std::filesystem::temp_directory_path()) {}
    explicit TempFolder(const std::filesystem::path& root);
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    const std::filesystem::path& path() const noexcept { return path_; }
    std::filesystem::path file(const char* name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

/// A place for what is written over and over, and need not be on a disk: in memory where the machine has such a place.
std::filesystem::path memoryFolder();

std::vector<std::uint8_t> readBytes(const std::filesystem::path& file);
void writeBytes(const std::filesystem::path& file, const std::vector<std::uint8_t>& bytes);

}  // namespace lorvane::mailstore::test
