#include "host/ExplorerWrap.h"

#include <string>
#include <string_view>

#include "host/Apartment.h"
#include "host/BuildSwitches.h"
#include "host/Guards.h"
#include "host/Outlook.h"
#include "host/WindowCommands.h"
#include "host/basExplCol.h"
#include "host/basGlobals.h"
#include "host/modCommandBarCode.h"

namespace lorvane::host {

namespace {

using Button = WithEvents ExplorerWrap::*;

/// A button of a popup, in the order they stand.
struct Row {
    std::u16string_view caption;
    std::int32_t style, face;
    bool beginGroup;
    Button member;
    bool forProcesses = false;  ///< only where the build has action processes
    bool withTitle = false;     ///< the application title follows the caption
};

constexpr std::int32_t automatic = button_style::Automatic, iconAndCaption = button_style::IconAndCaption;

constexpr Row toolbarRows[] = {
    {u"&Templates", automatic, 0, false, &ExplorerWrap::CBB_Templates},
    {u"Create &Template", automatic, 0, false, &ExplorerWrap::CBB_Expl_CreateTempl},
    {u"&New Email using Template", iconAndCaption, 1757, true, &ExplorerWrap::CBB_NewMail_UsingTempl},
    {u"&Reply using Template", iconAndCaption, 354, false, &ExplorerWrap::CBB_ReplyUsingTempl},
    {u"Reply To A&ll using Template", iconAndCaption, 355, false, &ExplorerWrap::CBB_ReplyALLUsingTempl},
    {u"For&ward using Template", iconAndCaption, 356, false, &ExplorerWrap::CBB_ForwardUsingTempl},
    {u"Create New Action Process", iconAndCaption, 1757, true, &ExplorerWrap::CBB_CreateNewActionProc, true},
    {u"&Reply using Process", iconAndCaption, 354, false, &ExplorerWrap::CBB_ReplyUsingProc, true},
    {u"Reply To A&ll using Process", iconAndCaption, 355, false, &ExplorerWrap::CBB_ReplyAllUsingProc, true},
    {u"For&ward using Process", iconAndCaption, 356, false, &ExplorerWrap::CBB_ForwardUsingProc, true},
    {u"&Settings", automatic, 0, true, &ExplorerWrap::CBB_Settings},
    {u"Support", automatic, 0, true, &ExplorerWrap::CBB_Support},
    {u"&Help", iconAndCaption, 926, false, &ExplorerWrap::CBB_Help},
    {u"Tutorial", automatic, 0, false, &ExplorerWrap::CBB_Tutorial},
    {u"&About ", automatic, 0, true, &ExplorerWrap::CBB_About_Lorvane, false, true},
};

constexpr Row menuRows[] = {
    {u"Settings...", automatic, 0, true, &ExplorerWrap::gmnuSettings},
    {u"&Templates...", automatic, 0, true, &ExplorerWrap::gmnuTemplates},
    {u"&Process Templates...", automatic, 0, false, &ExplorerWrap::gmnuProcessTemplates, true},
    {u"Support", automatic, 0, true, &ExplorerWrap::gcmdSupport},
    {u"&Help", iconAndCaption, 926, false, &ExplorerWrap::gmnuHelp},
    {u"Tutorial", automatic, 0, false, &ExplorerWrap::gmnuTutorial},
    {u"About ", automatic, 0, true, &ExplorerWrap::gmnuabout, false, true},
};

/// What a click does.
struct Click {
    Button member;
    void (*action)();
};

constexpr Click clicks[] = {
    {&ExplorerWrap::CBB_Templates, [] { showChooserToCopy(); }},
    {&ExplorerWrap::gmnuTemplates, [] { showChooserToCopy(); }},
    {&ExplorerWrap::CBB_NewMail_UsingTempl, [] { showChooserForNewMail(); }},
    {&ExplorerWrap::CBB_ReplyUsingTempl, [] { runLater(&LaterCommands::replyToSelection, reply_kind::Reply); }},
    {&ExplorerWrap::CBB_ReplyALLUsingTempl, [] { runLater(&LaterCommands::replyToSelection, reply_kind::ReplyAll); }},
    {&ExplorerWrap::CBB_ForwardUsingTempl, [] { runLater(&LaterCommands::replyToSelection, reply_kind::Forward); }},
    {&ExplorerWrap::CBB_Expl_CreateTempl, [] { runLater(&LaterCommands::createTemplateFromSelection, true); }},
    {&ExplorerWrap::CBB_CreateNewActionProc, [] { runLater(&LaterCommands::showProcessWizard, wizard_mode::New); }},
    {&ExplorerWrap::CBB_ReplyUsingProc, [] { runLater(&LaterCommands::showProcessWizard, wizard_mode::Reply); }},
    {&ExplorerWrap::CBB_ReplyAllUsingProc, [] { runLater(&LaterCommands::showProcessWizard, wizard_mode::ReplyAll); }},
    {&ExplorerWrap::CBB_ForwardUsingProc, [] { runLater(&LaterCommands::showProcessWizard, wizard_mode::Forward); }},
    {&ExplorerWrap::CBB_Settings, [] { runLater(&LaterCommands::showSettings); }},
    {&ExplorerWrap::gmnuSettings, [] { runLater(&LaterCommands::showSettings); }},
    {&ExplorerWrap::gmnuProcessTemplates, [] { runLater(&LaterCommands::showProcessTemplates); }},
    {&ExplorerWrap::CBB_Support, [] { runLater(&LaterCommands::writeSupportMail); }},
    {&ExplorerWrap::gcmdSupport, [] { runLater(&LaterCommands::writeSupportMail); }},
    {&ExplorerWrap::CBB_Help, [] { openManualAt(helpTopic); }},
    {&ExplorerWrap::gmnuHelp, [] { openManualAt(helpTopic); }},
    {&ExplorerWrap::CBB_Tutorial, [] { runLater(&LaterCommands::openTutorial); }},
    {&ExplorerWrap::gmnuTutorial, [] { runLater(&LaterCommands::openTutorial); }},
    {&ExplorerWrap::CBB_About_Lorvane, [] { runLater(&LaterCommands::showAbout); }},
    {&ExplorerWrap::gmnuabout, [] { runLater(&LaterCommands::showAbout); }},
    {&ExplorerWrap::gcmdAddForm, [] {}},
};

/// Adds the rows to a popup, each to hear its clicks.
template <std::size_t N>
void addRows(ExplorerWrap& wrapper, const CommandBarControl& popup, const Row (&rows)[N]) {
    for (const Row& row : rows) {
        if (row.forProcesses && !ProcessFeatureEnabled) continue;
        std::u16string caption(row.caption);
        if (row.withTitle) caption += apartment().title;
        const CommandBarControl button = ExplorerMenuControlAdd(popup, caption, row.beginGroup, std::nullopt, row.face, row.style);
        ignoringErrors([&] { (wrapper.*row.member).set(button, wrapper.shared_from_this()); });
    }
}

}  // namespace

ExplorerWrap::ExplorerWrap() {
    for (const Click& click : clicks) (this->*click.member).on(Member::Click, [action = click.action](Args) { ignoringErrors(action); });
    m_objExpl_.on(Member::Activate, [](Args) { m_objExpl_Activate(); });
    m_objExpl_.on(Member::SelectionChange, [](Args) { m_objExpl_SelectionChange(); });
    m_objExpl_.on(Member::Close, [this](Args) { m_objExpl_Close(); });
}

ExplorerWrap::~ExplorerWrap() {
    for (const Click& click : clicks) (this->*click.member).reset();
}

void ExplorerWrap::InitButton() {
    CommandBar bar;
    ignoringErrors([&] { bar = commandBarsOf(Explorer()).Item(u"Standard"); });
    if (bar)
        buildToolbarPopup(bar);
    else
        ignoringErrors([] { MsgBox(u"Std toolbar not found", msgbox::Plain); });
    buildMenu();
    constexpr std::int32_t firstWithoutToolbars = 14;
    if (holdsIgnoringErrors([] { return OutlookMajorVersion() >= firstWithoutToolbars; })) ignoringErrors([&] { bar.Visible(false); });
}

void ExplorerWrap::buildToolbarPopup(const CommandBar& bar) {
    const CommandBarControl popup = ExplorerMenuPopUpAdd(bar, u"Lo&rvane", u"", true);
    addRows(*this, popup, toolbarRows);
}

void ExplorerWrap::buildMenu() {
    // The menu bar of an Explorer that was never shown does not exist yet.
    ignoringErrors([&] { Explorer().call(Member::Display); });
    CommandBar menu;
    ignoringErrors([&] { menu = commandBarsOf(Explorer()).Item(u"Menu Bar"); });
    const CommandBarControl tools = toolsPopup(menu);
    CommandBar toolsBar, sharedBar;
    ignoringErrors([&] { toolsBar = tools.CommandBar(); });
    const CommandBarControl shared = ExplorerMenuPopUpAdd(toolsBar, u"Meravix", u"", false);
    ignoringErrors([&] { sharedBar = shared.CommandBar(); });
    const CommandBarControl popup = ExplorerMenuPopUpAdd(sharedBar, u"Lo&rvane", u"", false);
    addRows(*this, popup, menuRows);
}

/// The Tools menu. A host in another language gets one more, in front of Help.
CommandBarControl ExplorerWrap::toolsPopup(const CommandBar& menu) {
    CommandBarControl help, tools;
    ignoringErrors([&] { help = menu.Controls().Item(u"Help"); });
    if (!ignoringErrors([&] { tools = menu.Controls().Item(u"&Tools"); })) {
        std::optional<std::int32_t> before;
        ignoringErrors([&] { before = help ? help.Index() : menu.Controls().Count(); });
        tools = ExplorerMenuPopUpAdd(menu, u"&Tools", u"", false, before);
    }
    ignoringErrors([&] {
        if (tools.Caption() != u"&Tools") tools.Caption(u"&Tools");
    });
    return tools;
}

void ExplorerWrap::m_objExpl_Close() {
    std::shared_ptr<ExplorerWrap> me = shared_from_this();
    const std::shared_ptr<ExplorerWrap> untilReturned = me;
    ignoringErrors([&] { KillExpl(Key, me); });
    m_objExpl_.reset();
    if (explorerWraps().gExplorerWraps.Count() < 1) ignoringErrors([] { unloadExplorerWindows(); });
}

}  // namespace lorvane::host
