#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/AddIn.h"
#include "host/Connect.h"
#include "host/WindowCommands.h"
#include "host/basExplCol.h"
#include "host/basGlobals.h"
#include "host/basOutlInsp.h"
#include "instruments/Decorator.h"
#include "model/HostWindow.h"
#include "support/TestRun.h"

/// What the tests of the add-in's windows and their wrappers share.
namespace lorvane::support {

/// The host without instruments.
inline host::Application ownApplication(const TestRun& run) {
    return host::Application(instruments::stripped(run.application()));
}

/// The add-in's connection class, as the host has it.
inline host::Connect& connection(const TestRun& run) {
    return *host::implementation<host::Connect>(ownApplication(run).CreateObject(host::addInProgId));
}

/// What hears of the host's own events. Only while the add-in is connected.
inline host::OutAddIn& baseClass(const TestRun& run) {
    return *connection(run).gBaseClass();
}

/// The Explorer that is open from the start, without instruments, while it is the frontmost one.
inline host::Object firstExplorer(const TestRun& run) {
    return ownApplication(run).ActiveExplorer();
}

inline void closeWindow(const host::Object& window) {
    if (host::implementation<model::HostWindow>(window)->className() == u"Inspector")
        instruments::stripped(window).call(host::Member::Close, {host::olDiscard});
    else
        instruments::stripped(window).call(host::Member::Close);
}

/// Whether anybody hears of a window's events.
inline bool isHeard(const host::Object& window) {
    return host::implementation<model::HostWindow>(window)->events.hasSinks();
}

/// A class of items by its two names.
struct ItemKind {
    std::int32_t itemClass;
    std::u16string_view messageClass;
};
inline constexpr ItemKind mailKind{host::item_class::Mail, u"IPM.Note"}, postKind{host::item_class::Post, u"IPM.Post"},
    taskKind{host::item_class::Task, u"IPM.Task"}, appointmentKind{host::item_class::Appointment, u"IPM.Appointment"},
    contactKind{host::item_class::Contact, u"IPM.Contact"}, noteKind{host::item_class::Note, u"IPM.StickyNote"},
    journalKind{host::item_class::Journal, u"IPM.Activity"}, listKind{host::item_class::DistributionList, u"IPM.DistList"},
    documentKind{host::item_class::Document, u"IPM.Document"};

/// An item of any class in the Inbox, saved and not open.
inline host::MailItem addItem(const TestRun& run, const ItemKind& kind, std::u16string_view subject = u"Open") {
    mailstore::ItemRecord record;
    record.head.itemClass = kind.itemClass;
    record.head.messageClass = kind.messageClass;
    record.head.subject = subject;
    record.bodyKind = mailstore::BodyKind::Plain;
    record.body = u"Text";
    return host::MailItem(run.seen(run.driver().import(std::move(record), run.folder(host::default_folder::Inbox))));
}

inline host::Inspector openItem(const TestRun& run, const ItemKind& kind, std::u16string_view subject = u"Open") {
    return run.openMail(addItem(run, kind, subject));
}

using Keys = std::vector<int>;

/// The keys of the wrapped Explorers, in the order they came.
inline Keys explorerKeys() {
    Keys keys;
    for (const auto& wrapper : host::explorerWraps().gExplorerWraps.all()) keys.push_back(wrapper->Key);
    return keys;
}

inline Keys inspectorKeys() {
    Keys keys;
    for (const auto& wrapper : host::inspectorWraps().gInspectorWraps.all()) keys.push_back(wrapper->Key());
    return keys;
}

/// How a line of the log begins: "call Explorer.Display".
inline std::string_view headOf(std::string_view line) {
    return line.substr(0, line.find(' ', line.find(' ') + 1));
}

/// The lines of the log that begin with one of these, in order and without their arguments.
inline std::vector<std::string> headsIn(TestRun& run, const std::vector<std::string>& sought) {
    std::vector<std::string> heads;
    for (const std::string& line : run.recorder().lines()) {
        std::string head(headOf(line));
        if (std::ranges::find(sought, head) != sought.end()) heads.push_back(std::move(head));
    }
    return heads;
}

}  // namespace lorvane::support
