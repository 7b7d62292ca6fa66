#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Object.h"

namespace lorvane::services {

/// A single-byte code page, as text in files and on the clipboard is written in.
///
/// Each UTF-16 unit is one byte, "?" where the page lacks it, so that lengths and offsets are those of the text; each half of a surrogate pair counts.
class CodePage {
public:
    /// By its name in ICU, as "windows-1252". Error 5 for one that is not known or not single-byte.
    explicit CodePage(std::string_view name);

    const std::string& name() const noexcept { return name_; }
    host::Bytes encode(std::u16string_view text) const;
    std::u16string decode(const host::Bytes& bytes) const;  ///< U+FFFD for a byte that means nothing

private:
    struct Row {
        char16_t unit;
        std::uint8_t byte;
    };
    std::string name_;
    std::array<char16_t, 256> units_;
    std::vector<Row> bytes_;  // ordered by unit
};

/// The code page of a region, as "windows-1250" for "pl-PL"; windows-1252 where nothing else is known, and for regions whose own page is not single-byte.
std::string_view codePageOfRegion(std::u16string_view localeName) noexcept;

}  // namespace lorvane::services
