#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "model/CommandBarObjects.h"

namespace lorvane::model {

/// The bars of one window, and the object "CommandBars" over them. They end with the window: every member then raises 0x80004005.
class CommandBarSet : public std::enable_shared_from_this<CommandBarSet> {
public:
    /// With `withMenuBar` false the menu bar among the trees is not there until `showMenuBar`.
    CommandBarSet(std::shared_ptr<HostCore> core, const std::vector<BarTree>& builtIn, bool withMenuBar);
    ~CommandBarSet();
    CommandBarSet(const CommandBarSet&) = delete;
    CommandBarSet& operator=(const CommandBarSet&) = delete;

    const std::shared_ptr<HostCore>& core() const noexcept { return core_; }
    host::Object object();
    void requireThere() const;

    const std::vector<host::Object>& bars() const noexcept { return bars_; }
    /// A bar by name, any case, "&" apart; null where there is none.
    BarObject* find(std::u16string_view name) const noexcept;
    host::Object add(const BarTree& tree);
    std::vector<BarTree> trees() const;

    void showMenuBar();
    void end() noexcept;

private:
    std::shared_ptr<HostCore> core_;
    std::vector<host::Object> bars_;
    host::Object hiddenMenuBar_;
    bool ended_ = false;
};

}  // namespace lorvane::model
