#include "automation/Person.h"
#include "automation/Records.h"
#include "host/TextFunctions.h"

/// What a person does with the windows of the add-in, and with what comes up over them.
namespace lorvane::automation {

using host::Variant;

namespace {

[[noreturn]] void refuse(std::u16string sentence) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall, std::move(sentence));
}

/// The window of the add-in that is meant, whose name is its class.
std::u16string nameOf(const Variant& window) {
    if (window.kind() != Variant::Kind::Object) return window.toText();
    const auto* form = host::implementation<host::Form>(window.toObject());
    if (!form) refuse(u"A window of the host has no controls.");
    return std::u16string(form->name());
}

}  // namespace

void Person::Click(const Variant& window, std::u16string_view control, std::optional<std::int32_t> row) {
    hands_.Click(nameOf(window), control, row);
}

void Person::DblClick(const Variant& window, std::u16string_view control, std::optional<std::int32_t> row) {
    hands_.DblClick(nameOf(window), control, row);
}

void Person::RightClick(const Variant& window, std::u16string_view control, std::optional<std::int32_t> row) {
    hands_.RightClick(nameOf(window), control, row);
}

void Person::Type(const Variant& window, std::u16string_view control, std::u16string_view text) {
    hands_.Type(nameOf(window), control, text);
}

void Person::Key(const Variant& window, std::u16string_view control, std::u16string_view keys) {
    hands_.Key(nameOf(window), control, keys);
}

void Person::Select(const Variant& window, std::u16string_view list, std::int32_t index) {
    hands_.Select(nameOf(window), list, index);
}

void Person::Check(const Variant& window, std::u16string_view box, bool on) {
    hands_.Check(nameOf(window), box, on);
}

void Person::Expand(const Variant& window, std::u16string_view tree, std::u16string_view) {
    const host::Control& control = machine_.windows.reach(nameOf(window), tree);
    refuse(std::u16string(u"The control \"").append(control.name()).append(u"\" is no tree."));
}

void Person::CloseWindow(const Variant& window) {
    const bool isOfHost = window.kind() == Variant::Kind::Object && !host::implementation<host::Form>(window.toObject());
    if (isOfHost)
        closeHostWindow(window.toObject());
    else
        hands_.CloseWindow(nameOf(window));
}

void Person::AnswerNext(const Variant& buttons) {
    std::vector<std::int32_t> numbers;
    if (buttons.kind() == Variant::Kind::Array)
        for (const Variant& button : buttons.toArray().items) numbers.push_back(button.toInt32());
    else
        numbers.push_back(buttons.toInt32());
    machine_.user.AnswerNext(numbers);
}

Variant Person::Boxes() const {
    return listOf(machine_.user.Boxes(), [](const RemoteUser::BoxRecord& box) {
        return record({{u"title", box.title}, {u"text", box.text}, {u"style", box.style}, {u"answer", box.answer ? Variant(*box.answer) : Variant()}});
    });
}

Variant Person::Windows() const {
    return listOf(hands_.Windows(), [](const screen::WindowList::Row& window) {
        return record({{u"name", window.name}, {u"caption", window.caption}, {u"modal", window.modal}});
    });
}

void Person::PickFile(std::u16string_view) {
    refuse(u"No window has a file dialog.");
}

}  // namespace lorvane::automation
