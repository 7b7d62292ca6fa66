#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"

namespace lorvane::cli {

using host::fromUtf8;
using host::toUtf8;

ExitStatus runSettingsGet(const RunOptions& runOptions, const SettingsOptions& options) {
    const Run run(runOptions);
    run.requireConnected();
    const auto value = run.files().settings->find(host::settingsApplication, host::settingsSection, fromUtf8(options.key));
    if (!value) throw CommandEnd(ExitStatus::Refused, "the key " + options.key + " was never written");
    print(*value + u"\n");
    return ExitStatus::Done;
}

ExitStatus runSettingsSet(const RunOptions& runOptions, const SettingsOptions& options) {
    const Run run(runOptions);
    run.requireConnected();
    host::saveSetting(fromUtf8(options.key), fromUtf8(options.value));
    return ExitStatus::Done;
}

ExitStatus runSettingsList(const RunOptions& runOptions, const SettingsOptions& options) {
    const Run run(runOptions);
    run.requireConnected();
    nlohmann::json list = nlohmann::json::array();
    std::u16string lines;
    for (const auto& entry : run.files().settings->list()) {
        if (options.json)
            list.push_back(
                {{"application", toUtf8(entry.application)}, {"section", toUtf8(entry.section)}, {"key", toUtf8(entry.key)}, {"value", toUtf8(entry.value)}});
        else
            lines += onOneLine(entry.key + u"=" + entry.value) + u"\n";
    }
    print(options.json ? fromUtf8(list.dump(2)) + u"\n" : lines);
    return ExitStatus::Done;
}

}  // namespace lorvane::cli
