#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/Object.h"
#include "host/Variant.h"

/// Facades over the in-memory tables ("ADODB.Recordset").
namespace lorvane::host {

inline constexpr std::int32_t adVarChar = 200;

inline constexpr std::int32_t adPersistXML = 1;

/// An in-memory text stream.
class Stream : public Object {
public:
    explicit Stream(Object object) : Object(std::move(object)) {}
    void Open() const { call(Member::Open); }
    void WriteText(std::u16string_view text) const { call(Member::WriteText, {text}); }
    std::u16string ReadText() const { return call(Member::ReadText).toText(); }  ///< from the position to the end
    void Position(std::int32_t position) const { put(Member::Position, position); }
};

/// A field of the table; its value is that of the current row, so a field may be kept while rows are walked.
class Field : public Object {
public:
    Field() = default;
    explicit Field(Object object) : Object(std::move(object)) {}
    Variant Value() const { return get(Member::Value); }
    void Value(const Variant& value) const { put(Member::Value, value); }
    std::u16string text() const { return get(Member::Value).toText(); }
};

class Recordset : public Object {
public:
    Recordset() = default;
    explicit Recordset(Object object) : Object(std::move(object)) {}
    host::Field Fields(std::u16string_view name) const { return host::Field(get(Member::Fields, {name}).toObject()); }
    void appendField(std::u16string_view name, std::int32_t type, std::int32_t size) const {
        getObject(Member::Fields).call(Member::Append, {name, type, size});
    }
    void Open() const { call(Member::Open); }
    void Open(const Stream& source) const { call(Member::Open, {static_cast<const Object&>(source)}); }  ///< the rowset that `Save` wrote
    void Save(const Stream& target, std::int32_t format) const { call(Member::Save, {static_cast<const Object&>(target), format}); }
    void AddNew() const { call(Member::AddNew); }
    void Update() const { call(Member::Update); }
    void CancelUpdate() const { call(Member::CancelUpdate); }  ///< takes back the row that AddNew began
    void MoveFirst() const { call(Member::MoveFirst); }
    void MoveNext() const { call(Member::MoveNext); }
    bool EndOfFile() const { return getBoolean(Member::EndOfFile); }
    std::int32_t RecordCount() const { return getNumber(Member::RecordCount); }
    std::int32_t AbsolutePosition() const { return getNumber(Member::AbsolutePosition); }
    void AbsolutePosition(std::int32_t position) const { put(Member::AbsolutePosition, position); }
    void Sort(std::u16string_view order) const { put(Member::Sort, order); }
    void Filter(std::u16string_view criteria) const { put(Member::Filter, criteria); }
    Recordset Clone() const { return Recordset(call(Member::Clone).toObject()); }
};

/// A new "ADODB.Recordset".
Recordset makeRecordset();
/// A new "ADODB.Stream".
Stream makeStream();

}  // namespace lorvane::host
