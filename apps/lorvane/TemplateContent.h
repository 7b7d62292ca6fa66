#pragma once

#include <string>

#include "Commands.h"
#include "Run.h"
#include "host/Outlook.h"
#include "host/Redemption.h"

/// What a template is given to hold, on its way from the command line's files into an item.
namespace lorvane::cli {

inline constexpr std::size_t longestSubject = 600;  ///< a list could not show what follows

/// Ends the command where no list could show the subject.
void requireShortSubject(const std::u16string& subject);

/// The content with its files read, before anything is started. Ends the command where one cannot be read, or where the subject is too long.
class ReadContent {
public:
    explicit ReadContent(const TemplateContent& content);
    const host::Bytes& message() const noexcept { return message_; }  ///< of the message file; none where there is none

    /// Writes subject, categories and text as far as they were given, and attaches the files. The text is of the kind it was given as, whatever the item held.
    /// Nothing is saved.
    void writeTo(const host::SafeMailItem& item) const;

private:
    TemplateContent content_;
    std::u16string text_, html_;
    host::Bytes message_;
};

/// Puts the text of one item, in its kind, and its attachments in the place of another's. Nothing is saved.
void takeContent(const host::SafeMailItem& item, const host::SafeMailItem& from);

/// An item that leaves the store again with its command, unless it was finished.
class UnfinishedItem {
public:
    UnfinishedItem(Run& run, host::MailItem item) : run_(run), item_(std::move(item)) {}
    ~UnfinishedItem();
    UnfinishedItem(const UnfinishedItem&) = delete;
    UnfinishedItem& operator=(const UnfinishedItem&) = delete;
    const host::MailItem& get() const noexcept { return item_; }
    void finished() noexcept { finished_ = true; }

private:
    Run& run_;
    host::MailItem item_;
    bool finished_ = false;
};

/// A message as an item of Drafts.
host::MailItem importDraft(Run& run, mailstore::ItemRecord record);

}  // namespace lorvane::cli
