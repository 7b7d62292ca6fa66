#include "services/Clipboard.h"

#include <algorithm>
#include <utility>

#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace lorvane::services {

using host::Bytes;
using host::Variant;

namespace {

constexpr std::int32_t ansiTextFormat = 1;
constexpr std::int32_t unicodeTextFormat = 13;
constexpr std::int32_t firstRegistered = 0xC000;
constexpr std::int32_t lastRegistered = 0xFFFF;

/// UTF-16, low byte first, with the zero that ends it.
Bytes blockOfText(std::u16string_view text) {
    Bytes bytes;
    bytes.reserve((text.size() + 1) * 2);
    const auto append = [&](char16_t unit) {
        bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    };
    for (const char16_t unit : text) append(unit);
    append(0);
    return bytes;
}

std::u16string textOfBlock(const Bytes& bytes) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto unit = static_cast<char16_t>(bytes[i] | (bytes[i + 1] << 8));
        if (unit == 0) break;
        text += unit;
    }
    return text;
}

}  // namespace

Clipboard::Clipboard(std::shared_ptr<const CodePage> codePage) : codePage_(std::move(codePage)) {}

std::span<const Clipboard::Row> Clipboard::rows() noexcept {
    using host::Member;
    static constexpr Row table[] = {
        {Member::Clear, &Clipboard::Clear},
        {Member::SetText, &Clipboard::SetText},
        {Member::RegisterClipboardFormat, &Clipboard::RegisterClipboardFormat},
        {Member::OpenClipboard, &Clipboard::OpenClipboard},
        {Member::EmptyClipboard, &Clipboard::EmptyClipboard},
        {Member::SetClipboardData, &Clipboard::SetClipboardData},
        {Member::CloseClipboard, &Clipboard::CloseClipboard},
        {Member::GlobalAlloc, &Clipboard::GlobalAlloc},
        {Member::GlobalLock, &Clipboard::GlobalLock},
        {Member::GlobalUnlock, &Clipboard::GlobalUnlock},
        {Member::RtlMoveMemory, &Clipboard::RtlMoveMemory},
    };
    return table;
}

void Clipboard::requireOpening() const {
    if (isOpen_ || refusesOpen_) throw host::HostError(cannotOpen, u"Can't open Clipboard");
}

Variant Clipboard::Clear(host::Args) {
    requireOpening();
    data_.clear();
    return {};
}

Variant Clipboard::SetText(host::Args args) {
    const std::u16string text = textAt(args, 0);
    requireOpening();
    replaceText(text);
    return {};
}

Variant Clipboard::RegisterClipboardFormat(host::Args args) {
    const std::u16string name = textAt(args, 0);
    return refusesRegistration_ ? 0 : formatNamed(name);
}

Variant Clipboard::OpenClipboard(host::Args) {
    if (isOpen_ || refusesOpen_) return 0;
    isOpen_ = true;
    return 1;
}

Variant Clipboard::EmptyClipboard(host::Args) {
    if (!isOpen_) return 0;
    data_.clear();
    return 1;
}

Variant Clipboard::SetClipboardData(host::Args args) {
    const std::int32_t format = numberAt(args, 0);
    const std::int32_t handle = numberAt(args, 1);
    if (!isOpen_ || format < 1 || format > lastRegistered) return 0;
    auto block = memory_.take(handle);
    if (!block) return 0;
    data_.insert_or_assign(format, std::move(*block));
    return handle;
}

Variant Clipboard::CloseClipboard(host::Args) {
    return std::exchange(isOpen_, false) ? 1 : 0;
}

Variant Clipboard::GlobalAlloc(host::Args args) {
    const std::int32_t flags = numberAt(args, 0);
    const std::int32_t size = numberAt(args, 1);
    return refusesAlloc_ ? 0 : memory_.allocate(flags, size);
}

Variant Clipboard::GlobalLock(host::Args args) {
    const std::int32_t handle = numberAt(args, 0);
    return refusesLock_ ? 0 : memory_.lock(handle);
}

Variant Clipboard::GlobalUnlock(host::Args args) {
    memory_.unlock(numberAt(args, 0));
    return {};
}

Variant Clipboard::RtlMoveMemory(host::Args args) {
    memory_.write(numberAt(args, 0), host::requiredArgument(args, 1).toBytes());
    return {};
}

/// The number of a format by name, registered where it is new; 0 where there is no name or no number left.
std::int32_t Clipboard::formatNamed(std::u16string_view name) {
    if (name.empty()) return 0;
    const auto row = std::ranges::find_if(registered_, [&](const std::u16string& known) { return host::equalsIgnoreCase(known, name); });
    const auto number = static_cast<std::int32_t>(firstRegistered + (row - registered_.begin()));
    if (number > lastRegistered) return 0;
    if (row == registered_.end()) registered_.emplace_back(name);
    return number;
}

std::u16string Clipboard::formatName(std::int32_t format) const {
    if (format == unicodeTextFormat) return std::u16string(unicodeText);
    if (format == ansiTextFormat) return std::u16string(ansiText);
    const auto index = static_cast<std::size_t>(format) - static_cast<std::size_t>(firstRegistered);
    return format >= firstRegistered && index < registered_.size() ? registered_[index] : u"#" + host::decimal(format);
}

const Bytes* Clipboard::find(std::int32_t format) const noexcept {
    const auto found = data_.find(format);
    return found == data_.end() ? nullptr : &found->second;
}

std::map<std::u16string, Bytes> Clipboard::formats() const {
    std::map<std::u16string, Bytes> named;
    for (const auto& [format, bytes] : data_) named.emplace(formatName(format), bytes);
    return named;
}

std::optional<std::u16string> Clipboard::text() const {
    if (const Bytes* block = find(unicodeTextFormat)) return textOfBlock(*block);
    const Bytes* block = find(ansiTextFormat);
    if (!block) return std::nullopt;
    return codePage_->decode(Bytes(block->begin(), std::ranges::find(*block, 0)));
}

std::optional<Bytes> Clipboard::html() const {
    for (const auto& [format, bytes] : data_) {
        if (host::equalsIgnoreCase(formatName(format), htmlFormat)) return bytes;
    }
    return std::nullopt;
}

void Clipboard::replace(const std::map<std::u16string, Bytes>& formats) {
    data_.clear();
    for (const auto& [name, bytes] : formats) {
        const std::int32_t format = name == unicodeText ? unicodeTextFormat : name == ansiText ? ansiTextFormat : formatNamed(name);
        if (format == 0) throw host::HostError(host::runtime_error::InvalidProcedureCall, u"A format of the clipboard needs a name.");
        data_.insert_or_assign(format, bytes);
    }
}

void Clipboard::replaceText(std::u16string_view text) {
    data_.clear();
    data_.emplace(unicodeTextFormat, blockOfText(text));
}

void Clipboard::replaceContent(const std::optional<std::u16string>& text, const std::optional<Bytes>& html) {
    data_.clear();
    if (text) data_.emplace(unicodeTextFormat, blockOfText(*text));
    if (html) data_.emplace(formatNamed(htmlFormat), *html);
}

}  // namespace lorvane::services
