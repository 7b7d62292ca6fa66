#pragma once

#include <memory>
#include <span>
#include <string>

#include "services/CodePage.h"
#include "services/ServiceObject.h"

namespace lorvane::services {

/// The user's region behind the surface (`host::Region`).
class Region final : public ServiceObject<Region> {
public:
    /// `localeName` in any form of `regionName`; one nobody has names for is en-US.
    Region(std::u16string_view localeName, std::shared_ptr<const CodePage> codePage);

    std::u16string_view className() const noexcept override { return u"Region"; }
    static std::span<const Row> rows() noexcept;

private:
    host::Variant LocaleName(host::Args args);
    host::Variant MonthNames(host::Args args);
    host::Variant DayNames(host::Args args);
    host::Variant ToAnsi(host::Args args);

    std::u16string name_;
    std::shared_ptr<const CodePage> codePage_;
};

}  // namespace lorvane::services
