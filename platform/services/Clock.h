#pragma once

#include <functional>
#include <span>

#include "services/ServiceObject.h"

namespace lorvane::services {

/// The machine's local time, in whole seconds.
host::DateTime machineNow();

/// The clock behind the surface (`host::Clock`): whatever the run says the time is.
class Clock final : public ServiceObject<Clock> {
public:
    explicit Clock(std::function<host::DateTime()> now) : now_(std::move(now)) {}

    std::u16string_view className() const noexcept override { return u"Clock"; }
    static std::span<const Row> rows() noexcept;

private:
    host::Variant Now(host::Args args);

    std::function<host::DateTime()> now_;
};

}  // namespace lorvane::services
