#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Object.h"
#include "host/Variant.h"
#include "instruments/Tap.h"

namespace lorvane::instruments {

/// One use of a member, in the order the uses began; or a note, which has a text alone.
struct RecordedCall {
    std::u16string className, member;
    UseKind kind = UseKind::Get;
    std::vector<host::Variant>
        arguments;  ///< as they were passed, what is put as the last; an object is the name of its class, so that the log keeps none alive
    std::optional<host::Variant::Kind> result;  ///< none while the use runs, and where it failed
    std::optional<std::int32_t> error;          ///< the number of the HostError it ended in
    std::u16string text;                        ///< `put MailItem.Subject "x"`, without the failure
};

/// The stream that a recorder prints on unless told otherwise: standard error where the environment variable LORVANE_LOG is set and not empty, else none.
std::ostream* environmentLog();

/// One ordered log of what is done with a set of objects: those decorated, and all that come out of them.
///
///     Recorder recorder;
///     ApartmentScope scope(recorder.decorate(machine));
///     …
///     EXPECT_EQ(recorder.lines(), (Lines{"get Application.ActiveInspector", "call Inspector.Activate"}));
///
/// The environment variable LORVANE_LOG prints each use on standard error as it begins, and its failure as it ends. For one thread.
class Recorder {
public:
    explicit Recorder(std::ostream* echo = environmentLog());

    host::Object decorate(const host::Object& object) const;

    const std::vector<RecordedCall>& calls() const noexcept;
    std::size_t held() const noexcept;       ///< how many of the objects that came out of the decorated ones their users still hold; `Tap::held`
    std::vector<std::string> lines() const;  ///< `lineText` of each
    std::string text() const;                ///< the lines, each with "\n" behind it
    void clear();
    /// Forgets the oldest from now on: about this many, and at most twice as many, stay. 0 keeps all, as it is unless told.
    void keepLast(std::size_t count);

    /// A line of its own among the uses, as what the user did in between.
    void note(std::u16string_view text);

    /// Leaves the uses of a class out of the log from now on, or those of one of its members; an empty name means all. Any case.
    void leaveOut(std::u16string_view className, std::u16string_view member = {});

private:
    class Log;
    std::shared_ptr<Log> log_;
};

/// A recorded use on one line, in UTF-8: `get NameSpace.GetFolderFromID "00A1"`, with ` -> error n` behind where it failed.
std::string lineText(const RecordedCall& call);

}  // namespace lorvane::instruments
