#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/HostError.h"
#include "host/Object.h"
#include "host/TextFunctions.h"
#include "host/Variant.h"
#include "recordset/Collation.h"
#include "recordset/Recordset.h"

namespace lorvane::recordset {

using host::Member;
using host::Object;
using host::Variant;

/// The number of the error that `action` raises; 0 where it raises none.
template <class F>
std::int32_t errorOf(F&& action) {
    try {
        action();
    } catch (const host::HostError& failure) {
        return failure.number();
    }
    return 0;
}

/// Calls and reads a member by its name, as a late-bound caller does.
inline Variant callNamed(const Object& object, std::u16string_view name) {
    return object.dispatch()->call(object.dispatch()->memberNamed(name).value(), {});
}
inline Variant getNamed(const Object& object, std::u16string_view name) {
    return object.dispatch()->get(object.dispatch()->memberNamed(name).value(), {});
}

inline Object field(const Object& recordset, std::u16string_view name) {
    return recordset.getObject(Member::Fields, {name});
}
inline std::u16string text(const Object& recordset, std::u16string_view name) {
    return field(recordset, name).get(Member::Value).toText();
}
inline void assign(const Object& recordset, std::u16string_view name, const Variant& value) {
    field(recordset, name).put(Member::Value, value);
}
inline void appendField(const Object& recordset, std::u16string_view name, std::int32_t type, std::int32_t size) {
    recordset.getObject(Member::Fields).call(Member::Append, {name, type, size});
}

/// A closed recordset with text fields of 1000 units.
inline Object closedWith(std::initializer_list<std::u16string_view> fields, std::u16string_view locale = u"en-US") {
    Object recordset = makeRecordset(Collation::of(locale));
    for (const std::u16string_view name : fields) appendField(recordset, name, 200, 1000);
    return recordset;
}

inline Object openedWith(std::initializer_list<std::u16string_view> fields, std::u16string_view locale = u"en-US") {
    Object recordset = closedWith(fields, locale);
    recordset.call(Member::Open);
    return recordset;
}

inline void addRow(const Object& recordset, std::u16string_view name, const Variant& value) {
    recordset.call(Member::AddNew);
    assign(recordset, name, value);
    recordset.call(Member::Update);
}

/// An open recordset with the one field "strSubject", one row a text, on its first row.
inline Object subjects(std::initializer_list<std::u16string_view> texts, std::u16string_view locale = u"en-US") {
    Object recordset = openedWith({u"strSubject"}, locale);
    for (const std::u16string_view each : texts) addRow(recordset, u"strSubject", each);
    if (texts.size() > 0) recordset.call(Member::MoveFirst);
    return recordset;
}

/// The values of a field from the first row to the last, walked as a caller walks them; leaves the recordset at its end.
inline std::vector<std::u16string> walk(const Object& recordset, std::u16string_view name = u"strSubject") {
    std::vector<std::u16string> seen;
    if (recordset.getNumber(Member::RecordCount) == 0) return seen;
    recordset.call(Member::MoveFirst);
    for (; !recordset.getBoolean(Member::EndOfFile); recordset.call(Member::MoveNext)) seen.push_back(text(recordset, name));
    return seen;
}

inline std::int32_t recordCount(const Object& recordset) {
    return recordset.getNumber(Member::RecordCount);
}
inline std::int32_t position(const Object& recordset) {
    return recordset.getNumber(Member::AbsolutePosition);
}
inline bool atEnd(const Object& recordset) {
    return recordset.getBoolean(Member::EndOfFile);
}
inline bool atStart(const Object& recordset) {
    return getNamed(recordset, u"BOF").toBoolean();
}

using Texts = std::vector<std::u16string>;

}  // namespace lorvane::recordset
