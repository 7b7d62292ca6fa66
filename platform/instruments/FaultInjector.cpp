#include "instruments/FaultInjector.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "host/TextFunctions.h"
#include "instruments/Decorator.h"

namespace lorvane::instruments {

using host::HostError;

namespace {

HostError failure(std::int32_t number, std::u16string_view description) {
    return description.empty() ? HostError(number) : HostError(number, std::u16string(description));
}

void requireCount(std::size_t n) {
    if (n == 0) throw HostError(host::runtime_error::InvalidProcedureCall);
}

/// "MailItem.Save" means a member of a class; an empty part means any.
struct MemberFault {
    std::u16string className, member;
    std::size_t remaining;
    HostError error;

    bool means(const Use& use) const {
        return (className.empty() || host::equalsIgnoreCase(className, use.object.className())) &&
               (member.empty() || host::equalsIgnoreCase(member, use.object.memberText(use.member)));
    }
};

struct CallFault {
    std::size_t n;
    HostError error;
};

}  // namespace

class FaultInjector::Plan final : public Tap {
public:
    host::Variant onUse(const Use& use, const std::function<host::Variant()>& proceed) override {
        ++uses;
        // Each plan counts this use, whichever of them strikes.
        if (losses.erase(uses) > 0) lost_.emplace_back(&use.object.undecorated());
        const std::optional<HostError> byMember = struck(use);
        const auto byCall = std::ranges::find(callFaults, uses, &CallFault::n);

        std::optional<HostError> error;
        if (isLost(use.object))
            error = HostError(host::host_failure::NotFound);
        else if (byCall != callFaults.end())
            error = byCall->error;
        else
            error = byMember;
        if (!error) return proceed();
        ++failures;
        throw HostError(*error);
    }

    void onAdvise(host::Dispatch& object) override {
        if (isLost(object)) throw HostError(host::host_failure::NotFound);
    }

    void clear() {
        memberFaults.clear();
        callFaults.clear();
        losses.clear();
        lost_.clear();
        uses = failures = 0;
    }

    std::size_t uses = 0, failures = 0;
    std::vector<MemberFault> memberFaults;
    std::vector<CallFault> callFaults;
    std::set<std::size_t> losses;

private:
    /// Counts the use for every member fault; gives the first that it strikes.
    std::optional<HostError> struck(const Use& use) {
        std::optional<HostError> error;
        for (MemberFault& fault : memberFaults) {
            if (!fault.means(use) || --fault.remaining > 0) continue;
            if (!error) error = fault.error;
        }
        std::erase_if(memberFaults, [](const MemberFault& fault) { return fault.remaining == 0; });
        return error;
    }

    bool isLost(const host::Dispatch& object) const noexcept {
        return std::ranges::any_of(lost_, [&](const host::Object& lost) { return lost.dispatch()->identity() == object.identity(); });
    }

    std::vector<host::Object> lost_;  // held, so that no new object gets the identity of a lost one
};

FaultInjector::FaultInjector() : plan_(std::make_shared<Plan>()) {}

host::Object FaultInjector::decorate(const host::Object& object) const {
    return decorated(object, plan_);
}

void FaultInjector::failNth(std::u16string_view className, std::u16string_view member, std::size_t nth, std::int32_t number, std::u16string_view description) {
    requireCount(nth);
    plan_->memberFaults.push_back({std::u16string(className), std::u16string(member), nth, failure(number, description)});
}

void FaultInjector::failCall(std::size_t n, std::int32_t number, std::u16string_view description) {
    requireCount(n);
    plan_->callFaults.push_back({n, failure(number, description)});
}

void FaultInjector::loseObjectAt(std::size_t n) {
    requireCount(n);
    plan_->losses.insert(n);
}

std::size_t FaultInjector::uses() const noexcept {
    return plan_->uses;
}

std::size_t FaultInjector::failures() const noexcept {
    return plan_->failures;
}

void FaultInjector::clear() {
    plan_->clear();
}

}  // namespace lorvane::instruments
