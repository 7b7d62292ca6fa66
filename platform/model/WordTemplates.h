#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lorvane::model {

/// A global template, as Word lists it among its add-ins and its templates.
struct WordTemplate {
    std::u16string path;     ///< as it was added; the one that Word knows from the start has no folder
    bool installed = false;  ///< switched on
    bool saved = true;       ///< false: Word would ask to save it when it closes

    std::u16string_view name() const noexcept;  ///< the last part of the path
};

/// The global templates of a run's one Word. It knows "Lorvane.dot" from the start, not switched on. No file is read.
class WordTemplates {
public:
    WordTemplates();

    const std::vector<std::shared_ptr<WordTemplate>>& all() const noexcept { return templates_; }
    /// By path or by its last part, any case; null where there is none.
    std::shared_ptr<WordTemplate> find(std::u16string_view path) const;
    /// The template of the path, switched on; a new one where it is not known.
    std::shared_ptr<WordTemplate> add(std::u16string_view path);

private:
    std::vector<std::shared_ptr<WordTemplate>> templates_;
};

}  // namespace lorvane::model
