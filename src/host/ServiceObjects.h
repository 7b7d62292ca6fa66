#pragma once

#include "host/Object.h"

namespace lorvane::host {

/// What a platform gives besides its mail host and the user's side, as a machine hands it out; `Services.h` has a facade for each.
struct ServiceObjects {
    Object files, settings, clock, environment, clipboard, region, shell;
};

}  // namespace lorvane::host
