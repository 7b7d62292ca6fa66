#include "model/CommandBarSet.h"

#include <algorithm>
#include <utility>

#include "model/Failures.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

constexpr std::int32_t topPosition = 1, menuPosition = 6;

BarObject& barOf(const host::Object& object) {
    return *host::implementation<BarObject>(object);
}

/// "CommandBars" of a window; each time a new object of the same identity.
class CommandBarsObject final : public ModelObject {
public:
    explicit CommandBarsObject(std::shared_ptr<CommandBarSet> set) : ModelObject(set->core()), set_(std::move(set)) {}

    std::u16string_view className() const noexcept override { return u"CommandBars"; }
    const void* identity() const noexcept override { return set_.get(); }

protected:
    Variant use(Member member, host::Args args) override {
        set_->requireThere();
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(set_->bars().size());
            case Member::Item:
                return item(host::requiredArgument(args, 0));
            case Member::Add:
                return add(args);
            case member::FindControl:
                return find(SoughtControl::from(args));
            default:
                raiseUnknown(member);
        }
    }

private:
    host::Object item(const Variant& index) const {
        if (index.kind() != Variant::Kind::Text) return set_->bars()[indexFrom(index, set_->bars().size())];
        BarObject* bar = set_->find(index.text());
        if (!bar) raiseInvalidArgument(u"The window has no bar \"" + index.text() + u"\".");
        return host::Object(bar);
    }

    /// A new bar is hidden until it is made visible.
    host::Object add(host::Args args) const {
        BarTree tree{host::argumentNamed(args, Member::Name, 0).toText(), topPosition, false, false, false, {}};
        if (set_->find(tree.name)) raiseInvalidArgument(u"The window has a bar \"" + tree.name + u"\" already.");
        if (const Variant& position = host::argumentNamed(args, Member::Position, 1); !position.isMissing()) tree.position = position.toInt32();
        if (const Variant& menuBar = host::argumentNamed(args, member::MenuBar, 2); !menuBar.isMissing() && menuBar.toBoolean()) tree.position = menuPosition;
        if (const Variant& temporary = host::argumentNamed(args, member::Temporary, 3); !temporary.isMissing()) tree.temporary = temporary.toBoolean();
        return set_->add(tree);
    }

    host::Object find(const SoughtControl& sought) const {
        for (const host::Object& bar : set_->bars()) {
            if (sought.onlyVisible && !barOf(bar).isVisible()) continue;
            if (host::Object found = barOf(bar).find(sought, true)) return found;
        }
        return {};
    }

    std::shared_ptr<CommandBarSet> set_;
};

}  // namespace

CommandBarSet::CommandBarSet(std::shared_ptr<HostCore> core, const std::vector<BarTree>& builtIn, bool withMenuBar) : core_(std::move(core)) {
    for (const BarTree& tree : builtIn) {
        if (tree.position == menuPosition && !withMenuBar)
            hiddenMenuBar_ = host::makeObject<BarObject>(core_, tree);
        else
            add(tree);
    }
}

CommandBarSet::~CommandBarSet() {
    end();
}

void CommandBarSet::requireThere() const {
    if (ended_) raiseFailed(u"The bars' window is not there any more.");
}

host::Object CommandBarSet::object() {
    return host::makeObject<CommandBarsObject>(shared_from_this());
}

BarObject* CommandBarSet::find(std::u16string_view name) const noexcept {
    const auto found = std::ranges::find_if(bars_, [name](const host::Object& bar) { return isCaption(barOf(bar).name(), name); });
    return found == bars_.end() ? nullptr : &barOf(*found);
}

host::Object CommandBarSet::add(const BarTree& tree) {
    return bars_.emplace_back(host::makeObject<BarObject>(core_, tree));
}

std::vector<BarTree> CommandBarSet::trees() const {
    std::vector<BarTree> trees;
    for (const host::Object& bar : bars_) trees.push_back(barOf(bar).tree());
    return trees;
}

void CommandBarSet::showMenuBar() {
    if (hiddenMenuBar_) bars_.insert(bars_.begin(), std::exchange(hiddenMenuBar_, {}));
}

void CommandBarSet::end() noexcept {
    ended_ = true;
    for (const host::Object& bar : bars_) barOf(bar).end();
}

}  // namespace lorvane::model
