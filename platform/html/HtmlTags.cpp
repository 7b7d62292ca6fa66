#include "html/HtmlTags.h"

#include <gumbo.h>

#include <array>
#include <cstddef>
#include <initializer_list>

#include "html/Units.h"

namespace lorvane::html {

namespace {

int tagOfName(std::u16string_view name) noexcept {
    std::array<char, 32> narrow{};
    if (name.size() >= narrow.size()) return GUMBO_TAG_UNKNOWN;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] > 0x7F) return GUMBO_TAG_UNKNOWN;
        narrow[i] = static_cast<char>(asciiLower(name[i]));
    }
    return gumbo_tagn_enum(narrow.data(), static_cast<unsigned int>(name.size()));
}

/// What is not named here is `Inline`.
constexpr std::array<TagRole, GUMBO_TAG_LAST + 1> Roles = [] {
    std::array<TagRole, GUMBO_TAG_LAST + 1> roles{};
    const auto all = [&roles](TagRole role, std::initializer_list<GumboTag> tags) {
        for (const GumboTag tag : tags) roles[tag] = role;
    };
    all(TagRole::Block,
        {GUMBO_TAG_ADDRESS, GUMBO_TAG_ARTICLE, GUMBO_TAG_ASIDE,  GUMBO_TAG_BLOCKQUOTE, GUMBO_TAG_CAPTION, GUMBO_TAG_CENTER,   GUMBO_TAG_DD,
         GUMBO_TAG_DETAILS, GUMBO_TAG_DIR,     GUMBO_TAG_DIV,    GUMBO_TAG_DL,         GUMBO_TAG_DT,      GUMBO_TAG_FIELDSET, GUMBO_TAG_FIGCAPTION,
         GUMBO_TAG_FIGURE,  GUMBO_TAG_FOOTER,  GUMBO_TAG_FORM,   GUMBO_TAG_H1,         GUMBO_TAG_H2,      GUMBO_TAG_H3,       GUMBO_TAG_H4,
         GUMBO_TAG_H5,      GUMBO_TAG_H6,      GUMBO_TAG_HEADER, GUMBO_TAG_HGROUP,     GUMBO_TAG_LEGEND,  GUMBO_TAG_LI,       GUMBO_TAG_MAIN,
         GUMBO_TAG_MENU,    GUMBO_TAG_NAV,     GUMBO_TAG_OL,     GUMBO_TAG_OPTGROUP,   GUMBO_TAG_OPTION,  GUMBO_TAG_P,        GUMBO_TAG_SECTION,
         GUMBO_TAG_SUMMARY, GUMBO_TAG_TABLE,   GUMBO_TAG_TBODY,  GUMBO_TAG_TFOOT,      GUMBO_TAG_THEAD,   GUMBO_TAG_UL});
    all(TagRole::Rule, {GUMBO_TAG_HR});
    all(TagRole::Break, {GUMBO_TAG_BR});
    all(TagRole::Row, {GUMBO_TAG_TR});
    all(TagRole::Cell, {GUMBO_TAG_TD, GUMBO_TAG_TH});
    all(TagRole::Preformatted, {GUMBO_TAG_PRE, GUMBO_TAG_LISTING, GUMBO_TAG_XMP, GUMBO_TAG_PLAINTEXT});
    all(TagRole::TextBox, {GUMBO_TAG_TEXTAREA});
    all(TagRole::Hidden, {GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE, GUMBO_TAG_TITLE, GUMBO_TAG_TEMPLATE, GUMBO_TAG_IFRAME, GUMBO_TAG_NOEMBED, GUMBO_TAG_NOFRAMES,
                          GUMBO_TAG_SVG, GUMBO_TAG_AUDIO, GUMBO_TAG_VIDEO, GUMBO_TAG_CANVAS, GUMBO_TAG_DATALIST});
    return roles;
}();

/// What is not named here is `Markup`.
constexpr std::array<Content, GUMBO_TAG_LAST + 1> Contents = [] {
    std::array<Content, GUMBO_TAG_LAST + 1> contents{};
    for (const GumboTag tag : {GUMBO_TAG_TEXTAREA, GUMBO_TAG_TITLE}) contents[tag] = Content::Entities;
    for (const GumboTag tag : {GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE, GUMBO_TAG_XMP, GUMBO_TAG_IFRAME, GUMBO_TAG_NOEMBED, GUMBO_TAG_NOFRAMES}) {
        contents[tag] = Content::Verbatim;
    }
    contents[GUMBO_TAG_PLAINTEXT] = Content::EverBehind;
    return contents;
}();

constexpr std::array<bool, GUMBO_TAG_LAST + 1> Voids = [] {
    std::array<bool, GUMBO_TAG_LAST + 1> voids{};
    for (const GumboTag tag : {GUMBO_TAG_AREA, GUMBO_TAG_BASE, GUMBO_TAG_BASEFONT, GUMBO_TAG_BGSOUND, GUMBO_TAG_BR, GUMBO_TAG_COL, GUMBO_TAG_EMBED,
                               GUMBO_TAG_FRAME, GUMBO_TAG_HR, GUMBO_TAG_IMAGE, GUMBO_TAG_IMG, GUMBO_TAG_INPUT, GUMBO_TAG_KEYGEN, GUMBO_TAG_LINK, GUMBO_TAG_META,
                               GUMBO_TAG_PARAM, GUMBO_TAG_SOURCE, GUMBO_TAG_TRACK, GUMBO_TAG_WBR}) {
        voids[tag] = true;
    }
    return voids;
}();

}  // namespace

TagRole roleOfTag(int gumboTag) noexcept {
    return Roles.at(static_cast<std::size_t>(gumboTag));
}

TagRole roleOfName(std::u16string_view name) noexcept {
    return roleOfTag(tagOfName(name));
}

Content contentOfTag(int gumboTag) noexcept {
    return Contents.at(static_cast<std::size_t>(gumboTag));
}

Content contentOfName(std::u16string_view name) noexcept {
    return contentOfTag(tagOfName(name));
}

bool isVoidName(std::u16string_view name) noexcept {
    return Voids.at(static_cast<std::size_t>(tagOfName(name)));
}

}  // namespace lorvane::html
