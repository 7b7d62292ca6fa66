#include <algorithm>
#include <iterator>

#include "Commands.h"
#include "OwnItem.h"
#include "Run.h"
#include "Streams.h"
#include "automation/BarRecords.h"
#include "automation/Values.h"
#include "host/Outlook.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

using namespace host;

namespace {

/// Kinds of items that the host makes, beside those that the add-in makes too.
constexpr std::int32_t taskType = 3, postType = 6;

/// What stands in for a mail that somebody received.
constexpr std::string_view sampleMail =
    "From: Jane Sender <jane@example.com>\r\n"
    "To: user@localhost\r\n"
    "Subject: A question\r\n"
    "\r\n"
    "How much is it?\r\n";

Object explorerOf(Run& run, OwnItem&) {
    const Object explorer = Application(run.application()).ActiveExplorer();
    if (!explorer) throw CommandEnd(ExitStatus::Refused, "the host has no Explorer: --no-explorer left it out");
    return explorer;
}

Object newMail(Run& run, OwnItem& own) {
    own.inspector = run.driver().newMail();
    own.item = Inspector(own.inspector).CurrentItem();
    return own.inspector;
}

Object receivedMail(Run& run, OwnItem& own) {
    openStored(run, run.driver().receive(run.readMessage("the sample mail", {sampleMail.begin(), sampleMail.end()})), own);
    return own.inspector;
}

template <std::int32_t Type>
Object newItem(Run& run, OwnItem& own) {
    const MailItem item = Application(run.application()).CreateItem(Type);
    own.item = item;
    own.inspector = item.GetInspector();
    own.inspector.call(Member::Display);
    return own.inspector;
}

/// Opens a window of a kind; an item in it is the command's own.
struct NamedWindow {
    std::string_view name;
    Object (*open)(Run& run, OwnItem& own);
};
constexpr NamedWindow windows[] = {
    {"explorer", explorerOf},    {"mail", newMail},           {"received", receivedMail},
    {"post", newItem<postType>}, {"task", newItem<taskType>}, {"appointment", newItem<olAppointmentItem>},
};

Object openWindow(Run& run, std::string_view name, OwnItem& own) {
    return std::ranges::find(windows, name, &NamedWindow::name)->open(run, own);
}

/// A caption as a path of a click has it, without the marks of access keys, and what keeps a person from clicking there.
std::u16string lineOf(std::u16string_view caption, bool visible, bool enabled) {
    std::u16string line = onOneLine(Replace(caption, u"&", u""));
    if (!visible) line += u" (hidden)";
    if (!enabled) line += u" (disabled)";
    return line;
}

void appendControls(std::u16string& lines, const std::vector<model::ControlTree>& controls, std::size_t depth) {
    const std::u16string indent(2 * depth, u' ');
    for (const model::ControlTree& control : controls) {
        if (control.beginGroup) lines += indent + u"--\n";
        lines += indent + lineOf(control.caption, control.visible, control.enabled) + u"\n";
        appendControls(lines, control.controls, depth + 1);
    }
}

std::u16string linesOf(const std::vector<model::BarTree>& bars) {
    std::u16string lines;
    for (const model::BarTree& bar : bars) {
        lines += lineOf(bar.name, bar.visible, true) + u"\n";
        appendControls(lines, bar.controls, 1);
    }
    return lines;
}

std::u16string jsonOf(const std::vector<model::BarTree>& bars) {
    automation::Handles none;
    return fromUtf8(automation::Values(none).toJson(automation::barRecords(bars)).dump(2)) + u"\n";
}

}  // namespace

std::vector<std::string> barsWindows() {
    std::vector<std::string> names;
    for (const NamedWindow& window : windows) names.emplace_back(window.name);
    return names;
}

ExitStatus runBars(const RunOptions& runOptions, const BarsOptions& options) {
    Run run(runOptions);
    run.requireConnected();
    OwnItem own(run, false);
    const std::vector<model::BarTree> bars = run.driver().bars(openWindow(run, options.window, own));
    print(options.json ? jsonOf(bars) : linesOf(bars));
    return ExitStatus::Done;
}

}  // namespace lorvane::cli
