#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "html/EditorDocument.h"
#include "html/HtmlDocument.h"
#include "html/Units.h"

using namespace lorvane::html;

namespace {

class HtmlWriter {
public:
    explicit HtmlWriter(unsigned seed) : random_(seed) {}

    std::u16string document() {
        std::u16string result;
        if (below(3) == 0) result += u"<!-- a comment -->";
        const bool body = below(4) != 0;
        if (body) result += u"<HTML><HEAD><TITLE>t</TITLE></HEAD>\r\n<BODY>";
        for (std::size_t i = below(6); i > 0; --i) block(result, 0);
        if (body) result += u"</BODY></HTML>\r\n";
        return result;
    }

    std::size_t below(std::size_t limit) { return random_() % limit; }

private:
    void inlines(std::u16string& out) {
        static constexpr std::u16string_view pieces[] = {
            u"a",     u"bc",       u"&amp;",   u"&nbsp;", u"&#x1F600;", u"\U0001F600", u"\u00E9",      u"\xD800",
            u"&lt;",  u"<b>d</b>", u"<i></i>", u"<br>",   u"<BR>\r\n",  u"<!-- c -->", u"<img src=x>", u"<span><b>e</b>f</span>",
            u"&copy", u"</foo>"};
        for (std::size_t i = below(5); i > 0; --i) {
            out += pieces[below(std::size(pieces))];
            if (below(3) == 0) out += below(2) == 0 ? u" " : u"\r\n ";
        }
    }

    void block(std::u16string& out, int depth) {
        switch (below(depth > 2 ? 3 : 7)) {
            case 0:
                inlines(out);
                break;
            case 1:
                wrap(out, u"<p>", u"</p>\r\n", depth, true);
                break;
            case 2:
                wrap(out, u"<pre>", u"</pre>", depth, true);
                break;
            case 3:
                wrap(out, u"<DIV class=x>", u"</DIV>", depth, false);
                break;
            case 4:
                wrap(out, u"<ul><li>", u"</ul>", depth, false);
                break;
            case 5:
                wrap(out, u"<blockquote>", u"</blockquote>", depth, false);
                break;
            default:
                table(out, depth);
        }
    }

    void wrap(std::u16string& out, std::u16string_view open, std::u16string_view close, int depth, bool onlyInlines) {
        out += open;
        if (onlyInlines) {
            inlines(out);
        } else {
            for (std::size_t i = below(3); i > 0; --i) block(out, depth + 1);
        }
        out += close;
    }

    void table(std::u16string& out, int depth) {
        out += u"<table>\r\n";
        for (std::size_t rows = below(3); rows > 0; --rows) {
            out += u"<tr>";
            for (std::size_t cells = 1 + below(3); cells > 0; --cells) wrap(out, u"<td>", below(2) == 0 ? u"</td> " : u"", depth, below(2) == 0);
            out += u"</tr>";
        }
        out += u"</table>";
    }

    std::mt19937 random_;
};

std::u16string inserted(const std::u16string& text, std::size_t position, char16_t unit = u'X') {
    std::u16string result = text;
    result.insert(position, 1, unit);
    return result;
}

}  // namespace

TEST(TypingProperty, ALetterTypedAtAPositionShowsThereAndChangesNothingElse) {
    std::size_t typed = 0;
    for (unsigned seed = 1; seed <= 400; ++seed) {
        const std::u16string source = HtmlWriter(seed).document();
        const HtmlDocument document(source);
        for (std::size_t position = 0; position <= document.length(); ++position) {
            const std::size_t offset = document.sourceOffsetAt(position);
            // The middle of a surrogate pair is no place of its own.
            if (document.positionAt(offset) != position && document.characterRangeBefore(position).to != position) continue;
            EditorDocument editor(TextKind::Html, source);
            editor.setCaret(position);
            editor.typeText(u"X");
            ASSERT_EQ(editor.source(), inserted(source, offset)) << "seed " << seed;
            const std::u16string& before = document.map().units();
            const std::u16string after = HtmlDocument(editor.source()).map().units();
            std::u16string expected = inserted(before, position);
            // An edge behind an empty line or cell made nothing; behind the letter it makes a line end.
            const bool nothingInFront = position == 0 || before[position - 1] == u'\n' || before[position - 1] == u'\t';
            const bool emptyLine = position < before.size() && before[position] == u'\n' && nothingInFront;
            // So does the edge behind the last line end of a "pre", in which the letter stands.
            const bool endOfPre = position > 0 && before[position - 1] == u'\n' && source[offset - 1] == u'\n';
            if ((emptyLine || endOfPre) && after.size() > expected.size()) expected.insert(position + 1, 1, u'\n');
            ASSERT_EQ(after, expected) << "seed " << seed << " position " << position;
            ASSERT_EQ(editor.caret(), position + 1) << "seed " << seed << " position " << position;
            editor.backspace();
            ASSERT_EQ(editor.source(), source);
            ++typed;
        }
    }
    EXPECT_GT(typed, 3000u);
}

TEST(TypingProperty, BackspaceTakesExactlyOneCharacterOrNothing) {
    std::size_t taken = 0;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        HtmlWriter writer(seed);
        const std::u16string source = writer.document();
        EditorDocument editor(TextKind::Html, source);
        const std::u16string before = HtmlDocument(source).map().units();
        const std::size_t position = writer.below(before.size() + 1);
        editor.setCaret(position);
        // What stands alone on its line takes the line with it; blanks beside a character fold once it has gone.
        const std::size_t from = HtmlDocument(source).characterRangeBefore(position).from;
        const auto letter = [&](std::size_t i) { return i < before.size() && before[i] >= u'a' && before[i] <= u'f'; };
        if (position == 0 || from == 0 || !letter(from - 1) || !letter(position)) continue;
        editor.backspace();
        std::u16string expected = before;
        expected.erase(from, position - from);
        const std::u16string after = HtmlDocument(editor.source()).map().units();
        if (before[from] == u'\n' || before[from] == u'\t') {
            // Without its break a line may be parted by a blank or an edge instead.
            const bool parted = after.size() == expected.size() + 1 && isBlank(after[from]) && inserted(expected, from, after[from]) == after;
            EXPECT_TRUE(after == expected || editor.source() == source || parted) << "seed " << seed;
        } else {
            EXPECT_EQ(after, expected) << "seed " << seed;
        }
        ++taken;
    }
    EXPECT_GT(taken, 40u);
}
