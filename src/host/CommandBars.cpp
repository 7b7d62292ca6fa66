#include "host/CommandBars.h"

namespace lorvane::host {

namespace {

template <class T>
Variant orMissing(const std::optional<T>& value) {
    return value ? Variant(*value) : Variant::missing();
}

}  // namespace

CommandBar CommandBarControl::CommandBar() const {
    return host::CommandBar(getObject(Member::CommandBar));
}

CommandBarControls CommandBarControl::Controls() const {
    return CommandBarControls(getObject(Member::Controls));
}

CommandBarControl CommandBarControls::Add(const NewControl& wanted) const {
    return CommandBarControl(call(Member::Add, {Argument::named(Member::Type, wanted.type), Argument::named(Member::Parameter, orMissing(wanted.parameter)),
                                                Argument::named(Member::Before, orMissing(wanted.before)), Argument::named(Member::Temporary, true)})
                                 .toObject());
}

CommandBar CommandBars::addTemporary(std::u16string_view name, std::int32_t position) const {
    return CommandBar(call(Member::Add, {name, position, Variant::missing(), true}).toObject());
}

CommandBarControl CommandBars::FindControl(std::u16string_view tag, bool onlyVisible) const {
    return CommandBarControl(call(Member::FindControl, {Argument::named(Member::Tag, Variant(tag)), Argument::named(Member::Visible, onlyVisible)}).toObject());
}

}  // namespace lorvane::host
