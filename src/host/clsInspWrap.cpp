#include "host/clsInspWrap.h"

#include "host/Apartment.h"
#include "host/BuildSwitches.h"
#include "host/Guards.h"
#include "host/Outlook.h"
#include "host/TextFunctions.h"
#include "host/WindowCommands.h"
#include "host/WordTemplate.h"
#include "host/basGlobals.h"
#include "host/basOutlInsp.h"
#include "host/modCommandBarCode.h"
#include "host/wrapperKeys.h"
#include "text/RecipientNames.h"

namespace lorvane::host {

namespace {

constexpr std::u16string_view barName = u"Lorvane";
constexpr std::int32_t firstWithWordAlways = 12;

MailItem currentItem(const Object& inspector) {
    return Inspector(inspector).CurrentItem();
}

/// A mail that is read, not written.
bool isSentOrReceived(const Object& item) {
    return text::IsReceivedMail(item) || text::IsSentMail(item);
}

bool isCalendarOrTask(std::int32_t itemClass) {
    return itemClass == item_class::Task || itemClass == item_class::Appointment;
}

void setVisible(const Object& control, bool visible) {
    ignoringErrors([&] { CommandBarControl(control).Visible(visible); });
}

}  // namespace

void clsInspWrap::MailItem(const Object& mail) {
    const host::MailItem item(mail);
    m_objMail_.set(mail, shared_from_this());
    identityText_ = item.EntryID();
    isMail_ = true;
    inspectorWraps().lastOpenedSubject = item.Subject();
}

void clsInspWrap::ContactItem(const Object& contact) {
    m_objContact_.set(contact, shared_from_this());
    identityText_ = decimal(item_class::Contact);
}

void clsInspWrap::AppointmentItem(const Object& appointment) {
    appointment_ = appointment;
    identityText_ = decimal(item_class::Appointment);
}

void clsInspWrap::TaskItem(const Object& task) {
    task_ = task;
    identityText_ = decimal(item_class::Task);
}

void clsInspWrap::PostItem(const Object& post) {
    post_ = post;
    identityText_ = decimal(item_class::Post);
}

void clsInspWrap::InitButton() {
    ignoringErrors([&] {
        if (OutlookVersion() != u"12") InitInspButtons(Inspector());
    });
}

/// In a window that Word edits the bars are Word's, and the add-in's bar comes from the Word template.
void clsInspWrap::InitInspButtons(const Object& inspector) {
    wordEdited_ = holdsIgnoringErrors([&] {
        return inspector.getBoolean(Member::IsWordMail) && host::Inspector(inspector).EditorType() == editor_type::Word &&
               OutlookMajorVersion() < firstWithWordAlways;
    });
    BuildInspBar();
}

void clsInspWrap::BuildInspBar() {
    if (wordEdited_) {
        AddWordTemplate(Inspector(), wordTemplate);
        adjustTemplateBar();
        return;
    }
    std::int32_t itemClass = 0;
    ignoringErrors([&] { itemClass = currentItem(Inspector()).Class(); });
    if (itemClass == item_class::Note) return;
    CommandBar bar;
    if (!ignoringErrors([&] { bar = commandBarsOf(Inspector()).Item(barName); }))
        ignoringErrors([&] { bar = commandBarsOf(Inspector()).addTemporary(barName, msoBarTop); });
    if (addButtons(bar, itemClass)) showAndHide(bar, itemClass);
}

void clsInspWrap::adjustTemplateBar() {
    CommandBarControls controls{Object()};
    ignoringErrors([&] { controls = commandBarsOf(Inspector()).Item(barName).Controls(); });
    const bool isPost = holdsIgnoringErrors([&] { return currentItem(Inspector()).Class() == item_class::Post; });
    for (const std::u16string_view caption : {u"Save Template", u"Insert m-Field"}) ignoringErrors([&] { controls.Item(caption).Visible(!isPost); });
}

namespace {

using Button = WithEvents clsInspWrap::*;
enum class When { Always, WithProcesses, NotCalendarOrTask };
enum class Weight { Plain, First, Required };  ///< `First` has priority 1; without a `Required` one, which has it too, the building ends

/// A button of the bar.
struct Row {
    InspControl control;  ///< its tag is the prefix in front of the wrapper's key
    Button member;
    When when = When::Always;
    Weight weight = Weight::Plain;
};

constexpr std::int32_t iconAndCaption = button_style::IconAndCaption;

constexpr Row rowsBeforePopups[] = {
    {{u"Lo&rvane", u"Lorvane", u"Lorvane in mail", 1679, true}, &clsInspWrap::CBB_Insp_File, When::Always, Weight::Required},
    {{u"Create Email", u"Create Email", u"Create Email", 3795, true, iconAndCaption, false}, &clsInspWrap::CBB_Insp_CreateEmail, When::WithProcesses},
    {{u"Reschedule", u"Reschedule", u"Reschedule", 1106, true, iconAndCaption, false}, &clsInspWrap::CBB_Insp_Reschedule, When::WithProcesses},
    {{u"Related Items", u"Related Items", u"Find All Related Items", 312, true, iconAndCaption, false},
     &clsInspWrap::CBB_Insp_RelatedItems,
     When::WithProcesses},
    {{u"Save Te&mplate", u"Save Template", u"Save mail as template", 3037}, &clsInspWrap::CBB_Insp_save, When::NotCalendarOrTask, Weight::Required},
    {{u"Create &Template", u"Create Template", u"Save selected text as template", 3037},
     &clsInspWrap::CBB_Insp_save_sel,
     When::NotCalendarOrTask,
     Weight::Required},
};
constexpr Row helpRow = {{u"&Help", u"Help", u"Help for Lorvane", 926, true}, &clsInspWrap::CBB_Insp_Help, When::Always, Weight::First};

/// An item of a popup.
struct Entry {
    std::u16string_view caption;
    std::int32_t face;
    bool beginGroup;
    Button member;
    bool forProcesses = false;
};

constexpr Entry responses[] = {
    {u"&Reply using Template", 354, false, &clsInspWrap::CBB_Insp_Reply},
    {u"Reply To A&ll using Template", 355, false, &clsInspWrap::CBB_Insp_ReplyToAll},
    {u"For&ward using Template", 356, false, &clsInspWrap::CBB_Insp_Forward},
    {u"&Reply using Process", 354, true, &clsInspWrap::CBB_Insp_ReplyUsingProc, true},
    {u"Reply To A&ll using Process", 355, false, &clsInspWrap::CBB_Insp_ReplyToAllUsingProc, true},
    {u"For&ward using Process", 356, false, &clsInspWrap::CBB_Insp_ForwardUsingProc, true},
};

constexpr Entry mergeFields[] = {
    {u"F&ull Name", 0, false, &clsInspWrap::CBB_Insp_FullName},
    {u"&First Name", 0, false, &clsInspWrap::CBB_Insp_FirstName},
    {u"Da&te", 0, false, &clsInspWrap::CBB_Insp_Date},
};

}  // namespace

/// False where a button that the bar needs could not be made: the bar stays as far as it came.
bool clsInspWrap::addButtons(const CommandBar& bar, std::int32_t itemClass) {
    const std::u16string key = keyText(key_);
    const auto add = [&](const Row& row) {
        if (row.when == When::WithProcesses && !ProcessFeatureEnabled) return true;
        if (row.when == When::NotCalendarOrTask && isCalendarOrTask(itemClass)) return true;
        const std::u16string tag = std::u16string(row.control.tag) + key;
        InspControl wanted = row.control;
        wanted.tag = tag;
        const CommandBarControl button = AddInspControl(apartment().gProgId, bar, wanted);
        ignoringErrors([&] { (this->*row.member).set(button, shared_from_this()); });
        if (row.weight == Weight::Required && !(this->*row.member)) return false;
        if (row.weight != Weight::Plain) ignoringErrors([&] { button.Priority(1); });
        return true;
    };
    for (const Row& row : rowsBeforePopups) {
        if (!add(row)) return false;
        if (row.member == &clsInspWrap::CBB_Insp_RelatedItems) enableByMileage();
    }
    if (!isCalendarOrTask(itemClass)) addResponses(bar);
    if (itemClass == item_class::Mail) addMergeFields(bar);
    return add(helpRow);
}

void clsInspWrap::addResponses(const CommandBar& bar) {
    respondPopup_ = AddInspPopup(bar, u"&Respond", u"Respond to email", true);
    for (const Entry& entry : responses) {
        if (entry.forProcesses && !ProcessFeatureEnabled) continue;
        const CommandBarControl button =
            ExplorerMenuControlAdd(respondPopup_, entry.caption, entry.beginGroup, std::nullopt, entry.face, button_style::IconAndCaption);
        ignoringErrors([&] { (this->*entry.member).set(button, shared_from_this()); });
    }
}

void clsInspWrap::addMergeFields(const CommandBar& bar) {
    mergeFieldPopup_ = AddInspPopup(bar, u"Insert m-Fiel&d", u"Click here to Insert m-Field.", true);
    for (const Entry& entry : mergeFields) {
        const CommandBarControl button = AddPopupItem(mergeFieldPopup_, entry.caption);
        ignoringErrors([&] { (this->*entry.member).set(button, shared_from_this()); });
    }
}

/// `Mileage` marks an appointment that a process made, and says what it can do.
void clsInspWrap::enableByMileage() {
    if (!ProcessFeatureEnabled) return;
    const auto isMarked = [&](std::u16string_view mark) {
        return holdsIgnoringErrors([&] { return InStr(1, currentItem(Inspector()).getText(Member::Mileage), mark) != 0; });
    };
    const auto enable = [](const WithEvents& button) { ignoringErrors([&] { CommandBarControl(button.get()).Enabled(true); }); };
    if (isMarked(u"ITCreateEmail=T")) enable(CBB_Insp_CreateEmail);
    if (isMarked(u"ITProcessGroup=")) {
        enable(CBB_Insp_Reschedule);
        enable(CBB_Insp_RelatedItems);
    }
}

void clsInspWrap::showAndHide(const CommandBar& bar, std::int32_t itemClass) {
    setVisible(bar, true);
    if (itemClass == item_class::Mail) {
        if (holdsIgnoringErrors([&] { return isSentOrReceived(currentItem(Inspector())); })) {
            setVisible(CBB_Insp_File.get(), false);
            setVisible(mergeFieldPopup_, false);
            setVisible(respondPopup_, true);
        } else {
            setVisible(respondPopup_, false);
            setVisible(mergeFieldPopup_, true);
        }
    } else {
        setVisible(CBB_Insp_save.get(), false);
        setVisible(respondPopup_, false);
    }
    const bool isAppointment = itemClass == item_class::Appointment;
    for (const WithEvents* button : {&CBB_Insp_CreateEmail, &CBB_Insp_Reschedule, &CBB_Insp_RelatedItems}) setVisible(button->get(), isAppointment);
    if (isAppointment) enableByMileage();
}

namespace {

/// What a click does, for the wrapper's item.
struct Click {
    Button member;
    void (*action)(const Object& item);
};

constexpr Click clicks[] = {
    {&clsInspWrap::CBB_Insp_File, [](const Object&) { showChooser(); }},
    {&clsInspWrap::CBB_Insp_save, [](const Object&) { runLater(&LaterCommands::saveActiveItemAsTemplate); }},
    {&clsInspWrap::CBB_Insp_save_sel, [](const Object&) { runLater(&LaterCommands::createTemplateFromSelection, false); }},
    {&clsInspWrap::CBB_Insp_Reply, [](const Object& mail) { runLater(&LaterCommands::replyToOpenMail, reply_kind::Reply, mail); }},
    {&clsInspWrap::CBB_Insp_ReplyToAll, [](const Object& mail) { runLater(&LaterCommands::replyToOpenMail, reply_kind::ReplyAll, mail); }},
    {&clsInspWrap::CBB_Insp_Forward, [](const Object& mail) { runLater(&LaterCommands::replyToOpenMail, reply_kind::Forward, mail); }},
    {&clsInspWrap::CBB_Insp_ReplyUsingProc, [](const Object&) { runLater(&LaterCommands::showProcessWizard, wizard_mode::InspectorReply); }},
    {&clsInspWrap::CBB_Insp_ReplyToAllUsingProc, [](const Object&) { runLater(&LaterCommands::showProcessWizard, wizard_mode::InspectorReplyAll); }},
    {&clsInspWrap::CBB_Insp_ForwardUsingProc, [](const Object&) { runLater(&LaterCommands::showProcessWizard, wizard_mode::InspectorForward); }},
    {&clsInspWrap::CBB_Insp_FullName, [](const Object&) { typeAtCaret(u"[FullName]"); }},
    {&clsInspWrap::CBB_Insp_FirstName, [](const Object&) { typeAtCaret(u"[FirstName]"); }},
    {&clsInspWrap::CBB_Insp_Date, [](const Object&) { typeAtCaret(u"[Date]"); }},
    {&clsInspWrap::CBB_Insp_CreateEmail,
     [](const Object& item) { runLater(&LaterCommands::createLinkedEmail, host::MailItem(item).EntryID(), host::MailItem(item).Parent().StoreID()); }},
    {&clsInspWrap::CBB_Insp_Reschedule, [](const Object&) { runLater(&LaterCommands::rescheduleProcess); }},
    {&clsInspWrap::CBB_Insp_RelatedItems, [](const Object&) { runLater(&LaterCommands::showRelatedItems); }},
    {&clsInspWrap::CBB_Insp_Help, [](const Object&) { runLater(&LaterCommands::openTutorialPage); }},
};

}  // namespace

clsInspWrap::clsInspWrap() {
    for (const Click& click : clicks) {
        (this->*click.member).on(Member::Click, [this, action = click.action](Args) {
            // The item first: what the click shows may end the wrapper.
            const Object item = m_objMail_ ? m_objMail_.get() : appointment_;
            ignoringErrors([&] { action(item); });
        });
    }
    m_objInsp_.on(Member::Activate, [this](Args) { m_objInsp_Activate(); });
    m_objInsp_.on(Member::Close, [this](Args) { m_objInsp_Close(); });
    m_objMail_.on(Member::Open, [](Args) { m_objMail_Open(); });
    m_objMail_.on(Member::Close, [](Args) { m_objMail_Close(); });
    m_objContact_.on(Member::Open, [](Args) { m_objContact_Open(); });
    m_objContact_.on(Member::Close, [](Args) { m_objContact_Close(); });
}

clsInspWrap::~clsInspWrap() {
    for (const Click& click : clicks) (this->*click.member).reset();
}

void clsInspWrap::RemoveInspButtons() {
    for (const std::u16string_view prefix : {u"Brindle-Case", u"Send && Brindle", u"Lorvane Help"}) {
        CommandBarControl found;
        ignoringErrors([&] { found = commandBarsOf(Inspector()).FindControl(std::u16string(prefix) + keyText(key_), false); });
        ignoringErrors([&] { found.Delete(); });
    }
}

void clsInspWrap::m_objInsp_Activate() {
    if (!wordEdited_) return;
    ignoringErrors([&] {
        if (!templateAdded_ && IsGuardedOutlook10()) AddWordTemplate(Inspector(), wordTemplate);
    });
    templateAdded_ = true;
    CommandBarControl respond;
    ignoringErrors([&] { respond = commandBarsOf(host::Inspector(Inspector()).WordEditor()).Item(barName).Controls().Item(u"&Respond"); });
    const bool isRead = holdsIgnoringErrors([&] { return isSentOrReceived(currentItem(Inspector())); });
    setVisible(respond, isRead);
    SetWordTemplateSaved(Inspector(), wordTemplate);
}

void clsInspWrap::m_objInsp_Close() {
    std::shared_ptr<clsInspWrap> me = shared_from_this();
    const std::shared_ptr<clsInspWrap> untilReturned = me;
    if (wordEdited_) SetWordTemplateSaved(Inspector(), wordTemplate);
    KillInsp(key_, me);
}

}  // namespace lorvane::host
