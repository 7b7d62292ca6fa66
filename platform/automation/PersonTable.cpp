#include "automation/Person.h"
#include "automation/TableObject.h"
#include "host/RoutineBinding.h"

namespace lorvane::automation {

using host::Variant;

namespace {

template <auto Method>
consteval PersonRow row(std::u16string_view name, std::u16string_view parameters, std::string_view doc) {
    if (host::parameterCount(parameters) != host::Bound<Method>::arity) throw "a name for each parameter";
    return {name, parameters, doc, &host::Bound<Method>::run};
}

constexpr PersonRow rows[] = {
    row<&Person::Click>(u"Click", u"window, control, [row]", "the left button on a control; on a list at a row from 0, else below its lines"),
    row<&Person::DblClick>(u"DblClick", u"window, control, [row]", "twice the left button"),
    row<&Person::RightClick>(u"RightClick", u"window, control, [row]", "the right button; on a list it does not choose the row"),
    row<&Person::Type>(u"Type", u"window, control, text",
                       "types at the control's caret, replacing nothing; each character raises KeyDown, KeyPress, Change, KeyUp"),
    row<&Person::Key>(u"Key", u"window, control, key", "presses keys in the control, in the grammar of SendKeys: `{ENTER}`, `^a`, `x`"),
    row<&Person::Select>(u"Select", u"window, list, index", "chooses a line of a list or combo box, from 0"),
    row<&Person::Check>(u"Check", u"window, box, on", "sets a box or an option; an option is turned off by another one only"),
    row<&Person::Expand>(u"Expand", u"window, tree, key", "opens a branch of a tree; no window has a tree yet, so it is always error 5"),
    row<&Person::CloseWindow>(u"CloseWindow", u"window", "closes a window of the add-in, or an Explorer, by its title bar"),
    row<&Person::Answer>(u"Answer", u"button", "answers the message box on top: 6 Yes, 7 No, 1 OK, 2 Cancel"),
    row<&Person::AnswerNext>(u"AnswerNext", u"buttons",
                             "lays answers ready, a number or a list, for boxes to come, one each; an answer whose box lacks the button is lost"),
    row<&Person::Boxes>(u"Boxes", u"", "every message box so far: `title`, `text`, `style`, `answer` (null while it is up)"),
    row<&Person::Windows>(u"Windows", u"", "the open windows from back to front: `name` (empty for one of the host), `caption`, `modal`"),
    row<&Person::ClickBar>(u"ClickBar", u"window, path",
                           "clicks a control in the command bars of an Explorer or Inspector, given as its object: \"Bar/Popup/Caption\", in any case, without "
                           "\"&\". The window comes to the front first"),
    row<&Person::Bars>(u"Bars", u"window", "the command bars of an Explorer or Inspector, with all their controls"),
    row<&Person::ChooseMenu>(u"ChooseMenu", u"caption", "chooses in the menu that is up, by caption (without \"&\") or name; an empty caption closes it"),
    row<&Person::PickFile>(u"PickFile", u"path", "the answer of the next file dialog; no window has one yet, so it is always error 5"),
    row<&Person::OpenItem>(u"OpenItem", u"entryID, [storeID]", "opens an item; gives its Inspector, in front"),
    row<&Person::NewMail>(u"NewMail", u"", "opens a new mail; gives its Inspector"),
    row<&Person::OpenExplorer>(u"OpenExplorer", u"[folder]", "opens an Explorer on a folder, the Inbox unless told; gives it"),
    row<&Person::SelectItems>(u"SelectItems", u"items", "selects items in the Explorer in front, a list of `[entryID, storeID]`; gives the Explorer"),
    row<&Person::CloseInspector>(u"CloseInspector", u"inspector, save", "closes an Inspector, saving its item or dropping what was typed"),
    row<&Person::Focus>(u"Focus", u"inspector, field, caret",
                        "puts the caret of an open item into `To`, `CC`, `BCC`, `Subject` or `Body`, at a place of the visible text, -1 the end"),
    row<&Person::TypeText>(u"TypeText", u"text", "types the text, as it stands, into the window in front"),
    row<&Person::SelectText>(u"SelectText", u"inspector, start, length", "selects text in the field that has the caret"),
    row<&Person::Receive>(u"Receive", u"eml", "delivers a mail, given as text or bytes of a message file, into the Inbox; gives it"),
    row<&Person::AddContact>(u"AddContact", u"fields",
                             "a new entry of the address book: a table of `name`, `address`, `prefix`, `given`, `middle`, `surname`, `generation`, `type` "
                             "(SMTP or EX), `proxies` (a list)"),
    row<&Person::AddStore>(u"AddStore", u"name, [kind]", "a further store, which lives as long as the program; kind 5 (public) unless told, 2 is private"),
    row<&Person::RemoveStore>(u"RemoveStore", u"name", "closes a further store"),
    row<&Person::SetRights>(u"SetRights", u"folder, rights", "what the user may do in a folder: `none`, `read`, `add` or `all`"),
    row<&Person::SetClock>(u"SetClock", u"iso", "date and time from now on, as text or date; no timer fires. Only with --now"),
    row<&Person::Advance>(u"Advance", u"milliseconds", "lets time pass, a year at most; timers fire on the way. Only with --now"),
    row<&Person::Clipboard>(u"Clipboard", u"", "what lies on the clipboard: a table of formats; `CF_UNICODETEXT` has a text, every other format bytes"),
    row<&Person::SetClipboard>(u"SetClipboard", u"text", "replaces all that lies there, by a text or by a table of formats"),
    row<&Person::Calls>(u"Calls", u"",
                        "the log of uses of the host's objects: `class`, `member`, `kind` (get, put, call), `arguments`, and `error` where it failed. "
                        "An object is the name of its class. The last 100000 at least are kept"),
    row<&Person::ClearCalls>(u"ClearCalls", u"", "empties the log"),
    row<&Person::Fail>(u"Fail", u"class, member, nth, number, [description]",
                       "the nth coming use of the member fails, once; an empty class or member means any. Uses by clients count"),
    row<&Person::ClearFails>(u"ClearFails", u"", "forgets what was to fail"),
    row<&Person::CommitDelay>(u"CommitDelay", u"pumps", "how many event pumps typed text needs to reach an item"),
};

class User final : public TableObject {
public:
    explicit User(Person& person) noexcept : person_(person) {}
    std::u16string_view className() const noexcept override { return u"User"; }

protected:
    std::size_t rowCount() const noexcept override { return std::size(rows); }
    std::u16string_view nameAt(std::size_t row) const noexcept override { return rows[row].name; }
    std::u16string_view parametersAt(std::size_t row) const override { return rows[row].parameters; }
    Variant runAt(std::size_t row, host::Args args) override { return rows[row].run(person_, args); }

private:
    Person& person_;
};

}  // namespace

std::span<const PersonRow> personRows() noexcept {
    return rows;
}

host::Object makeUser(Person& person) {
    return host::makeObject<User>(person);
}

}  // namespace lorvane::automation
