#include "Commands.h"
#include "Run.h"
#include "TemplateContent.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

using namespace host;

namespace {

/// A new mail of the host, or one from a message file; not saved yet in the first case.
MailItem newItem(Run& run, const TemplateContent& content, const Bytes& message) {
    if (content.eml.empty()) return apartment().gOutlook.CreateItem(olMailItem);
    mailstore::ItemRecord record = run.readMessage(content.eml, message);
    if (content.subject) record.head.subject = fromUtf8(*content.subject);
    requireShortSubject(record.head.subject);
    return importDraft(run, std::move(record));
}

}  // namespace

ExitStatus runTemplateAdd(const RunOptions& runOptions, const TemplateContent& options) {
    const ReadContent content(options);
    Run run(runOptions);
    run.requireConnected();
    const MAPIFolder folder = apartment().TemplatesFolder;
    if (!folder) throw CommandEnd(ExitStatus::Refused, "there is no templates folder: the host has no window (--no-explorer)");

    UnfinishedItem item(run, newItem(run, options, content.message()));
    const SafeMailItem safe = makeSafeMailItem(item.get());
    content.writeTo(safe);
    safe.Save();
    safe.Move(folder);
    item.finished();
    return ExitStatus::Done;
}

}  // namespace lorvane::cli
