#include "host/WindowCommands.h"

#include "host/Apartment.h"
#include "respond/FurtherWindows.h"
#include "respond/frmEmail.h"

namespace lorvane::host {

namespace {

using respond::frmEmail;

/// Loads the chooser, lets the opener set its members, and shows it.
template <class Prepare>
void showChooserAs(Prepare&& prepare) {
    frmEmail& chooser = apartment().forms.use<frmEmail>();
    prepare(chooser);
    chooser.Show(true);
}

constexpr std::int32_t keyUp = 2;
constexpr std::int32_t shiftKey = 0x10;

void press(const Screen& screen, std::int32_t key, std::int32_t flags) {
    constexpr std::int32_t toScanCode = 0;
    screen.keybd_event(key, screen.MapVirtualKey(key, toScanCode), flags);
}

}  // namespace

LaterCommands& laterCommands() {
    return apartment().state<LaterCommands>();
}

void showChooser() {
    showChooserAs([](frmEmail&) {});
}

void showChooserToCopy() {
    showChooserAs([](frmEmail& chooser) { chooser.DisableInsert = true; });
}

void showChooserForNewMail() {
    showChooserAs([](frmEmail& chooser) { chooser.NewMailUsingTempl = true; });
}

void typeAtCaret(std::u16string_view text) {
    const Screen screen = apartment().machine.screen();
    for (const char16_t character : text) {
        const std::int32_t code = screen.VkKeyScan(character);
        const std::int32_t key = code & 0xFF;
        const bool shifted = (code & 0x100) != 0;
        if (shifted) press(screen, shiftKey, 0);
        press(screen, key, 0);
        press(screen, key, keyUp);
        if (shifted) press(screen, shiftKey, keyUp);
    }
}

void openManualAt(std::int32_t topic) {
    respond::OpenManual(topic);
}

void unloadExplorerWindows() {
    for (const std::u16string_view window : {u"frmSelectEmail", u"frmOpenDeleteEvents"}) apartment().forms.release(window);
}

}  // namespace lorvane::host
