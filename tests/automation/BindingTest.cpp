#include <gtest/gtest.h>

#include "host/Outlook.h"
#include "host/RoutineBinding.h"
#include "host/TextFunctions.h"

/// Functions called by arguments that come late.
namespace lorvane::host {
namespace {

enum class Choice : std::int32_t { None, Some };

std::u16string joined(std::u16string_view text, std::int32_t number, bool flag, double part, Choice choice) {
    return std::u16string(text) + decimal(number) + (flag ? u"!" : u"?") + Variant(part).toText() + (choice == Choice::Some ? u" some" : u" none");
}
void doubleInPlace(std::u16string& text, std::int32_t& count, const std::u16string& more) {
    text += more;
    count *= 2;
}
std::int32_t classOf(const MailItem& item) {
    return item ? 1 : 0;
}
std::optional<std::int32_t> lastRow;
void takeRow(std::optional<std::int32_t> row) {
    lastRow = row;
}
Choice other(Choice choice) {
    return choice == Choice::Some ? Choice::None : Choice::Some;
}

constexpr Routine rows[] = {
    routine<&joined>(u"Module", u"joined", u"text, number, [flag], [part], [choice]"),
    routine<&doubleInPlace>(u"Module", u"doubleInPlace", u"text, count, more"),
    routine<&classOf>(u"Module", u"classOf", u"item"),
    routine<&takeRow>(u"Module", u"takeRow", u"[row]"),
    routine<&other>(u"Module", u"other", u"choice"),
};

Variant run(const Routine& row, std::initializer_list<Argument> args) {
    const Args span(args.begin(), args.size());
    requireArguments(row.parameters, span);
    return row.run(span);
}

std::int32_t errorOf(const Routine& row, std::initializer_list<Argument> args) {
    try {
        run(row, args);
        return 0;
    } catch (const HostError& error) {
        return error.number();
    }
}

TEST(RoutineBinding, ArgumentsAreConvertedAsAutomationDoes) {
    EXPECT_EQ(run(rows[0], {u"a", u"12", -1, 1.5, 1}), Variant(u"a12!1.5 some"));
    EXPECT_EQ(run(rows[0], {7, 1.5, u"False", u"2", 0}), Variant(u"72?2 none")) << "half to even";
    EXPECT_EQ(errorOf(rows[0], {u"a", u"x"}), runtime_error::TypeMismatch);
    EXPECT_EQ(errorOf(rows[0], {u"a", 3e9}), runtime_error::Overflow);
}

TEST(RoutineBinding, WhatMayBeLeftOutIsEmptyAndTheRestMustBeThere) {
    EXPECT_EQ(run(rows[0], {u"a", 1}), Variant(u"a1?0 none"));
    EXPECT_EQ(run(rows[0], {u"a", 1, Variant::missing(), 2.0}), Variant(u"a1?2 none"));
    EXPECT_EQ(errorOf(rows[0], {u"a"}), runtime_error::ArgumentNotOptional);
    EXPECT_EQ(errorOf(rows[0], {Variant::missing(), 1}), runtime_error::ArgumentNotOptional);
    EXPECT_EQ(errorOf(rows[0], {u"a", 1, true, 1, 1, 1}), 450);
}

TEST(RoutineBinding, ArgumentsByReferenceComeBackAndTheOthersStay) {
    Variant text(u"a"), count(u"21"), more(u"b");
    run(rows[1], {Argument::byReference(text), Argument::byReference(count), Argument::byReference(more)});
    EXPECT_EQ(text, Variant(u"ab"));
    EXPECT_EQ(count, Variant(42));
    EXPECT_EQ(more, Variant(u"b"));
    EXPECT_NO_THROW(run(rows[1], {u"a", 1, u"b"})) << "by value nothing comes back";
}

TEST(RoutineBinding, ObjectsOptionalNumbersAndEnumeratorsHaveTheirForms) {
    EXPECT_EQ(run(rows[2], {Object()}), Variant(0));
    EXPECT_EQ(run(rows[2], {Variant()}), Variant(0));
    EXPECT_EQ(errorOf(rows[2], {u"text"}), runtime_error::TypeMismatch);
    run(rows[3], {3});
    EXPECT_EQ(lastRow, 3);
    run(rows[3], {});
    EXPECT_EQ(lastRow, std::nullopt);
    EXPECT_EQ(run(rows[4], {1}), Variant(0));
}

TEST(RoutineBinding, ParametersAreFoundByNameInAnyCase) {
    EXPECT_EQ(parameterIndex(rows[0].parameters, u"TEXT"), 0U);
    EXPECT_EQ(parameterIndex(rows[0].parameters, u"choice"), 4U);
    EXPECT_EQ(parameterIndex(rows[0].parameters, u"[choice]"), std::nullopt);
    EXPECT_EQ(parameterIndex(u"", u"text"), std::nullopt);
    EXPECT_EQ(parameterCount(u""), 0U);
    EXPECT_EQ(parameterCount(u"a"), 1U);
}

}  // namespace
}  // namespace lorvane::host
