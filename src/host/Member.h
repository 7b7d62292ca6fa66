#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lorvane::host {

/// An interned member name: a small dense number on which a platform object switches.
///
/// The rows of `members.def` are the complete list of what the logic may use. A platform numbers members of its own from `platformMembers` on, windows and
/// controls from `windowMembers` on; those are resolved by the objects themselves (`Dispatch::memberNamed`).
enum class Member : std::uint16_t {
    None = 0,
#define LORVANE_MEMBER(id) id,
#define LORVANE_MEMBER_AS(id, name) id,
#include "host/members.def"
    Count_,
};

inline constexpr std::uint16_t platformMembers = 0x1000;
inline constexpr std::uint16_t windowMembers = 0x2000;

/// The name as the host spells it; "?" for one that is not in the surface's table.
std::u16string_view memberName(Member member) noexcept;

/// Finds a row of the surface's table by name, any case.
std::optional<Member> findMember(std::u16string_view name) noexcept;

}  // namespace lorvane::host
