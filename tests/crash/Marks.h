#pragma once

#include <cstdint>
#include <filesystem>

#include "mailstore/SqliteStore.h"
#include "mailstore/StoreContent.h"

/// The caret mark in a store.
namespace lorvane::crash {

bool holdsMark(const mailstore::test::PlacedItem& item);

/// The record as the next start leaves it, apart from its version.
mailstore::ItemRecord withoutMark(mailstore::ItemRecord record);

/// How the program opens its store.
mailstore::SqliteOptions programOptions();

/// How many notes of open items lie in the store.
std::int64_t notesIn(const std::filesystem::path& store);

/// Makes the notes those of a program that has ended.
void endProgramsOf(const std::filesystem::path& store);

}  // namespace lorvane::crash
