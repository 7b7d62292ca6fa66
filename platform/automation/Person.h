#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "automation/Pace.h"
#include "automation/RemoteUser.h"
#include "host/Object.h"
#include "host/Variant.h"
#include "instruments/FaultInjector.h"
#include "instruments/Recorder.h"
#include "mime/MimeReader.h"
#include "model/Driver.h"
#include "screen/Hands.h"
#include "services/Clipboard.h"

namespace lorvane::automation {

/// The instruments in front of all that the add-in and the clients use.
class Instruments {
public:
    /// How many uses the log holds at least: a door may serve for weeks.
    static constexpr std::size_t rememberedUses = 100'000;

    Instruments() { recorder.keepLast(rememberedUses); }
    /// The log stands in front, so that it has the uses that were made to fail too.
    host::Object decorate(const host::Object& object) const { return recorder.decorate(faults.decorate(object)); }
    void clear() {
        recorder.clear();
        faults.clear();
    }

    instruments::Recorder recorder;
    instruments::FaultInjector faults;
};

/// The machine that a person sits at.
struct PersonsMachine {
    RemoteUser& user;
    screen::WindowList& windows;
    const model::Driver& driver;
    services::Clipboard& clipboard;
    Instruments& instruments;
    VirtualClock* clock = nullptr;               ///< none where time is the machine's own
    host::Object application;                    ///< as the add-in sees it
    std::function<mime::ReadOptions()> reading;  ///< how a mail that comes in is read
    /// Hears of each act, as `screen::Hands` tells it.
    std::function<void(std::u16string_view)> onAct = [](std::u16string_view) {};
};

/// The person at the machine, and the machine itself: what the object `User` does. Objects may be decorated.
///
/// Error 5, with a sentence, for what a person could not do: a window that is not open or covered, a control that is hidden or disabled.
class Person {
public:
    explicit Person(PersonsMachine machine) : machine_(std::move(machine)), hands_(machine_.windows) { hands_.onAct(machine_.onAct); }

    // The windows of the add-in, by name or by object.
    void Click(const host::Variant& window, std::u16string_view control, std::optional<std::int32_t> row);
    void DblClick(const host::Variant& window, std::u16string_view control, std::optional<std::int32_t> row);
    void RightClick(const host::Variant& window, std::u16string_view control, std::optional<std::int32_t> row);
    void Type(const host::Variant& window, std::u16string_view control, std::u16string_view text);
    void Key(const host::Variant& window, std::u16string_view control, std::u16string_view keys);
    void Select(const host::Variant& window, std::u16string_view list, std::int32_t index);
    void Check(const host::Variant& window, std::u16string_view box, bool on);
    void Expand(const host::Variant& window, std::u16string_view tree, std::u16string_view key);
    void CloseWindow(const host::Variant& window);
    void Answer(std::int32_t button) { machine_.user.Answer(button); }
    void AnswerNext(const host::Variant& buttons);
    host::Variant Boxes() const;
    host::Variant Windows() const;
    void ChooseMenu(std::u16string_view item) { machine_.user.ChooseMenu(item); }
    void PickFile(std::u16string_view path);

    // The host's windows.
    host::Object OpenItem(std::u16string_view entryID, std::u16string_view storeID);
    host::Object NewMail();
    host::Object OpenExplorer(const host::Object& folder);
    host::Object SelectItems(const host::Variant& items);
    void CloseInspector(const host::Object& inspector, bool save);
    void Focus(const host::Object& inspector, std::u16string_view field, std::int32_t caret);
    void TypeText(std::u16string_view text);
    void SelectText(const host::Object& inspector, std::int32_t start, std::int32_t length);

    void ClickBar(const host::Object& window, std::u16string_view path);  ///< "Bar/Popup/Caption"
    host::Variant Bars(const host::Object& window) const;

    // What comes from outside.
    host::Object Receive(const host::Variant& message);
    void AddContact(const host::Object& fields);
    void AddStore(std::u16string_view name, std::optional<std::int32_t> kind);
    void RemoveStore(std::u16string_view name);
    void SetRights(const host::Object& folder, std::u16string_view rights);

    // The machine.
    void SetClock(const host::Variant& moment);
    void Advance(double milliseconds);
    host::Variant Clipboard() const;
    void SetClipboard(const host::Variant& content);
    host::Variant Calls() const;
    void ClearCalls() { machine_.instruments.recorder.clear(); }
    void Fail(std::u16string_view className, std::u16string_view member, std::int32_t nth, std::int32_t number, std::u16string_view description);
    void ClearFails() { machine_.instruments.faults.clear(); }
    void CommitDelay(std::int32_t pumps);

private:
    void requireInput(const host::Object& window) const;  ///< of the host; error 13 for anything else, error 5 where it is covered
    host::Object seen(const host::Object& object) const { return machine_.instruments.decorate(object); }
    VirtualClock& virtualClock() const;
    void closeHostWindow(const host::Object& window);

    PersonsMachine machine_;
    screen::Hands hands_;
};

/// A member of `User`.
struct PersonRow {
    std::u16string_view name, parameters;
    std::string_view doc;
    host::Variant (*run)(Person& person, host::Args args);
};
std::span<const PersonRow> personRows() noexcept;

/// The object `User` over a person, who outlives it.
host::Object makeUser(Person& person);

}  // namespace lorvane::automation
