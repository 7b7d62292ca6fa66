#pragma once

#include "contract/Listeners.h"

namespace lorvane::contract {

namespace tag {
inline constexpr std::int32_t MessageFlags = 0x0E070003, SenderName = 0x0C1A001E, SenderAddress = 0x0C1F001E, SenderAddressType = 0x0C1E001E;
inline constexpr std::int32_t MessageId = 0x1035001E, InReplyTo = 0x1042001E, References = 0x1039001E;
inline constexpr std::int32_t ContentId = 0x3712001E, MimeType = 0x370E001E, Hidden = 0x7FFE000B;
}  // namespace tag

inline constexpr std::int32_t olCC = 2, olBCC = 3;

/// Mails that came, mails that went, and what answers them.
class Answers : public EachStore {
protected:
    static constexpr std::u16string_view account = u"Lorvane User <user@localhost>";
    static constexpr std::int32_t sentFlag = 1;  // read, and no draft any more

    static MailItem answer(const Object& item, std::u16string_view member) { return MailItem(call(item, member).toObject()); }

    MailItem received(std::u16string_view plain = u"How much is it?") { return person().receive({.subject = u"A question", .plain = std::u16string(plain)}); }
    MailItem receivedHtml(std::u16string_view source) { return person().receive({.subject = u"A question", .html = std::u16string(source)}); }
    /// A received mail with this header above its text.
    MailItem receivedWith(std::string_view header) {
        return person().receive(
            {.subject = u"A question", .plain = u"How much is it?", .original = bytes(std::string(header) + "\r\n\r\nHow much is it?\r\n")});
    }
    /// Adds those whom the mail went to.
    void goesTo(const MailItem& mail, std::int32_t type, std::initializer_list<std::u16string_view> names) {
        for (const std::u16string_view name : names) put(addRecipient(mail, name), u"Type", type);
        mail.Recipients().ResolveAll();
        mail.Save();
    }
    /// What somebody wrote elsewhere: it is no draft any more.
    void send(const SafeMailItem& item, std::u16string_view name, std::u16string_view address) {
        item.setFields(tag::SenderName, name);
        item.setFields(tag::SenderAddress, address);
        item.setFields(tag::SenderAddressType, u"SMTP");
        item.setFields(tag::MessageFlags, sentFlag);
        item.Save();
    }
    MailItem sentMail(std::u16string_view name = u"Lorvane User", std::u16string_view address = u"user@localhost") {
        const MailItem mail = host().plainItem(u"It is 10.");
        mail.Subject(u"An offer");
        send(makeSafeMailItem(mail), name, address);
        return mail;
    }
    MailItem post() {
        const MailItem item = host().newItem(u"IPM.Post");
        item.Subject(u"Notice");
        item.HTMLBody(html(u"Closed on Monday"));
        send(makeSafePostItem(item), u"Jane Sender", u"jane@example.com");
        return item;
    }
    /// "To: Name <address>; …" of all recipients; one that is not resolved has "?".
    static std::u16string recipientsOf(const MailItem& mail) {
        static constexpr std::u16string_view labels[] = {u"", u"To: ", u"Cc: ", u"Bcc: "};
        std::u16string all;
        for (std::int32_t i = 1; i <= mail.Recipients().Count(); ++i) {
            const Recipient one = mail.Recipients().Item(i);
            all.append(all.empty() ? u"" : u"; ").append(labels[one.Type()]).append(one.Name()).append(u" <").append(text(one, u"Address"));
            all += one.Resolved() ? u">" : u">?";
        }
        return all;
    }
    std::int32_t drafts() { return host().folder(default_folder::Drafts).Items().Count(); }
};

}  // namespace lorvane::contract
