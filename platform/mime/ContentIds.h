#pragma once

#include <set>
#include <string>
#include <string_view>

namespace lorvane::mime {

/// The content ids that an HTML text refers to ("cid:logo@1"), in lower case.
std::set<std::u16string> referencedContentIds(std::u16string_view html);

}  // namespace lorvane::mime
