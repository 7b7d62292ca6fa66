#include "contract/HostFixture.h"

/// Tasks and appointments as open items: always rich text.
namespace lorvane::contract {

class OpenTask : public EachStore {
protected:
    static constexpr std::u16string_view classes[] = {u"IPM.Task", u"IPM.Appointment"};

    /// The shown window of an item with a body, with the caret at a place of it.
    Inspector openAt(std::u16string_view messageClass, std::u16string_view body, std::int32_t position) {
        const MailItem item = host().newItem(messageClass);
        item.Body(body);
        const Inspector inspector = host().open(item);
        person().focus(inspector, Field::Body, position);
        return inspector;
    }
    static MailItem saved(const Inspector& inspector) {
        inspector.CurrentItem().Save();
        return inspector.CurrentItem();
    }
};
INSTANTIATE_EACH_STORE(OpenTask);

TEST_P(OpenTask, IsRichInEveryRun) {
    for (const Editor run : {Editor::Plain, Editor::Html, Editor::Rich, Editor::Word}) {
        RunningHost running(GetParam(), {.editor = run});
        for (const std::u16string_view messageClass : classes) {
            const MailItem item = running.newItem(messageClass);
            EXPECT_EQ(item.GetInspector().EditorType(), editor_type::RichText);
            item.Body(u"Dear John");
            const Inspector inspector = running.open(item);
            EXPECT_EQ(inspector.EditorType(), editor_type::RichText);
            EXPECT_FALSE(truth(inspector, u"IsWordMail"));
            running.person().focus(inspector, Field::Body, -1);
            running.person().type(u"!");
            EXPECT_EQ(saved(inspector).Body(), u"Dear John!");
        }
    }
}

TEST_P(OpenTask, IsTheActiveWindowsItem) {
    openAt(u"IPM.Task", u"", 0);
    EXPECT_EQ(host().application().ActiveInspector().CurrentItem().Class(), item_class::Task);
    openAt(u"IPM.Appointment", u"", 0);
    EXPECT_EQ(host().application().ActiveInspector().CurrentItem().Class(), item_class::Appointment);
}

TEST_P(OpenTask, TypingReachesItsBodyOnSaveOnly) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"Dear {John}\r\nBye", 5);
        person().type(u"old ");
        EXPECT_EQ(inspector.CurrentItem().Body(), u"Dear {John}\r\nBye");
        EXPECT_EQ(person().shown(inspector, Field::Body), u"Dear old {John}\r\nBye");
        EXPECT_EQ(saved(inspector).Body(), u"Dear old {John}\r\nBye");
        EXPECT_EQ(host().again(inspector.CurrentItem()).Body(), u"Dear old {John}\r\nBye");
    }
}

TEST_P(OpenTask, SaveOfAWrapperCommitsToo) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"Dear ", -1);
        person().type(u"John");
        const SafeMailItem safe = makeSafePostItem(inspector.CurrentItem());
        safe.Save();
        EXPECT_EQ(safe.Body(), u"Dear John");
    }
}

TEST_P(OpenTask, TypingIsDelayedAsInMails) {
    start({.commitDelay = 1});
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"a", -1);
        person().type(u"b");
        EXPECT_EQ(saved(inspector).Body(), u"a");
        host().pump();
        EXPECT_EQ(saved(inspector).Body(), u"ab");
    }
}

TEST_P(OpenTask, ClosesEitherWay) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector dropped = openAt(messageClass, u"a", -1);
        const MailItem item = dropped.CurrentItem();
        person().type(u"b");
        dropped.Close(olDiscard);
        EXPECT_EQ(host().again(item).Body(), u"a");
        const Inspector kept = host().open(host().again(item));
        person().focus(kept, Field::Body, -1);
        person().type(u"c");
        kept.Close(olSave);
        EXPECT_EQ(host().again(item).Body(), u"ac");
    }
}

TEST_P(OpenTask, WritingTheBodyShowsInTheWindow) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"one three", 4);
        inspector.CurrentItem().Body(u"one two three");
        EXPECT_EQ(person().shown(inspector, Field::Body), u"one two three");
        person().type(u"X");
        EXPECT_EQ(saved(inspector).Body(), u"one two Xthree");
    }
}

TEST_P(OpenTask, SelTextReadsAndWritesItsSelection) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"one two\r\nthree", 0);
        const Object safe = makeSafeInspector(inspector);
        EXPECT_EQ(text(safe, u"SelText"), u"");
        person().select(inspector, 4, 4);
        EXPECT_EQ(text(safe, u"SelText"), u"two\r\n");
        put(safe, u"SelText", u"{2} ");
        EXPECT_EQ(inspector.CurrentItem().Body(), u"one two\r\nthree");
        EXPECT_EQ(saved(inspector).Body(), u"one {2} three");
        put(safe, u"SelText", u"X");
        EXPECT_EQ(saved(inspector).Body(), u"one {2} Xthree");
    }
}

TEST_P(OpenTask, PastingTakesTheText) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"ad", 1);
        person().setClipboard({.text = u"b {x}\r\nc", .htmlFormat = htmlBlock("<b>not this</b>")});
        host().sendKeys(u"^v");
        EXPECT_EQ(saved(inspector).Body(), u"ab {x}\r\ncd");
        person().type(u"X");
        EXPECT_EQ(saved(inspector).Body(), u"ab {x}\r\ncXd") << "the caret stands behind it";
    }
}

TEST_P(OpenTask, PastingElseTakesTheVisibleTextOfTheFragment) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"ad", 1);
        person().setClipboard({.htmlFormat = htmlBlock("<p>b <b>&amp;</b></p><p>c</p>")});
        host().sendKeys(u"^v");
        EXPECT_EQ(saved(inspector).Body(), u"ab &\r\ncd");
    }
}

TEST_P(OpenTask, PastingReplacesItsSelection) {
    for (const std::u16string_view messageClass : classes) {
        const Inspector inspector = openAt(messageClass, u"one two three", 0);
        person().select(inspector, 4, 3);
        person().setClipboard({.text = u"2"});
        host().sendKeys(u"^v");
        EXPECT_EQ(saved(inspector).Body(), u"one 2 three");
    }
}

TEST_P(OpenTask, HasRecipientsThroughEitherWrapper) {
    const Inspector inspector = openAt(u"IPM.Task", u"Dear John", 0);
    for (const SafeMailItem& safe : {makeSafePostItem(inspector.CurrentItem()), makeSafeMailItem(inspector.CurrentItem())}) {
        EXPECT_EQ(safe.Class(), item_class::Task);
        EXPECT_EQ(safe.Recipients().Count(), 0);
        EXPECT_TRUE(safe.Recipients().ResolveAll());
        EXPECT_EQ(safe.Body(), u"Dear John");
    }
}

TEST_P(OpenTask, OfAnAppointmentHasItsRecipientsThroughEitherWrapper) {
    person().addPerson({.name = u"John Public", .address = u"john@example.com", .given = u"John", .surname = u"Public"});
    const MailItem appointment = host().application().CreateItem(olAppointmentItem);
    addRecipient(appointment, u"John Public");
    addRecipient(appointment, u"jane@example.com");
    const Inspector inspector = host().open(appointment);
    for (const SafeMailItem& safe : {makeSafePostItem(inspector.CurrentItem()), makeSafeMailItem(inspector.CurrentItem())}) {
        ASSERT_EQ(safe.Recipients().Count(), 2);
        EXPECT_TRUE(safe.Recipients().ResolveAll());
        EXPECT_EQ(safe.Recipients().Item(1).Name(), u"John Public");
        EXPECT_EQ(text(safe.Recipients().Item(1), u"Address"), u"john@example.com");
        EXPECT_TRUE(safe.Recipients().Item(2).Resolved());
    }
    inspector.Close(olSave);
    const MailItem found = host().again(appointment);
    ASSERT_EQ(found.Recipients().Count(), 2);
    EXPECT_EQ(found.Recipients().Item(1).Name(), u"John Public");
    EXPECT_TRUE(found.Recipients().Item(1).Resolved());
}

}  // namespace lorvane::contract
