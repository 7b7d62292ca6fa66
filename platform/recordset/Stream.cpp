#include "recordset/Stream.h"

#include <limits>
#include <utility>

#include "host/TextFunctions.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {

using host::Args;
using host::Member;
using host::Variant;

namespace {

constexpr char16_t byteOrderMark = u'\uFEFF';
constexpr std::int32_t readAll = -1, readLine = -2, writeLine = 1;

constexpr Member ownMember(int offset) {
    return static_cast<Member>(host::platformMembers + 0x120 + offset);
}

constexpr Member memberSize = ownMember(0), memberEos = ownMember(1), memberSetEos = ownMember(2), memberState = ownMember(3);

constexpr std::pair<std::u16string_view, Member> ownMembers[] = {
    {u"Size", memberSize}, {u"EOS", memberEos}, {u"SetEOS", memberSetEos}, {u"State", memberState}};

std::int32_t bytesOf(std::size_t units) noexcept {
    return static_cast<std::int32_t>(2 * units);
}

}  // namespace

void Stream::requireOpen() const {
    if (!isOpen_) raise(error::Closed);
}

void Stream::open() {
    if (isOpen_) raise(error::Open);
    isOpen_ = true;
}

void Stream::close() {
    requireOpen();
    isOpen_ = false;
    units_ = {};
    at_ = 0;
}

void Stream::write(std::u16string_view text) {
    requireOpen();
    if (units_.size() + text.size() >= std::numeric_limits<std::int32_t>::max() / 2) raise(error::BadArgument);
    if (at_ == 0) {
        if (units_.empty()) units_ += byteOrderMark;
        passMark();
    }
    units_.replace(at_, text.size(), text);
    at_ += text.size();
}

std::u16string Stream::readRest() {
    requireOpen();
    passMark();
    return units_.substr(std::exchange(at_, units_.size()));
}

void Stream::passMark() noexcept {
    if (at_ == 0 && units_.starts_with(byteOrderMark)) at_ = 1;
}

std::u16string Stream::read(Args args) {
    requireOpen();
    const Variant& asked = host::argumentAt(args, 0);
    const std::int32_t count = asked.isMissing() ? readAll : asked.toInt32();
    if (count == readAll) return readRest();
    if (count < readLine) raise(error::BadArgument);
    passMark();
    std::u16string text;
    if (count == readLine) {
        const std::size_t end = units_.find(host::CrLf, at_);
        if (end == std::u16string::npos) return readRest();
        text = units_.substr(at_, end - at_);
        at_ = end + host::CrLf.size();
    } else {
        text = units_.substr(at_, static_cast<std::size_t>(count));
        at_ += text.size();
    }
    return text;
}

void Stream::setPosition(std::int32_t bytes) {
    requireOpen();
    if (bytes < 0 || bytes % 2 != 0 || static_cast<std::size_t>(bytes) > 2 * units_.size()) raise(error::BadArgument);
    at_ = static_cast<std::size_t>(bytes) / 2;
}

Variant Stream::get(Member member, Args args) {
    if (member == memberState) return std::int32_t{isOpen_ ? 1 : 0};
    if (member == Member::ReadText || member == Member::WriteText || member == Member::Open || member == Member::Close || member == memberSetEos)
        return call(member, args);
    if (member != Member::Position && member != memberSize && member != memberEos) host::raiseNoSuchMember(className(), member);
    requireOpen();
    if (member == Member::Position) return bytesOf(at_);
    if (member == memberSize) return bytesOf(units_.size());
    return at_ == units_.size();
}

void Stream::put(Member member, const Variant& value, Args) {
    if (member != Member::Position) host::raiseNoSuchMember(className(), member);
    setPosition(value.toInt32());
}

Variant Stream::call(Member member, Args args) {
    switch (member) {
        case Member::Open:
            // A source would be a file or a record at some address; this stream is memory.
            if (!host::argumentAt(args, 0).isMissing()) raise(error::NotSupported);
            open();
            return {};
        case Member::Close:
            close();
            return {};
        case Member::ReadText:
            return read(args);
        case Member::WriteText: {
            const Variant& options = host::argumentAt(args, 1);
            const std::int32_t option = options.isMissing() ? 0 : options.toInt32();
            if (option != 0 && option != writeLine) raise(error::BadArgument);
            std::u16string text = host::requiredArgument(args, 0).toText();
            if (option == writeLine) text.append(host::CrLf);
            write(text);
            return {};
        }
        default:
            break;
    }
    if (member != memberSetEos) return get(member, args);
    requireOpen();
    units_.resize(at_);
    return {};
}

std::optional<Member> Stream::memberNamed(std::u16string_view name) const {
    for (const auto& [own, member] : ownMembers) {
        if (host::equalsIgnoreCase(own, name)) return member;
    }
    return Dispatch::memberNamed(name);
}

host::Object makeStream() {
    return host::makeObject<Stream>();
}

}  // namespace lorvane::recordset
