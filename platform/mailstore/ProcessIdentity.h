#pragma once

#include <cstdint>
#include <string>

namespace lorvane::mailstore {

/// A running program as other programs on the machine know it again. A number alone would not do: numbers are given anew, and start again with the machine.
struct ProcessIdentity {
    std::int64_t number = 0;
    std::int64_t started = 0;     ///< clock ticks since the machine started; 0 where the machine does not tell
    std::u16string machineStart;  ///< of the machine's running since it was switched on; empty where it does not tell
    std::u16string numberSpace;   ///< the kernel's name of the space that the number is from: containers have their own
    bool operator==(const ProcessIdentity&) const = default;
};

ProcessIdentity thisProcess();

/// True where the program has surely ended; one that cannot be seen from here, for its number is from another space, counts as running.
bool hasEnded(const ProcessIdentity& process);

}  // namespace lorvane::mailstore
