#include "contract/Answers.h"
#include "host/TextFunctions.h"

/// The mail that `Reply`, `ReplyAll` and `Forward` give, and the text that it quotes.
namespace lorvane::contract {

INSTANTIATE_EACH_STORE(Answers);

constexpr std::u16string_view members[] = {u"Reply", u"ReplyAll", u"Forward"};

/// The block above the quoted text of `Answers::received`, which came at the moment the host's clock begins with.
constexpr std::u16string_view block =
    u"\r\n\r\n-----Original Message-----\r\nFrom: Jane Sender [mailto:jane@example.com]\r\nSent: Tuesday, December 9, 2025 9:00:00 AM\r\nTo: \r\n"
    u"Subject: A question\r\n\r\n";
constexpr std::u16string_view markedBlock =
    u"<BR>\r\n<BR>\r\n-----Original Message-----<BR>\r\nFrom: Jane Sender [mailto:jane@example.com]<BR>\r\nSent: Tuesday, December 9, 2025 9:00:00 AM<BR>\r\n"
    u"To: <BR>\r\nSubject: A question<BR>\r\n<BR>\r\n";

TEST_P(Answers, AreNewMailsThatAreNeitherSavedNorShown) {
    const MailItem mail = received();
    for (const std::u16string_view member : members) {
        const MailItem answered = answer(mail, member);
        EXPECT_EQ(answered.Class(), item_class::Mail);
        EXPECT_EQ(answered.MessageClass(), u"IPM.Note");
        EXPECT_EQ(answered.EntryID(), u"");
        EXPECT_FALSE(answered.Sent());
        EXPECT_EQ(answered.SenderName(), u"");
        EXPECT_NE(answered, mail);
    }
    EXPECT_EQ(host().application().Inspectors().Count(), 0);
    EXPECT_EQ(drafts(), 0);
}

TEST_P(Answers, LieInDraftsOnceTheyAreSaved) {
    const MailItem reply = answer(received(), u"Reply");
    reply.Save();
    EXPECT_EQ(drafts(), 1);
    EXPECT_EQ(reply.Parent().EntryID(), host().folder(default_folder::Drafts).EntryID());
    EXPECT_EQ(host().again(reply).Body(), std::u16string(block) + u"How much is it?");
    EXPECT_EQ(recipientsOf(host().again(reply)), u"To: Jane Sender <jane@example.com>");
}

TEST_P(Answers, HaveASubjectWithTheirMarkInFront) {
    struct Case {
        std::u16string_view subject, reply, forward;
    };
    const Case cases[] = {{u"A question", u"RE: A question", u"FW: A question"},
                          {u"RE: A question", u"RE: A question", u"FW: RE: A question"},
                          {u"re: A question", u"re: A question", u"FW: re: A question"},
                          {u"FW: A question", u"RE: FW: A question", u"FW: A question"},
                          {u"Fw: A question", u"RE: Fw: A question", u"Fw: A question"},
                          {u"Regarding it", u"RE: Regarding it", u"FW: Regarding it"},
                          {u"RE", u"RE: RE", u"FW: RE"},
                          {u"", u"RE: ", u"FW: "}};
    for (const Case& each : cases) {
        const MailItem mail = person().receive({.subject = std::u16string(each.subject), .plain = u"x"});
        EXPECT_EQ(answer(mail, u"Reply").Subject(), each.reply);
        EXPECT_EQ(answer(mail, u"ReplyAll").Subject(), each.reply);
        EXPECT_EQ(answer(mail, u"Forward").Subject(), each.forward);
    }
}

TEST_P(Answers, QuotePlainTextBelowABlockAsItIs) {
    const std::u16string body = u"How much\nis it?\r\n\r\n  Jane \u00A0<x>\r\n";
    for (const std::u16string_view member : members) {
        const MailItem answered = answer(received(body), member);
        EXPECT_EQ(answered.BodyFormat(), body_format::Plain);
        EXPECT_EQ(answered.Body(), std::u16string(block) + body);
    }
}

TEST_P(Answers, NameThoseWhoWereWrittenTo) {
    const MailItem mail = received();
    goesTo(mail, olTo, {u"John Public <john@example.com>", u"bob@example.com"});
    EXPECT_NE(answer(mail, u"Forward").Body().find(u"\r\nTo: John Public; bob@example.com\r\nSubject: A question\r\n\r\nHow"), std::u16string::npos);
    goesTo(mail, olCC, {u"Ann <ann@example.com>"});
    EXPECT_NE(answer(mail, u"Forward").Body().find(u"\r\nTo: John Public; bob@example.com\r\nCc: Ann\r\nSubject: A question\r\n\r\nHow"), std::u16string::npos);
}

TEST_P(Answers, GiveTheSendersInternetAddressOrNone) {
    const auto from = [&](std::u16string_view address, std::u16string_view type) {
        const MailItem mail =
            person().receive({.plain = u"x", .senderName = u"Jane", .senderAddress = std::u16string(address), .senderAddressType = std::u16string(type)});
        const std::u16string body = answer(mail, u"Forward").Body();
        const std::size_t begin = body.find(u"From: ");
        return body.substr(begin, body.find(u"\r\n", begin) - begin);
    };
    EXPECT_EQ(from(u"jane@example.com", u"SMTP"), u"From: Jane [mailto:jane@example.com]");
    EXPECT_EQ(from(u"/o=Example/cn=jane", u"EX"), u"From: Jane");
    EXPECT_EQ(from(u"", u"SMTP"), u"From: Jane");
    person().addPerson({.name = u"Jane", .address = u"/o=Example/cn=jane", .type = u"EX", .proxies = {u"SMTP:jane@example.org"}});
    EXPECT_EQ(from(u"/o=Example/cn=jane", u"EX"), u"From: Jane [mailto:jane@example.org]");
}

TEST_P(Answers, QuoteHtmlDirectlyBehindTheBodyTagAndKeepTheRest) {
    struct Case {
        std::u16string_view head, rest;
    };
    const Case cases[] = {{u"<HTML><BODY>", u"How <B>much</B>?</BODY></HTML>"},
                          {u"<!DOCTYPE html>\n<html><head><style>body { x: y }</style><title>t</title></head>\n<body bgcolor=\"#fff\" title='a > b'>",
                           u"\n<p class=x>How &amp; much\n</p >\n</body>\n</html>\n"},
                          {u"<html><!-- <body> --><Body\nclass=a>", u"<table><tr><td>x</table>"},
                          {u"", u"<p>no body tag</p>"},
                          {u"", u"<html><head><title>t</title></head>text</html>"},
                          {u"", u"in front <body> behind"},
                          {u"", u""}};
    for (const Case& each : cases) {
        const MailItem mail = receivedHtml(std::u16string(each.head).append(each.rest));
        for (const std::u16string_view member : members) {
            const MailItem answered = answer(mail, member);
            EXPECT_EQ(answered.BodyFormat(), body_format::Html);
            EXPECT_EQ(answered.HTMLBody(), std::u16string(each.head).append(markedBlock).append(each.rest));
            EXPECT_TRUE(answered.Body().starts_with(u"\r\n\r\n-----Original Message-----\r\n"));
        }
    }
}

TEST_P(Answers, EscapeTheBlockInHtml) {
    const MailItem mail = person().receive({.subject = u"1 < 2 & <b>3</b>", .html = html(u"x"), .senderName = u"J <script> & Co"});
    const MailItem reply = answer(mail, u"Reply");
    EXPECT_NE(reply.HTMLBody().find(u"From: J &lt;script&gt; &amp; Co [mailto:jane@example.com]<BR>"), std::u16string::npos);
    EXPECT_NE(reply.HTMLBody().find(u"Subject: 1 &lt; 2 &amp; &lt;b&gt;3&lt;/b&gt;<BR>"), std::u16string::npos);
    EXPECT_NE(reply.Body().find(u"Subject: 1 < 2 & <b>3</b>\r\n\r\nx"), std::u16string::npos);
}

TEST_P(Answers, LeaveAnEmptyLineAboveTheBlockForTheCaret) {
    for (const MailItem& mail : {received(), receivedHtml(html(u"<P>How much is it?</P>")), receivedHtml(u"<p>How much is it?")}) {
        const MailItem reply = answer(mail, u"Reply");
        const Inspector inspector = host().open(reply);
        person().focus(inspector, Field::Body, 0);
        person().type(u"It is 10.");
        EXPECT_TRUE(person().shown(inspector, Field::Body).starts_with(u"It is 10.\r\n\r\n-----Original Message-----\r\n"));
        EXPECT_TRUE(person().shown(inspector, Field::Body).ends_with(u"Subject: A question\r\n\r\nHow much is it?"));
        inspector.Close(olSave);
    }
    EXPECT_EQ(drafts(), 3);
}

TEST_P(Answers, TakeWhatIsTypedDirectlyBehindTheBodyTag) {
    const Inspector inspector = host().open(answer(receivedHtml(html(u"How much?")), u"Reply"));
    person().focus(inspector, Field::Body, 0);
    person().type(u"<10>");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().HTMLBody(), html(u"&lt;10&gt;" + std::u16string(markedBlock) + u"How much?"));
}

TEST_P(Answers, QuoteRichTextByItsText) {
    const MailItem mail = received();
    put(makeSafeMailItem(mail), u"RTFBody", rtf(u"How {\\b much}\\par is it?"));
    mail.Save();
    for (const std::u16string_view member : members) {
        const MailItem answered = answer(mail, member);
        EXPECT_EQ(answered.BodyFormat(), body_format::RichText);
        EXPECT_EQ(answered.Body(), std::u16string(block) + u"How much\r\nis it?");
    }
}

TEST_P(Answers, WithoutTextHaveThatOfANewMail) {
    for (const Editor editor : {Editor::Plain, Editor::Html, Editor::Rich}) {
        RunningHost running(GetParam(), {.editor = editor});
        const MailItem reply = answer(running.person().receive({.subject = u"A question"}), u"Reply");
        EXPECT_EQ(reply.BodyFormat(), static_cast<std::int32_t>(editor));
        // A blank at the end of a line of HTML does not show.
        EXPECT_EQ(reply.Body(), editor == Editor::Html ? Replace(block, u"To: \r\n", u"To:\r\n") : std::u16string(block));
    }
}

TEST_P(Answers, LeaveTheAnsweredItemAsItIs) {
    const std::u16string body = html(u"How much?");
    const Bytes message = bytes("From: Jane Sender <jane@example.com>\r\nSubject: A question\r\n\r\nHow much?\r\n");
    const MailItem mail = person().receive({.subject = u"A question", .html = body, .original = message});
    const auto changedAt = get(mail, u"LastModificationTime").toDate();
    person().setNow({46001.5});
    for (const std::u16string_view member : members) answer(mail, member).Save();
    for (const MailItem& each : {mail, host().again(mail)}) {
        EXPECT_TRUE(truth(each, u"Saved"));
        EXPECT_TRUE(truth(each, u"UnRead"));
        EXPECT_EQ(get(each, u"LastModificationTime").toDate(), changedAt);
        EXPECT_EQ(each.Subject(), u"A question");
        EXPECT_EQ(each.HTMLBody(), body);
        EXPECT_EQ(each.To(), u"");
        EXPECT_EQ(person().original(each), message);
    }
}

TEST_P(Answers, QuoteWhatAnOpenItemHoldsAndNotWhatIsTypedIntoIt) {
    const MailItem mail = received();
    const Inspector inspector = host().open(mail);
    person().focus(inspector, Field::Body, 0);
    person().type(u"Hm. ");
    EXPECT_EQ(answer(inspector.CurrentItem(), u"Reply").Body(), std::u16string(block) + u"How much is it?");
    EXPECT_EQ(inspector.CurrentItem().Body(), u"How much is it?");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"Hm. How much is it?");
}

TEST_P(Answers, AreCalledByNameInAnyCaseOnTheItemAndOnItsWrapper) {
    const MailItem mail = received();
    for (const Object& each : {Object(mail), Object(makeSafeMailItem(mail)), Object(makeSafePostItem(mail))}) {
        EXPECT_EQ(answer(each, u"REPLY").Subject(), u"RE: A question");
        EXPECT_EQ(recipientsOf(answer(each, u"replyall")), u"To: Jane Sender <jane@example.com>");
        EXPECT_EQ(answer(each, u"FORWARD").Subject(), u"FW: A question");
        EXPECT_EQ(answer(each, u"REPLY").Body(), std::u16string(block) + u"How much is it?");
    }
}

TEST_P(Answers, AreForMailsAndPostsAlone) {
    for (const std::u16string_view messageClass : {u"IPM.Appointment", u"IPM.Contact", u"IPM.Task", u"IPM.StickyNote", u"IPM.Activity"}) {
        const MailItem item = host().newItem(messageClass);
        for (const std::u16string_view member : members) {
            EXPECT_HOST_ERROR(runtime_error::NoSuchMember, call(item, member));
            EXPECT_HOST_ERROR(runtime_error::NoSuchMember, call(makeSafeMailItem(item), member));
        }
    }
}

TEST_P(Answers, APostIsAnsweredByAMail) {
    const MailItem notice = post();
    for (const std::u16string_view member : {u"Reply", u"ReplyAll"}) {
        const MailItem reply = answer(notice, member);
        EXPECT_EQ(reply.Class(), item_class::Mail);
        EXPECT_EQ(recipientsOf(reply), u"To: Jane Sender <jane@example.com>");
        EXPECT_EQ(reply.Subject(), u"RE: Notice");
        EXPECT_TRUE(reply.Body().ends_with(u"\r\nSubject: Notice\r\n\r\nClosed on Monday"));
    }
    EXPECT_EQ(recipientsOf(answer(makeSafePostItem(notice), u"Forward")), u"");
    EXPECT_EQ(answer(notice, u"Forward").Subject(), u"FW: Notice");
}

TEST_P(Answers, ADraftIsForwardedAndNotRepliedTo) {
    const MailItem mail = host().plainItem(u"Dear John"), notice = host().newItem(u"IPM.Post");
    mail.Subject(u"Offer");
    mail.Save();
    const std::int32_t before = drafts();
    for (const MailItem& draft : {mail, notice}) {
        for (const std::u16string_view member : {u"Reply", u"ReplyAll"}) {
            EXPECT_NEGATIVE_ERROR(call(draft, member));
            EXPECT_NE(errorOf([&] { call(draft, member); }).description(), u"");
        }
    }
    EXPECT_EQ(drafts(), before);
    const MailItem forward = answer(mail, u"Forward");
    EXPECT_EQ(forward.Subject(), u"FW: Offer");
    EXPECT_EQ(forward.Body(), u"\r\n\r\n-----Original Message-----\r\nTo: \r\nSubject: Offer\r\n\r\nDear John");
}

TEST_P(Answers, OfADeletedItemFail) {
    const MailItem deleted = received();
    host().again(deleted).Delete();
    for (const std::u16string_view member : members) EXPECT_NEGATIVE_ERROR(call(deleted, member));
    EXPECT_EQ(drafts(), 0);
}

TEST_P(Answers, QuoteWhatIsHeldOfAnItemThatAnotherProgramDeleted) {
    const MailItem mail = received();
    person().removeItemFromOutside(identityOf(mail));
    for (const std::u16string_view member : members) EXPECT_EQ(answer(mail, member).Body(), std::u16string(block) + u"How much is it?");
}

TEST_P(Answers, AreRefusedWhenTheyAreSavedIntoAClosedFolder) {
    const MailItem mail = received();
    person().setRights(host().folder(default_folder::Drafts), Rights::Read);
    const MailItem reply = answer(mail, u"Reply");
    EXPECT_HOST_ERROR(host_failure::AccessDenied, reply.Save());
    EXPECT_EQ(drafts(), 0);
}

}  // namespace lorvane::contract
