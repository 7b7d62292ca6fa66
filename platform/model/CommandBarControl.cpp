#include <algorithm>
#include <utility>

#include "host/TextFunctions.h"
#include "model/CommandBarObjects.h"
#include "model/Failures.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

/// A property that is read and written as it is.
template <class T>
struct Field {
    Member member;
    T ControlTree::*value;
    bool ofButtonsOnly = false;
};

constexpr Field<std::u16string> texts[] = {
    {member::Caption, &ControlTree::caption},     {member::Tag, &ControlTree::tag},
    {member::TooltipText, &ControlTree::tooltip}, {member::OnAction, &ControlTree::onAction},
    {member::Parameter, &ControlTree::parameter},
};
constexpr Field<std::int32_t> numbers[] = {
    {member::Priority, &ControlTree::priority},
    {member::FaceId, &ControlTree::faceId, true},
    {member::Style, &ControlTree::style, true},
};
constexpr Field<bool> flags[] = {
    {member::BeginGroup, &ControlTree::beginGroup},
    {member::Enabled, &ControlTree::enabled},
    {member::Visible, &ControlTree::visible},
};

/// The place of a property in a control; null where this table has none for it.
template <class T, class Control, std::size_t N>
auto* fieldOf(Control& control, Member member, const Field<T> (&fields)[N]) noexcept {
    const auto row = std::ranges::find_if(
        fields, [&](const Field<T>& field) { return field.member == member && (!field.ofButtonsOnly || control.type == ControlObject::Button); });
    return row == std::end(fields) ? nullptr : &(control.*row->value);
}

constexpr std::int32_t mostPriority = 7;
constexpr std::int32_t styles[] = {0, 1, 2, 3, 7, 11, 14, 15};

void requireUsable(Member member, std::int32_t number) {
    if (member == member::Priority && (number < 0 || number > mostPriority)) raiseInvalidArgument(u"The priority of a control is 0 to 7.");
    if (member == member::Style && std::ranges::find(styles, number) == std::end(styles)) raiseInvalidArgument(u"Buttons have no style of this number.");
    if (member == member::FaceId && number < 0) raiseInvalidArgument(u"The number of a face is not below 0.");
}

}  // namespace

bool isCaption(std::u16string_view caption, std::u16string_view sought) noexcept {
    const auto skipMarks = [](std::u16string_view text) { return text.substr(std::min(text.find_first_not_of(u'&'), text.size())); };
    for (caption = skipMarks(caption), sought = skipMarks(sought); !caption.empty() && !sought.empty();
         caption = skipMarks(caption.substr(1)), sought = skipMarks(sought.substr(1))) {
        if (host::foldUnit(caption.front()) != host::foldUnit(sought.front())) return false;
    }
    return caption.empty() && sought.empty();
}

ControlObject::ControlObject(std::shared_ptr<HostCore> core, BarObject& parent, ControlTree values) : ModelObject(std::move(core)), parent_(&parent) {
    std::vector<ControlTree> controls = std::exchange(values.controls, {});
    values_ = std::move(values);
    constexpr std::int32_t popupPosition = 5;
    if (values_.type == Popup)
        bar_ =
            host::makeObject<BarObject>(sharedCore(), BarTree{values_.caption, popupPosition, true, values_.temporary, values_.builtIn, std::move(controls)});
}

ControlObject::~ControlObject() {
    end();
}

void ControlObject::end() noexcept {
    parent_ = nullptr;
    if (BarObject* opened = bar()) opened->end();
}

void ControlObject::requireThere() const {
    if (!parent_) raiseFailed(u"The control is not there any more.");
}

BarObject* ControlObject::bar() const noexcept {
    return host::implementation<BarObject>(bar_);
}

ControlTree ControlObject::tree() const {
    ControlTree tree = values_;
    if (const BarObject* opened = bar()) tree.controls = opened->tree().controls;
    return tree;
}

host::Subscription ControlObject::advise(std::weak_ptr<host::EventSink> sink) {
    requireThere();
    return values_.type == Button ? events_.advise(std::move(sink)) : ModelObject::advise(std::move(sink));
}

void ControlObject::click() {
    const host::Object held(this);
    Variant cancelDefault(false);
    events_.raise(member::Click, {held, host::Argument::byReference(cancelDefault)});
}

void ControlObject::put(Member member, const Variant& value, host::Args) {
    requireThere();
    if (auto* text = fieldOf(values_, member, texts)) {
        *text = value.toText();
    } else if (auto* flag = fieldOf(values_, member, flags)) {
        *flag = value.toBoolean();
    } else if (auto* number = fieldOf(values_, member, numbers)) {
        const std::int32_t written = value.toInt32();
        requireUsable(member, written);
        *number = written;
    } else {
        raiseUnknown(member);
    }
}

Variant ControlObject::use(Member member, host::Args args) {
    requireThere();
    if (const auto* text = fieldOf(values_, member, texts)) return *text;
    if (const auto* flag = fieldOf(values_, member, flags)) return *flag;
    if (const auto* number = fieldOf(values_, member, numbers)) return *number;
    switch (member) {
        case Member::Type:
            return values_.type;
        case member::Id:
            return values_.id;
        case member::BuiltIn:
            return values_.builtIn;
        case member::Index:
            return static_cast<std::int32_t>(parent_->placeOf(*this)) + 1;
        case Member::Parent:
            return host::Object(parent_);
        case Member::Delete:
            parent_->remove(*this);
            return {};
        default:
            return useAsPopup(member, args);
    }
}

Variant ControlObject::useAsPopup(Member member, host::Args args) {
    if (!bar_) raiseUnknown(member);
    if (member == member::CommandBar) return bar_;
    if (member == member::Controls) return bar_.dispatch()->get(member, args);
    raiseUnknown(member);
}

}  // namespace lorvane::model
