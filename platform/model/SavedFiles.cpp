#include "model/SavedFiles.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "host/TextFunctions.h"
#include "model/Failures.h"

namespace lorvane::model {

namespace fs = std::filesystem;

fs::path systemPath(std::u16string_view path) {
    std::string utf8 = host::toUtf8(path);
    std::ranges::replace(utf8, '\\', '/');
    return fs::path(utf8).lexically_normal();
}

std::u16string_view fileNameOf(std::u16string_view path) noexcept {
    const std::size_t mark = path.find_last_of(u"\\/");
    return mark == std::u16string_view::npos ? path : path.substr(mark + 1);
}

void SavedFiles::write(std::u16string_view path, const mailstore::AttachmentRecord& attachment) {
    const fs::path file = systemPath(path);
    const auto data = attachment.data ? attachment.data : std::make_shared<const mailstore::Bytes>();
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(data->data()), static_cast<std::streamsize>(data->size()));
    stream.close();
    if (!stream) raiseFailed(u"Cannot save the attachment to the file \"" + std::u16string(path) + u"\".");
    saved_.insert_or_assign(file, Saved{attachment.contentId, attachment.mimeType, attachment.inlinePicture, data});
}

mailstore::AttachmentRecord SavedFiles::read(std::u16string_view path) const {
    const fs::path file = systemPath(path);
    std::error_code failure;
    std::ifstream stream(file, std::ios::binary);
    if (!stream || !fs::is_regular_file(file, failure)) {
        throw host::HostError(NoSuchFile, u"Cannot find the file \"" + std::u16string(path) + u"\".");
    }
    auto data = std::make_shared<const mailstore::Bytes>(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());

    mailstore::AttachmentRecord attachment;
    attachment.fileName = fileNameOf(path);
    attachment.displayName = attachment.fileName;
    attachment.data = std::move(data);
    if (const auto known = saved_.find(file); known != saved_.end() && *known->second.data == *attachment.data) {
        attachment.contentId = known->second.contentId;
        attachment.mimeType = known->second.mimeType;
        attachment.inlinePicture = known->second.inlinePicture;
        attachment.data = known->second.data;
    }
    return attachment;
}

}  // namespace lorvane::model
