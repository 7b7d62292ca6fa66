#include "mime/ContentIds.h"

#include "host/TextFunctions.h"

namespace lorvane::mime {

std::set<std::u16string> referencedContentIds(std::u16string_view html) {
    std::set<std::u16string> ids;
    const std::u16string lowered = host::LCase(html);
    const auto hex = [](char16_t c) { return c >= u'0' && c <= u'9' ? c - u'0' : c >= u'a' && c <= u'f' ? c - u'a' + 10 : -1; };
    for (std::size_t at = lowered.find(u"cid:"); at != std::u16string::npos; at = lowered.find(u"cid:", at)) {
        at += 4;
        std::u16string id;
        for (; at < lowered.size() && std::u16string_view(u"\"'<> )\t\r\n").find(lowered[at]) == std::u16string_view::npos; ++at) {
            const bool escape = lowered[at] == u'%' && at + 2 < lowered.size() && hex(lowered[at + 1]) >= 0 && hex(lowered[at + 2]) >= 0;
            id += escape ? static_cast<char16_t>(hex(lowered[at + 1]) * 16 + hex(lowered[at + 2])) : lowered[at];
            if (escape) at += 2;
        }
        ids.insert(std::move(id));
    }
    return ids;
}

}  // namespace lorvane::mime
