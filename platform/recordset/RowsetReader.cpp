#include "recordset/RowsetReader.h"

#include <algorithm>
#include <limits>
#include <map>
#include <unordered_map>

#include "host/TextFunctions.h"
#include "recordset/RowsetCells.h"
#include "recordset/RowsetSchema.h"
#include "recordset/RowsetTokenizer.h"

namespace lorvane::recordset {

using host::Variant;

namespace {

enum class Space : std::uint8_t { None, Schema, Rowset, DataType, Row, Other };

struct KnownSpace {
    std::u16string_view prefix;  // where it is declared nowhere
    std::u16string_view address;
    Space space;
};

constexpr KnownSpace knownSpaces[] = {
    {u"s", u"uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882", Space::Schema},
    {u"dt", u"uuid:C2F41010-65B3-11d1-A29F-00AA00C14882", Space::DataType},
    {u"rs", u"urn:schemas-microsoft-com:rowset", Space::Rowset},
    {u"z", u"#RowsetSchema", Space::Row},
};

std::u16string folded(std::u16string_view text) {
    std::u16string made(text);
    std::ranges::transform(made, made.begin(), host::foldUnit);
    return made;
}

bool isNamed(std::u16string_view name, std::u16string_view other) noexcept {
    return host::equalsIgnoreCase(name, other);
}

bool isBlank(char16_t unit) noexcept {
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

// A field on its way from the schema to the table.
struct ReadField {
    std::u16string rowName, realName;
    FieldSchema schema;
    std::int32_t number = std::numeric_limits<std::int32_t>::max();
};

void assign(SchemaAttributes& attributes, std::u16string name, std::u16string_view value) {
    const auto found = std::ranges::find(attributes, name, &SchemaAttributes::value_type::first);
    if (found == attributes.end())
        attributes.emplace_back(std::move(name), value);
    else
        found->second = value;
}

class RowsetReader {
public:
    explicit RowsetReader(std::u16string_view text) : tokens_(text) {}

    std::shared_ptr<Table> read();

private:
    using Token = RowsetTokenizer::Token;
    using Cells = std::vector<std::optional<Variant>>;

    bool nextChild();
    void skipElement();
    bool is(std::u16string_view local) const noexcept { return isNamed(tokens_.name().local, local); }
    Space spaceOf(std::u16string_view prefix) const noexcept;
    void declareSpaces();
    void expectNoChildren(std::u16string_view reason);

    void readSchema();
    void readElementType();
    void readAttributeType();
    void readSchemaAttribute(const RowsetAttribute& attribute, ReadField& field);
    void orderFields();
    void makeTable();

    void readData();
    void readInserted();
    void readUpdated();
    void readDeleted();
    void expectRow();
    Cells readRow();
    std::optional<std::size_t> fieldNamed(std::u16string_view name);
    void readForcedNulls(std::u16string_view names, Cells& cells);
    std::vector<Variant> complete(Cells cells, bool absentIsNull) const;

    RowsetTokenizer tokens_;
    std::map<std::u16string, Space, std::less<>> spaces_;
    std::vector<ReadField> fields_;
    std::vector<std::u16string> listed_;  // the fields that the element type lists by name
    std::u16string rowName_ = u"row";
    std::shared_ptr<Table> table_;
    std::unordered_map<std::u16string, std::size_t> fieldsByName_;
    std::vector<std::u16string_view> rowNames_;
    std::size_t expectedField_ = 0;  // rows mostly have their fields in order
    std::size_t cellCount_ = 0;
};

std::shared_ptr<Table> RowsetReader::read() {
    if (tokens_.next() != Token::Start || !is(u"xml")) tokens_.refuse(u"Its root element is not \"xml\".");
    declareSpaces();
    bool hasData = false;
    while (nextChild()) {
        if (is(u"Schema") && !table_) {
            readSchema();
        } else if (is(u"data") && table_ && !hasData) {
            readData();
            hasData = true;
        } else {
            tokens_.refuse(u"An element is not where a rowset has it.");
        }
    }
    if (!table_) tokens_.refuse(u"It has no schema.");
    tokens_.next();
    return table_;
}

// The next element inside the current one; false at the current one's end.
bool RowsetReader::nextChild() {
    if (tokens_.next() == Token::End) return false;
    declareSpaces();
    return true;
}

void RowsetReader::skipElement() {
    for (std::size_t open = 1; open > 0;) open += tokens_.next() == Token::Start ? 1 : std::size_t(-1);
}

void RowsetReader::expectNoChildren(std::u16string_view reason) {
    if (nextChild()) tokens_.refuse(reason);
}

void RowsetReader::declareSpaces() {
    for (const RowsetAttribute& attribute : tokens_.attributes()) {
        if (!isNamed(attribute.name.prefix, u"xmlns")) continue;
        const auto known = std::ranges::find_if(knownSpaces, [&](const KnownSpace& row) { return isNamed(row.address, attribute.value); });
        spaces_[folded(attribute.name.local)] = known == std::end(knownSpaces) ? Space::Other : known->space;
        if (spaces_.size() > 64) tokens_.refuse(u"It declares too many prefixes.");
    }
}

Space RowsetReader::spaceOf(std::u16string_view prefix) const noexcept {
    if (prefix.empty()) return Space::None;
    for (const auto& [declared, space] : spaces_) {
        if (isNamed(declared, prefix)) return space;
    }
    const auto known = std::ranges::find_if(knownSpaces, [&](const KnownSpace& row) { return isNamed(row.prefix, prefix); });
    return known == std::end(knownSpaces) ? Space::Other : known->space;
}

// ---- the schema

void RowsetReader::readSchema() {
    bool hasElementType = false;
    while (nextChild()) {
        if (is(u"ElementType")) {
            if (hasElementType) tokens_.refuse(u"Hierarchical rowsets cannot be opened.");
            hasElementType = true;
            readElementType();
        } else if (is(u"AttributeType")) {
            readAttributeType();
        } else {
            skipElement();
        }
    }
    orderFields();
    makeTable();
}

void RowsetReader::readElementType() {
    for (const RowsetAttribute& attribute : tokens_.attributes()) {
        if (attribute.name.prefix.empty() && isNamed(attribute.name.local, u"name")) rowName_ = attribute.value;
    }
    while (nextChild()) {
        if (is(u"ElementType")) tokens_.refuse(u"Hierarchical rowsets cannot be opened.");
        if (is(u"AttributeType")) {
            readAttributeType();
            continue;
        }
        if (is(u"attribute")) {
            for (const RowsetAttribute& attribute : tokens_.attributes()) {
                if (isNamed(attribute.name.local, u"type")) listed_.emplace_back(attribute.value);
            }
            if (listed_.size() > mostRowsetFields) tokens_.refuse(u"It has too many fields.");
        }
        skipElement();
    }
}

void RowsetReader::readAttributeType() {
    if (fields_.size() == mostRowsetFields) tokens_.refuse(u"It has too many fields.");
    ReadField field;
    for (const RowsetAttribute& attribute : tokens_.attributes()) readSchemaAttribute(attribute, field);
    if (field.rowName.empty()) tokens_.refuse(u"A field has no name.");
    while (nextChild()) {
        if (is(u"datatype")) {
            for (const RowsetAttribute& attribute : tokens_.attributes()) {
                const Space space = spaceOf(attribute.name.prefix);
                if (space == Space::DataType || space == Space::Rowset) {
                    std::u16string name = (space == Space::DataType ? u"dt:" : u"rs:") + std::u16string(attribute.name.local);
                    assign(field.schema.dataType, std::move(name), attribute.value);
                }
            }
        }
        skipElement();
    }
    fields_.push_back(std::move(field));
}

void RowsetReader::readSchemaAttribute(const RowsetAttribute& attribute, ReadField& field) {
    const std::u16string_view local = attribute.name.local;
    switch (spaceOf(attribute.name.prefix)) {
        case Space::None:
            if (isNamed(local, u"name")) field.rowName = attribute.value;
            return;
        case Space::DataType:
            return assign(field.schema.dataType, u"dt:" + std::u16string(local), attribute.value);
        case Space::Rowset:
            break;
        default:
            return;
    }
    if (isNamed(local, u"name")) {
        field.realName = attribute.value;
    } else if (isNamed(local, u"number")) {
        std::int32_t number = 0;
        for (const char16_t unit : attribute.value) {
            if (unit < u'0' || unit > u'9' || number > 1'000'000) tokens_.refuse(u"The number of a field cannot be read.");
            number = number * 10 + (unit - u'0');
        }
        field.number = number;
    } else {
        assign(field.schema.field, u"rs:" + std::u16string(local), attribute.value);
    }
}

// The element type may list its fields and leave their description to the schema; fields that it does not list are none of its own.
void RowsetReader::orderFields() {
    if (!listed_.empty()) {
        std::unordered_map<std::u16string, std::size_t> places;
        for (std::size_t i = 0; i < fields_.size(); ++i) places.emplace(folded(fields_[i].rowName), i);
        std::vector<ReadField> ordered;
        for (const std::u16string& name : listed_) {
            const auto place = places.find(folded(name));
            if (place == places.end()) tokens_.refuse(u"A field is listed that is not described, or listed twice.");
            ordered.push_back(std::move(fields_[place->second]));
            places.erase(place);
        }
        fields_ = std::move(ordered);
    }
    std::ranges::stable_sort(fields_, {}, &ReadField::number);
    if (fields_.empty()) tokens_.refuse(u"It has no fields.");
}

void RowsetReader::makeTable() {
    std::vector<FieldDefinition> definitions;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        ReadField& field = fields_[i];
        if (!fieldsByName_.emplace(folded(field.rowName), i).second) tokens_.refuse(u"Two fields have the same name.");
        definitions.push_back(fieldFrom(field.realName.empty() ? field.rowName : field.realName, std::move(field.schema)));
        rowNames_.emplace_back(field.rowName);
    }
    table_ = std::make_shared<Table>(std::move(definitions));
}

// ---- the rows

void RowsetReader::readData() {
    while (nextChild()) {
        if (is(rowName_)) {
            table_->append(complete(readRow(), true), RowState::Unmodified);
        } else if (is(u"insert")) {
            readInserted();
        } else if (is(u"update")) {
            readUpdated();
        } else if (is(u"delete")) {
            readDeleted();
        } else {
            tokens_.refuse(u"There is an element among the rows that is none.");
        }
    }
}

void RowsetReader::expectRow() {
    if (!is(rowName_)) tokens_.refuse(u"There is an element among the rows that is none.");
}

void RowsetReader::readInserted() {
    while (nextChild()) {
        expectRow();
        table_->append(complete(readRow(), false), RowState::New);
    }
}

void RowsetReader::readUpdated() {
    while (nextChild()) {
        if (!is(u"original") || !nextChild()) tokens_.refuse(u"A changed row is without its original.");
        expectRow();
        const RowId row = table_->append(complete(readRow(), true), RowState::Unmodified);
        expectNoChildren(u"A changed row has more than one original.");
        if (!nextChild()) tokens_.refuse(u"A changed row is without its changes.");
        expectRow();
        table_->change(row, readRow());
    }
}

void RowsetReader::readDeleted() {
    while (nextChild()) {
        expectRow();
        table_->remove(table_->append(complete(readRow(), true), RowState::Unmodified));
    }
}

// The cells that the current element gives; passes over its end.
RowsetReader::Cells RowsetReader::readRow() {
    const std::vector<FieldDefinition>& fields = table_->fields();
    cellCount_ += fields.size();
    if (cellCount_ > mostRowsetCells) tokens_.refuse(u"It has too many rows.");
    Cells cells(fields.size());
    std::u16string_view forcedNulls;
    expectedField_ = 0;
    for (const RowsetAttribute& attribute : tokens_.attributes()) {
        if (!attribute.name.prefix.empty()) {
            if (spaceOf(attribute.name.prefix) == Space::Rowset && isNamed(attribute.name.local, u"forcenull")) forcedNulls = attribute.value;
            continue;
        }
        const auto field = fieldNamed(attribute.name.local);
        if (!field) continue;
        cells[*field] = valueFromRowset(fields[*field], attribute.value);
        if (!cells[*field]) tokens_.refuse(u"The value of the field \"" + fields[*field].name + u"\" is none of its type.");
    }
    readForcedNulls(forcedNulls, cells);
    expectNoChildren(u"Hierarchical rowsets cannot be opened.");
    return cells;
}

std::optional<std::size_t> RowsetReader::fieldNamed(std::u16string_view name) {
    if (expectedField_ < rowNames_.size() && isNamed(rowNames_[expectedField_], name)) return expectedField_++;
    const auto found = fieldsByName_.find(folded(name));
    if (found == fieldsByName_.end()) return std::nullopt;
    expectedField_ = found->second + 1;
    return found->second;
}

void RowsetReader::readForcedNulls(std::u16string_view names, Cells& cells) {
    const std::vector<FieldDefinition>& fields = table_->fields();
    while (!names.empty()) {
        const auto* const end = std::ranges::find_if(names, isBlank);
        const std::u16string_view name(names.begin(), end);
        names.remove_prefix(std::min(name.size() + 1, names.size()));
        if (name.empty()) continue;
        const auto found = fieldsByName_.find(folded(name));
        if (found == fieldsByName_.end() || cells[found->second]) continue;
        if (!takesNull(fields[found->second])) tokens_.refuse(u"The field \"" + fields[found->second].name + u"\" takes no Null.");
        cells[found->second] = Variant::null();
    }
}

std::vector<Variant> RowsetReader::complete(Cells cells, bool absentIsNull) const {
    std::vector<Variant> values;
    values.reserve(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i])
            values.push_back(std::move(*cells[i]));
        else
            values.push_back(absentIsNull && takesNull(table_->fields()[i]) ? Variant::null() : Variant());
    }
    return values;
}

}  // namespace

std::shared_ptr<Table> readRowset(std::u16string_view text) {
    return RowsetReader(text).read();
}

}  // namespace lorvane::recordset
