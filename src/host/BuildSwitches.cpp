#include "host/BuildSwitches.h"

namespace lorvane::host {

// The one place that the build option reaches: the two configurations differ in this file and share all other objects.
#ifdef LORVANE_PROCESSES
const bool ProcessFeatureEnabled = true;
#else
const bool ProcessFeatureEnabled = false;
#endif

}  // namespace lorvane::host
