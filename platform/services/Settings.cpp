#include "services/Settings.h"

namespace lorvane::services {

using host::Variant;

std::span<const Settings::Row> Settings::rows() noexcept {
    static constexpr Row table[] = {{host::Member::GetSetting, &Settings::GetSetting}, {host::Member::SaveSetting, &Settings::SaveSetting}};
    return table;
}

Variant Settings::GetSetting(host::Args args) {
    if (auto value = store_->find(textAt(args, 0), textAt(args, 1), textAt(args, 2))) return std::move(*value);
    const Variant& byDefault = host::argumentAt(args, 3);
    return byDefault.isMissing() ? std::u16string() : byDefault.toText();
}

Variant Settings::SaveSetting(host::Args args) {
    store_->save(textAt(args, 0), textAt(args, 1), textAt(args, 2), textAt(args, 3));
    return {};
}

}  // namespace lorvane::services
