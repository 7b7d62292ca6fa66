#include "services/Region.h"

#include <utility>

#include "services/RegionNames.h"

namespace lorvane::services {

using host::Variant;

namespace {

Variant listOf(std::vector<std::u16string> names) {
    host::Array list;
    for (std::u16string& name : names) list.items.emplace_back(std::move(name));
    return list;
}

bool isAbbreviated(host::Args args) {
    const Variant& flag = host::argumentAt(args, 0);
    return !flag.isMissing() && flag.toBoolean();
}

}  // namespace

Region::Region(std::u16string_view localeName, std::shared_ptr<const CodePage> codePage)
    : name_(regionName(localeName).value_or(u"en-US")), codePage_(std::move(codePage)) {}

std::span<const Region::Row> Region::rows() noexcept {
    using host::Member;
    static constexpr Row table[] = {
        {Member::LocaleName, &Region::LocaleName},
        {Member::MonthNames, &Region::MonthNames},
        {Member::DayNames, &Region::DayNames},
        {Member::ToAnsi, &Region::ToAnsi},
    };
    return table;
}

Variant Region::LocaleName(host::Args) {
    return name_;
}

Variant Region::MonthNames(host::Args args) {
    return listOf(monthNames(name_, isAbbreviated(args)));
}

Variant Region::DayNames(host::Args args) {
    return listOf(dayNames(name_, isAbbreviated(args)));
}

Variant Region::ToAnsi(host::Args args) {
    return codePage_->encode(textAt(args, 0));
}

}  // namespace lorvane::services
