#include "contract/Answers.h"

/// An item tells its listeners of an answer before anybody else has it.
namespace lorvane::contract {

class AnswerEvents : public Answers {};
INSTANTIATE_EACH_STORE(AnswerEvents);

constexpr std::u16string_view events[] = {u"Reply", u"ReplyAll", u"Forward"};

void cancel(Args args) {
    args[1].assign(true);
}

TEST_P(AnswerEvents, EachMemberRaisesTheOneOfItsNameWithTheAnswer) {
    const MailItem mail = received();
    for (const std::u16string_view event : events) {
        const Connected connected(mail);
        Object response;
        connected.listener->reactions[std::u16string(event)] = [&](Args args) {
            response = argumentAt(args, 0).toObject();
            EXPECT_TRUE(args[1].isByReference());
            EXPECT_FALSE(argumentAt(args, 1).toBoolean());
            EXPECT_NE(MailItem(response).Body().find(u"-----Original Message-----"), std::u16string::npos) << "it is ready by then";
        };
        const MailItem answered = answer(mail, event);
        EXPECT_EQ(connected.listener->log, std::vector<std::u16string>{std::u16string(event)});
        EXPECT_EQ(response, answered);
    }
}

TEST_P(AnswerEvents, TheWrappersCallRaisesThemToo) {
    const MailItem mail = received();
    const Connected connected(mail);
    answer(makeSafeMailItem(mail), u"REPLY");
    EXPECT_EQ(connected.listener->log, std::vector<std::u16string>{u"Reply"});
}

TEST_P(AnswerEvents, APostHasThem) {
    const MailItem notice = post();
    const Connected connected(notice);
    answer(notice, u"Forward");
    EXPECT_EQ(connected.listener->log, std::vector<std::u16string>{u"Forward"});
}

TEST_P(AnswerEvents, WhatAListenerDoesToTheAnswerStays) {
    const MailItem mail = received();
    const Connected connected(mail);
    connected.listener->reactions[u"Reply"] = [](Args args) { MailItem(argumentAt(args, 0).toObject()).Subject(u"Answer"); };
    EXPECT_EQ(answer(mail, u"Reply").Subject(), u"Answer");
}

TEST_P(AnswerEvents, OneThatIsCancelledFailsAndLeavesNothing) {
    const MailItem mail = received();
    for (const std::u16string_view event : events) {
        const Connected connected(mail);
        MailItem response;
        connected.listener->reactions[std::u16string(event)] = [&](Args args) {
            response = MailItem(argumentAt(args, 0).toObject());
            cancel(args);
        };
        for (const Object& each : {Object(mail), Object(makeSafeMailItem(mail))}) {
            const HostError error = errorOf([&] { call(each, event); });
            EXPECT_LT(error.number(), 0);
            EXPECT_EQ(error.description(), u"The answer was cancelled.");
            EXPECT_NEGATIVE_ERROR(response.Subject());
        }
    }
    EXPECT_EQ(drafts(), 0);
    EXPECT_TRUE(truth(mail, u"Saved"));
    EXPECT_EQ(answer(mail, u"Reply").Subject(), u"RE: A question") << "with no listener any more";
}

TEST_P(AnswerEvents, OneThatIsCancelledGoesAlsoWhereItWasSavedAndShown) {
    const MailItem mail = received();
    const Connected connected(mail);
    connected.listener->reactions[u"Reply"] = [](Args args) {
        const MailItem response(argumentAt(args, 0).toObject());
        response.Save();
        response.Display();
        cancel(args);
    };
    EXPECT_NEGATIVE_ERROR(call(mail, u"Reply"));
    EXPECT_EQ(drafts(), 0);
    EXPECT_EQ(host().folder(default_folder::DeletedItems).Items().Count(), 0);
    EXPECT_EQ(host().application().Inspectors().Count(), 0);
}

TEST_P(AnswerEvents, OneThatTheListenerDeletedMayStillBeCancelled) {
    const MailItem mail = received();
    const Connected connected(mail);
    connected.listener->reactions[u"Reply"] = [](Args args) {
        MailItem(argumentAt(args, 0).toObject()).Delete();
        cancel(args);
    };
    EXPECT_EQ(errorOf([&] { call(mail, u"Reply"); }).description(), u"The answer was cancelled.");
}

TEST_P(AnswerEvents, TheWrapperMayLoseItsItemMeanwhile) {
    MailItem mail = received();
    const Connected connected(mail);
    SafeMailItem safe = makeSafeMailItem(mail);
    mail = {};
    connected.listener->reactions[u"Reply"] = [&](Args) { safe.Item(Object()); };
    EXPECT_EQ(answer(safe, u"REPLY").Subject(), u"RE: A question");
}

TEST_P(AnswerEvents, ADraftRaisesNoneWhereItCannotBeRepliedTo) {
    const MailItem draft = host().savedItem(u"Offer");
    const Connected connected(draft);
    EXPECT_NEGATIVE_ERROR(call(draft, u"Reply"));
    EXPECT_TRUE(connected.listener->log.empty());
}

}  // namespace lorvane::contract
