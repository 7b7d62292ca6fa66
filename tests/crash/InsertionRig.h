#pragma once

#include <filesystem>
#include <memory>

#include "crash/Marks.h"
#include "crash/SavedStates.h"
#include "mailstore/TempFolder.h"
#include "respond/InsertRig.h"

/// An insertion inside this process, over a store in a file.
namespace lorvane::crash {

using support::html;  // else the folder of that name stands in front of it

inline constexpr std::u16string_view formattedTemplate = u"Bold";

/// A run over a store in a file, which closes with it.
class RunOverFile {
public:
    explicit RunOverFile(const std::filesystem::path& store, bool instruments = false) : file_(store, programOptions()) {
        run_ = std::make_unique<support::TestRun>(options(file_, instruments));
    }
    support::TestRun& run() const noexcept { return *run_; }
    std::unique_ptr<support::TestRun> takeRun() noexcept { return std::move(run_); }

private:
    static support::RunOptions options(const mailstore::SqliteFile& file, bool instruments) {
        support::RunOptions options;
        options.instruments = instruments;
        options.store = file.mailStore();
        options.settings = file.settings();
        return options;
    }
    mailstore::SqliteFile file_;
    std::unique_ptr<support::TestRun> run_;
};

/// A closed store in a file with a formatted template, which has an attachment, and one draft.
class PreparedStore {
public:
    explicit PreparedStore(const support::BodyText& draft) {
        {
            const RunOverFile over(path());
            const host::MailItem bold = over.run().addTemplate(formattedTemplate, support::html(support::document(u"<B>Dear</B> [FirstName]")));
            over.run().attach(bold, "logo.png", host::Bytes(3000, 7));
            bold.Save();
            mailstore::ItemRecord mail;
            mail.head.subject = u"About us";
            mail.properties[mailstore::tags::MessageFlags] = mailstore::message_flags::Read | mailstore::message_flags::Unsent;
            mail.recipients = {support::johnPublic()};
            mail.bodyKind = draft.kind;
            mail.body = draft.source;
            over.run().driver().import(std::move(mail), over.run().folder(host::default_folder::Drafts));
        }
        begun_ = mailstore::test::readBytes(path());
    }

    std::filesystem::path path() const { return folder_.file("store.sqlite"); }
    const std::filesystem::path& folder() const { return folder_.path(); }
    /// Puts it back as it was made.
    void beginAnew() const {
        for (const char* ending : {"-wal", "-shm"}) std::filesystem::remove(path().string() + ending);
        mailstore::test::writeBytes(path(), begun_);
    }

private:
    mailstore::test::TempFolder folder_{mailstore::test::memoryFolder()};
    host::Bytes begun_;
};

/// Opens the draft's window with the caret at a place.
inline host::Inspector openTheDraft(const support::TestRun& run, model::EditorFieldName field = model::EditorFieldName::Body, std::int32_t place = 3) {
    const host::Inspector inspector = run.openMail(run.folder(host::default_folder::Drafts).Items().Item(1));
    run.focus(inspector, field, place);
    return inspector;
}

}  // namespace lorvane::crash
