#include "host/Member.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lorvane::host {

namespace {

constexpr std::u16string_view names[] = {
    u"?",
#define LORVANE_MEMBER(id) u"" #id,
#define LORVANE_MEMBER_AS(id, name) u"" name,
#include "host/members.def"
};
static_assert(std::size(names) == static_cast<std::size_t>(Member::Count_));

// The table holds ASCII names only (asserted below), so that a name with any other letter is not in it.
constexpr char16_t lowered(char16_t unit) noexcept {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

constexpr int compareNames(std::u16string_view a, std::u16string_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const char16_t left = lowered(a[i]);
        const char16_t right = lowered(b[i]);
        if (left != right) return left < right ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

constexpr auto sortedMembers = [] {
    std::array<std::uint16_t, std::size(names) - 1> order{};
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::uint16_t>(i + 1);
    std::ranges::sort(order, [](std::uint16_t a, std::uint16_t b) { return compareNames(names[a], names[b]) < 0; });
    return order;
}();

static_assert(std::ranges::all_of(names, [](std::u16string_view name) { return std::ranges::all_of(name, [](char16_t unit) { return unit < 0x80; }); }));
static_assert(std::ranges::adjacent_find(sortedMembers, [](std::uint16_t a, std::uint16_t b) { return compareNames(names[a], names[b]) == 0; }) ==
                  sortedMembers.end(),
              "two rows of members.def have the same name");

}  // namespace

std::u16string_view memberName(Member member) noexcept {
    return member < Member::Count_ ? names[static_cast<std::size_t>(member)] : names[0];
}

std::optional<Member> findMember(std::u16string_view name) noexcept {
    const auto row = std::ranges::partition_point(sortedMembers, [name](std::uint16_t candidate) { return compareNames(names[candidate], name) < 0; });
    if (row == sortedMembers.end() || compareNames(names[*row], name) != 0) return std::nullopt;
    return static_cast<Member>(*row);
}

}  // namespace lorvane::host
