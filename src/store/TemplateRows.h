#pragma once

#include <string_view>
#include <utility>

#include "host/Adodb.h"
#include "host/HostError.h"

/// Walks over the tables of templates, row by row and field by field.
namespace lorvane::store {

/// An object that is used again and again: it is held here meanwhile, so that a single use need not hold it. Error 91 for Nothing.
class HeldObject {
public:
    explicit HeldObject(host::Object object) : object_(std::move(object)) {
        if (!object_) throw host::HostError(host::runtime_error::ObjectNotSet);
    }
    host::Variant get(host::Member member) const { return object_.dispatch()->get(member, {}); }
    void put(host::Member member, const host::Variant& value) const { object_.dispatch()->put(member, value, {}); }
    void call(host::Member member) const { object_.dispatch()->call(member, {}); }

private:
    const host::Object object_;
};

/// A field of the current row, wherever that is.
class RowField : private HeldObject {
public:
    RowField(const host::Recordset& table, std::u16string_view name) : HeldObject(table.Fields(name)) {}
    host::Variant Value() const { return get(host::Member::Value); }
    void Value(const host::Variant& value) const { put(host::Member::Value, value); }
};

/// The fields of a template table, looked up once for a walk.
struct TemplateFields {
    explicit TemplateFields(const host::Recordset& table)
        : entryId(table, u"strEntryID"), storeId(table, u"strStoreID"), subject(table, u"strSubject"), categories(table, u"strCategories") {}
    RowField entryId, storeId, subject, categories;
};

/// The moves and the additions of a table.
class TableRows : private HeldObject {
public:
    explicit TableRows(const host::Recordset& table) : HeldObject(table) {}
    void MoveFirst() const { call(host::Member::MoveFirst); }
    void MoveNext() const { call(host::Member::MoveNext); }
    bool EndOfFile() const { return get(host::Member::EndOfFile).toBoolean(); }
    void AddNew() const { call(host::Member::AddNew); }
    void Update() const { call(host::Member::Update); }
};

/// The text of a value, which becomes a text where it is none. It stays where its keeper has it.
inline std::u16string_view textIn(host::Variant& value) {
    if (value.kind() != host::Variant::Kind::Text) value = value.toText();
    return value.textView();
}

/// A value as text.
inline host::Variant asText(host::Variant value) {
    textIn(value);
    return value;
}

}  // namespace lorvane::store
