#pragma once

#include <vector>

#include "model/CommandBarTree.h"

/// The bars that a window of the host has from the start: "Menu Bar" and "Standard", with captions in the host's language.
namespace lorvane::model {

struct HostOptions;

std::vector<BarTree> explorerBars(const HostOptions& options);
std::vector<BarTree> inspectorBars(const HostOptions& options);
/// Word's own, and the bar "Lorvane" of the template that Word knows.
std::vector<BarTree> wordBars(const HostOptions& options);

}  // namespace lorvane::model
