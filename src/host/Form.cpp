#include "host/Form.h"

#include <algorithm>

#include "host/Apartment.h"
#include "host/Guards.h"
#include "host/TextFunctions.h"

namespace lorvane::host {

namespace {

/// A window's controls as members of the window, behind its own properties and methods.
constexpr std::size_t controlMembers = windowMembers + 0x100;

}  // namespace

Form::Form(std::u16string_view name, std::u16string_view caption)
    : Caption(*this, u"Caption", std::u16string(caption)),
      Tag(*this, u"Tag"),
      MousePointer(*this, u"MousePointer"),
      Left(*this, u"Left"),
      Top(*this, u"Top"),
      Width(*this, u"Width"),
      Height(*this, u"Height"),
      name_(name) {
    addMethod(u"Name", [this](Args) { return Variant(name_); });
    addMethod(u"Visible", [this](Args) { return Variant(visible_); });
    addMethod(u"Show", [this](Args args) {
        const Variant& modal = argumentAt(args, 0);
        Show(!modal.isMissing() && modal.toBoolean());
        return Variant();
    });
    addMethod(u"Hide", [this](Args) {
        Hide();
        return Variant();
    });
    addMethod(u"Unload", [this](Args) {
        unload();
        return Variant();
    });
}

Control* Form::control(std::u16string_view name) const noexcept {
    for (Control* candidate : controls_)
        if (equalsIgnoreCase(candidate->name(), name)) return candidate;
    return nullptr;
}

void Form::load() {
    if (loaded_) return;
    const Object keepAlive(this);
    apartment().machine.screen().Load(*this);
    loaded_ = true;
    Form_Load();
}

void Form::Show(bool modal) {
    const Object keepAlive(this);
    load();
    const bool wasVisible = visible_;
    visible_ = true;
    activated_ = false;
    try {
        apartment().machine.screen().Show(*this, modal);
    } catch (const HostError&) {
        // A window that did not come up does not count as shown.
        if (!wasVisible) ignoringErrors([&] { Hide(); });
        throw;
    }
}

void Form::activate() {
    if (activated_) return;
    activated_ = true;
    const Object keepAlive(this);
    Form_Activate();
}

void Form::Hide() {
    if (!visible_) return;
    visible_ = false;
    apartment().machine.screen().Hide(*this);
}

void Form::unload() {
    if (!loaded_) return;
    const Object keepAlive(this);
    // The window goes whatever fails on the way: nothing can be done with half of one.
    ignoringErrors([&] { Hide(); });
    ignoringErrors([&] { Form_Unload(); });
    for (Control* candidate : controls_)
        if (candidate->kind() == ControlKind::Timer) ignoringErrors([&] { candidate->Enabled = false; });
    loaded_ = false;
    ignoringErrors([&] { apartment().machine.screen().Unload(*this); });
    apartment().forms.letGo(*this);
}

void Form::timerChanged(Timer& timer) {
    if (!loaded_) return;
    const Screen screen = apartment().machine.screen();
    if (timer.Enabled && timer.Interval > 0)
        screen.SetTimer(*this, timer.name(), timer.Interval);
    else
        screen.KillTimer(*this, timer.name());
}

std::optional<Member> Form::memberNamed(std::u16string_view name) const {
    if (const auto own = memberByName(name)) return own;
    for (std::size_t i = 0; i < controls_.size(); ++i)
        if (equalsIgnoreCase(controls_[i]->name(), name)) return static_cast<Member>(controlMembers + i);
    return std::nullopt;
}

std::u16string_view Form::memberText(Member member) const noexcept {
    const auto number = static_cast<std::size_t>(member);
    if (number >= controlMembers && number - controlMembers < controls_.size()) return controls_[number - controlMembers]->name();
    return nameOfMember(member);
}

Variant Form::get(Member member, Args args) {
    const auto number = static_cast<std::size_t>(member);
    if (number >= controlMembers && number - controlMembers < controls_.size()) return Variant(controls_[number - controlMembers]->handle());
    return getMember(member, args, className());
}

void Form::put(Member member, const Variant& value, Args) {
    putMember(member, value, className());
}

Variant Form::call(Member member, Args args) {
    return get(member, args);
}

Form* Forms::find(std::u16string_view name) const noexcept {
    for (const Object& instance : instances_) {
        auto* form = static_cast<Form*>(instance.dispatch());
        if (equalsIgnoreCase(form->name(), name)) return form;
    }
    return nullptr;
}

Form& Forms::use(std::u16string_view name, Factory factory) {
    if (Form* loaded = find(name)) return *loaded;
    const Object instance = factory();
    instances_.push_back(instance);
    auto& form = static_cast<Form&>(*instance.dispatch());
    try {
        form.load();
    } catch (const HostError&) {
        letGo(form);  // a window that could not be loaded is made anew at its next use
        throw;
    }
    return form;
}

Form* Forms::useNamed(std::u16string_view name) {
    for (const auto& [knownName, factory] : known_)
        if (equalsIgnoreCase(knownName, name)) return &use(knownName, factory);
    return find(name);
}

void Forms::know(std::u16string_view name, Factory factory) {
    if (std::none_of(known_.begin(), known_.end(), [&](const auto& row) { return row.first == name; })) known_.emplace_back(name, factory);
}

std::vector<std::u16string_view> Forms::knownNames() const {
    std::vector<std::u16string_view> names;
    for (const auto& row : known_) names.push_back(row.first);
    return names;
}

void Forms::letGo(Form& form) noexcept {
    std::erase_if(instances_, [&](const Object& instance) { return instance.dispatch() == &form; });
}

void Forms::release(std::u16string_view name) noexcept {
    // One that is still up is unloaded: a screen holds on to a window whose timer runs, and the window to what it opened.
    const Object held(find(name));
    if (!held) return;
    auto& form = static_cast<Form&>(*held.dispatch());
    ignoringErrors([&] { form.unload(); });
    letGo(form);
}

void Forms::clear() noexcept {
    while (!instances_.empty()) release(static_cast<Form&>(*instances_.back().dispatch()).name());
}

}  // namespace lorvane::host
