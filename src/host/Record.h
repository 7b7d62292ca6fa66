#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::host {

/// Named values that belong together, as one object. Names in any case; the fields are those it was made with.
class Record final : public Dispatch {
public:
    using Field = std::pair<std::u16string, Variant>;

    explicit Record(std::vector<Field> fields) noexcept : fields_(std::move(fields)) {}

    const std::vector<Field>& fields() const noexcept { return fields_; }
    const Variant* find(std::u16string_view name) const noexcept;  ///< null where it has no such field

    std::u16string_view className() const noexcept override { return u"Record"; }
    std::optional<Member> memberNamed(std::u16string_view name) const override;
    std::u16string_view memberText(Member member) const noexcept override;
    Variant get(Member member, Args args) override;
    void put(Member member, const Variant& value, Args args) override;
    Variant call(Member member, Args args) override { return get(member, args); }

private:
    std::size_t indexOf(Member member) const;
    std::vector<Field> fields_;
};

}  // namespace lorvane::host
