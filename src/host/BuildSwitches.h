#pragma once

/// What is decided when the program is built.
namespace lorvane::host {

/// Whether action processes are there: their buttons, windows and folders. Off in the delivered configuration; the build option `LORVANE_PROCESSES` turns it
/// on.
extern const bool ProcessFeatureEnabled;

}  // namespace lorvane::host
