#include <algorithm>

#include "model/CommandBarObjects.h"
#include "model/Failures.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

ControlObject& controlOf(const host::Object& object) {
    return *host::implementation<ControlObject>(object);
}

/// A bar's controls as a collection; each time a new object of the same identity.
class ControlsObject final : public ModelObject {
public:
    explicit ControlsObject(BarObject& bar) : ModelObject(bar.sharedCore()), held_(&bar), bar_(bar) {}

    std::u16string_view className() const noexcept override { return u"CommandBarControls"; }
    const void* identity() const noexcept override { return &bar_.controls(); }

protected:
    Variant use(Member member, host::Args args) override {
        bar_.requireThere();
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(bar_.controls().size());
            case Member::Item:
                return bar_.item(host::requiredArgument(args, 0));
            case Member::Add:
                return add(args);
            default:
                raiseUnknown(member);
        }
    }

private:
    Variant add(host::Args args) {
        ControlTree values;
        if (const Variant& type = host::argumentNamed(args, Member::Type, 0); !type.isMissing()) values.type = type.toInt32();
        if (values.type != ControlObject::Button && values.type != ControlObject::Popup)
            raiseInvalidArgument(u"A control that a program adds is a button (1) or a popup (10).");
        if (const Variant& id = host::argumentNamed(args, member::Id, 1); !id.isMissing()) values.id = id.toInt32();
        if (const Variant& parameter = host::argumentNamed(args, member::Parameter, 2); !parameter.isMissing()) values.parameter = parameter.toText();
        if (const Variant& temporary = host::argumentNamed(args, member::Temporary, 4); !temporary.isMissing()) values.temporary = temporary.toBoolean();
        const Variant& before = host::argumentNamed(args, member::Before, 3);
        const std::size_t count = bar_.controls().size();
        return bar_.add(std::move(values), before.isMissing() ? count : indexFrom(before, count));
    }

    host::Object held_;
    BarObject& bar_;
};

}  // namespace

SoughtControl SoughtControl::from(host::Args args) {
    SoughtControl sought;
    if (const Variant& type = host::argumentNamed(args, Member::Type, 0); !type.isMissing()) sought.type = type.toInt32();
    if (const Variant& id = host::argumentNamed(args, member::Id, 1); !id.isMissing()) sought.id = id.toInt32();
    if (const Variant& tag = host::argumentNamed(args, member::Tag, 2); !tag.isMissing()) sought.tag = tag.toText();
    if (const Variant& visible = host::argumentNamed(args, member::Visible, 3); !visible.isMissing()) sought.onlyVisible = visible.toBoolean();
    return sought;
}

bool SoughtControl::isFoundIn(const ControlTree& control) const noexcept {
    return (!type || *type == control.type) && (!id || *id == control.id) && (!tag || *tag == control.tag) && (!onlyVisible || control.visible);
}

BarObject::BarObject(std::shared_ptr<HostCore> core, const BarTree& tree)
    : ModelObject(std::move(core)), name_(tree.name), position_(tree.position), visible_(tree.visible), temporary_(tree.temporary), builtIn_(tree.builtIn) {
    for (const ControlTree& control : tree.controls) add(control, controls_.size());
}

BarObject::~BarObject() {
    end();
}

void BarObject::end() noexcept {
    ended_ = true;
    for (const host::Object& control : controls_) controlOf(control).end();
}

void BarObject::requireThere() const {
    if (ended_) raiseFailed(u"The bar is not there any more.");
}

host::Object BarObject::add(ControlTree values, std::size_t place) {
    host::Object control = host::makeObject<ControlObject>(sharedCore(), *this, std::move(values));
    controls_.insert(controls_.begin() + static_cast<std::ptrdiff_t>(place), control);
    return control;
}

std::size_t BarObject::placeOf(const ControlObject& control) const noexcept {
    const auto found = std::ranges::find_if(controls_, [&](const host::Object& one) { return one.dispatch() == &control; });
    return static_cast<std::size_t>(found - controls_.begin());
}

void BarObject::remove(const ControlObject& control) noexcept {
    const std::size_t place = placeOf(control);
    if (place == controls_.size()) return;
    const host::Object removed = controls_[place];
    controls_.erase(controls_.begin() + static_cast<std::ptrdiff_t>(place));
    controlOf(removed).end();
}

host::Object BarObject::item(const Variant& index) const {
    if (index.kind() != Variant::Kind::Text) return controls_[indexFrom(index, controls_.size())];
    const auto found = std::ranges::find_if(controls_, [&](const host::Object& one) { return isCaption(controlOf(one).values().caption, index.text()); });
    if (found == controls_.end()) raiseInvalidArgument(u"The bar has no control with the caption \"" + index.text() + u"\".");
    return *found;
}

host::Object BarObject::find(const SoughtControl& sought, bool inPopups) const {
    for (const host::Object& one : controls_) {
        const ControlObject& control = controlOf(one);
        if (sought.isFoundIn(control.values())) return one;
        const BarObject* opened = inPopups ? control.bar() : nullptr;
        if (host::Object found = opened ? opened->find(sought, true) : host::Object()) return found;
    }
    return {};
}

BarTree BarObject::tree() const {
    BarTree tree{name_, position_, visible_, temporary_, builtIn_, {}};
    for (const host::Object& control : controls_) tree.controls.push_back(controlOf(control).tree());
    return tree;
}

void BarObject::put(Member member, const Variant& value, host::Args) {
    requireThere();
    if (member != member::Visible) raiseUnknown(member);
    visible_ = value.toBoolean();
}

Variant BarObject::use(Member member, host::Args args) {
    requireThere();
    switch (member) {
        case Member::Name:
            return name_;
        case Member::Position:
            return position_;
        case member::Visible:
            return visible_;
        case member::BuiltIn:
            return builtIn_;
        case member::Controls:
            return args.empty() ? host::makeObject<ControlsObject>(*this) : item(args[0].value());
        case member::FindControl: {
            const Variant& recursive = host::argumentNamed(args, member::Recursive, 4);
            return find(SoughtControl::from(args), !recursive.isMissing() && recursive.toBoolean());
        }
        default:
            raiseUnknown(member);
    }
}

}  // namespace lorvane::model
