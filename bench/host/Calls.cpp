// What a late-bound get and call cost beside a virtual call that does the same.
// Usage: bench_host [--smoke]

#include "host/Adodb.h"
#include "host/HostError.h"
#include "host/Object.h"
#include "host/Outlook.h"
#include "host/Variant.h"
#include "mailstore/ItemRecord.h"
#include "support/Measure.h"
#include "support/Store.h"

namespace {

using namespace lorvane;
using namespace lorvane::bench;
using host::Member;
using host::Variant;

class Counter {
public:
    virtual ~Counter() = default;
    virtual std::int32_t count() = 0;
};

class OneCounter final : public Counter {
public:
    std::int32_t count() override { return ++count_; }

private:
    std::int32_t count_ = 0;
};

/// The same, reached late.
class LateCounter final : public host::Dispatch {
public:
    Variant get(Member member, host::Args) override {
        if (member != Member::Count) host::raiseNoSuchMember(className(), member);
        return ++count_;
    }
    void put(Member member, const Variant&, host::Args) override { host::raiseNoSuchMember(className(), member); }
    Variant call(Member member, host::Args args) override { return member == Member::Item ? Variant(count_ += args[0].value().toInt32()) : get(member, args); }
    std::u16string_view className() const noexcept override { return u"Counter"; }

private:
    std::int32_t count_ = 0;
};

template <class F>
Work times(int count, F work) {
    return {[count, work] {
        for (int i = 0; i < count; ++i) work();
    }};
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = argumentsOf(argc, argv);
    if (arguments.folder.empty()) return std::fputs("usage: bench_host FOLDER [--smoke]\n", stderr), 2;
    try {
        const int count = arguments.smoke ? 10'000 : 1'000'000;
        cli::Run run(runOptions(std::filesystem::path(arguments.folder) / "host"));
        const std::unique_ptr<Counter> counter = std::make_unique<OneCounter>();
        Counter* volatile hidden = counter.get();
        const host::Object late = host::makeObject<LateCounter>();
        mailstore::ItemRecord record;
        record.head.subject = u"Quotation for the second quarter";
        const host::MailItem item(run.driver().receive(record));
        const host::Recordset table = host::makeRecordset();
        table.appendField(u"strSubject", host::adVarChar, 1000);
        table.Open();
        const host::Field subject = table.Fields(u"strSubject");
        table.AddNew();
        subject.Value(u"Quotation for the second quarter");
        table.Update();
        const std::vector<double> medians =
            mediansInTurns(arguments.rounds(), {times(count, [&] { use(hidden->count()); }), times(count, [&] { use(late.getNumber(Member::Count)); }),
                                                times(count, [&] { use(late.call(Member::Item, {1}).toInt32()); }), times(count, [&] { use(item.Class()); }),
                                                times(count, [&] { use(item.Subject().size()); }), times(count, [&] { use(table.EndOfFile()); }),
                                                times(count, [&] { use(subject.text().size()); })});
        const char* const names[] = {"",
                                     "late-bound get of a number",
                                     "late-bound call with an argument",
                                     "get of the model: Class of a mail",
                                     "get of the model: Subject of a mail",
                                     "get of a table: EOF",
                                     "get of a table: a field's text"};
        for (std::size_t i = 1; i < medians.size(); ++i) printTimes(names[i], medians[i] / count, "virtual call", medians[0] / count);
    } catch (const host::HostError& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
