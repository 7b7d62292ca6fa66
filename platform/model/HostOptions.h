#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/Object.h"
#include "host/ServiceObjects.h"
#include "mailstore/MailStore.h"
#include "screen/Desktop.h"

namespace lorvane::model {

/// The editor that new items open in; the numbers are those of `EditorType`. With `Word` every mail and post opens in Word.
enum class EditorKind : std::uint8_t { Plain = 1, Html = 2, Rich = 3, Word = 4 };

/// What lies on the clipboard, as far as a mail's editor pastes it.
struct PasteContent {
    std::optional<std::u16string> text;
    std::optional<host::Bytes> htmlFormat;  ///< the block of the format "HTML Format"
};

/// What a run of the model host is made of.
struct HostOptions {
    explicit HostOptions(screen::Desktop& onDesktop) : desktop(onDesktop) {}

    screen::Desktop& desktop;  ///< outlives the host
    std::u16string version = u"11.0.0.5510";
    EditorKind editor = EditorKind::Html;
    EditorKind wordKind = EditorKind::Html;                           ///< kind of new text in a run with Word as editor: plain, HTML or rich
    std::uint32_t commitDelay = 0;                                    ///< event pumps that typed text needs to reach an item
    std::u16string toolsCaption = u"&Tools", helpCaption = u"&Help";  ///< of two menus, in the host's language: "E&xtras", "&?" in German
    std::u16string accountName = u"Lorvane User";
    std::u16string accountAddress = u"user@localhost";

    host::Object screen;  ///< with `services` what the machine hands out as it is
    host::ServiceObjects services;
    std::function<PasteContent()> clipboardContent;                ///< nothing to paste where it is not given
    std::function<void(const PasteContent&)> setClipboardContent;  ///< replaces all that lies there; nothing is copied where it is not given
    std::function<host::Object()> makeRecordset;                   ///< a new "ADODB.Recordset"; error 429 where it is not given
    std::function<host::Object()> makeStream;                      ///< a new "ADODB.Stream"; error 429 where it is not given

    std::shared_ptr<mailstore::MailStore> defaultStore;
    std::vector<std::shared_ptr<mailstore::MailStore>> furtherStores;
};

}  // namespace lorvane::model
