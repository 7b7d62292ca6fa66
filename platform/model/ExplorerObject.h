#pragma once

#include <memory>
#include <vector>

#include "model/HostWindow.h"
#include "model/ItemState.h"

namespace lorvane::model {

/// A window on a folder, with the items a person has selected in it.
class ExplorerObject final : public HostWindow {
public:
    ExplorerObject(std::shared_ptr<HostCore> core, HostCore::PlacedFolder folder);

    std::u16string_view className() const noexcept override { return u"Explorer"; }
    std::u16string caption() const override { return folder_.folder.name; }
    void keys(const std::vector<screen::KeyStroke>&) override {}

    void put(host::Member member, const host::Variant& value, host::Args args) override;
    void select(std::vector<std::shared_ptr<ItemState>> items);
    const std::vector<std::shared_ptr<ItemState>>& selected() const noexcept { return selected_; }

protected:
    host::Variant use(host::Member member, host::Args args) override;
    std::vector<HostWindow*>& siblings() const noexcept override { return core().explorers; }
    void raiseNew() override;
    std::vector<BarTree> builtInBars() const override;
    bool menuBarWaits() const noexcept override { return true; }

private:
    HostCore::PlacedFolder folder_;
    std::vector<std::shared_ptr<ItemState>> selected_;
};

}  // namespace lorvane::model
