#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "mailstore/ItemRecord.h"

namespace lorvane::model {

/// A path of the surface as the file system's: "\" and "/" both part folders.
std::filesystem::path systemPath(std::u16string_view path);
/// The part of a path behind its last folder mark.
std::u16string_view fileNameOf(std::u16string_view path) noexcept;

/// Attachments as files. What was written in this run is remembered, so that a file that comes back as an attachment is known for what it was.
class SavedFiles {
public:
    /// Writes the content of an attachment; error 0x80004005 with a sentence where the file cannot be written.
    void write(std::u16string_view path, const mailstore::AttachmentRecord& attachment);
    /// A new attachment from a file; error 0x80070002 where it cannot be read. One that `write` made, unchanged since, keeps its content id and MIME type.
    mailstore::AttachmentRecord read(std::u16string_view path) const;

private:
    struct Saved {
        std::u16string contentId, mimeType;
        bool inlinePicture;
        std::shared_ptr<const mailstore::Bytes> data;
    };
    std::map<std::filesystem::path, Saved> saved_;
};

}  // namespace lorvane::model
