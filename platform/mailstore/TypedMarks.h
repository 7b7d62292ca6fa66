#pragma once

#include <span>
#include <string>
#include <vector>

#include "mailstore/ItemRecord.h"

namespace lorvane::mailstore {

/// True where the subject, a recipient or the body's source holds one of the texts.
bool holdsMark(const ItemRecord& item, std::span<const std::u16string> marks);

/// Takes the first of each text out of the subject, each recipient and the body's source; true where there was any. A recipient that was nothing else goes.
/// Typing into the name of a recipient takes the address from it: one that `before` has under that name is put back in its place.
bool takeMarksOut(ItemRecord& item, std::span<const std::u16string> marks, const std::vector<RecipientRecord>& before);

}  // namespace lorvane::mailstore
