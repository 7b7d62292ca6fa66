#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Outlook.h"
#include "host/Services.h"

/// One suite that every mail host behind the surface passes. A host comes in through one implementation of `HostUnderTest`; the cases know nothing else of it.
namespace lorvane::contract {

/// The numbers are those of `EditorType`.
enum class Editor : std::int32_t { Plain = 1, Html = 2, Rich = 3, Word = 4 };
enum class Field { To, Cc, Bcc, Subject, Body };
enum class Rights { None, Read, Add, All };

namespace store_kind {
inline constexpr std::int32_t PrivateFile = 2, PublicFolders = 5;
}

struct FurtherStore {
    std::u16string name{};
    std::int32_t kind = store_kind::PublicFolders;
};

/// What a run of the host is made of.
struct HostSetup {
    std::u16string version = u"11.0.0.5510";
    Editor editor = Editor::Html;
    Editor wordKind = Editor::Html;  ///< with Word as editor: the kind of new text
    std::uint32_t commitDelay = 0;   ///< event pumps
    std::vector<FurtherStore> furtherStores{};
    std::u16string toolsCaption = u"&Tools", helpCaption = u"&Help";  ///< of two menus, in the host's language
};

/// An entry of the address book.
struct Person {
    std::u16string name{}, address{};
    std::u16string prefix{}, given{}, middle{}, surname{}, generation{};
    std::u16string type = u"SMTP";
    std::vector<std::u16string> proxies{};
};

/// A mail as another system sends it.
struct IncomingMail {
    std::u16string subject{};
    std::optional<std::u16string> plain{}, html{};  ///< one of them, or none
    std::u16string senderName = u"Jane Sender", senderAddress = u"jane@example.com", senderAddressType = u"SMTP";
    host::Bytes original{};  ///< the message's own bytes; empty where there are none
};

/// What lies on the clipboard.
struct Clipping {
    std::optional<std::u16string> text{};
    std::optional<std::string> htmlFormat{};  ///< the block of "HTML Format" in UTF-8
};

/// A control of a bar, as a person sees it.
struct ShownControl {
    std::int32_t type = 1;  ///< 1 button, 10 popup
    std::u16string caption{}, tag{}, tooltip{};
    std::int32_t id = 1, faceId = 0, style = 0;
    bool beginGroup = false, enabled = true, visible = true, temporary = false;
    std::vector<ShownControl> controls{};  ///< of a popup
};

struct ShownBar {
    std::u16string name{};
    std::int32_t position = 1;
    bool visible = true;
    std::vector<ShownControl> controls{};
};

/// A running host, and the person in front of it.
class HostUnderTest {
public:
    using Identity = std::pair<std::u16string, std::u16string>;  ///< entry and store

    virtual ~HostUnderTest() = default;
    virtual host::Machine machine() = 0;
    /// Ends the host and starts another one over the same stores, as after a restart of the program. Objects of before are not used again.
    virtual void restart() = 0;

    // Windows and the caret.
    virtual host::Inspector newMail() = 0;
    virtual host::Inspector openItem(const Identity& item) = 0;
    virtual void closeInspector(const host::Inspector& inspector, bool save) = 0;
    virtual host::Object openExplorer() = 0;
    virtual void selectItems(const host::Object& explorer, const std::vector<Identity>& items) = 0;
    virtual void focus(const host::Inspector& inspector, Field field, std::int32_t position) = 0;  ///< -1 is the end
    virtual void select(const host::Inspector& inspector, std::size_t start, std::size_t length) = 0;
    virtual Field focusedField(const host::Inspector& inspector) = 0;
    virtual std::size_t caret(const host::Inspector& inspector) = 0;
    virtual std::u16string shown(const host::Inspector& inspector, Field field) = 0;  ///< what the window shows, committed or not
    virtual void type(std::u16string_view text) = 0;                                  ///< on the keyboard, into the window in front

    // Command bars of an Explorer or Inspector.
    virtual std::vector<ShownBar> bars(const host::Object& window) = 0;
    virtual void clickBar(const host::Object& window, std::u16string_view path) = 0;  ///< "Bar/Popup/Caption"

    // What comes from elsewhere.
    virtual host::MailItem receive(const IncomingMail& mail) = 0;
    virtual void addPerson(const Person& person) = 0;
    virtual void setClipboard(const Clipping& clipping) = 0;
    virtual Clipping clipboard() = 0;
    virtual void setNow(host::DateTime now) = 0;
    virtual void setCommitDelay(std::uint32_t pumps) = 0;
    virtual std::optional<host::Bytes> original(const host::Object& item) = 0;  ///< the bytes kept beside; none where there are none (any more)

    // Stores, and what another program does to them.
    virtual void addStore(const FurtherStore& store) = 0;
    virtual void removeStore(std::u16string_view name) = 0;
    virtual void setRights(const host::Object& folder, Rights rights) = 0;
    virtual void renameFolderFromOutside(const Identity& folder, std::u16string_view name) = 0;
    virtual void removeFolderFromOutside(const Identity& folder) = 0;
    virtual void removeItemFromOutside(const Identity& item) = 0;
    virtual void renameItemFromOutside(const Identity& item, std::u16string_view subject) = 0;  ///< saves it with another subject

    // Files of the machine.
    virtual std::u16string writeFile(std::string_view name, const host::Bytes& bytes) = 0;  ///< in the run's own folder; its path with "\"
    virtual std::u16string path(std::string_view name) = 0;                                 ///< of a file in that folder, there or not
    virtual host::Bytes readFile(std::u16string_view path) = 0;
};

/// One way to have a host: the kind of store behind it.
struct HostWay {
    std::string name;
    std::function<std::unique_ptr<HostUnderTest>(const HostSetup&)> make;
};

inline void PrintTo(const HostWay& way, std::ostream* out) {
    *out << way.name;
}

/// All ways; the first is the quickest.
std::vector<HostWay> hostWays();

}  // namespace lorvane::contract
