#pragma once

#include <string_view>
#include <vector>

#include "html/HtmlTags.h"
#include "html/TextMap.h"

namespace lorvane::html {

/// Turns elements and characters, told in the order of the document, into the visible text.
///
/// Outside preformatted text a run of blanks is one blank, and none stands at the start or end of a line or a cell. A no-break space is a blank that is never
/// folded. `br` makes a line end; block edges together make one, where text stands in front of them. Rows are lines, cells are parted by a tab.
class VisibleBuilder {
public:
    /// The start of an element. `tag` is empty where the parser made it up.
    void open(TagRole role, SourceRange tag);
    /// Its end; not told of `Break` and `Rule`.
    void close(TagRole role, SourceRange tag);
    /// One or two code points that stand together in the source: a character, an entity, a line end of the source (as LF).
    void character(std::u16string_view units, SourceRange range);
    /// The result; `emptyStart` is where text goes when there is none.
    TextMap finish(std::size_t emptyStart);

private:
    struct Row {
        std::size_t cells = 0;
        std::size_t cellStart = 0;  ///< position at which the last cell begins
        std::size_t inside = 0;     ///< source offset behind that cell's start tag
    };

    void edge();
    void remember(SourceRange tag, bool starts);
    void lineBreak(SourceRange tag);
    void openCell(SourceRange tag);
    void blank(SourceRange range);
    void preformatted(std::u16string_view units, SourceRange range);
    void append(std::u16string_view units, SourceRange range);
    /// Makes the line end that edges promised, in front of what now follows.
    void flushEdge(std::size_t behind);
    void flushBlanks();
    bool textInFront() const;
    void contentAdded();

    TextMap map_;
    std::vector<std::size_t> floors_;  ///< positions at which the cells around this place begin
    std::vector<Row> rows_;
    std::vector<SourceRange> blanks_;  ///< a run of blanks that shows if text follows on its line
    std::vector<SourceRange> tags_;    ///< tags with edges since the last content
    bool lastTagStarts_ = false;
    bool edgePending_ = false;
    std::size_t lineStart_ = 0;
    std::size_t keptBlanks_ = 0;  ///< depth of elements that keep blanks
    bool behindCarriageReturn_ = false;
};

}  // namespace lorvane::html
