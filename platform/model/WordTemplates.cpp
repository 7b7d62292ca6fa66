#include "model/WordTemplates.h"

#include <algorithm>

#include "host/TextFunctions.h"

namespace lorvane::model {

namespace {

std::u16string_view lastPart(std::u16string_view path) noexcept {
    return path.substr(path.find_last_of(u"\\/") + 1);
}

}  // namespace

std::u16string_view WordTemplate::name() const noexcept {
    return lastPart(path);
}

WordTemplates::WordTemplates() : templates_{std::make_shared<WordTemplate>(WordTemplate{u"\\Lorvane.dot"})} {}

std::shared_ptr<WordTemplate> WordTemplates::find(std::u16string_view path) const {
    const std::u16string_view name = lastPart(path);
    const auto found = std::ranges::find_if(templates_, [name](const auto& known) { return host::equalsIgnoreCase(known->name(), name); });
    return name.empty() || found == templates_.end() ? nullptr : *found;
}

std::shared_ptr<WordTemplate> WordTemplates::add(std::u16string_view path) {
    auto known = find(path);
    if (!known) known = templates_.emplace_back(std::make_shared<WordTemplate>(WordTemplate{std::u16string(path)}));
    known->installed = true;
    return known;
}

}  // namespace lorvane::model
