#pragma once

#include <string_view>
#include <utility>

#include "host/HostError.h"

/// The guards a routine of the add-in takes. Reading a routine shows which one: errors of a statement ignored, or errors ended in the standard box.
/// They catch HostError and nothing else.
namespace lorvane::host {

/// Runs one statement with errors ignored: a failing one is skipped and the next one runs. True when it went through.
template <class Statement>
bool ignoringErrors(Statement&& statement) {
    try {
        std::forward<Statement>(statement)();
        return true;
    } catch (const HostError&) {
        return false;
    }
}

/// A condition read with errors ignored: one that fails counts as false.
template <class Condition>
bool holdsIgnoringErrors(Condition&& condition) {
    try {
        return std::forward<Condition>(condition)();
    } catch (const HostError&) {
        return false;
    }
}

/// Shows "Error <number>: <description>" (style 16) through MessageBox4Word, titled `routine` + " - " + the application title.
void showStandardError(std::u16string_view routine, const HostError& error);

/// Runs a routine whose errors end in the standard box, after which the caller goes on. True when there was no error.
/// `routine` is the module and the routine's name, as "basGlobals.GetFullName".
template <class Routine>
bool withErrorBox(std::u16string_view routine, Routine&& body) {
    try {
        std::forward<Routine>(body)();
        return true;
    } catch (const HostError& error) {
        showStandardError(routine, error);
        return false;
    }
}

}  // namespace lorvane::host
