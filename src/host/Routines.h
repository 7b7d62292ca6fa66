#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "host/Object.h"
#include "host/Variant.h"

/// The add-in's routines, process-wide values and classes by name, for programs that reach them late. Each folder of the logic has a table of its own modules.
namespace lorvane::host {

/// A public routine of a module. `RoutineBinding.h` makes a row of a C++ function.
struct Routine {
    std::u16string_view module, name;
    std::u16string_view parameters;  ///< their names in order, divided by ", "; in brackets those that may be left out
    Variant (*run)(Args args);       ///< assigns the arguments that the routine changes in place
};
using RoutineTable = std::span<const Routine>;

/// A process-wide value of the add-in.
struct GlobalValue {
    std::u16string_view name;
    Variant (*read)();
    void (*write)(const Variant& value);  ///< error 13 for a value of another kind
};
using GlobalTable = std::span<const GlobalValue>;

/// A class of the add-in that is made by its name.
struct NamedClass {
    std::u16string_view name;
    Object (*make)();
};
using ClassTable = std::span<const NamedClass>;

/// How many names a list of parameters has.
constexpr std::size_t parameterCount(std::u16string_view parameters) noexcept {
    std::size_t count = parameters.empty() ? 0 : 1;
    for (const char16_t unit : parameters)
        if (unit == u',') ++count;
    return count;
}
/// The place of a parameter in such a list, from 0; any case.
std::optional<std::size_t> parameterIndex(std::u16string_view parameters, std::u16string_view name) noexcept;
/// Error 449 where an argument is missing that may not be left out, 450 where there are more than parameters.
void requireArguments(std::u16string_view parameters, Args args);

RoutineTable routines();     ///< of the modules in this folder
GlobalTable globalValues();  ///< likewise

}  // namespace lorvane::host
