#include "recordset/RowsetWriter.h"

#include <algorithm>
#include <array>

#include "host/TextFunctions.h"
#include "recordset/RowsetCells.h"
#include "recordset/RowsetSchema.h"

namespace lorvane::recordset {

using host::Variant;

namespace {

constexpr std::u16string_view lineEnd = u"\r\n";

constexpr std::u16string_view opening =
    u"<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'\r\n"
    u"\txmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'\r\n"
    u"\txmlns:rs='urn:schemas-microsoft-com:rowset'\r\n"
    u"\txmlns:z='#RowsetSchema'>\r\n"
    u"<s:Schema id='RowsetSchema'>\r\n"
    u"\t<s:ElementType name='row' content='eltOnly' rs:updatable='true'>\r\n";

// Bytes of a line from which on the next attribute goes to a line of its own, and bytes of digits that a line of their own has.
constexpr std::size_t fullLine = 108, lineOfDigits = 110;

bool isHighSurrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}
bool isLowSurrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}

/// Text of elements, with a count of the bytes on the current line.
class ElementText {
public:
    explicit ElementText(RowsetEncoding encoding) : encoding_(encoding) {}

    void line(int depth, std::u16string_view text) { made_.append(static_cast<std::size_t>(depth), u'\t').append(text).append(lineEnd); }
    void start(int depth, std::u16string_view name) {
        lineBytes_ = 0;
        put(std::u16string(static_cast<std::size_t>(depth), u'\t'));
        put(name);
    }
    /// `depth` is that of a line that the attribute begins.
    void attribute(int depth, std::u16string_view name, std::u16string_view value) {
        begin(depth, name);
        putEscaped(value);
        put(u"'");
    }
    /// An attribute of hexadecimal digits, which are broken over lines.
    void digits(int depth, std::u16string_view name, std::u16string_view value);
    void finish(std::u16string_view end) { made_.append(end).append(lineEnd); }

    void append(std::u16string_view text) { made_.append(text); }
    std::u16string take() { return std::move(made_); }

private:
    void begin(int depth, std::u16string_view name);
    void breakLine(int depth);
    void put(std::u16string_view text);
    void putEscaped(std::u16string_view text);

    RowsetEncoding encoding_;
    std::u16string made_;
    std::size_t lineBytes_ = 0;
};

void ElementText::breakLine(int depth) {
    made_.append(lineEnd).append(static_cast<std::size_t>(depth), u'\t');
    lineBytes_ = 0;
}

void ElementText::begin(int depth, std::u16string_view name) {
    if (lineBytes_ >= fullLine) {
        breakLine(depth);
        made_ += u' ';
    } else {
        put(u" ");
    }
    put(name);
    put(u"='");
}

void ElementText::put(std::u16string_view text) {
    made_.append(text);
    if (encoding_ == RowsetEncoding::Utf16) {
        lineBytes_ += 2 * text.size();
        return;
    }
    for (const char16_t unit : text) {
        const bool isHalf = isHighSurrogate(unit) || isLowSurrogate(unit);  // of a character of four bytes
        lineBytes_ += unit < 0x80 ? 1 : unit < 0x800 || isHalf ? 2 : 3;
    }
}

void ElementText::putEscaped(std::u16string_view text) {
    const auto reference = [this](std::uint32_t unit) {
        std::u16string written = u"&#x";
        for (int shift = 12; shift >= 0; shift -= 4) {
            const std::uint32_t digit = unit >> shift & 0xF;
            if (digit != 0 || written.size() > 3) written += u"0123456789abcdef"[digit];
        }
        put(written.append(u";"));
    };
    std::size_t from = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            ++i;
            continue;
        }
        const bool isLone = encoding_ == RowsetEncoding::Utf8 && (isHighSurrogate(unit) || isLowSurrogate(unit));
        if (!isLone && std::u16string_view(u"\"&'<>").find(unit) == std::u16string_view::npos) continue;
        put(text.substr(from, i - from));
        reference(unit);
        from = i + 1;
    }
    put(text.substr(from));
}

void ElementText::digits(int depth, std::u16string_view name, std::u16string_view value) {
    begin(depth, name);
    const std::size_t unitBytes = encoding_ == RowsetEncoding::Utf16 ? 2 : 1;
    std::size_t limit = fullLine - 1;
    for (std::size_t i = 0; i < value.size(); i += 2) {
        if (lineBytes_ >= limit) {
            breakLine(depth);
            limit = lineOfDigits;
        }
        made_.append(value.substr(i, 2));
        lineBytes_ += 2 * unitBytes;
    }
    put(u"'");
}

/// What a row is written as: some of its cells.
struct WrittenCell {
    enum class Kind : std::uint8_t { Absent, Null, Value } kind = Kind::Absent;
    Variant value;
};

class RowsetWriter {
public:
    RowsetWriter(View& view, RowsetEncoding encoding)
        : view_(view), table_(*view.table()), names_(rowsetNames(table_.fields())), text_(encoding), cells_(names_.size()) {}

    std::u16string write();

private:
    void writeSchema();
    void writeRows(const std::vector<RowId>& rows);
    void writeDeleted();
    void writeRow(int depth);

    void takeCurrent(RowId row, bool nullsAreForced);
    void takeOriginal(const Table::Original& original);
    void takeAssigned(RowId row, const Table::Original& original);

    View& view_;
    const Table& table_;
    std::vector<std::u16string> names_;
    ElementText text_;
    std::vector<WrittenCell> cells_;
};

std::u16string RowsetWriter::write() {
    const std::vector<RowId> rows = view_.rows();
    text_.append(opening);
    writeSchema();
    text_.line(0, u"<rs:data>");
    writeRows(rows);
    if (view_.filterText().empty()) writeDeleted();
    text_.line(0, u"</rs:data>");
    text_.append(u"</xml>");
    return text_.take();
}

void RowsetWriter::writeSchema() {
    const std::vector<FieldDefinition>& fields = table_.fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const FieldSchema schema = schemaOf(fields[i]);
        text_.start(2, u"<s:AttributeType");
        text_.attribute(3, u"name", names_[i]);
        if (names_[i] != fields[i].name) text_.attribute(3, u"rs:name", fields[i].name);
        text_.attribute(3, u"rs:number", host::decimal(static_cast<std::int64_t>(i + 1)));
        for (const auto& [name, value] : schema.field) text_.attribute(3, name, value);
        text_.finish(u">");
        text_.start(3, u"<s:datatype");
        for (const auto& [name, value] : schema.dataType) text_.attribute(3, name, value);
        text_.finish(u"/>");
        text_.line(2, u"</s:AttributeType>");
    }
    text_.line(2, u"<s:extends type='rs:rowbase'/>");
    text_.line(1, u"</s:ElementType>");
    text_.line(0, u"</s:Schema>");
}

void RowsetWriter::writeRows(const std::vector<RowId>& rows) {
    bool isInserting = false;
    for (const RowId row : rows) {
        const bool isNew = table_.state(row) == RowState::New;
        if (isNew != isInserting) text_.line(1, isNew ? u"<rs:insert>" : u"</rs:insert>");
        isInserting = isNew;
        const Table::Original* original = table_.state(row) == RowState::Modified ? table_.original(row) : nullptr;
        if (original) {
            text_.line(1, u"<rs:update>");
            text_.line(2, u"<rs:original>");
            takeOriginal(*original);
            writeRow(3);
            text_.line(2, u"</rs:original>");
            takeAssigned(row, *original);
            writeRow(2);
            text_.line(1, u"</rs:update>");
        } else {
            takeCurrent(row, isNew);
            writeRow(isNew ? 2 : 1);
        }
    }
    if (isInserting) text_.line(1, u"</rs:insert>");
}

// A new row that was deleted again was never there; it has no original.
void RowsetWriter::writeDeleted() {
    bool isOpen = false;
    for (RowId row = 0; row < table_.rowCount(); ++row) {
        const Table::Original* original = table_.state(row) == RowState::Deleted ? table_.original(row) : nullptr;
        if (!original) continue;
        if (!isOpen) text_.line(1, u"<rs:delete>");
        isOpen = true;
        takeOriginal(*original);
        writeRow(2);
    }
    if (isOpen) text_.line(1, u"</rs:delete>");
}

void RowsetWriter::writeRow(int depth) {
    text_.start(depth, u"<z:row");
    std::u16string forcedNulls;
    for (std::size_t field = 0; field < cells_.size(); ++field) {
        const WrittenCell& cell = cells_[field];
        if (cell.kind == WrittenCell::Kind::Null) forcedNulls.append(forcedNulls.empty() ? u"" : u" ").append(names_[field]);
        if (cell.kind != WrittenCell::Kind::Value) continue;
        const FieldDefinition& definition = table_.fields()[field];
        const std::u16string value = rowsetTextOf(definition, cell.value);
        if (holdsBytes(definition) && isHexText(value))
            text_.digits(depth + 1, names_[field], value);
        else
            text_.attribute(depth + 1, names_[field], value);
    }
    if (!forcedNulls.empty()) text_.attribute(depth + 1, u"rs:forcenull", forcedNulls);
    text_.finish(u"/>");
}

void RowsetWriter::takeCurrent(RowId row, bool nullsAreForced) {
    for (std::size_t field = 0; field < cells_.size(); ++field) {
        const CellState state = table_.cellState(row, field);
        cells_[field] = {};
        if (state == CellState::Value)
            cells_[field] = {WrittenCell::Kind::Value, table_.value(row, field)};
        else if (state == CellState::Null && nullsAreForced)
            cells_[field].kind = WrittenCell::Kind::Null;
    }
}

void RowsetWriter::takeOriginal(const Table::Original& original) {
    for (std::size_t field = 0; field < cells_.size(); ++field) {
        const Variant& value = original.values[field];
        cells_[field] = {};
        if (!value.isEmpty() && !value.isNull()) cells_[field] = {WrittenCell::Kind::Value, value};
    }
}

// A field that was emptied must not come back with the value of the original row: it is written as what comes nearest.
void RowsetWriter::takeAssigned(RowId row, const Table::Original& original) {
    for (std::size_t field = 0; field < cells_.size(); ++field) {
        cells_[field] = {};
        if (!original.assigned[field]) continue;
        const Variant value = table_.value(row, field);
        const FieldDefinition& definition = table_.fields()[field];
        if (value.isNull() || (value.isEmpty() && takesNull(definition)))
            cells_[field].kind = WrittenCell::Kind::Null;
        else if (!value.isEmpty())
            cells_[field] = {WrittenCell::Kind::Value, value};
        else if (table_.textColumn(field))
            cells_[field] = {WrittenCell::Kind::Value, u""};
    }
}

}  // namespace

std::u16string writeRowset(View& view, RowsetEncoding encoding) {
    return RowsetWriter(view, encoding).write();
}

}  // namespace lorvane::recordset
