#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/TextFunctions.h"
#include "respond/frmEmail.h"
#include "support/TestRun.h"

/// The chooser in a test: opened as the host's buttons open it, used by the scripted user.
namespace lorvane::support {

using screen::ScriptedUser;
using Act = std::function<void(ScriptedUser&)>;

inline constexpr std::u16string_view chooserName = u"frmEmail";

inline respond::frmEmail& chooser() {
    return host::apartment().forms.use<respond::frmEmail>();
}
inline bool isChooserOpen() {
    return host::apartment().forms.find<respond::frmEmail>() != nullptr;
}

/// Opens the chooser; the user acts while it is up, and closes it where it still is.
inline void openChooser(
    TestRun& run, Act act = [](ScriptedUser&) {}) {
    run.user().then(std::move(act));
    chooser().Show(true);
}

/// Opens the chooser in a mode that `prepare` sets, as an opener does between loading and showing.
inline void openChooserAs(TestRun& run, const std::function<void(respond::frmEmail&)>& prepare, Act act) {
    run.user().then(std::move(act));
    respond::frmEmail& form = chooser();
    prepare(form);
    form.Show(true);
}

/// The subjects that the list shows, without what stands behind them out of view.
inline std::vector<std::u16string> listed() {
    std::vector<std::u16string> subjects;
    const host::ListBox& list = chooser().lstEmails;
    for (std::int32_t row = 0; row < list.ListCount(); ++row) subjects.emplace_back(host::Trim(host::Left(list.List(row), 600)));
    return subjects;
}

/// The lines of a combo.
inline std::vector<std::u16string> linesOf(const host::ComboBox& combo) {
    std::vector<std::u16string> lines;
    for (std::int32_t line = 0; line < combo.ListCount(); ++line) lines.push_back(combo.List(line));
    return lines;
}

inline void selectSubject(ScriptedUser& she, std::u16string_view subject) {
    const auto subjects = listed();
    for (std::size_t row = 0; row < subjects.size(); ++row)
        if (subjects[row] == subject) return she.Select(chooserName, u"lstEmails", static_cast<std::int32_t>(row));
    throw host::HostError(host::runtime_error::InvalidProcedureCall, u"The list has no such line");
}

/// Chooses a template in the chooser and clicks a button, usually one of the two that insert.
inline void useTemplate(TestRun& run, std::u16string_view subject, std::u16string_view button) {
    openChooser(run, [subject = std::u16string(subject), button = std::u16string(button)](ScriptedUser& she) {
        selectSubject(she, subject);
        she.Click(chooserName, button);
    });
}

/// A team's folder of templates, with sharing on and the settings pointing at it.
inline host::MAPIFolder shareFolder(const TestRun& run, std::u16string_view store = u"Team", std::u16string_view name = u"Shared Templates") {
    const host::MAPIFolder folder = run.addFolder(run.addStore(store), name);
    run.setSetting(u"SharedTemplates", u"True");
    run.setSetting(u"SharedFolderStoreid", folder.StoreID());
    run.setSetting(u"SharedFolderEntryid", folder.EntryID());
    run.setSetting(u"SharedTemplFldrPath", u"\\" + std::u16string(store) + u"\\" + std::u16string(name));
    return folder;
}

using Subjects = std::vector<std::u16string>;

}  // namespace lorvane::support
