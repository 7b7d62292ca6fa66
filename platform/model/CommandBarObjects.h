#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/CommandBarTree.h"
#include "model/ModelObject.h"

/// The controls of one window. They live with it: a control that was deleted, or whose window is gone, raises 0x80004005 on every member.
namespace lorvane::model {

class BarObject;

/// A button or a popup. Reached again, it is the same object; a click is told to the sinks of this object alone.
class ControlObject final : public ModelObject {
public:
    static constexpr std::int32_t Button = 1, Popup = 10;

    ControlObject(std::shared_ptr<HostCore> core, BarObject& parent, ControlTree values);
    ~ControlObject() override;

    std::u16string_view className() const noexcept override { return values_.type == Popup ? u"CommandBarPopup" : u"CommandBarButton"; }
    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override;  ///< of a button
    void put(host::Member member, const host::Variant& value, host::Args args) override;

    const ControlTree& values() const noexcept { return values_; }  ///< without what a popup opens
    BarObject* bar() const noexcept;                                ///< what a popup opens; null for a button
    ControlTree tree() const;
    /// What a person's click does to a button; `CancelDefault` has nothing to cancel here.
    void click();
    void end() noexcept;

protected:
    host::Variant use(host::Member member, host::Args args) override;

private:
    void requireThere() const;
    host::Variant useAsPopup(host::Member member, host::Args args);

    BarObject* parent_;
    ControlTree values_;
    host::Object bar_;
    host::EventSource events_;
};

/// What a search for a control looks at; what was not given does not matter.
struct SoughtControl {
    std::optional<std::int32_t> type, id;
    std::optional<std::u16string> tag;
    bool onlyVisible = false;

    /// From the arguments of `FindControl(Type, Id, Tag, Visible)`.
    static SoughtControl from(host::Args args);
    bool isFoundIn(const ControlTree& control) const noexcept;
};

/// A bar, or the menu of a popup.
class BarObject final : public ModelObject {
public:
    /// With the controls of the tree.
    BarObject(std::shared_ptr<HostCore> core, const BarTree& tree);
    ~BarObject() override;

    std::u16string_view className() const noexcept override { return u"CommandBar"; }
    void put(host::Member member, const host::Variant& value, host::Args args) override;

    const std::u16string& name() const noexcept { return name_; }
    bool isVisible() const noexcept { return visible_; }
    const std::vector<host::Object>& controls() const noexcept { return controls_; }
    BarTree tree() const;

    void requireThere() const;
    host::Object add(ControlTree values, std::size_t place);
    void remove(const ControlObject& control) noexcept;
    std::size_t placeOf(const ControlObject& control) const noexcept;
    /// A control by caption (any case, "&" apart) or by place from 1; error 0x80070057 where none has the caption.
    host::Object item(const host::Variant& index) const;
    /// The first control that a search finds; Nothing where there is none.
    host::Object find(const SoughtControl& sought, bool inPopups) const;
    void end() noexcept;

protected:
    host::Variant use(host::Member member, host::Args args) override;

private:
    std::u16string name_;
    std::int32_t position_;
    bool visible_, temporary_, builtIn_;
    bool ended_ = false;
    std::vector<host::Object> controls_;
};

/// True for captions and names that look-ups take for the same: without "&", any case.
bool isCaption(std::u16string_view caption, std::u16string_view sought) noexcept;

}  // namespace lorvane::model
