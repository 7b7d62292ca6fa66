#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "services/CodePage.h"
#include "services/GlobalMemory.h"
#include "services/ServiceObject.h"

namespace lorvane::services {

/// The clipboard behind the surface (`host::Clipboard`): any number of formats, each a block of bytes.
///
/// `SetText` and `Clear` replace all, and are error 521 while the clipboard cannot be opened. The platform's own steps answer 0 where they fail, as there:
/// opening an open clipboard; emptying it or setting data while it is closed; an unknown handle; a block that `SetClipboardData` took belongs to the clipboard,
/// its handle means nothing any more. Only `RtlMoveMemory` beyond a block raises, error 5: on the platform that is the end of the program.
/// Formats are registered by name, any case, from 0xC000 on.
class Clipboard final : public ServiceObject<Clipboard> {
public:
    static constexpr std::u16string_view unicodeText = u"CF_UNICODETEXT", ansiText = u"CF_TEXT", htmlFormat = u"HTML Format";
    static constexpr std::int32_t cannotOpen = 521;

    /// `codePage` is that of CF_TEXT.
    explicit Clipboard(std::shared_ptr<const CodePage> codePage);

    std::u16string_view className() const noexcept override { return u"Clipboard"; }
    static std::span<const Row> rows() noexcept;

    /// All formats by name; a number without a name is "#17". Text ends with a zero, as blocks of text do.
    std::map<std::u16string, host::Bytes> formats() const;
    /// The text up to its first zero; none where there is none.
    std::optional<std::u16string> text() const;
    /// The block of "HTML Format".
    std::optional<host::Bytes> html() const;

    /// What another program does: replaces all formats. Refusals do not hold for it.
    void replace(const std::map<std::u16string, host::Bytes>& formats);
    void replaceText(std::u16string_view text);
    /// Text and a block of "HTML Format" in the place of all that lies there; nothing stays where both are missing.
    void replaceContent(const std::optional<std::u16string>& text, const std::optional<host::Bytes>& html);
    void clear() noexcept { data_.clear(); }

    /// From now on the step answers 0, as where the platform refuses it.
    void refuseRegistration(bool refused) noexcept { refusesRegistration_ = refused; }
    void refuseOpen(bool refused) noexcept { refusesOpen_ = refused; }
    void refuseAlloc(bool refused) noexcept { refusesAlloc_ = refused; }
    void refuseLock(bool refused) noexcept { refusesLock_ = refused; }

private:
    host::Variant Clear(host::Args args);
    host::Variant SetText(host::Args args);
    host::Variant RegisterClipboardFormat(host::Args args);
    host::Variant OpenClipboard(host::Args args);
    host::Variant EmptyClipboard(host::Args args);
    host::Variant SetClipboardData(host::Args args);
    host::Variant CloseClipboard(host::Args args);
    host::Variant GlobalAlloc(host::Args args);
    host::Variant GlobalLock(host::Args args);
    host::Variant GlobalUnlock(host::Args args);
    host::Variant RtlMoveMemory(host::Args args);

    void requireOpening() const;
    std::int32_t formatNamed(std::u16string_view name);
    std::u16string formatName(std::int32_t format) const;
    const host::Bytes* find(std::int32_t format) const noexcept;

    std::shared_ptr<const CodePage> codePage_;
    GlobalMemory memory_;
    std::vector<std::u16string> registered_;
    std::map<std::int32_t, host::Bytes> data_;
    bool isOpen_ = false;
    bool refusesRegistration_ = false, refusesOpen_ = false, refusesAlloc_ = false, refusesLock_ = false;
};

}  // namespace lorvane::services
