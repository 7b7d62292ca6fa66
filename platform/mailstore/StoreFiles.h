#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// The file of a store and what SQLite keeps beside it.
namespace lorvane::mailstore {

/// A file as errors name it.
std::u16string quoted(const std::filesystem::path& file);
/// What stands beside a file: its log ("-wal"), the log's index ("-shm"), a journal.
std::filesystem::path beside(const std::filesystem::path& file, std::string_view ending);
/// In bytes; 0 also for one that is not there.
std::uintmax_t sizeOf(const std::filesystem::path& file);

}  // namespace lorvane::mailstore
