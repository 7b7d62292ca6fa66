#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "host/Member.h"

/// Members that belong to the model host alone, beside the surface's own.
namespace lorvane::model {

namespace detail {

inline constexpr std::uint16_t firstModelMember = host::platformMembers + 0x200;

enum class ModelRow : std::uint16_t {
#define LORVANE_MODEL_MEMBER(id) id,
#include "model/ModelMembers.def"
    Count_,
};

inline constexpr std::u16string_view surfaceNames[] = {
#define LORVANE_MEMBER(id) u"" #id,
#define LORVANE_MEMBER_AS(id, name) u"" name,
#include "host/members.def"
};

/// The surface's number of the name where it has one, else the model's.
constexpr host::Member numbered(std::u16string_view name, ModelRow row) {
    for (std::size_t i = 0; i < std::size(surfaceNames); ++i) {
        if (surfaceNames[i] == name) return static_cast<host::Member>(i + 1);
    }
    return static_cast<host::Member>(firstModelMember + static_cast<std::uint16_t>(row));
}

}  // namespace detail

namespace member {
#define LORVANE_MODEL_MEMBER(id) inline constexpr host::Member id = detail::numbered(u"" #id, detail::ModelRow::id);
#include "model/ModelMembers.def"
}  // namespace member

/// How many numbers `memberIndex` gives.
inline constexpr std::size_t memberIndexCount = static_cast<std::size_t>(host::Member::Count_) + static_cast<std::size_t>(detail::ModelRow::Count_);

/// A dense index for tables by member; `memberIndexCount` for a member that is neither the surface's nor the model's.
constexpr std::size_t memberIndex(host::Member number) noexcept {
    if (number < host::Member::Count_) return static_cast<std::size_t>(number);
    const std::size_t own = static_cast<std::size_t>(number) - detail::firstModelMember;
    return number >= static_cast<host::Member>(detail::firstModelMember) && own < static_cast<std::size_t>(detail::ModelRow::Count_)
               ? static_cast<std::size_t>(host::Member::Count_) + own
               : memberIndexCount;
}

/// A member of the surface or of the model by name, any case.
std::optional<host::Member> findModelMember(std::u16string_view name) noexcept;
/// The name of a member of the surface or of the model; "?" for any other.
std::u16string_view modelMemberName(host::Member number) noexcept;

}  // namespace lorvane::model
