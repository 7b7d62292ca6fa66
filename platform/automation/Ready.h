#pragma once

#include "automation/Transport.h"

namespace lorvane::automation {

enum class Ready { Yes, TimeUp, Stop };

/// Waits until a descriptor can be read, or written, or the one that ends everything becomes readable. Every other trouble of a descriptor counts as ready: the
/// read or write behind it tells.
Ready awaitReadable(int descriptor, int stop, Transport::Milliseconds timeout);
Ready awaitWritable(int descriptor, int stop);

}  // namespace lorvane::automation
