#include <cstring>

#include "contract/Answers.h"

/// Whom an answer goes to, what it brings along, and where it stands among other messages.
namespace lorvane::contract {

class AnswerRecipients : public Answers {};
INSTANTIATE_EACH_STORE(AnswerRecipients);

TEST_P(AnswerRecipients, AReplyGoesToTheSender) {
    const MailItem mail = received();
    goesTo(mail, olTo, {account, u"John Public <john@example.com>"});
    EXPECT_EQ(recipientsOf(answer(mail, u"Reply")), u"To: Jane Sender <jane@example.com>");
}

TEST_P(AnswerRecipients, AReplyToAllGoesToTheOthersAsWell) {
    const MailItem mail = received();
    goesTo(mail, olTo, {account, u"John Public <john@example.com>"});
    goesTo(mail, olCC, {u"Ann <ann@example.com>", u"bob@example.com"});
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")),
              u"To: Jane Sender <jane@example.com>; To: John Public <john@example.com>; Cc: Ann <ann@example.com>; Cc: bob@example.com <bob@example.com>");
}

TEST_P(AnswerRecipients, AForwardGoesToNobodyYet) {
    const MailItem mail = received();
    goesTo(mail, olTo, {u"John Public <john@example.com>"});
    EXPECT_EQ(recipientsOf(answer(mail, u"Forward")), u"");
}

TEST_P(AnswerRecipients, ThoseWhoWereWrittenToUnseenStayUnseen) {
    const MailItem mail = sentMail();
    goesTo(mail, olTo, {u"John Public <john@example.com>"});
    goesTo(mail, olBCC, {u"Ann <ann@example.com>"});
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")), u"To: John Public <john@example.com>");
    EXPECT_EQ(answer(mail, u"Forward").Body().find(u"Ann"), std::u16string::npos);
}

TEST_P(AnswerRecipients, EachAddressIsThereOnceInWhateverCase) {
    const MailItem mail = received();
    goesTo(mail, olTo, {u"J. Sender <JANE@example.com>", u"John Public <john@example.com>", u"John <John@Example.com>"});
    goesTo(mail, olCC, {u"john@EXAMPLE.com", u"Ann <ann@example.com>"});
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")), u"To: Jane Sender <jane@example.com>; To: John Public <john@example.com>; Cc: Ann <ann@example.com>");
}

TEST_P(AnswerRecipients, TheAccountsOwnAddressIsLeftOutInWhateverCase) {
    const MailItem mail = received();
    goesTo(mail, olTo, {u"Me <USER@LocalHost>"});
    goesTo(mail, olCC, {account});
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")), u"To: Jane Sender <jane@example.com>");
}

TEST_P(AnswerRecipients, OfAMailOfOnesOwn) {
    const MailItem mail = sentMail();
    goesTo(mail, olTo, {u"John Public <john@example.com>"});
    goesTo(mail, olCC, {u"Ann <ann@example.com>"});
    EXPECT_EQ(recipientsOf(answer(mail, u"Reply")), u"To: Lorvane User <user@localhost>");
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")), u"To: John Public <john@example.com>; Cc: Ann <ann@example.com>");
}

TEST_P(AnswerRecipients, OfAMailToNobodyButOneself) {
    const MailItem mail = sentMail();
    goesTo(mail, olTo, {account});
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")), u"To: Lorvane User <user@localhost>");
}

TEST_P(AnswerRecipients, AnswersGoWhereTheSenderWantsThem) {
    const MailItem mail =
        receivedWith("From: Jane Sender <jane@example.com>\r\nReply-To: Sales <sales@example.com>,\r\n =?utf-8?q?J=C3=BCrgen?= <j@example.com>");
    goesTo(mail, olTo, {u"John Public <john@example.com>", u"SALES@example.com"});
    EXPECT_EQ(recipientsOf(answer(mail, u"Reply")), u"To: Sales <sales@example.com>; To: Jürgen <j@example.com>");
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")), u"To: Sales <sales@example.com>; To: Jürgen <j@example.com>; To: John Public <john@example.com>");
    EXPECT_EQ(recipientsOf(answer(mail, u"Forward")), u"");
}

TEST_P(AnswerRecipients, AnAddressWithoutANameIsCalledAsTheSenderWhereItIsHers) {
    EXPECT_EQ(recipientsOf(answer(receivedWith("From: Jane Sender <jane@example.com>\r\nReply-To: Jane@Example.com"), u"Reply")),
              u"To: Jane Sender <Jane@Example.com>");
    EXPECT_EQ(recipientsOf(answer(receivedWith("From: Jane Sender <jane@example.com>\r\nReply-To: <other@example.com>"), u"Reply")),
              u"To: other@example.com <other@example.com>");
}

TEST_P(AnswerRecipients, AReplyToFieldWithoutAnAddressSaysNothing) {
    for (const char* header : {"Subject: A question\r\nReply-To:", "Subject: A question\r\nReply-To: undisclosed:;", "no mail at all"})
        EXPECT_EQ(recipientsOf(answer(receivedWith(header), u"Reply")), u"To: Jane Sender <jane@example.com>") << header;
}

TEST_P(AnswerRecipients, AreResolvedByTheAddressBookAndKeepTheNameOfTheMail) {
    person().addPerson({.name = u"Jane A. Sender", .address = u"/o=Example/cn=jane", .given = u"Jane", .type = u"EX"});
    const MailItem mail = person().receive({.plain = u"x", .senderName = u"Jane S.", .senderAddress = u"/o=Example/cn=jane", .senderAddressType = u"EX"});
    const MailItem reply = answer(mail, u"Reply");
    EXPECT_EQ(recipientsOf(reply), u"To: Jane S. </o=Example/cn=jane>");
    EXPECT_EQ(text(reply.Recipients().Item(1).AddressEntry(), u"Type"), u"EX");
}

TEST_P(AnswerRecipients, AnswerTheAddressThatTheMailCameFrom) {
    person().addPerson({.name = u"Jane A. Sender", .address = u"jane@work.example", .proxies = {u"smtp:jane@example.com"}});
    const MailItem reply = answer(received(), u"Reply");
    EXPECT_EQ(recipientsOf(reply), u"To: Jane Sender <jane@example.com>");
}

TEST_P(AnswerRecipients, AreNotResolvedWhereNobodyKnowsThem) {
    const MailItem nameless = person().receive({.plain = u"x", .senderName = u"Unknown", .senderAddress = u""});
    EXPECT_EQ(recipientsOf(answer(nameless, u"Reply")), u"To: Unknown <>?");
    const MailItem directory = person().receive({.plain = u"x", .senderName = u"Jane", .senderAddress = u"/o=Example/cn=jane", .senderAddressType = u"EX"});
    EXPECT_EQ(recipientsOf(answer(directory, u"Reply")), u"To: Jane </o=Example/cn=jane>?");
    const MailItem mail = received();
    addRecipient(mail, u"Somebody");
    EXPECT_EQ(recipientsOf(answer(mail, u"ReplyAll")), u"To: Jane Sender <jane@example.com>; To: Somebody <>?");
    EXPECT_FALSE(mail.Recipients().Item(1).Resolved());
}

TEST_P(AnswerRecipients, AreTheAnswersOwn) {
    const MailItem mail = received();
    goesTo(mail, olTo, {u"John Public <john@example.com>"});
    const MailItem reply = answer(mail, u"ReplyAll");
    put(reply.Recipients().Item(2), u"Type", olBCC);
    EXPECT_EQ(mail.Recipients().Item(1).Type(), olTo);
    EXPECT_TRUE(truth(mail, u"Saved"));
}

class AnswerAttachments : public Answers {
protected:
    const Bytes picture = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x00, 0xFF};

    void attach(const MailItem& mail, const char* name, std::u16string_view contentId) {
        const Attachment attachment =
            makeSafeMailItem(mail).Attachments().Add(person().writeFile(name, picture), 1, 1, std::u16string(name, name + std::strlen(name)));
        attachment.setFields(tag::ContentId, contentId);
        attachment.setFields(tag::MimeType, u"image/png");
        attachment.setFields(tag::Hidden, true);
        mail.Save();
    }
    MailItem withPictures() {
        const MailItem mail = receivedHtml(html(u"<IMG src=\"cid:Logo@1\"> <img src=cid:map%402>"));
        attach(mail, "logo.png", u"logo@1");
        attach(mail, "other.png", u"other@3");
        attach(mail, "map.png", u"map@2");
        attach(mail, "offer.png", u"");
        return mail;
    }
    static std::u16string namesOf(const MailItem& mail) {
        std::u16string names;
        for (std::int32_t i = 1; i <= mail.Attachments().Count(); ++i) names += mail.Attachments().Item(i).FileName() + u" ";
        return names;
    }
};
INSTANTIATE_EACH_STORE(AnswerAttachments);

TEST_P(AnswerAttachments, AForwardBringsAllAlong) {
    const MailItem forward = answer(withPictures(), u"Forward");
    EXPECT_EQ(namesOf(forward), u"logo.png other.png map.png offer.png ");
    forward.Save();
    const MailItem kept = host().again(forward);
    const Attachment logo = makeSafeMailItem(kept).Attachments().Item(1);
    EXPECT_EQ(logo.DisplayName(), u"logo.png");
    EXPECT_EQ(logo.Fields(tag::ContentId).toText(), u"logo@1");
    EXPECT_EQ(logo.Fields(tag::MimeType).toText(), u"image/png");
    EXPECT_TRUE(logo.Fields(tag::Hidden).toBoolean());
    const std::u16string path = person().path("out.png");
    logo.SaveAsFile(path);
    EXPECT_EQ(person().readFile(path), picture);
}

TEST_P(AnswerAttachments, AForwardOfPlainTextAndOfADraftBringsThemToo) {
    const MailItem mail = received(), draft = host().plainItem(u"Dear John");
    attach(mail, "offer.png", u"");
    attach(draft, "offer.png", u"");
    EXPECT_EQ(namesOf(answer(mail, u"Forward")), u"offer.png ");
    EXPECT_EQ(namesOf(answer(draft, u"Forward")), u"offer.png ");
}

TEST_P(AnswerAttachments, AReplyBringsThePicturesThatTheQuotedHtmlShows) {
    for (const std::u16string_view member : {u"Reply", u"ReplyAll"}) {
        const MailItem reply = answer(withPictures(), member);
        EXPECT_EQ(namesOf(reply), u"logo.png map.png ");
        EXPECT_EQ(makeSafeMailItem(reply).Attachments().Item(2).Fields(tag::ContentId).toText(), u"map@2");
    }
}

TEST_P(AnswerAttachments, AReplyToPlainTextBringsNone) {
    const MailItem mail = received(u"see cid:logo@1");
    attach(mail, "logo.png", u"logo@1");
    EXPECT_EQ(namesOf(answer(mail, u"Reply")), u"");
}

TEST_P(AnswerAttachments, AreTheAnswersOwn) {
    const MailItem mail = withPictures();
    const MailItem forward = answer(mail, u"Forward");
    call(forward.Attachments().Item(1), u"Delete");
    makeSafeMailItem(forward).Attachments().Item(1).setFields(tag::ContentId, u"changed");
    EXPECT_EQ(namesOf(mail), u"logo.png other.png map.png offer.png ");
    EXPECT_EQ(makeSafeMailItem(mail).Attachments().Item(2).Fields(tag::ContentId).toText(), u"other@3");
    EXPECT_TRUE(truth(mail, u"Saved"));
}

class AnswerThreads : public Answers {
protected:
    /// In-Reply-To and References of an answer to a message with this header.
    std::pair<std::u16string, std::u16string> threadOf(std::string_view header, std::u16string_view member = u"Reply") {
        return threadOf(answer(receivedWith("Subject: A question" + std::string(header)), member));
    }
    static std::pair<std::u16string, std::u16string> threadOf(const MailItem& answered) {
        const SafeMailItem safe = makeSafeMailItem(answered);
        return {fieldText(safe.Fields(tag::InReplyTo)), fieldText(safe.Fields(tag::References))};
    }
    static std::u16string fieldText(const Variant& value) { return value.isEmpty() ? std::u16string() : value.toText(); }
    static std::pair<std::u16string, std::u16string> thread(std::u16string_view inReplyTo, std::u16string_view references) {
        return {std::u16string(inReplyTo), std::u16string(references)};
    }
};
INSTANTIATE_EACH_STORE(AnswerThreads);

TEST_P(AnswerThreads, RepliesNameTheMessageTheyAnswer) {
    const char* header = "\r\nMessage-ID: <c@x>\r\nReferences: <a@x>\r\n <b@x>\r\nIn-Reply-To: <b@x>";
    EXPECT_EQ(threadOf(header, u"Reply"), thread(u"<c@x>", u"<a@x> <b@x> <c@x>"));
    EXPECT_EQ(threadOf(header, u"ReplyAll"), thread(u"<c@x>", u"<a@x> <b@x> <c@x>"));
}

TEST_P(AnswerThreads, WithoutReferencesByTheOneMessageThatWasAnsweredBefore) {
    EXPECT_EQ(threadOf("\r\nMessage-ID: <c@x>"), thread(u"<c@x>", u"<c@x>"));
    EXPECT_EQ(threadOf("\r\nMessage-ID: <c@x>\r\nIn-Reply-To: Your mail <b@x> (Jane <jane@x>)"), thread(u"<c@x>", u"<b@x> <c@x>"));
    EXPECT_EQ(threadOf("\r\nMessage-ID: <c@x>\r\nIn-Reply-To: <a@x> <b@x>"), thread(u"<c@x>", u"<c@x>"));
}

TEST_P(AnswerThreads, WithoutAnIdentityOfTheMessage) {
    EXPECT_EQ(threadOf(""), thread(u"", u""));
    EXPECT_EQ(threadOf("\r\nMessage-ID: none"), thread(u"", u""));
    EXPECT_EQ(threadOf("\r\nReferences: <a@x>"), thread(u"", u"<a@x>"));
}

TEST_P(AnswerThreads, AForwardBeginsItsOwn) {
    EXPECT_EQ(threadOf("\r\nMessage-ID: <c@x>\r\nReferences: <a@x>", u"Forward"), thread(u"", u""));
}

TEST_P(AnswerThreads, GoOnFromAnAnswerMadeHere) {
    const MailItem reply = answer(receivedWith("Subject: A question\r\nMessage-ID: <a@x>"), u"Reply");
    makeSafeMailItem(reply).setFields(tag::MessageId, u"<b@x>");
    send(makeSafeMailItem(reply), u"Lorvane User", u"user@localhost");
    EXPECT_EQ(threadOf(answer(host().again(reply), u"ReplyAll")), thread(u"<b@x>", u"<a@x> <b@x>"));
}

}  // namespace lorvane::contract
