#pragma once

#include <string>

#include "Run.h"
#include "host/Object.h"

namespace lorvane::cli {

/// The item that the command made or opened from a file, and its window. Both go at the command's edge: the item leaves the store, unless it is to stay, as its
/// window shows it then.
class OwnItem {
public:
    OwnItem(Run& run, bool keep) : run_(run), keep_(keep) {}
    ~OwnItem();
    OwnItem(const OwnItem&) = delete;
    OwnItem& operator=(const OwnItem&) = delete;

    void keep() noexcept { keep_ = true; }

    host::Object item, inspector;

private:
    Run& run_;
    bool keep_;
};

/// Opens an item that lies in the store, as the command's own; what is typed reaches the window's own item.
void openStored(Run& run, const host::Object& stored, OwnItem& own);

}  // namespace lorvane::cli
