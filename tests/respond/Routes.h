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
    Way way;  ///< with an editor of the host's own
};

inline void PrintTo(const Route& route, std::ostream* stream) {
    *stream << route.name;
}

inline const BodyText plainItem = plain(u"ab"), htmlItem = html(document(u"ab")), richItem = rich(u"ab");
inline const BodyText plainOffer = plain(u"Dear [FirstName]"), htmlOffer = html(document(u"<B>Dear</B> [FirstName]")), richOffer = rich(u"Dear [FirstName]");

inline const Route routes[] = {
    {"plain mail, text, plain template", plainItem, plainOffer, insertText, Way::Clipboard},
    {"plain mail, text, HTML template", plainItem, htmlOffer, insertText, Way::Clipboard},
    {"plain mail, text, rich template", plainItem, richOffer, insertText, Way::Clipboard},
    {"plain mail, format, plain template", plainItem, plainOffer, insertWithFormat, Way::Clipboard},
    {"plain mail, format, HTML template", plainItem, htmlOffer, insertWithFormat, Way::Clipboard},
    {"plain mail, format, rich template", plainItem, richOffer, insertWithFormat, Way::Clipboard},
    {"HTML mail, text, plain template", htmlItem, plainOffer, insertText, Way::Clipboard},
    {"HTML mail, text, HTML template", htmlItem, htmlOffer, insertText, Way::Clipboard},
    {"HTML mail, text, rich template", htmlItem, richOffer, insertText, Way::Clipboard},
    {"HTML mail, format, plain template", htmlItem, plainOffer, insertWithFormat, Way::Clipboard},
    {"HTML mail, format, rich template", htmlItem, richOffer, insertWithFormat, Way::Clipboard},
    {"HTML mail, format, HTML template", htmlItem, htmlOffer, insertWithFormat, Way::HtmlSplice},
    {"rich mail, text, plain template", richItem, plainOffer, insertText, Way::Clipboard},
    {"rich mail, format, plain template", richItem, plainOffer, insertWithFormat, Way::Clipboard},
    {"rich mail, text, HTML template", richItem, htmlOffer, insertText, Way::PlainSplice},
    {"rich mail, format, HTML template", richItem, htmlOffer, insertWithFormat, Way::PlainSplice},
    {"rich mail, text, rich template", richItem, richOffer, insertText, Way::PlainSplice},
    {"rich mail, format, rich template", richItem, richOffer, insertWithFormat, Way::PlainSplice},
};

}  // namespace lorvane::support
