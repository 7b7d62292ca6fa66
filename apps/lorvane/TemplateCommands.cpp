#include <nlohmann/json.hpp>

#include "Chooser.h"
#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "TemplateContent.h"
#include "host/Guards.h"
#include "host/TextFunctions.h"

/// Showing, editing and deleting one template, by its line in the chooser.
namespace lorvane::cli {

using namespace host;
using Identity = respond::frmEmail::TemplateIdentity;

namespace {

/// The buttons that keep templates may be hidden; the list's own menu has the same then.
struct Upkeep {
    std::u16string_view button, menuItem;
};
constexpr Upkeep editing{u"cmdEdit", u"mcmdEdit"}, deleting{u"cmdDelete", u"mcmdDelete"};

void press(screen::ScriptedUser& user, respond::frmEmail& chooser, std::int32_t line, const Upkeep& upkeep) {
    user.Select(chooserWindow, u"lstEmails", line);
    if (chooser.control(upkeep.button)->Visible) {
        user.Click(chooserWindow, upkeep.button);
    } else {
        user.ChooseNext(std::u16string(upkeep.menuItem));
        user.RightClick(chooserWindow, u"lstEmails", line);
    }
    if (chooser.isVisible()) user.Click(chooserWindow, u"cmdClose");
}

/// What became of a template on which a button was pressed that did not do its work.
ExitStatus refusedOrFailed(const Run& run) {
    return run.sawError() ? ExitStatus::Fault : ExitStatus::Refused;
}

std::string_view kindName(mailstore::BodyKind kind) {
    switch (kind) {
        case mailstore::BodyKind::Plain:
            return "plain";
        case mailstore::BodyKind::Html:
            return "html";
        case mailstore::BodyKind::Rich:
            return "rich";
        case mailstore::BodyKind::None:
            break;
    }
    return "none";
}

nlohmann::json attachmentsOf(const mailstore::ItemRecord& record) {
    nlohmann::json list = nlohmann::json::array();
    for (const mailstore::AttachmentRecord& attachment : record.attachments)
        list.push_back({{"name", toUtf8(attachment.fileName)},
                        {"size", attachment.data ? attachment.data->size() : 0},
                        {"type", toUtf8(attachment.mimeType)},
                        {"contentID", toUtf8(attachment.contentId)},
                        {"inline", attachment.inlinePicture}});
    return list;
}

/// What the chooser's preview shows of a template.
struct Preview {
    std::u16string subject, text;
    Identity identity;
};

std::u16string asJson(const Run& run, const Preview& preview) {
    const MailItem item = apartment().gNameSpace.GetItemFromID(preview.identity.entryId, preview.identity.storeId);
    const mailstore::ItemRecord record = run.driver().record(item);
    const nlohmann::json shown = {{"subject", toUtf8(preview.subject)},           {"text", toUtf8(preview.text)},
                                  {"categories", toUtf8(record.head.categories)}, {"kind", kindName(record.bodyKind)},
                                  {"attachments", attachmentsOf(record)},         {"entryID", toUtf8(preview.identity.entryId)},
                                  {"storeID", toUtf8(preview.identity.storeId)}};
    return fromUtf8(shown.dump(2)) + u"\n";
}

/// The open template; what was not saved is dropped with it.
class OpenTemplate {
public:
    explicit OpenTemplate(Inspector inspector) : inspector_(std::move(inspector)) {}
    ~OpenTemplate() {
        if (inspector_) ignoringErrors([&] { inspector_.Close(olDiscard); });
    }
    OpenTemplate(const OpenTemplate&) = delete;
    OpenTemplate& operator=(const OpenTemplate&) = delete;
    MailItem item() const { return inspector_.CurrentItem(); }
    void saveAndClose(const SafeMailItem& safe) {
        safe.Save();
        inspector_.Close(olSave);
        inspector_ = {};
    }

private:
    Inspector inspector_;
};

/// The one in front, where it shows the template.
Inspector inspectorOf(const Identity& identity) {
    const Inspector active = apartment().gOutlook.ActiveInspector();
    return active && active.CurrentItem().EntryID() == identity.entryId ? active : Inspector();
}

}  // namespace

ExitStatus runTemplateShow(const RunOptions& runOptions, const TemplateShowOptions& options) {
    Run run(runOptions);
    run.requireConnected();
    Preview preview;
    withTemplate(run, ChooserMode::Copy, options.name, [&](screen::ScriptedUser& user, respond::frmEmail& chooser, std::int32_t line) {
        user.Select(chooserWindow, u"lstEmails", line);
        preview = {chooser.txtSubject.Text, chooser.txtPreview.Text, chooser.identityOfLine(line)};
        user.Click(chooserWindow, u"cmdClose");
    });
    if (run.sawError()) return ExitStatus::Fault;
    print(options.json ? asJson(run, preview) : onOneLine(preview.subject) + u"\n\n" + asLines(preview.text));
    return ExitStatus::Done;
}

ExitStatus runTemplateEdit(const RunOptions& runOptions, const TemplateEditOptions& options) {
    const ReadContent content(options.content);
    Run run(runOptions);
    run.requireConnected();
    std::optional<mailstore::ItemRecord> message;
    if (!options.content.eml.empty()) message = run.readMessage(options.content.eml, content.message());

    Identity identity;
    withTemplate(run, ChooserMode::Copy, options.name, [&](screen::ScriptedUser& user, respond::frmEmail& chooser, std::int32_t line) {
        identity = chooser.identityOfLine(line);
        press(user, chooser, line, editing);
    });
    const Inspector inspector = inspectorOf(identity);
    if (!inspector) return refusedOrFailed(run);

    // All is written to the open item first, so that one save takes it over or none of it.
    OpenTemplate open(inspector);
    const SafeMailItem safe = makeSafeMailItem(open.item());
    if (message) {
        const UnfinishedItem source(run, importDraft(run, std::move(*message)));
        takeContent(safe, makeSafeMailItem(source.get()));
    }
    content.writeTo(safe);
    open.saveAndClose(safe);
    return ExitStatus::Done;
}

ExitStatus runTemplateDelete(const RunOptions& runOptions, const TemplateName& name) {
    Run run(runOptions);
    run.requireConnected();
    run.user().answerWith([all = runOptions.answerYes](const screen::BoxShown& box) -> std::optional<std::int32_t> {
        if (all || box.title.starts_with(u"Confirm Delete - ")) return msgbox::Yes;
        return std::nullopt;
    });
    Identity identity;
    withTemplate(run, ChooserMode::Copy, name, [&](screen::ScriptedUser& user, respond::frmEmail& chooser, std::int32_t line) {
        identity = chooser.identityOfLine(line);
        press(user, chooser, line, deleting);
    });
    const bool isThere = ignoringErrors([&] { apartment().gNameSpace.GetItemFromID(identity.entryId, identity.storeId); });
    return isThere ? refusedOrFailed(run) : ExitStatus::Done;
}

}  // namespace lorvane::cli
