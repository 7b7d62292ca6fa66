#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/Member.h"
#include "host/Object.h"
#include "host/Variant.h"

namespace lorvane::recordset {

/// The object "ADODB.Stream": text in memory, kept as UTF-16 with a byte order mark in front.
///
/// `Position` and `Size` count bytes, the mark among them, so that a position is even; reading at 0 passes over the mark, and the first write puts it there.
/// Writing in front of the end replaces what stands there and cuts nothing off. A closed stream raises `Closed` (3704) and one opened again `Open` (3705).
/// A position outside the stream is `BadArgument` (3001).
class Stream final : public host::Dispatch {
public:
    host::Variant get(host::Member member, host::Args args) override;
    void put(host::Member member, const host::Variant& value, host::Args args) override;
    host::Variant call(host::Member member, host::Args args) override;
    std::optional<host::Member> memberNamed(std::u16string_view name) const override;
    std::u16string_view className() const noexcept override { return u"Stream"; }

    bool isOpen() const noexcept { return isOpen_; }
    void open();
    void close();
    /// At the position, which is behind it afterwards.
    void write(std::u16string_view text);
    /// From the position to the end, which is the position afterwards.
    std::u16string readRest();

private:
    void requireOpen() const;
    std::u16string read(host::Args args);
    void passMark() noexcept;
    void setPosition(std::int32_t bytes);

    bool isOpen_ = false;
    std::u16string units_;
    std::size_t at_ = 0;
};

/// A new, closed stream.
host::Object makeStream();

}  // namespace lorvane::recordset
