#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "recordset/FieldType.h"

/// What the schema of a rowset says of its fields.
namespace lorvane::recordset {

/// Attributes with the prefixes that the writer declares, in the order in which they are written. Flags stand only where they say something.
using SchemaAttributes = std::vector<std::pair<std::u16string, std::u16string>>;

/// A field's attributes as a rowset gave them, without its names and number, so that it can be written the same again.
struct FieldSchema {
    SchemaAttributes field;     ///< of "s:AttributeType"
    SchemaAttributes dataType;  ///< of "s:datatype"
};

/// The attributes that a field is written with: its own where it was read from a rowset, else those of its type.
FieldSchema schemaOf(const FieldDefinition& field);

/// The field of that name and schema. A schema without a type is given that of long text. Raises `error::NotARowset` for a length that is no number.
FieldDefinition fieldFrom(std::u16string name, FieldSchema schema);

/// The names by which the fields stand in rows, one a field: its own where that is a plain name that no field in front of it has, else "c" and the number of
/// fields in front of it, as far as no other field is called so.
std::vector<std::u16string> rowsetNames(const std::vector<FieldDefinition>& fields);

}  // namespace lorvane::recordset
