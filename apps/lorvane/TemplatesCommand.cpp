#include <nlohmann/json.hpp>

#include "Chooser.h"
#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

using namespace host;

namespace {

constexpr std::int64_t searchDelay = 1000;  // the chooser searches this long after the last key

std::u16string_view optionOfScope(const std::string& scope) {
    return scope == "all" ? u"optAll" : scope == "shared" ? u"optShared" : u"optPrivate";
}

void chooseScope(screen::ScriptedUser& user, respond::frmEmail& chooser, const std::string& scope) {
    if (scope.empty()) return;
    const std::u16string_view option = optionOfScope(scope);
    const auto* control = dynamic_cast<OptionButton*>(chooser.control(option));
    if (control->Value) return;
    if (!control->Enabled) throw CommandEnd(ExitStatus::Refused, "the scope " + scope + " is not available: sharing is off");
    user.Click(chooserWindow, option);
}

/// False where the chooser does not offer the category: no template has it. Blanks around the name are no part of it, and an empty one stands for all.
bool chooseCategory(screen::ScriptedUser& user, const respond::frmEmail& chooser, const std::string& category) {
    const std::u16string name = fromUtf8(category);
    const std::u16string_view sought = Trim(name);
    if (sought.empty()) return true;
    for (std::int32_t line = 1; line < chooser.cmbCategories.ListCount(); ++line) {
        if (!equalsIgnoreCase(chooser.cmbCategories.List(line), sought)) continue;
        user.Select(chooserWindow, u"cmbCategories", line);
        return true;
    }
    return false;
}

void search(screen::ScriptedUser& user, const std::string& text) {
    if (text.empty()) return;
    user.Type(chooserWindow, u"txtSearch", fromUtf8(text));
    user.Advance(searchDelay);
}

nlohmann::json rowOf(respond::frmEmail& chooser, std::int32_t line) {
    const auto identity = chooser.identityOfLine(line);
    const MailItem item = apartment().gNameSpace.GetItemFromID(identity.entryId, identity.storeId);
    return {{"subject", toUtf8(item.Subject())},
            {"categories", toUtf8(item.Categories())},
            {"entryID", toUtf8(identity.entryId)},
            {"storeID", toUtf8(identity.storeId)}};
}

/// Reads the list off before the window goes. Where nothing is found the chooser covers the list, which keeps its lines.
void collect(respond::frmEmail& chooser, bool asJson, std::u16string& lines, nlohmann::json& rows) {
    if (!chooser.lstEmails.Visible) return;
    for (std::int32_t line = 0; line < chooser.lstEmails.ListCount(); ++line) {
        if (asJson)
            rows.push_back(rowOf(chooser, line));
        else
            lines += onOneLine(subjectOfLine(chooser, line)) + u"\n";
    }
}

}  // namespace

ExitStatus runTemplates(const RunOptions& runOptions, const TemplatesOptions& options) {
    Run run(runOptions);
    run.requireConnected();
    std::u16string lines;
    nlohmann::json rows = nlohmann::json::array();
    bool brokeOff = false;
    std::optional<CommandEnd> mistake;
    run.forgetBoxes();
    auto& chooser = apartment().forms.use<respond::frmEmail>();
    chooser.DisableInsert = true;
    run.user().then([&](screen::ScriptedUser& user) {
        try {
            chooseScope(user, chooser, options.scope);
            if (chooseCategory(user, chooser, options.category)) {
                search(user, options.search);
                brokeOff = chooser.lastListResult() == respond::ListResult::Failed || run.sawError();
                if (!brokeOff) collect(chooser, options.json, lines, rows);
            }
        } catch (const CommandEnd& end) {
            mistake = end;
        }
        user.Click(chooserWindow, u"cmdClose");
    });
    chooser.Show(true);
    if (mistake) throw *mistake;
    if (!run.user().failures().empty()) throw run.user().failures().front();
    if (brokeOff || run.sawError()) return ExitStatus::Fault;

    if (lines.empty() && rows.empty() && run.sawRefusal()) return ExitStatus::Refused;
    print(options.json ? fromUtf8(rows.dump(2)) + u"\n" : lines);
    return ExitStatus::Done;
}

}  // namespace lorvane::cli
