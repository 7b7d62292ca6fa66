#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/TextFunctions.h"
#include "support/TestRun.h"

/// The bars of a window in a test: as text for a golden file, and single controls by their path.
namespace lorvane::support {

using Captions = std::vector<std::u16string>;

/// A control on one line, with all that can be read of it: empty texts and properties that are off are left out.
inline std::string controlLine(const model::ControlTree& control) {
    constexpr std::int32_t popup = 10;
    std::string line = control.type == popup ? "popup" : "button";
    const auto text = [&](std::string_view name, const std::u16string& value) {
        if (!value.empty()) line.append(" ").append(name).append("=\"").append(host::toUtf8(value)).append("\"");
    };
    const auto number = [&](std::string_view name, std::int32_t value) { line.append(" ").append(name).append("=").append(std::to_string(value)); };
    const auto flag = [&](std::string_view name, bool on) {
        if (on) line.append(" ").append(name);
    };
    line.append(" \"").append(host::toUtf8(control.caption)).append("\"");
    number("id", control.id);
    text("tag", control.tag);
    text("parameter", control.parameter);
    text("tooltip", control.tooltip);
    text("action", control.onAction);
    if (control.type != popup) {
        number("style", control.style);
        number("face", control.faceId);
    }
    number("priority", control.priority);
    flag("begins-group", control.beginGroup);
    line.append(control.enabled ? " enabled" : " disabled").append(control.visible ? " visible" : " hidden");
    flag("temporary", control.temporary);
    flag("built-in", control.builtIn);
    return line;
}

inline void appendControls(std::string& lines, const std::vector<model::ControlTree>& controls, std::size_t depth) {
    for (const model::ControlTree& control : controls) {
        lines.append(2 * depth, ' ').append(controlLine(control)).append("\n");
        appendControls(lines, control.controls, depth + 1);
    }
}

/// All bars of a window, a line for each bar and each control; what a popup opens stands below it.
inline std::string barLines(const TestRun& run, const host::Object& window) {
    std::string lines;
    for (const model::BarTree& bar : run.driver().bars(window)) {
        lines.append("bar \"").append(host::toUtf8(bar.name)).append("\" position=").append(std::to_string(bar.position));
        lines.append(bar.visible ? " visible" : " hidden").append(bar.temporary ? " temporary" : "").append(bar.builtIn ? " built-in" : "").append("\n");
        appendControls(lines, bar.controls, 1);
    }
    return lines;
}

inline std::optional<model::BarTree> barOf(const TestRun& run, const host::Object& window, std::u16string_view name) {
    for (const model::BarTree& bar : run.driver().bars(window))
        if (bar.name == name) return bar;
    return std::nullopt;
}

inline std::u16string withoutMarks(std::u16string_view caption) {
    return host::Replace(caption, u"&", u"");
}

/// A control by "Bar/Popup/Caption", captions without "&"; none where it is not there.
inline std::optional<model::ControlTree> controlAt(const TestRun& run, const host::Object& window, std::u16string_view path) {
    const std::vector<std::u16string> parts = host::Split(path, u"/");
    const std::optional<model::BarTree> bar = barOf(run, window, parts.front());
    if (!bar) return std::nullopt;
    std::vector<model::ControlTree> controls = bar->controls;
    std::optional<model::ControlTree> found;
    for (std::size_t part = 1; part < parts.size(); ++part) {
        found.reset();
        for (const model::ControlTree& control : controls)
            if (!found && withoutMarks(control.caption) == parts[part]) found = control;
        if (!found) return std::nullopt;
        controls = found->controls;
    }
    return found;
}

inline Captions captionsOf(const std::vector<model::ControlTree>& controls, bool visibleOnly = false) {
    Captions captions;
    for (const model::ControlTree& control : controls)
        if (control.visible || !visibleOnly) captions.push_back(control.caption);
    return captions;
}

/// The captions of a bar, in their order; none where the bar is not there.
inline Captions captionsOf(const TestRun& run, const host::Object& window, std::u16string_view bar) {
    const auto shown = barOf(run, window, bar);
    return shown ? captionsOf(shown->controls) : Captions{};
}
/// Those a person sees.
inline Captions captionsSeen(const TestRun& run, const host::Object& window, std::u16string_view bar) {
    const auto shown = barOf(run, window, bar);
    return shown && shown->visible ? captionsOf(shown->controls, true) : Captions{};
}

/// The paths of all buttons below a bar or popup.
inline void appendPaths(Captions& paths, const std::u16string& front, const std::vector<model::ControlTree>& controls, bool visibleOnly) {
    for (const model::ControlTree& control : controls) {
        if (visibleOnly && !control.visible) continue;
        const std::u16string path = front + u"/" + withoutMarks(control.caption);
        if (control.type == 1) paths.push_back(path);
        appendPaths(paths, path, control.controls, visibleOnly);
    }
}

}  // namespace lorvane::support
