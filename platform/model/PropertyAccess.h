#pragma once

#include <cstdint>

#include "host/Variant.h"
#include "mailstore/ItemRecord.h"

/// Raw properties as values of the surface.
namespace lorvane::model {

class ItemState;

/// A list of texts becomes an array from 0.
host::Variant toVariant(const mailstore::PropertyValue& value);
/// A value by the type that the tag names; error 13 where it cannot be that, or the type is none that items keep.
mailstore::PropertyValue toProperty(std::uint32_t tag, const host::Variant& value);

/// A raw property of an item: those that the item keeps as members are the members. Empty where it is not there.
host::Variant itemField(ItemState& item, std::uint32_t tag);
/// Empty or Null takes the property away.
void setItemField(ItemState& item, std::uint32_t tag, const host::Variant& value);

/// The tag, without a type, of a named property. It is the same in every run.
std::uint32_t namedPropertyTag(std::u16string_view guid, const host::Variant& idOrName);

}  // namespace lorvane::model
