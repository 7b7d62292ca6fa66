#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Controls.h"
#include "host/Object.h"
#include "host/Property.h"

namespace lorvane::host {

/// A window of the add-in: its control objects are members, its events handler methods named `control_Event`.
///
/// There is one shared instance of each class, made and loaded by naming it (`Forms::use`), gone after its unload. A running handler keeps the object alive.
/// Handlers let no error escape; each takes a guard of its own.
class Form : public Dispatch, public PropertyOwner {
public:
    Form(std::u16string_view name, std::u16string_view caption);

    std::u16string_view name() const noexcept { return name_; }
    bool isLoaded() const noexcept { return loaded_; }
    bool isVisible() const noexcept { return visible_; }
    const std::vector<Control*>& controls() const noexcept { return controls_; }
    Control* control(std::u16string_view name) const noexcept;  ///< any case; null where there is none
    Control* focus() const noexcept { return focus_; }

    void load();            ///< raises Form_Load, once
    void Show(bool modal);  ///< loads first; a modal show returns when the window is hidden or unloaded
    void Hide();
    void unload();  ///< hides, raises Form_Unload, ends timers; the shared instance is let go
    void Refresh() {}

    Property<std::u16string> Caption, Tag;
    Property<std::int32_t> MousePointer, Left, Top, Width, Height;
    Event<> MouseMove;  ///< the pointer over the window itself, beside its controls

    // For a screen:
    void activate();  ///< the window came up: Form_Activate, once a showing
    void setFocus(Control* control) noexcept { focus_ = control; }
    void timerChanged(Timer& timer);  ///< a timer of this window was set or stopped

    std::u16string_view className() const noexcept override { return name_; }
    std::optional<Member> memberNamed(std::u16string_view name) const override;
    std::u16string_view memberText(Member member) const noexcept override;
    Variant get(Member member, Args args) override;
    void put(Member member, const Variant& value, Args args) override;
    Variant call(Member member, Args args) override;

protected:
    virtual void Form_Load() {}
    virtual void Form_Activate() {}
    virtual void Form_Unload() {}

private:
    friend class Control;
    std::u16string_view name_;
    std::vector<Control*> controls_;
    Control* focus_ = nullptr;
    bool loaded_ = false;
    bool visible_ = false;
    bool activated_ = false;
};

/// The shared instances of the windows, one of each class, by name. Part of the add-in's state.
class Forms {
public:
    using Factory = Object (*)();

    /// The window's shared instance, made and loaded where there is none.
    template <class F>
    F& use() {
        return static_cast<F&>(use(F::formName, &makeObject<F>));
    }
    /// The loaded instance of a window, null where there is none. Never loads.
    template <class F>
    F* find() const noexcept {
        return static_cast<F*>(find(F::formName));
    }
    Form* find(std::u16string_view name) const noexcept;
    /// A window by name, made and loaded where its class was told with `know`; null otherwise.
    Form* useNamed(std::u16string_view name);
    void know(std::u16string_view name, Factory factory);
    std::vector<std::u16string_view> knownNames() const;

    void letGo(Form& form) noexcept;                  ///< by the window itself at its unload
    void release(std::u16string_view name) noexcept;  ///< unloads a window that is up and lets its instance go; nothing where there is none
    void clear() noexcept;                            ///< the same with all, newest first

private:
    Form& use(std::u16string_view name, Factory factory);
    std::vector<std::pair<std::u16string_view, Factory>> known_;
    std::vector<Object> instances_;
};

}  // namespace lorvane::host
