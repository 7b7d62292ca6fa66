#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>

#include "host/TextFunctions.h"
#include "recordset/RowsetBuilder.h"
#include "recordset/RowsetCells.h"
#include "recordset/RowsetSchema.h"
#include "recordset/RowsetTokenizer.h"

// Rowsets that were written elsewhere. They are read here a second time by a scan that knows nothing of the reader, so that what it holds is checked against
// the text itself.

namespace lorvane::recordset {
namespace {

using Files = std::map<std::string, std::vector<std::uint8_t>>;

const Files& rowsetFiles() {
    static const Files files = [] {
        const std::filesystem::path folder = std::filesystem::path(LORVANE_SOURCE_DIR) / "../shared/data/rowset";
        Files found;
        if (!std::filesystem::is_directory(folder)) return found;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() != ".xml") continue;
            std::ifstream in(entry.path(), std::ios::binary);
            found[entry.path().filename().string()] = {std::istreambuf_iterator<char>(in), {}};
        }
        return found;
    }();
    return files;
}

bool isShaped(const std::string& name) {
    return name.starts_with("shape__");
}

struct ScannedRow {
    RowState state = RowState::Unmodified;
    bool isOriginal = false;
    std::map<std::u16string, std::u16string> cells;
};

std::u16string unescaped(std::u16string text) {
    constexpr std::pair<std::u16string_view, std::u16string_view> references[] = {
        {u"&#x22;", u"\""}, {u"&#x27;", u"'"}, {u"&#x3c;", u"<"}, {u"&#x3e;", u">"}, {u"&#x26;", u"&"}};
    for (const auto& [written, meant] : references) text = host::Replace(text, written, meant);
    return text;
}

std::map<std::u16string, std::u16string> scannedAttributes(std::u16string_view tag) {
    std::map<std::u16string, std::u16string> found;
    for (std::size_t at = tag.find(u"='"); at != std::u16string_view::npos; at = tag.find(u"='")) {
        const std::size_t name = tag.find_last_of(u" \t\n", at) + 1;
        const std::size_t end = tag.find(u'\'', at + 2);
        found[std::u16string(tag.substr(name, at - name))] = unescaped(std::u16string(tag.substr(at + 2, end - at - 2)));
        tag.remove_prefix(end + 1);
    }
    return found;
}

// Values hold no raw "<" or ">", so every one is a tag's.
std::vector<ScannedRow> scannedRows(std::u16string_view text) {
    std::vector<ScannedRow> rows;
    RowState state = RowState::Unmodified;
    bool isOriginal = false;
    for (std::size_t at = text.find(u'<'); at != std::u16string_view::npos; at = text.find(u'<', at + 1)) {
        const std::u16string_view tag = text.substr(at, text.find(u'>', at) - at);
        if (tag == u"<rs:insert") state = RowState::New;
        if (tag == u"<rs:update") state = RowState::Modified;
        if (tag == u"<rs:delete") state = RowState::Deleted;
        if (tag == u"</rs:insert" || tag == u"</rs:update" || tag == u"</rs:delete") state = RowState::Unmodified;
        if (tag == u"<rs:original") isOriginal = true;
        if (tag == u"</rs:original") isOriginal = false;
        if (tag.starts_with(u"<z:row")) rows.push_back({state, isOriginal, scannedAttributes(tag)});
    }
    return rows;
}

void expectCell(const FieldDefinition& field, const Variant& held, const std::optional<std::u16string>& written) {
    if (!written) {
        EXPECT_TRUE(held.isNull() || held.isEmpty());
        return;
    }
    ASSERT_FALSE(held.isNull() || held.isEmpty());
    std::u16string expected = *written;
    if (holdsBytes(field)) std::erase_if(expected, [](char16_t unit) { return unit == u'\r' || unit == u'\n' || unit == u'\t'; });
    EXPECT_EQ(host::toUtf8(rowsetTextOf(field, held)), host::toUtf8(expected));
}

void expectRows(const Table& table, const std::vector<ScannedRow>& scanned) {
    const std::vector<std::u16string> names = rowsetNames(table.fields());
    const auto cellOf = [&](const ScannedRow& row, std::size_t field) {
        const auto found = row.cells.find(names[field]);
        return found == row.cells.end() ? std::nullopt : std::optional(found->second);
    };
    std::size_t at = 0;
    for (RowId row = 0; row < table.rowCount(); ++row, ++at) {
        ASSERT_LT(at, scanned.size());
        ASSERT_EQ(table.state(row), scanned[at].state);
        const ScannedRow* before = nullptr;
        if (scanned[at].isOriginal) before = &scanned[at++];
        for (std::size_t field = 0; field < names.size(); ++field) {
            SCOPED_TRACE("row " + std::to_string(row) + ", field " + host::toUtf8(names[field]));
            if (before) expectCell(table.fields()[field], table.original(row)->values[field], cellOf(*before, field));
            const bool isForcedNull = host::InStr(1, u" " + scanned[at].cells.at(u"rs:forcenull") + u" ", u" " + names[field] + u" ") > 0;
            if (isForcedNull) {
                EXPECT_TRUE(table.value(row, field).isNull());
                continue;
            }
            const bool isUntouched = before && !cellOf(scanned[at], field);
            expectCell(table.fields()[field], table.value(row, field), cellOf(isUntouched ? *before : scanned[at], field));
        }
    }
    EXPECT_EQ(at, scanned.size());
}

RowsetEncoding encodingOf(const std::vector<std::uint8_t>& bytes) {
    return bytes[0] == 0xFF ? RowsetEncoding::Utf16 : RowsetEncoding::Utf8;
}

TEST(RowsetFiles, AreThere) {
    EXPECT_EQ(rowsetFiles().size(), 95U) << "the rowsets in ../shared/data/rowset are needed";
}

TEST(RowsetFiles, FlatOnesHoldTheRowsAndStatesThatStandInThem) {
    std::size_t flat = 0;
    for (const auto& [name, bytes] : rowsetFiles()) {
        if (isShaped(name)) continue;
        ++flat;
        SCOPED_TRACE(name);
        const std::u16string text = rowsetTextFrom(bytes);
        std::vector<ScannedRow> scanned = scannedRows(text);
        for (ScannedRow& row : scanned) row.cells.emplace(u"rs:forcenull", u"");
        ASSERT_FALSE(scanned.empty());
        expectRows(*readRowset(text), scanned);
    }
    EXPECT_EQ(flat, 84U);
}

TEST(RowsetFiles, FlatOnesAreTheSameAfterWriting) {
    for (const auto& [name, bytes] : rowsetFiles()) {
        if (isShaped(name)) continue;
        SCOPED_TRACE(name);
        const auto table = readRowset(rowsetTextFrom(bytes));
        expectSameTable(*table, *readRowset(writtenFrom(table, RowsetEncoding::Utf8)));
        expectSameTable(*table, *readRowset(writtenFrom(table, RowsetEncoding::Utf16)));
    }
}

TEST(RowsetFiles, FlatOnesAreWrittenByteForByte) {
    std::size_t same = 0;
    for (const auto& [name, bytes] : rowsetFiles()) {
        if (isShaped(name)) continue;
        const std::u16string text = rowsetTextFrom(bytes);
        const bool isSame = writtenFrom(readRowset(text), encodingOf(bytes)) == text;
        same += isSame ? 1 : 0;
        EXPECT_TRUE(isSame) << name << "\n" << host::toUtf8(writtenFrom(readRowset(text), encodingOf(bytes))).substr(0, 6000);
    }
    RecordProperty("identical", static_cast<int>(same));
    EXPECT_EQ(same, 84U);
}

TEST(RowsetFiles, ShapedOnesAreRefused) {
    std::size_t shaped = 0;
    for (const auto& [name, bytes] : rowsetFiles()) {
        if (!isShaped(name)) continue;
        ++shaped;
        EXPECT_NE(refusalOf(rowsetTextFrom(bytes)).find(u"Hierarchical rowsets cannot be opened."), std::u16string::npos) << name;
    }
    EXPECT_EQ(shaped, 11U);
}

TEST(RowsetFiles, EveryOneThatBreaksOffIsRefused) {
    for (const auto& [name, bytes] : rowsetFiles()) {
        const std::u16string text = rowsetTextFrom(bytes);
        for (std::size_t length = 0; length < text.size(); length += 97)
            EXPECT_NE(refusalOf(std::u16string_view(text).substr(0, length)), u"") << name << " " << length;
        EXPECT_NE(refusalOf(std::u16string_view(text).substr(0, text.size() - 1)), u"") << name;
    }
}

}  // namespace
}  // namespace lorvane::recordset
