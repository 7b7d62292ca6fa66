#include "host/Services.h"

#include "host/Form.h"

namespace lorvane::host {

namespace {

std::vector<std::u16string> texts(const Variant& list) {
    std::vector<std::u16string> result;
    for (const Variant& item : list.toArray().items) result.push_back(item.toText());
    return result;
}

}  // namespace

void Screen::Load(Form& form) const {
    call(Member::Load, {Object(&form)});
}
void Screen::Show(Form& form, bool modal) const {
    call(Member::Show, {Object(&form), modal});
}
void Screen::Hide(Form& form) const {
    call(Member::Hide, {Object(&form)});
}
void Screen::Unload(Form& form) const {
    call(Member::Unload, {Object(&form)});
}
std::int32_t Screen::MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) const {
    return call(Member::MsgBox, {text, style, title}).toInt32();
}
void Screen::DoEvents() const {
    call(Member::DoEvents);
}
void Screen::PopupMenu(Form& form, std::u16string_view menu) const {
    call(Member::PopupMenu, {Object(&form), menu});
}
double Screen::TextWidth(std::u16string_view text) const {
    return call(Member::TextWidth, {text}).toDouble();
}
void Screen::SetTimer(Form& form, std::u16string_view timer, std::int32_t milliseconds) const {
    call(Member::SetTimer, {Object(&form), timer, milliseconds});
}
void Screen::KillTimer(Form& form, std::u16string_view timer) const {
    call(Member::KillTimer, {Object(&form), timer});
}
void Screen::SendKeys(std::u16string_view keys, bool wait) const {
    call(Member::SendKeys, {keys, wait});
}
std::int32_t Screen::VkKeyScan(char16_t character) const {
    return call(Member::VkKeyScan, {std::u16string(1, character)}).toInt32();
}
std::int32_t Screen::MapVirtualKey(std::int32_t key, std::int32_t type) const {
    return call(Member::MapVirtualKey, {key, type}).toInt32();
}
void Screen::keybd_event(std::int32_t key, std::int32_t scanCode, std::int32_t flags) const {
    call(Member::keybd_event, {key, scanCode, flags});
}
std::int32_t Screen::GetForegroundWindow() const {
    return call(Member::GetForegroundWindow).toInt32();
}
void Screen::SetForegroundWindow(std::int32_t window) const {
    call(Member::SetForegroundWindow, {window});
}

bool Files::FolderExists(std::u16string_view path) const {
    return call(Member::FolderExists, {path}).toBoolean();
}
bool Files::FileExists(std::u16string_view path) const {
    return call(Member::FileExists, {path}).toBoolean();
}
void Files::CreateFolder(std::u16string_view path) const {
    call(Member::CreateFolder, {path});
}
std::u16string Files::ReadText(std::u16string_view path) const {
    return call(Member::ReadText, {path}).toText();
}
void Files::WriteText(std::u16string_view path, std::u16string_view text) const {
    call(Member::WriteText, {path, text});
}
void Files::AppendText(std::u16string_view path, std::u16string_view text) const {
    call(Member::AppendText, {path, text});
}
void Files::DeleteFile(std::u16string_view path) const {
    call(Member::DeleteFile, {path});
}
std::vector<std::u16string> Files::ListFiles(std::u16string_view folder) const {
    return texts(call(Member::ListFiles, {folder}));
}
std::u16string Files::GetTempPath() const {
    return call(Member::GetTempPath).toText();
}
std::u16string Files::GetFolderPath(std::int32_t csidl) const {
    return call(Member::GetFolderPath, {csidl}).toText();
}

std::u16string Settings::GetSetting(std::u16string_view application, std::u16string_view section, std::u16string_view key,
                                    std::u16string_view byDefault) const {
    return call(Member::GetSetting, {application, section, key, byDefault}).toText();
}
void Settings::SaveSetting(std::u16string_view application, std::u16string_view section, std::u16string_view key, std::u16string_view value) const {
    call(Member::SaveSetting, {application, section, key, value});
}

DateTime Clock::Now() const {
    return call(Member::Now).toDate();
}

std::u16string Environment::AppPath() const {
    return getText(Member::AppPath);
}
std::u16string Environment::Variable(std::u16string_view name) const {
    return call(Member::Variable, {name}).toText();
}

void Clipboard::Clear() const {
    call(Member::Clear);
}
void Clipboard::SetText(std::u16string_view text) const {
    call(Member::SetText, {text});
}
std::int32_t Clipboard::RegisterClipboardFormat(std::u16string_view name) const {
    return call(Member::RegisterClipboardFormat, {name}).toInt32();
}
bool Clipboard::OpenClipboard() const {
    return call(Member::OpenClipboard).toBoolean();
}
std::int32_t Clipboard::GlobalAlloc(std::int32_t flags, std::int32_t size) const {
    return call(Member::GlobalAlloc, {flags, size}).toInt32();
}
std::int32_t Clipboard::GlobalLock(std::int32_t handle) const {
    return call(Member::GlobalLock, {handle}).toInt32();
}
void Clipboard::RtlMoveMemory(std::int32_t address, const Bytes& bytes) const {
    call(Member::RtlMoveMemory, {address, bytes});
}
void Clipboard::GlobalUnlock(std::int32_t handle) const {
    call(Member::GlobalUnlock, {handle});
}
void Clipboard::EmptyClipboard() const {
    call(Member::EmptyClipboard);
}
void Clipboard::SetClipboardData(std::int32_t format, std::int32_t handle) const {
    call(Member::SetClipboardData, {format, handle});
}
void Clipboard::CloseClipboard() const {
    call(Member::CloseClipboard);
}

std::u16string Region::LocaleName() const {
    return getText(Member::LocaleName);
}
std::vector<std::u16string> Region::MonthNames(bool abbreviated) const {
    return texts(call(Member::MonthNames, {abbreviated}));
}
std::vector<std::u16string> Region::DayNames(bool abbreviated) const {
    return texts(call(Member::DayNames, {abbreviated}));
}
Bytes Region::ToAnsi(std::u16string_view text) const {
    return call(Member::ToAnsi, {text}).toBytes();
}

Locale Region::locale() const {
    Locale result = knownLocale(LocaleName());
    const auto take = [](auto& target, const std::vector<std::u16string>& names) {
        for (std::size_t i = 0; i < target.size() && i < names.size(); ++i) target[i] = names[i];
    };
    take(result.months, MonthNames(false));
    take(result.monthsShort, MonthNames(true));
    take(result.days, DayNames(false));
    take(result.daysShort, DayNames(true));
    return result;
}

void Shell::ShellExecute(std::int32_t owner, std::u16string_view operation, std::u16string_view file, std::u16string_view parameters,
                         std::u16string_view directory, std::int32_t show) const {
    call(Member::ShellExecute, {owner, operation, file, parameters, directory, show});
}

Object Machine::CreateObject(std::u16string_view progId) const {
    return call(Member::CreateObject, {progId}).toObject();
}
Object Machine::CreateObject(std::u16string_view progId, std::u16string_view server) const {
    return call(Member::CreateObject, {progId, server}).toObject();
}
Screen Machine::screen() const {
    return host::Screen(getObject(Member::Screen));
}
Files Machine::files() const {
    return host::Files(getObject(Member::Files));
}
Settings Machine::settings() const {
    return host::Settings(getObject(Member::Settings));
}
Clock Machine::clock() const {
    return host::Clock(getObject(Member::Clock));
}
Environment Machine::environment() const {
    return host::Environment(getObject(Member::Environment));
}
Clipboard Machine::clipboard() const {
    return host::Clipboard(getObject(Member::Clipboard));
}
Region Machine::region() const {
    return host::Region(getObject(Member::Region));
}
Shell Machine::shell() const {
    return host::Shell(getObject(Member::Shell));
}

}  // namespace lorvane::host
