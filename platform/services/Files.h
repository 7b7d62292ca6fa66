#pragma once

#include <filesystem>
#include <memory>
#include <span>

#include "services/CodePage.h"
#include "services/RunFolder.h"
#include "services/ServiceObject.h"

namespace lorvane::services {

/// Where a run's files lie.
struct FilePlaces {
    std::filesystem::path documents, applicationData;  ///< made when they are first asked for; error 76 for one that is empty
    std::filesystem::path temporaryRoot;               ///< where the run's temporary folder is made; the system's place where it is empty
};

/// The files behind the surface (`host::Files`): the real file system, text in a single-byte code page.
///
/// Names that the surface cannot write (with "\" or with bytes that are no text) are not listed.
class Files final : public ServiceObject<Files> {
public:
    Files(FilePlaces places, std::shared_ptr<const CodePage> codePage);

    std::u16string_view className() const noexcept override { return u"Files"; }
    static std::span<const Row> rows() noexcept;

private:
    host::Variant FolderExists(host::Args args);
    host::Variant FileExists(host::Args args);
    host::Variant CreateFolder(host::Args args);
    host::Variant ReadText(host::Args args);
    host::Variant WriteText(host::Args args);
    host::Variant AppendText(host::Args args);
    host::Variant DeleteFile(host::Args args);
    host::Variant ListFiles(host::Args args);
    host::Variant GetTempPath(host::Args args);
    host::Variant GetFolderPath(host::Args args);

    void write(host::Args args, int openFlags);

    FilePlaces places_;
    std::shared_ptr<const CodePage> codePage_;
    RunFolder runFolder_;
};

}  // namespace lorvane::services
