#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "host/Guards.h"
#include "host/Outlook.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

using namespace host;

namespace {

constexpr std::size_t longestSubject = 600;  // a list could not show what follows

void requireShortSubject(const std::u16string& subject) {
    if (subject.size() > longestSubject) throw CommandEnd(ExitStatus::Refused, "the subject has over 600 characters; no list could show it");
}

std::u16string surfacePath(const std::string& file) {
    const std::string absolute = std::filesystem::absolute(file).string();
    return Replace(fromUtf8(absolute), u"/", u"\\");
}

void requireReadable(const std::string& file) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored) || ::access(file.c_str(), R_OK) != 0)
        throw CommandEnd(ExitStatus::Fault, "cannot read " + file + " to attach it");
}

void attach(const MailItem& item, const std::string& file) {
    const std::u16string name = fromUtf8(std::filesystem::path(file).filename().string());
    item.Attachments().Add(surfacePath(file), 1, item.Attachments().Count() + 1, name);
}

/// A new mail of the host, or one from a message file; not saved yet in the first case.
MailItem newItem(Run& run, const TemplateAddOptions& options, const Bytes& message) {
    if (options.eml.empty()) return apartment().gOutlook.CreateItem(olMailItem);
    mailstore::ItemRecord record = run.readMessage(options.eml, message);
    if (options.subjectGiven) record.head.subject = fromUtf8(options.subject);
    requireShortSubject(record.head.subject);
    return MailItem(run.driver().import(std::move(record), apartment().gNameSpace.GetDefaultFolder(default_folder::Drafts)));
}

/// An item that leaves the store again unless it was finished.
class UnfinishedItem {
public:
    UnfinishedItem(Run& run, MailItem item) : run_(run), item_(std::move(item)) {}
    ~UnfinishedItem() {
        if (finished_) return;
        ignoringErrors([&] {
            if (!item_.EntryID().empty()) run_.driver().purge(item_);
        });
    }
    UnfinishedItem(const UnfinishedItem&) = delete;
    UnfinishedItem& operator=(const UnfinishedItem&) = delete;
    const MailItem& get() const noexcept { return item_; }
    void finished() noexcept { finished_ = true; }

private:
    Run& run_;
    MailItem item_;
    bool finished_ = false;
};

}  // namespace

ExitStatus runTemplateAdd(const RunOptions& runOptions, const TemplateAddOptions& options) {
    requireShortSubject(fromUtf8(options.subject));
    const std::u16string text = options.text.empty() ? std::u16string() : readTextInput(options.text);
    const std::u16string html = options.html.empty() ? std::u16string() : readTextInput(options.html);
    const Bytes message = options.eml.empty() ? Bytes() : readInput(options.eml);
    for (const std::string& file : options.attach) requireReadable(file);

    Run run(runOptions);
    run.requireConnected();
    const MAPIFolder folder = apartment().TemplatesFolder;
    if (!folder) throw CommandEnd(ExitStatus::Refused, "there is no templates folder: the host has no window (--no-explorer)");

    UnfinishedItem item(run, newItem(run, options, message));
    const SafeMailItem safe = makeSafeMailItem(item.get());
    if (options.subjectGiven) safe.Subject(fromUtf8(options.subject));
    if (!options.categories.empty()) safe.Categories(fromUtf8(options.categories));
    if (!options.text.empty()) safe.Body(text);
    if (!options.html.empty()) safe.HTMLBody(html);
    for (const std::string& file : options.attach) attach(item.get(), file);
    safe.Save();
    safe.Move(folder);
    item.finished();
    return ExitStatus::Done;
}

}  // namespace lorvane::cli
