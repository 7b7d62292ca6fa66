#pragma once

#include <ostream>
#include <string_view>

#include "InsertRig.h"

/// The ways an insertion can take, for tests that go through all of them.
namespace lorvane::support {

/// How a template reaches the item behind the look at the caret.
enum class Way { Clipboard, WordPaste, HtmlSplice, PlainSplice };

/// An insertion by what it starts from: the open item, the template, the button.
struct Route {
    std::string_view name;
    BodyText item, offer;
    std::u16string_view button;
    Way way;
};

inline void PrintTo(const Route& route, std::ostream* stream) {
    *stream << route.name;
}

inline const BodyText plainItem = plain(u"ab"), htmlItem = html(document(u"ab")), richItem = rich(u"ab");
inline const BodyText plainOffer = plain(u"Dear [FirstName]"), htmlOffer = html(document(u"<B>Dear</B> [FirstName]")), richOffer = rich(u"Dear [FirstName]");

}  // namespace lorvane::support
