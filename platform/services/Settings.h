#pragma once

#include <memory>
#include <span>

#include "mailstore/MailStore.h"
#include "services/ServiceObject.h"

namespace lorvane::services {

/// The settings behind the surface (`host::Settings`), over the store that keeps them.
class Settings final : public ServiceObject<Settings> {
public:
    explicit Settings(std::shared_ptr<mailstore::SettingsStore> store) : store_(std::move(store)) {}

    std::u16string_view className() const noexcept override { return u"Settings"; }
    static std::span<const Row> rows() noexcept;

private:
    host::Variant GetSetting(host::Args args);
    host::Variant SaveSetting(host::Args args);

    std::shared_ptr<mailstore::SettingsStore> store_;
};

}  // namespace lorvane::services
