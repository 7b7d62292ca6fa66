#include "mailstore/KilledAtEachWrite.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>

#include "mailstore/FaultyDisk.h"
#include "mailstore/OtherProgram.h"

namespace lorvane::mailstore::test {

namespace {

using Stand = OtherProgram::Stand;

/// Counts the bytes until the other end is closed; there are few.
std::size_t bytesIn(int end) {
    char bytes[256];
    std::size_t count = 0;
    for (ssize_t size; (size = ::read(end, bytes, sizeof bytes)) > 0;) count += static_cast<std::size_t>(size);
    return count;
}

}  // namespace

std::size_t KilledAtEachWrite::sweep() const {
    for (std::size_t write = 1;; ++write) {
        SCOPED_TRACE("killed at write " + std::to_string(write));
        begin();
        int ends[2];
        if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
        Stand stand = Stand::Failed;
        {
            OtherProgram program([&](const OtherProgram::Pause&) {
                FaultyDisk disk;
                disk.failAt(write, DiskFault::Killed);
                act([&] {
                    const char byte = 0;
                    if (::write(ends[1], &byte, 1) != 1) ::_exit(1);
                });
            });
            stand = program.goOn();
        }
        EXPECT_NE(stand, Stand::Failed);
        ::close(ends[1]);
        const std::size_t acknowledged = bytesIn(ends[0]);
        ::close(ends[0]);
        check(acknowledged);
        if (stand == Stand::Ended || testing::Test::HasFailure()) return write - 1;
    }
}

}  // namespace lorvane::mailstore::test
