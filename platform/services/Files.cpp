#include "services/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "host/HostError.h"
#include "services/FileErrors.h"
#include "services/SurfacePath.h"

namespace lorvane::services {

namespace fs = std::filesystem;
using host::Variant;

namespace {

constexpr std::int32_t documentsFolder = 5;
constexpr std::int32_t applicationDataFolder = 26;

/// An open file; every failure is a HostError.
class OpenFile {
public:
    OpenFile(const fs::path& path, int flags) : path_(path), file_(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666)) {
        if (file_ < 0) raiseFileError(errno == ENOENT && (flags & O_CREAT) ? ENOTDIR : errno, path_);
    }
    ~OpenFile() {
        if (file_ >= 0) ::close(file_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool isRegular() const {
        struct stat found {};
        return ::fstat(file_, &found) == 0 && S_ISREG(found.st_mode);
    }

    host::Bytes readAll() {
        host::Bytes bytes;
        std::array<std::uint8_t, 65536> piece;
        for (;;) {
            const ssize_t count = ::read(file_, piece.data(), piece.size());
            if (count == 0) return bytes;
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) raiseFileError(errno, path_);
            bytes.insert(bytes.end(), piece.begin(), piece.begin() + count);
        }
    }

    void writeAll(const host::Bytes& bytes) {
        for (std::size_t written = 0; written < bytes.size();) {
            const ssize_t count = ::write(file_, bytes.data() + written, bytes.size() - written);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) raiseFileError(errno, path_);
            written += static_cast<std::size_t>(count);
        }
    }

    /// A network's disk may tell of a failed write only now.
    void close() {
        if (::close(std::exchange(file_, -1)) != 0 && errno != EINTR) raiseFileError(errno, path_);
    }

private:
    fs::path path_;
    int file_;
};

/// A question about a path that cannot be one has the answer no.
template <class Test>
bool holdsForPath(host::Args args, Test&& test) {
    const std::u16string path = textAt(args, 0);
    if (path.empty() || path.find(u'\0') != std::u16string::npos) return false;
    std::error_code failure;
    return test(fs::status(systemPath(path), failure));
}

}  // namespace

Files::Files(FilePlaces places, std::shared_ptr<const CodePage> codePage)
    : places_(std::move(places)), codePage_(std::move(codePage)), runFolder_(places_.temporaryRoot) {}

std::span<const Files::Row> Files::rows() noexcept {
    using host::Member;
    static constexpr Row table[] = {
        {Member::FolderExists, &Files::FolderExists},   {Member::FileExists, &Files::FileExists}, {Member::CreateFolder, &Files::CreateFolder},
        {Member::ReadText, &Files::ReadText},           {Member::WriteText, &Files::WriteText},   {Member::AppendText, &Files::AppendText},
        {Member::DeleteFile, &Files::DeleteFile},       {Member::ListFiles, &Files::ListFiles},   {Member::GetTempPath, &Files::GetTempPath},
        {Member::GetFolderPath, &Files::GetFolderPath},
    };
    return table;
}

Variant Files::FolderExists(host::Args args) {
    return holdsForPath(args, [](fs::file_status status) { return fs::is_directory(status); });
}

Variant Files::FileExists(host::Args args) {
    return holdsForPath(args, [](fs::file_status status) { return fs::exists(status) && !fs::is_directory(status); });
}

Variant Files::CreateFolder(host::Args args) {
    const fs::path path = systemPath(textAt(args, 0));
    if (::mkdir(path.c_str(), 0777) != 0) raiseFileError(errno == ENOENT ? ENOTDIR : errno, path);
    return {};
}

Variant Files::ReadText(host::Args args) {
    const fs::path path = systemPath(textAt(args, 0));
    OpenFile file(path, O_RDONLY);
    if (!file.isRegular()) throw host::HostError(host::runtime_error::PathFileAccess);
    return codePage_->decode(file.readAll());
}

void Files::write(host::Args args, int openFlags) {
    const fs::path path = systemPath(textAt(args, 0));
    const host::Bytes bytes = codePage_->encode(textAt(args, 1));
    OpenFile file(path, O_WRONLY | O_CREAT | openFlags);
    file.writeAll(bytes);
    file.close();
}

Variant Files::WriteText(host::Args args) {
    write(args, O_TRUNC);
    return {};
}

/// The whole text goes in one write at the end as it then is, so that several users of one file do not mix their lines.
Variant Files::AppendText(host::Args args) {
    write(args, O_APPEND);
    return {};
}

Variant Files::DeleteFile(host::Args args) {
    const fs::path path = systemPath(textAt(args, 0));
    if (::unlink(path.c_str()) != 0) raiseFileError(errno, path);
    return {};
}

Variant Files::ListFiles(host::Args args) {
    const fs::path folder = systemPath(textAt(args, 0));
    std::error_code failure;
    std::vector<std::u16string> names;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure)) {
        std::error_code ignored;
        if (entry->is_directory(ignored)) continue;
        if (auto name = surfacePath(entry->path().filename())) names.push_back(std::move(*name));
    }
    if (failure) raiseFileError(failure.value() == ENOENT ? ENOTDIR : failure.value(), folder);
    std::ranges::sort(names);
    host::Array list;
    for (std::u16string& name : names) list.items.emplace_back(std::move(name));
    return list;
}

Variant Files::GetTempPath(host::Args) {
    const auto folder = runFolder_.path();
    const auto path = folder ? surfacePath(*folder) : std::nullopt;
    return path ? *path + u"\\" : std::u16string();
}

Variant Files::GetFolderPath(host::Args args) {
    const std::int32_t number = numberAt(args, 0);
    if (number != documentsFolder && number != applicationDataFolder) throw host::HostError(host::runtime_error::InvalidProcedureCall);
    const fs::path& place = number == documentsFolder ? places_.documents : places_.applicationData;
    if (place.empty()) throw host::HostError(host::runtime_error::PathNotFound);
    // Callers make their own folders in it and count on it. One that cannot be made shows when it is used.
    std::error_code failure;
    fs::path folder = fs::absolute(place, failure).lexically_normal();
    if (!folder.has_filename()) folder = folder.parent_path();
    fs::create_directories(folder, failure);
    const auto path = surfacePath(folder);
    if (!path) throw host::HostError(BadFileName);
    return *path;
}

}  // namespace lorvane::services
