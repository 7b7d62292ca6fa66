#pragma once

#include <cstddef>
#include <functional>

namespace lorvane::mailstore::test {

/// A program that is killed at the first of its writes to a store, then anew at the second, and so on until one comes to its end.
struct KilledAtEachWrite {
    using Acknowledge = std::function<void()>;
    std::function<void()> begin = [] {};                  ///< in front of each
    std::function<void(const Acknowledge&)> act;          ///< what the program does; it tells each step that is done
    std::function<void(std::size_t acknowledged)> check;  ///< looks at what it left
    std::size_t sweep() const;                            ///< how many writes there were; ends with the first that fails a check
};

}  // namespace lorvane::mailstore::test
