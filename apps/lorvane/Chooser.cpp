#include "Chooser.h"

#include <optional>
#include <vector>

#include "ExitStatus.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

using namespace host;

std::u16string subjectOfLine(const respond::frmEmail& chooser, std::int32_t line) {
    constexpr std::size_t subjectWidth = 600;  // the key behind it is not for the eye
    return std::u16string(RTrim(Left(chooser.lstEmails.List(line), subjectWidth)));
}

namespace {

/// A line may show another text than the template's own subject, for which it stands in.
bool mayBe(std::u16string_view shown, std::u16string_view subject) {
    if (shown.starts_with(u"[Subject could not be read.")) return true;
    if (subject.empty()) subject = u"NO SUBJECT";
    return shown == RTrim(subject) || shown == std::u16string(subject) + u" (Shared)";
}

/// The line of the one template with this own subject (compared exactly), and this EntryID where one is told.
std::int32_t lineOfTemplate(respond::frmEmail& chooser, const TemplateName& name) {
    const std::u16string subject = fromUtf8(name.subject);
    const std::u16string wantedId = fromUtf8(name.id);
    std::vector<std::int32_t> lines;
    std::string identities;
    const std::int32_t count = chooser.lstEmails.Visible ? chooser.lstEmails.ListCount() : 0;
    for (std::int32_t line = 0; line < count; ++line) {
        if (!mayBe(subjectOfLine(chooser, line), subject)) continue;
        const auto identity = chooser.identityOfLine(line);
        if (!wantedId.empty() && identity.entryId != wantedId) continue;
        if (apartment().gNameSpace.GetItemFromID(identity.entryId, identity.storeId).Subject() != subject) continue;
        lines.push_back(line);
        identities += "\n  " + toUtf8(identity.entryId);
    }
    if (lines.empty())
        throw CommandEnd(ExitStatus::Refused, "there is no template with the subject \"" + name.subject + "\"" + (name.id.empty() ? "" : " and that id"));
    if (lines.size() > 1)
        throw CommandEnd(ExitStatus::Refused, "several templates have the subject \"" + name.subject + "\"; choose one with --id:" + identities);
    return lines.front();
}

}  // namespace

void withTemplate(Run& run, ChooserMode mode, const TemplateName& name, const AtTemplate& act) {
    run.forgetBoxes();
    auto& chooser = apartment().forms.use<respond::frmEmail>();
    const Object alive(&chooser);
    chooser.DisableInsert = mode == ChooserMode::Copy;
    std::optional<CommandEnd> mistake;
    run.user().then([&](screen::ScriptedUser& user) {
        try {
            const std::int32_t line = lineOfTemplate(chooser, name);
            run.forgetBoxes();
            act(user, chooser, line);
        } catch (const CommandEnd& end) {
            mistake = end;
            user.CloseWindow(chooserWindow);
        }
    });
    chooser.Show(true);
    // The list may lack the template only because it broke off.
    if (mistake && (chooser.lastListResult() == respond::ListResult::Failed || run.sawError()))
        throw CommandEnd(ExitStatus::Fault, "the list of templates broke off");
    if (mistake) throw *mistake;
    if (!run.user().failures().empty()) throw run.user().failures().front();
}

}  // namespace lorvane::cli
