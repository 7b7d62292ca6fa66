#include "html/HtmlText.h"

#include "html/HtmlParser.h"
#include "html/Units.h"

namespace lorvane::html {

std::u16string escapeHtml(std::u16string_view text, std::u16string_view lineEnd) {
    std::u16string result;
    result.reserve(text.size() + text.size() / 16);
    for (std::size_t i = 0; i < text.size(); ++i) {
        switch (text[i]) {
            case u'&':
                result += u"&amp;";
                break;
            case u'<':
                result += u"&lt;";
                break;
            case u'>':
                result += u"&gt;";
                break;
            case u'\r':
            case u'\n':
                i += lineEndLength(text, i) - 1;
                result += lineEnd;
                break;
            default:
                result += text[i];
        }
    }
    return result;
}

std::u16string textToHtml(std::u16string_view text) {
    std::u16string result = u"<HTML><BODY>";
    result += escapeHtml(text, u"<BR>\r\n");
    result += u"</BODY></HTML>";
    return result;
}

std::u16string visibleText(std::u16string_view html) {
    return mapHtml(html).text();
}

}  // namespace lorvane::html
