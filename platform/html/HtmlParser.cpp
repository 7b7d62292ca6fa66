#include "html/HtmlParser.h"

#include <optional>
#include <string>
#include <vector>

#include "html/CharacterReferences.h"
#include "html/HtmlTags.h"
#include "html/MarkupScanner.h"
#include "html/ParsedTree.h"
#include "html/Units.h"
#include "html/Utf8Source.h"
#include "html/VisibleBuilder.h"

namespace lorvane::html {

namespace {

constexpr char32_t Replacement = 0xFFFD;

/// Decoded text, code point by code point.
class DecodedText {
public:
    explicit DecodedText(const char* utf8) : at_(utf8) {}

    bool atEnd() const noexcept { return *at_ == '\0'; }

    char32_t peek() const noexcept {
        const auto byte = [this](int i) { return static_cast<char32_t>(static_cast<unsigned char>(at_[i])); };
        if (byte(0) < 0x80) return byte(0);
        if (byte(0) < 0xE0) return ((byte(0) & 0x1F) << 6) | (byte(1) & 0x3F);
        if (byte(0) < 0xF0) return ((byte(0) & 0x0F) << 12) | ((byte(1) & 0x3F) << 6) | (byte(2) & 0x3F);
        return ((byte(0) & 0x07) << 18) | ((byte(1) & 0x3F) << 12) | ((byte(2) & 0x3F) << 6) | (byte(3) & 0x3F);
    }

    void skip() noexcept {
        if (atEnd()) return;
        do ++at_;
        while ((static_cast<unsigned char>(*at_) & 0xC0) == 0x80);
    }

private:
    const char* at_;
};

char32_t codePointAt(std::u16string_view source, std::size_t offset) noexcept {
    if (characterLength(source, offset) == 1) return source[offset];
    return 0x10000 + ((static_cast<char32_t>(source[offset]) - 0xD800) << 10) + (static_cast<char32_t>(source[offset + 1]) - 0xDC00);
}

/// Tells a text of the source to the builder, character by character.
class TextReader {
public:
    TextReader(std::u16string_view source, VisibleBuilder& builder) : source_(source), builder_(builder) {}

    /// `decoded`, where given, is the text that the parser read: what the source has beyond it (tags that were ignored) is passed over.
    void read(SourceRange range, Content content, DecodedText* decoded) {
        at_ = range.begin;
        end_ = range.end;
        while (at_ < end_ && (decoded == nullptr || !decoded->atEnd())) {
            if (content == Content::Markup && source_[at_] == u'<' && skipMarkup()) continue;
            const bool entities = content == Content::Markup || content == Content::Entities;
            if (entities && source_[at_] == u'&' && readReference(decoded)) continue;
            readCharacter(decoded);
        }
    }

private:
    bool skipMarkup() {
        const std::size_t end = markupEnd(source_, at_);
        if (end == at_) return false;
        at_ = end;
        return true;
    }

    bool readReference(DecodedText* decoded) {
        const CharacterReference reference = references_.at(source_, at_);
        if (reference.length == 0) return false;
        builder_.character(reference.character, {at_, at_ + reference.length});
        for (std::size_t i = 0; decoded != nullptr && i < reference.character.size(); i += characterLength(reference.character, i)) decoded->skip();
        at_ += reference.length;
        return true;
    }

    void readCharacter(DecodedText* decoded) {
        const std::size_t lineEnd = lineEndLength(source_, at_);
        const std::size_t length = lineEnd != 0 ? lineEnd : characterLength(source_, at_);
        const char32_t character = lineEnd != 0 ? U'\n' : codePointAt(source_, at_);
        bool shown = character != 0;
        if (decoded != nullptr) {
            // The parser gives U+FFFD for what no document should hold, such as half a surrogate pair; the source keeps it.
            const char32_t expected = decoded->peek();
            shown = expected == character || expected == Replacement;
            if (shown) decoded->skip();
        }
        if (shown) builder_.character(lineEnd != 0 ? std::u16string_view(u"\n") : source_.substr(at_, length), {at_, at_ + length});
        at_ += length;
    }

    std::u16string_view source_;
    VisibleBuilder& builder_;
    CharacterReferences references_;
    std::size_t at_ = 0;
    std::size_t end_ = 0;
};

/// Where text goes in a source that shows nothing: behind the body's tag, else where a body would begin.
class EmptyStart {
public:
    void body(std::size_t end) { body_ = body_.value_or(end); }
    void headEnd(std::size_t end) { headEnd_ = headEnd_.value_or(end); }
    void html(std::size_t end) { html_ = html_.value_or(end); }
    void doctype(std::size_t end) { doctype_ = doctype_.value_or(end); }
    std::size_t value() const { return body_.value_or(headEnd_.value_or(html_.value_or(doctype_.value_or(0)))); }

private:
    std::optional<std::size_t> body_, headEnd_, html_, doctype_;
};

std::size_t doctypeEnd(std::u16string_view source) {
    MarkupScanner scanner(source);
    while (const std::optional<MarkupToken> token = scanner.next()) {
        const std::u16string_view text = source.substr(token->range.begin, 9);
        if (token->kind == MarkupToken::Kind::Text && text.find_first_not_of(u" \t\r\n\f") == std::u16string_view::npos) continue;
        if (token->kind != MarkupToken::Kind::Other) return 0;
        std::u16string lower;
        for (const char16_t unit : text) lower += asciiLower(unit);
        if (lower == u"<!doctype") return token->range.end;
    }
    return 0;
}

/// Walks the parser's tree without recursion.
class TreeReader {
public:
    TreeReader(std::u16string_view source, const Utf8Source& utf8) : source_(source), utf8_(utf8), text_(source, builder_) {}

    TextMap read(const GumboNode& root) {
        const GumboNode* body = nullptr;
        EmptyStart start;
        const SourceRange html = piece(root.v.element.original_tag);
        if (!html.empty()) start.html(html.end);
        const GumboVector& children = root.v.element.children;
        for (unsigned int i = 0; i < children.length; ++i) {
            const GumboNode* child = static_cast<const GumboNode*>(children.data[i]);
            if (child->type != GUMBO_NODE_ELEMENT) continue;
            if (child->v.element.tag == GUMBO_TAG_HEAD) {
                const SourceRange end = endTag(*child);
                if (!end.empty()) start.headEnd(end.end);
            }
            if (child->v.element.tag == GUMBO_TAG_BODY && body == nullptr) body = child;
        }
        if (body != nullptr) {
            const SourceRange tag = piece(body->v.element.original_tag);
            if (!tag.empty()) start.body(tag.end);
            walk(*body);
        }
        if (const std::size_t end = doctypeEnd(source_); end != 0) start.doctype(end);
        return builder_.finish(start.value());
    }

private:
    struct Open {
        const GumboNode* node;
        TagRole role;
        unsigned int nextChild;
    };

    SourceRange piece(const GumboStringPiece& text) const {
        if (text.data == nullptr || text.length == 0) return {};
        const std::size_t begin = static_cast<std::size_t>(text.data - utf8_.bytes().data());
        return {utf8_.unitOffset(begin), utf8_.unitOffset(begin + text.length)};
    }

    SourceRange endTag(const GumboNode& node) const {
        if ((node.parse_flags & GUMBO_INSERTION_IMPLICIT_END_TAG) != 0) return {};
        return piece(node.v.element.original_end_tag);
    }

    void walk(const GumboNode& body) {
        std::vector<Open> open{{&body, TagRole::Inline, 0}};
        while (!open.empty()) {
            Open& top = open.back();
            const GumboVector& children = top.node->v.element.children;
            if (top.nextChild < children.length) {
                const GumboNode* child = static_cast<const GumboNode*>(children.data[top.nextChild++]);
                if (child->type == GUMBO_NODE_ELEMENT) {
                    enter(*child, open);
                } else {
                    readText(*child, top.node->v.element.tag);
                }
                continue;
            }
            builder_.close(top.role, top.role == TagRole::Inline ? SourceRange{} : endTag(*top.node));
            open.pop_back();
        }
    }

    void enter(const GumboNode& node, std::vector<Open>& open) {
        const GumboElement& element = node.v.element;
        const TagRole role = element.tag_namespace == GUMBO_NAMESPACE_MATHML ? TagRole::Inline : roleOfTag(element.tag);
        if (role == TagRole::Hidden) return;
        if (role != TagRole::Inline) {
            // "</br>" is a break, "</p>" alone a paragraph.
            const bool fromEndTag = (node.parse_flags & GUMBO_INSERTION_CONVERTED_FROM_END_TAG) != 0;
            builder_.open(role, piece(fromEndTag ? element.original_end_tag : element.original_tag));
        }
        if (role != TagRole::Break && role != TagRole::Rule) open.push_back({&node, role, 0});
    }

    void readText(const GumboNode& node, int parentTag) {
        if (node.type != GUMBO_NODE_TEXT && node.type != GUMBO_NODE_WHITESPACE && node.type != GUMBO_NODE_CDATA) return;
        SourceRange range = piece(node.v.text.original_text);
        // The parser counts a text that starts with CRLF from its LF.
        if (range.begin > 0 && range.begin < range.end && source_[range.begin] == u'\n' && source_[range.begin - 1] == u'\r') --range.begin;
        Content content = contentOfTag(parentTag);
        constexpr std::u16string_view cdata = u"<![CDATA[";
        if (node.type == GUMBO_NODE_CDATA && source_.substr(range.begin, cdata.size()) == cdata) {
            range.begin += cdata.size();
            content = Content::Verbatim;
        }
        DecodedText decoded(node.v.text.text);
        text_.read(range, content, &decoded);
    }

    std::u16string_view source_;
    const Utf8Source& utf8_;
    VisibleBuilder builder_;
    TextReader text_;
};

/// Takes the tags as they stand.
class TagSoupReader {
public:
    explicit TagSoupReader(std::u16string_view source) : source_(source), text_(source, builder_) {}

    TextMap read() {
        MarkupScanner scanner(source_);
        while (const std::optional<MarkupToken> token = scanner.next()) {
            switch (token->kind) {
                case MarkupToken::Kind::Text:
                    readText(*token);
                    break;
                case MarkupToken::Kind::StartTag:
                    startTag(*token);
                    break;
                case MarkupToken::Kind::EndTag:
                    endTag(*token);
                    break;
                case MarkupToken::Kind::Other:
                    break;
            }
        }
        start_.doctype(doctypeEnd(source_));
        return builder_.finish(start_.value());
    }

private:
    static bool is(std::u16string_view name, std::u16string_view sought) {
        if (name.size() != sought.size()) return false;
        for (std::size_t i = 0; i < name.size(); ++i) {
            if (asciiLower(name[i]) != sought[i]) return false;
        }
        return true;
    }

    void readText(const MarkupToken& token) {
        if (hidden_ > 0) return;
        SourceRange range = token.range;
        if (behindPre_) range.begin += lineEndLength(source_, range.begin);
        behindPre_ = false;
        text_.read(range, token.content, nullptr);
    }

    void startTag(const MarkupToken& token) {
        behindPre_ = false;
        if (is(token.name, u"body")) start_.body(token.range.end);
        if (is(token.name, u"html")) start_.html(token.range.end);
        const TagRole role = roleOfName(token.name);
        if (role == TagRole::Hidden) {
            hidden_ += token.selfClosing ? 0 : 1;
        } else if (hidden_ == 0) {
            builder_.open(role, token.range);
            behindPre_ = role == TagRole::Preformatted || role == TagRole::TextBox;
        }
    }

    void endTag(const MarkupToken& token) {
        behindPre_ = false;
        if (is(token.name, u"head")) start_.headEnd(token.range.end);
        const TagRole role = roleOfName(token.name);
        if (role == TagRole::Hidden) {
            hidden_ -= hidden_ > 0 ? 1 : 0;
        } else if (hidden_ == 0) {
            if (role == TagRole::Break) {
                builder_.open(role, token.range);
            } else {
                builder_.close(role, token.range);
            }
        }
    }

    std::u16string_view source_;
    VisibleBuilder builder_;
    TextReader text_;
    EmptyStart start_;
    std::size_t hidden_ = 0;
    bool behindPre_ = false;
};

}  // namespace

TextMap mapHtml(std::u16string_view source) {
    if (!isBeyondParser(source)) {
        const Utf8Source utf8(source);
        const ParsedTree tree(utf8.bytes());
        if (tree.root() != nullptr) return TreeReader(source, utf8).read(*tree.root());
    }
    return TagSoupReader(source).read();
}

}  // namespace lorvane::html
