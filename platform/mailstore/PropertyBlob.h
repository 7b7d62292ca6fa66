#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "mailstore/ItemRecord.h"

/// The parts of an item that a store keeps as one block of bytes each.
///
/// A block is a format number (one byte), a count (32 bits) and that many entries in ascending order of their keys. Numbers are little-endian, text is its
/// length in code units (32 bits) and the units as they are, floating numbers are their IEEE bits. Reading checks every length against what is there; a block
/// that is not exactly what writing makes raises `storeDamaged(source)`.
namespace lorvane::mailstore {

Bytes encodeProperties(const PropertyBag& properties);
PropertyBag decodeProperties(std::span<const std::uint8_t> block, std::u16string_view source);

Bytes encodeUserProperties(const std::map<std::u16string, std::u16string>& properties);
std::map<std::u16string, std::u16string> decodeUserProperties(std::span<const std::uint8_t> block, std::u16string_view source);

Bytes encodeRecipients(const std::vector<RecipientRecord>& recipients);
std::vector<RecipientRecord> decodeRecipients(std::span<const std::uint8_t> block, std::u16string_view source);

}  // namespace lorvane::mailstore
