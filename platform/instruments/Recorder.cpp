#include "instruments/Recorder.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <utility>

#include "host/TextFunctions.h"
#include "instruments/Decorator.h"
#include "instruments/PassedArguments.h"
#include "instruments/ValueText.h"

namespace lorvane::instruments {

using host::Variant;

namespace {

std::u16string_view kindText(UseKind kind) noexcept {
    switch (kind) {
        case UseKind::Get:
            return u"get ";
        case UseKind::Put:
            return u"put ";
        default:
            return u"call ";
    }
}

std::string errorText(std::int32_t number) {
    return " -> error " + std::to_string(number);
}

/// The value without handles: objects are the names of their classes.
Variant withoutObjects(const Variant& value) {
    if (value.kind() == Variant::Kind::Object) {
        const host::Object object = value.toObject();
        return object ? Variant(object.dispatch()->className()) : Variant();
    }
    if (value.kind() != Variant::Kind::Array) return value;
    host::Array array = value.toArray();
    for (Variant& item : array.items) item = withoutObjects(item);
    return array;
}

RecordedCall recordedCall(const Use& use) {
    RecordedCall call;
    call.className = use.object.className();
    call.member = use.object.memberText(use.member);
    call.kind = use.kind;
    for (const host::Argument& argument : use.args) call.arguments.push_back(withoutObjects(argument.value()));
    if (use.value) call.arguments.push_back(withoutObjects(*use.value));

    call.text.append(kindText(use.kind)).append(call.className).append(u".").append(call.member);
    std::u16string shown = argumentsText(use.args);
    if (use.value) shown.append(shown.empty() ? u"" : u", ").append(valueText(*use.value));
    if (!shown.empty()) call.text.append(u" ").append(shown);
    return call;
}

}  // namespace

class Recorder::Log final : public Tap {
public:
    explicit Log(std::ostream* echo) : echo_(echo) {}

    Variant onUse(const Use& use, const std::function<Variant()>& proceed) override {
        if (isLeftOut(use)) return proceed();
        forgetOldest();
        const std::size_t number = begun_++;
        calls.push_back(recordedCall(use));
        // Kept apart: the log may be cleared before the use ends.
        const std::string line = echo_ ? lineText(calls.back()) : std::string();
        if (echo_) *echo_ << line << std::endl;
        try {
            Variant result = proceed();
            if (RecordedCall* call = find(number)) call->result = result.kind();
            return result;
        } catch (const host::HostError& error) {
            if (RecordedCall* call = find(number)) call->error = error.number();
            if (echo_) *echo_ << line << errorText(error.number()) << std::endl;
            throw;
        }
    }

    void note(std::u16string_view text) {
        ++begun_;
        calls.emplace_back().text = text;
        if (echo_) *echo_ << host::toUtf8(text) << std::endl;
    }

    void clear() {
        calls.clear();
        cleared_ = begun_;
    }

    void leaveOut(std::u16string_view className, std::u16string_view member) { leftOut_.push_back({std::u16string(className), std::u16string(member)}); }

    std::vector<RecordedCall> calls;
    std::size_t kept = 0;  // 0 for all

private:
    void forgetOldest() {
        if (kept == 0 || calls.size() < 2 * kept) return;
        calls.erase(calls.begin(), calls.end() - static_cast<std::ptrdiff_t>(kept));
        cleared_ = begun_ - kept;
    }

    struct LeftOut {
        std::u16string className, member;
    };

    bool isLeftOut(const Use& use) const {
        const auto means = [](std::u16string_view rule, std::u16string_view name) { return rule.empty() || host::equalsIgnoreCase(rule, name); };
        return std::ranges::any_of(leftOut_, [&](const LeftOut& rule) {
            return means(rule.className, use.object.className()) && means(rule.member, use.object.memberText(use.member));
        });
    }

    /// Null for a use whose entry was cleared away.
    RecordedCall* find(std::size_t number) noexcept { return number < cleared_ ? nullptr : &calls[number - cleared_]; }

    std::ostream* echo_;
    std::size_t begun_ = 0;
    std::size_t cleared_ = 0;  // how many had begun before the first that is still there
    std::vector<LeftOut> leftOut_;
};

std::ostream* environmentLog() {
    const char* wanted = std::getenv("LORVANE_LOG");
    return wanted && *wanted ? &std::cerr : nullptr;
}

Recorder::Recorder(std::ostream* echo) : log_(std::make_shared<Log>(echo)) {}

host::Object Recorder::decorate(const host::Object& object) const {
    return decorated(object, log_);
}

std::size_t Recorder::held() const noexcept {
    return log_->held();
}

const std::vector<RecordedCall>& Recorder::calls() const noexcept {
    return log_->calls;
}

std::vector<std::string> Recorder::lines() const {
    std::vector<std::string> lines;
    for (const RecordedCall& call : log_->calls) lines.push_back(lineText(call));
    return lines;
}

std::string Recorder::text() const {
    std::string text;
    for (const RecordedCall& call : log_->calls) text.append(lineText(call)).append("\n");
    return text;
}

void Recorder::clear() {
    log_->clear();
}

void Recorder::keepLast(std::size_t count) {
    log_->kept = count;
}

void Recorder::note(std::u16string_view text) {
    log_->note(text);
}

void Recorder::leaveOut(std::u16string_view className, std::u16string_view member) {
    log_->leaveOut(className, member);
}

std::string lineText(const RecordedCall& call) {
    return host::toUtf8(call.text) + (call.error ? errorText(*call.error) : std::string());
}

}  // namespace lorvane::instruments
