#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "services/ServiceObject.h"

namespace lorvane::services {

/// What a program asked the shell to do.
struct ShellRequest {
    std::int32_t owner = 0;
    std::u16string operation, file, parameters, directory;
    std::int32_t show = 0;
    bool operator==(const ShellRequest&) const = default;
};

/// Decides what becomes of a request and gives the shell's answer: above 32 where it was done, else the number of the failure.
using ShellHook = std::function<std::int32_t(const ShellRequest&)>;

/// The shell behind the surface (`host::Shell`). It starts no program by itself: a request is noted and handed to the hook; without one it counts as done.
class Shell final : public ServiceObject<Shell> {
public:
    static constexpr std::int32_t done = 33;

    explicit Shell(ShellHook hook = {}) : hook_(std::move(hook)) {}

    std::u16string_view className() const noexcept override { return u"Shell"; }
    static std::span<const Row> rows() noexcept;

    const std::vector<ShellRequest>& requests() const noexcept { return requests_; }

private:
    host::Variant ShellExecute(host::Args args);

    ShellHook hook_;
    std::vector<ShellRequest> requests_;
};

}  // namespace lorvane::services
