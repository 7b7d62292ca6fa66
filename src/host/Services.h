#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Locale.h"
#include "host/Object.h"
#include "host/Variant.h"

/// Facades over what a platform gives besides its mail host: the user's side, files, settings, the clock, the clipboard.
///
/// Each is an object like any other behind the surface, so that the recorder and the fault injector see it. A facade adds C++ names and types and nothing else.
namespace lorvane::host {

class Form;

/// The numbers of message box styles and answers.
namespace msgbox {
inline constexpr std::int32_t Plain = 0, Critical = 16, Question = 36, Exclamation = 48, Information = 64, QuestionInformation = 68;
inline constexpr std::int32_t Ok = 1, Cancel = 2, Yes = 6, No = 7;
}  // namespace msgbox

/// The user's side: windows, boxes, keys, the event pump.
class Screen : public Object {
public:
    explicit Screen(Object object) : Object(std::move(object)) {}
    void Load(Form& form) const;              ///< the window exists from now on, not shown yet
    void Show(Form& form, bool modal) const;  ///< modal: returns when the window is hidden or unloaded and its running handler has returned
    void Hide(Form& form) const;
    void Unload(Form& form) const;
    std::int32_t MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) const;  ///< the button pressed
    void DoEvents() const;                                                                               ///< lets pending events run once
    void PopupMenu(Form& form, std::u16string_view menu) const;  ///< shows a menu of the window; the chosen item's Click runs before it returns
    double TextWidth(std::u16string_view text) const;            ///< twips, in the list's font
    void SetTimer(Form& form, std::u16string_view timer, std::int32_t milliseconds) const;  ///< raises the control's Timer event each interval
    void KillTimer(Form& form, std::u16string_view timer) const;
    void SendKeys(std::u16string_view keys, bool wait) const;  ///< to the foreground window; the grammar of `SendKeys`, error 5 where it is broken
    std::int32_t VkKeyScan(char16_t character) const;          ///< the key's code, and the keys to hold in the byte above it; -1 where no key has it
    std::int32_t MapVirtualKey(std::int32_t key, std::int32_t type) const;                ///< type 0: the scan code; 0 for none
    void keybd_event(std::int32_t key, std::int32_t scanCode, std::int32_t flags) const;  ///< presses a key, or with 2 in `flags` lets it go
    std::int32_t GetForegroundWindow() const;                                             ///< 0 where there is none
    void SetForegroundWindow(std::int32_t window) const;
};

/// Files and folders by paths with "\". Text is in the system's single-byte code page. Errors are the run-time numbers (53, 75, 76 …).
class Files : public Object {
public:
    explicit Files(Object object) : Object(std::move(object)) {}
    bool FolderExists(std::u16string_view path) const;
    bool FileExists(std::u16string_view path) const;
    void CreateFolder(std::u16string_view path) const;
    std::u16string ReadText(std::u16string_view path) const;
    void WriteText(std::u16string_view path, std::u16string_view text) const;   ///< makes or replaces the file
    void AppendText(std::u16string_view path, std::u16string_view text) const;  ///< makes the file where there is none
    void DeleteFile(std::u16string_view path) const;
    std::vector<std::u16string> ListFiles(std::u16string_view folder) const;  ///< names without their folder
    std::u16string GetTempPath() const;                                       ///< the run's temporary folder with a "\" at its end; "" where there is none
    std::u16string GetFolderPath(std::int32_t csidl) const;                   ///< 5 documents, 26 roaming application data
};

/// Per-user text values under application, section and key.
class Settings : public Object {
public:
    explicit Settings(Object object) : Object(std::move(object)) {}
    std::u16string GetSetting(std::u16string_view application, std::u16string_view section, std::u16string_view key, std::u16string_view byDefault = u"") const;
    void SaveSetting(std::u16string_view application, std::u16string_view section, std::u16string_view key, std::u16string_view value) const;
};

class Clock : public Object {
public:
    explicit Clock(Object object) : Object(std::move(object)) {}
    DateTime Now() const;
};

class Environment : public Object {
public:
    explicit Environment(Object object) : Object(std::move(object)) {}
    std::u16string AppPath() const;                           ///< the add-in's own folder, without a "\" at its end
    std::u16string Variable(std::u16string_view name) const;  ///< "" where it is not set
};

/// The clipboard by its two ways: text at once, or a block in a registered format by the platform's own steps.
class Clipboard : public Object {
public:
    explicit Clipboard(Object object) : Object(std::move(object)) {}
    void Clear() const;
    void SetText(std::u16string_view text) const;                          ///< replaces all formats by this text
    std::int32_t RegisterClipboardFormat(std::u16string_view name) const;  ///< 0 where it failed
    bool OpenClipboard() const;
    std::int32_t GlobalAlloc(std::int32_t flags, std::int32_t size) const;  ///< handle, 0 where it failed
    std::int32_t GlobalLock(std::int32_t handle) const;                     ///< address, 0 where it failed
    void RtlMoveMemory(std::int32_t address, const Bytes& bytes) const;
    void GlobalUnlock(std::int32_t handle) const;
    void EmptyClipboard() const;
    void SetClipboardData(std::int32_t format, std::int32_t handle) const;
    void CloseClipboard() const;
};

/// What belongs to the user's region: the locale's name, the names of months and days, the code page.
class Region : public Object {
public:
    explicit Region(Object object) : Object(std::move(object)) {}
    std::u16string LocaleName() const;
    std::vector<std::u16string> MonthNames(bool abbreviated) const;  ///< twelve
    std::vector<std::u16string> DayNames(bool abbreviated) const;    ///< seven from Sunday
    Bytes ToAnsi(std::u16string_view text) const;                    ///< in the system's single-byte code page; "?" for what it lacks
    Locale locale() const;                                           ///< the known patterns of the region with the platform's names
};

class Shell : public Object {
public:
    explicit Shell(Object object) : Object(std::move(object)) {}
    void ShellExecute(std::int32_t owner, std::u16string_view operation, std::u16string_view file, std::u16string_view parameters,
                      std::u16string_view directory, std::int32_t show) const;
};

/// Where a run begins: makes objects by ProgID and hands out the services.
class Machine : public Object {
public:
    Machine() = default;
    explicit Machine(Object object) : Object(std::move(object)) {}
    Object CreateObject(std::u16string_view progId) const;  ///< error 429 for an unknown ProgID; ProgIDs are case-insensitive
    Object CreateObject(std::u16string_view progId, std::u16string_view server) const;
    host::Screen screen() const;
    host::Files files() const;
    host::Settings settings() const;
    host::Clock clock() const;
    host::Environment environment() const;
    host::Clipboard clipboard() const;
    host::Region region() const;
    host::Shell shell() const;
};

}  // namespace lorvane::host
