#include "services/Services.h"

#include <utility>

#include "mailstore/MemoryStore.h"
#include "services/CodePage.h"
#include "services/Environment.h"
#include "services/Region.h"
#include "services/RegionNames.h"
#include "services/Settings.h"

namespace lorvane::services {

using host::makeObject;

Services::Services(ServiceOptions options) {
    const std::u16string locale = regionName(options.localeName).value_or(u"en-US");
    const auto codePage = std::make_shared<const CodePage>(options.codePage.empty() ? codePageOfRegion(locale) : options.codePage);
    if (!options.settings) options.settings = mailstore::makeMemorySettings();

    files = makeObject<Files>(std::move(options.places), codePage);
    settings = makeObject<Settings>(std::move(options.settings));
    clock = makeObject<Clock>(std::move(options.now));
    environment = makeObject<Environment>(std::move(options.userName), std::move(options.appPath));
    clipboard = makeObject<Clipboard>(codePage);
    region = makeObject<Region>(locale, codePage);
    shell = makeObject<Shell>(std::move(options.shell));
}

}  // namespace lorvane::services
