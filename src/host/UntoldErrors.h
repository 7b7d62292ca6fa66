#pragma once

#include <string>
#include <vector>

namespace lorvane::host {

/// Errors whose standard box could not be shown, each as its title and text. Who runs the add-in asks here whether something failed unseen.
struct UntoldErrors {
    std::vector<std::u16string> texts;
};

}  // namespace lorvane::host
