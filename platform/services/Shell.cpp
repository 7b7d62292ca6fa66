#include "services/Shell.h"

namespace lorvane::services {

std::span<const Shell::Row> Shell::rows() noexcept {
    static constexpr Row table[] = {{host::Member::ShellExecute, &Shell::ShellExecute}};
    return table;
}

host::Variant Shell::ShellExecute(host::Args args) {
    const ShellRequest request{numberAt(args, 0), textAt(args, 1), textAt(args, 2), textAt(args, 3), textAt(args, 4), numberAt(args, 5)};
    requests_.push_back(request);
    return hook_ ? hook_(request) : done;
}

}  // namespace lorvane::services
