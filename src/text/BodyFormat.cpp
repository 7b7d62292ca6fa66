#include "text/BodyFormat.h"

#include "host/TextFunctions.h"
#include "host/basGlobals.h"

namespace lorvane::text {

using namespace host;

std::u16string ConvertPlainTextToHtml(std::u16string_view text) {
    if (OutlookMajorVersion() < 12) return std::u16string(text);
    std::u16string html = Replace(text, CrLf, u"</P><P class=MsoNormal>", Compare::IgnoreCase);
    html = Replace(html, u"<P class=MsoNormal></P>", u"<P class=MsoNormal><o:p>&nbsp;</o:p></P>", Compare::IgnoreCase);
    return u"<p>" + html + u"</p>";
}

std::u16string GetHtmlFromBody(std::u16string_view text) {
    return u"<HTML><BODY>" + Replace(text, u"\r", u"<BR>", Compare::IgnoreCase) + u"</BODY></HTML>";
}

std::u16string SetParagraphSpacing(std::u16string_view html) {
    if (OutlookMajorVersion() < 12) return std::u16string(html);
    const std::u16string spaced = Replace(html, u"<p>", u"<p class=MsoNormal>", Compare::IgnoreCase);
    return Replace(spaced, CrLf, u"</p><p class=MsoNormal>", Compare::IgnoreCase);
}

std::u16string RemoveSpecChars(std::u16string_view name) {
    std::u16string clean(name);
    for (const std::u16string_view character : {u"\\", u"/", u":", u"*", u"?", u"\"", u"<", u">", u"|"})
        clean = Replace(clean, character, u"", Compare::IgnoreCase);
    return clean;
}

}  // namespace lorvane::text
