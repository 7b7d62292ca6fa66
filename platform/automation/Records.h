#pragma once

#include <utility>
#include <vector>

#include "host/Record.h"
#include "host/Variant.h"

namespace lorvane::automation {

/// A record of these fields as a value.
inline host::Variant record(std::vector<host::Record::Field> fields) {
    return host::makeObject<host::Record>(std::move(fields));
}

/// A list, counted from 1, of what `make` gives for each item.
template <class Range, class Make>
host::Variant listOf(const Range& range, Make&& make) {
    host::Array list{1, {}};
    for (const auto& item : range) list.items.push_back(make(item));
    return list;
}

}  // namespace lorvane::automation
