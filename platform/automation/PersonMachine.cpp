#include <cmath>

#include "automation/Person.h"
#include "automation/Records.h"
#include "host/Locale.h"
#include "host/TextFunctions.h"

/// The machine that a person sits at: its time, its clipboard, and the instruments on it.
namespace lorvane::automation {

using host::Variant;

namespace {

constexpr double longestAdvance = 366.0 * 24 * 60 * 60 * 1000;  // milliseconds: a year

[[noreturn]] void refuse(std::u16string sentence) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall, std::move(sentence));
}

std::u16string_view kindName(instruments::UseKind kind) noexcept {
    switch (kind) {
        case instruments::UseKind::Get:
            return u"get";
        case instruments::UseKind::Put:
            return u"put";
        default:
            return u"call";
    }
}

Variant recordOf(const instruments::RecordedCall& call) {
    std::vector<host::Record::Field> fields = {
        {u"class", call.className}, {u"member", call.member}, {u"kind", kindName(call.kind)}, {u"arguments", host::Array{1, call.arguments}}};
    if (call.error) fields.emplace_back(u"error", *call.error);
    return record(std::move(fields));
}

}  // namespace

VirtualClock& Person::virtualClock() const {
    if (!machine_.clock) refuse(u"The clock is the machine's own; only with --now it can be set.");
    return *machine_.clock;
}

void Person::SetClock(const Variant& moment) {
    VirtualClock& clock = virtualClock();
    clock.set(moment.kind() == Variant::Kind::Date ? moment.toDate() : host::dateTimeFromIso(moment.toText()), machine_.windows.desktop());
}

void Person::Advance(double milliseconds) {
    virtualClock();
    if (!(milliseconds <= longestAdvance)) throw host::HostError(host::runtime_error::Overflow);
    hands_.Advance(static_cast<std::int64_t>(std::floor(std::max(milliseconds, -1.0))));
}

Variant Person::Clipboard() const {
    std::vector<host::Record::Field> formats;
    for (const auto& [name, bytes] : machine_.clipboard.formats())
        formats.emplace_back(name, name == services::Clipboard::unicodeText ? Variant(machine_.clipboard.text().value_or(u"")) : Variant(bytes));
    return record(std::move(formats));
}

void Person::SetClipboard(const Variant& content) {
    const auto* formats = content.kind() == Variant::Kind::Object ? host::implementation<host::Record>(content.toObject()) : nullptr;
    if (!formats) return machine_.clipboard.replaceText(content.toText());
    std::map<std::u16string, host::Bytes> blocks;
    for (const auto& [name, value] : formats->fields()) {
        if (host::equalsIgnoreCase(name, services::Clipboard::unicodeText)) continue;
        blocks.emplace(name, value.toBytes());
    }
    const Variant* text = formats->find(services::Clipboard::unicodeText);
    machine_.clipboard.replaceText(text ? text->toText() : u"");
    auto whole = text ? machine_.clipboard.formats() : std::map<std::u16string, host::Bytes>();
    whole.merge(blocks);
    machine_.clipboard.replace(whole);
}

Variant Person::Calls() const {
    return listOf(machine_.instruments.recorder.calls(), recordOf);
}

void Person::Fail(std::u16string_view className, std::u16string_view member, std::int32_t nth, std::int32_t number, std::u16string_view description) {
    if (nth < 1) refuse(u"Uses are counted from 1.");
    machine_.instruments.faults.failNth(className, member, static_cast<std::size_t>(nth), number, description);
}

void Person::CommitDelay(std::int32_t pumps) {
    if (pumps < 0) refuse(u"A delay is 0 pumps or more.");
    machine_.driver.setCommitDelay(static_cast<std::uint32_t>(pumps));
}

}  // namespace lorvane::automation
