#include "screen/TextMetrics.h"

#include <algorithm>
#include <array>

namespace lorvane::screen {

namespace {

constexpr int twipsPerPixel = 15;

constexpr int computedWidth(char16_t unit) noexcept {
    constexpr std::u16string_view narrow = u" !'(),.:;I[]`fijlrt|", wide = u"%@MWmw";
    if (unit < 0x20 || (unit >= 0x300 && unit < 0x370)) return 0;  // controls and combining marks
    if ((unit & 0xFC00) == 0xDC00) return 0;                       // the high surrogate carries the width of the pair
    if (unit >= 0x1100) return 12 * twipsPerPixel;
    if (narrow.find(unit) != std::u16string_view::npos) return 4 * twipsPerPixel;
    if (wide.find(unit) != std::u16string_view::npos) return 10 * twipsPerPixel;
    if (unit >= u'A' && unit <= u'Z') return 8 * twipsPerPixel;
    return 6 * twipsPerPixel;
}

constexpr auto plainWidths = [] {
    std::array<int, 128> widths{};
    for (std::size_t unit = 0; unit < widths.size(); ++unit) widths[unit] = computedWidth(static_cast<char16_t>(unit));
    return widths;
}();

int unitWidth(char16_t unit) noexcept {
    return unit < plainWidths.size() ? plainWidths[unit] : computedWidth(unit);
}

struct Size {
    std::int32_t width, height;
};

Size sizeOf(const host::Control& control) {
    constexpr std::int32_t margin = 16 * twipsPerPixel;
    const auto caption = static_cast<std::int32_t>(textWidth(control.Caption.get()));
    switch (control.kind()) {
        case host::ControlKind::Label:
            return {std::max(caption, twipsPerPixel), 195};
        case host::ControlKind::Button:
            return {std::max(1215, caption + margin), 375};
        case host::ControlKind::Option:
        case host::ControlKind::CheckBox:
            return {caption + margin, 255};
        case host::ControlKind::TextBox:
        case host::ControlKind::ComboBox:
            return {2895, 315};
        case host::ControlKind::ListBox:
            return {6015, 3180};
        case host::ControlKind::Panel:
            return {6015, 1440};
        case host::ControlKind::Timer:
        case host::ControlKind::Menu:
            break;
    }
    return {0, 0};
}

void publish(host::Property<std::int32_t>& property, std::int32_t value) {
    if (property.get() == 0) property.setQuietly(value);
}

}  // namespace

double textWidth(std::u16string_view text) noexcept {
    std::int64_t width = 0;
    for (const char16_t unit : text) width += unitWidth(unit);
    return static_cast<double>(width);
}

void publishSizes(host::Form& form) {
    publish(form.Width, 9600);
    publish(form.Height, 7200);
    for (host::Control* control : form.controls()) {
        const Size size = sizeOf(*control);
        publish(control->Width, size.width);
        publish(control->Height, size.height);
    }
}

}  // namespace lorvane::screen
