#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/Object.h"

namespace lorvane::instruments {

/// Lets chosen uses of objects fail, without the objects knowing: those decorated, and all that come out of them.
///
/// A use that is made to fail does not happen. Each failure strikes once, but a lost object stays lost. An empty description is the number's standard one.
/// For one thread.
///
///     FaultInjector faults;
///     ApartmentScope scope(faults.decorate(machine));
///     faults.failNth(u"MailItem", u"Save", 2, host_failure::AccessDenied);
class FaultInjector {
public:
    FaultInjector();

    host::Object decorate(const host::Object& object) const;

    /// The n-th coming use (from 1) of a member fails. An empty class or member means any; names in any case. `nth` below 1 is error 5.
    void failNth(std::u16string_view className, std::u16string_view member, std::size_t nth, std::int32_t number, std::u16string_view description = {});
    /// Use `n` of all, counted as `uses` does, fails; nothing where it is past. `n` below 1 is error 5.
    void failCall(std::size_t n, std::int32_t number, std::u16string_view description = {});
    /// The object of use `n` of all is lost with it: this use and every later one of any of its members, also through other handles, fail with 0x8004010F.
    void loseObjectAt(std::size_t n);

    std::size_t uses() const noexcept;      ///< since the beginning or the last `clear`, failed ones included
    std::size_t failures() const noexcept;  ///< how many uses were made to fail since then
    /// Forgets what was to fail and what is lost, and counts from 0 again.
    void clear();

private:
    class Plan;
    std::shared_ptr<Plan> plan_;
};

}  // namespace lorvane::instruments
