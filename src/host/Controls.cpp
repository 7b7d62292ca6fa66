#include "host/Controls.h"

#include <algorithm>
#include <cmath>

#include "host/Form.h"

namespace lorvane::host {

namespace {

constexpr std::int32_t InvalidPropertyArrayIndex = 381;

std::int32_t clamped(std::int32_t value, std::size_t limit) {
    return std::clamp(value, 0, static_cast<std::int32_t>(limit));
}

/// By-name access to one control; it keeps the window's object alive, of which the control is a part.
class ControlHandle final : public Dispatch {
public:
    explicit ControlHandle(Control& control) : form_(&control.form()), control_(control) {}

    Variant get(Member member, Args args) override { return control_.getMember(member, args, className()); }
    void put(Member member, const Variant& value, Args) override { control_.putMember(member, value, className()); }
    Variant call(Member member, Args args) override { return control_.callMember(member, args, className()); }
    std::optional<Member> memberNamed(std::u16string_view name) const override { return control_.memberByName(name); }
    std::u16string_view memberText(Member member) const noexcept override { return control_.nameOfMember(member); }
    std::u16string_view className() const noexcept override { return control_.className(); }
    const void* identity() const noexcept override { return &control_; }
    Control& control() const noexcept { return control_; }

private:
    Object form_;
    Control& control_;
};

}  // namespace

Control::Control(Form& form, ControlKind kind, std::u16string_view name, std::u16string_view caption, Control* container)
    : Caption(*this, u"Caption", std::u16string(caption)),
      Tag(*this, u"Tag"),
      ToolTipText(*this, u"ToolTipText"),
      Enabled(*this, u"Enabled", true),
      Visible(*this, u"Visible", true),
      Left(*this, u"Left"),
      Top(*this, u"Top"),
      Width(*this, u"Width"),
      Height(*this, u"Height"),
      ForeColor(*this, u"ForeColor"),
      form_(form),
      kind_(kind),
      name_(name),
      container_(container) {
    form.controls_.push_back(this);
    addMethod(u"SetFocus", [this](Args) {
        SetFocus();
        return Variant();
    });
    addMethod(u"Name", [this](Args) { return Variant(name_); });
}

std::u16string_view Control::className() const noexcept {
    switch (kind_) {
        case ControlKind::Panel:
            return u"PictureBox";
        case ControlKind::Label:
            return u"Label";
        case ControlKind::TextBox:
            return u"TextBox";
        case ControlKind::Button:
            return u"CommandButton";
        case ControlKind::Option:
            return u"OptionButton";
        case ControlKind::CheckBox:
            return u"CheckBox";
        case ControlKind::ComboBox:
            return u"ComboBox";
        case ControlKind::ListBox:
            return u"ListBox";
        case ControlKind::Timer:
            return u"Timer";
        case ControlKind::Menu:
            return u"Menu";
    }
    return u"Control";
}

bool Control::isReachable() const noexcept {
    for (const Control* control = this; control; control = control->container_)
        if (!control->Visible.get() || !control->Enabled.get()) return false;
    return true;
}

Object Control::handle() {
    return makeObject<ControlHandle>(*this);
}

Control* Control::behind(const Object& handle) noexcept {
    const auto* shown = implementation<ControlHandle>(handle);
    return shown ? &shown->control() : nullptr;
}

void Control::SetFocus() {
    if (!form_.isVisible() || !isReachable()) throw HostError(runtime_error::InvalidProcedureCall);
    form_.setFocus(this);
}

Button::Button(Form& form, std::u16string_view name, std::u16string_view caption, Control* container)
    : Control(form, ControlKind::Button, name, caption, container), Default(*this, u"Default"), Cancel(*this, u"Cancel") {}

TextEntry::TextEntry(Form& form, ControlKind kind, std::u16string_view name, std::u16string_view caption, std::u16string_view text, Control* container)
    : Control(form, kind, name, caption, container), Text(*this, u"Text", std::u16string(text)), SelStart(*this, u"SelStart"), SelLength(*this, u"SelLength") {}

void TextEntry::putCaretToStart() {
    SelStart.setQuietly(0);
    SelLength.setQuietly(0);
}

void TextEntry::propertyChanged(PropertyBase& property) {
    if (&property == &Text) {
        putCaretToStart();
        Change();
    } else if (&property == &SelStart || &property == &SelLength) {
        SelStart.setQuietly(clamped(SelStart, Text.get().size()));
        SelLength.setQuietly(clamped(SelLength, Text.get().size() - static_cast<std::size_t>(SelStart.get())));
    }
}

TextBox::TextBox(Form& form, std::u16string_view name, std::u16string_view text, Control* container)
    : TextEntry(form, ControlKind::TextBox, name, u"", text, container) {}

OptionButton::OptionButton(Form& form, std::u16string_view name, std::u16string_view caption, Control* container)
    : Control(form, ControlKind::Option, name, caption, container), Value(*this, u"Value") {}

void OptionButton::propertyChanged(PropertyBase& property) {
    if (&property != &Value || !Value) return;
    for (Control* other : form().controls())
        if (other != this && other->kind() == ControlKind::Option && other->container() == container())
            static_cast<OptionButton*>(other)->Value.setQuietly(false);
    Click();
}

CheckBox::CheckBox(Form& form, std::u16string_view name, std::u16string_view caption, Control* container)
    : Control(form, ControlKind::CheckBox, name, caption, container), Value(*this, u"Value") {}

void CheckBox::propertyChanged(PropertyBase& property) {
    if (&property == &Value) Click();
}

ComboBox::ComboBox(Form& form, std::u16string_view name, std::u16string_view caption, Control* container)
    : TextEntry(form, ControlKind::ComboBox, name, caption, u"", container), ListIndex(*this, u"ListIndex", -1) {
    addMethod(u"ListCount", [this](Args) { return Variant(ListCount()); });
    addMethod(u"List", [this](Args args) { return Variant(List(requiredArgument(args, 0).toInt32())); });
}

void ComboBox::AddItem(std::u16string line) {
    lines_.push_back(std::move(line));
}

void ComboBox::Clear() {
    lines_.clear();
    ListIndex.setQuietly(-1);
    Text = u"";
}

std::u16string ComboBox::List(std::int32_t index) const {
    if (index < 0 || index >= ListCount()) throw HostError(InvalidPropertyArrayIndex, u"Invalid property array index");
    return lines_[static_cast<std::size_t>(index)];
}

void ComboBox::propertyChanged(PropertyBase& property) {
    if (&property == &ListIndex) {
        if (ListIndex < -1 || ListIndex >= ListCount()) {
            ListIndex.setQuietly(-1);
            throw HostError(InvalidPropertyArrayIndex, u"Invalid property array index");
        }
        Text.setQuietly(ListIndex < 0 ? std::u16string() : List(ListIndex));
        putCaretToStart();
        Click();
        return;
    }
    if (&property == &Text) ListIndex.setQuietly(-1);
    TextEntry::propertyChanged(property);
}

ListBox::ListBox(Form& form, std::u16string_view name, std::u16string_view caption, Control* container)
    : Control(form, ControlKind::ListBox, name, caption, container),
      ListIndex(*this, u"ListIndex", -1),
      HorizontalExtent(*this, u"HorizontalExtent"),
      TopIndex(*this, u"TopIndex"),
      RowHeight(*this, u"RowHeight", 195) {
    addMethod(u"ListCount", [this](Args) { return Variant(ListCount()); });
    addMethod(u"List", [this](Args args) { return Variant(List(requiredArgument(args, 0).toInt32())); });
    addMethod(u"Text", [this](Args) { return Variant(Text()); });
}

void ListBox::AddItem(PaddedText line) {
    lines_.push_back(std::move(line));
}

void ListBox::Clear() {
    lines_.clear();
    ListIndex.setQuietly(-1);
}

const PaddedText& ListBox::line(std::int32_t index) const {
    if (index < 0 || index >= ListCount()) throw HostError(InvalidPropertyArrayIndex, u"Invalid property array index");
    return lines_[static_cast<std::size_t>(index)];
}

std::u16string ListBox::List(std::int32_t index) const {
    return line(index).text();
}

std::u16string ListBox::Text() const {
    return ListIndex < 0 ? std::u16string() : List(ListIndex);
}

std::int32_t ListBox::rowAt(double y) const noexcept {
    if (!(y >= 0) || RowHeight <= 0) return -1;
    const double row = TopIndex + std::floor(y / RowHeight);
    return row < ListCount() ? static_cast<std::int32_t>(row) : -1;
}

void ListBox::propertyChanged(PropertyBase& property) {
    if (&property != &ListIndex) return;
    if (ListIndex < -1 || ListIndex >= ListCount()) {
        ListIndex.setQuietly(-1);
        throw HostError(InvalidPropertyArrayIndex, u"Invalid property array index");
    }
    Click();
}

Timer::Timer(Form& form, std::u16string_view name) : Control(form, ControlKind::Timer, name), Interval(*this, u"Interval") {
    Enabled.setQuietly(false);
}

void Timer::propertyChanged(PropertyBase& property) {
    if (&property == &Enabled || &property == &Interval) form().timerChanged(*this);
}

}  // namespace lorvane::host
