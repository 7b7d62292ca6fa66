#pragma once

#include <filesystem>
#include <optional>

namespace lorvane::services {

/// The run's own temporary folder: made when it is first asked for, readable by its user alone, and gone with this object.
class RunFolder {
public:
    /// `root` is where it is made; the system's place for temporary files where it is empty.
    explicit RunFolder(std::filesystem::path root) : root_(std::move(root)) {}
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;
    ~RunFolder();

    /// The folder, made anew where somebody took it away; none where it cannot be made.
    std::optional<std::filesystem::path> path();

private:
    std::filesystem::path root_, path_;
};

}  // namespace lorvane::services
