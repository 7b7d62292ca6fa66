#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "InsertRig.h"
#include "respond/basAttachments.h"

/// A template whose attachments are copied into a saved mail.
namespace lorvane::support {

inline constexpr std::int32_t contentIdTag = 0x3712001E, hiddenTag = 0x7FFE000B, flagsTag = 0x7FFD0003;
inline constexpr std::int32_t embeddedOnlyTag = static_cast<std::int32_t>(0x8514000B);  ///< the named property 0x8514, a boolean
inline constexpr std::int32_t itemTags[] = {static_cast<std::int32_t>(0x800A000B), 0x10F4000B};

class AttachmentsTest : public testing::Test {
protected:
    explicit AttachmentsTest(std::u16string_view version = u"11.0.0.5510") : run({.version = std::u16string(version), .connected = false}) {}
    void attach(const host::MailItem& item, std::string_view name, std::u16string_view contentId = u"") {
        run.attach(item, name, host::Bytes{1, 2, 3});
        if (!contentId.empty()) giveContentId(item, contentId);
        item.Save();
    }
    std::u16string copy(std::u16string html = u"") {
        html_ = std::move(html);
        return respond::CopyAttachments(offer, target, html_);
    }
    host::Variant fieldOf(std::int32_t index, std::int32_t tag) { return host::makeSafeMailItem(target).Attachments().Item(index).Fields(tag); }
    host::Variant itemField(std::int32_t tag) { return host::makeSafeMailItem(target).Fields(tag); }
    std::u16string folder() { return respond::GetTempFolder() + u"Tolvenar\\Lorvane"; }

    TestRun run;
    host::MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    host::MailItem target = run.draft(u"Draft", plain(u"Text"));
    std::u16string html_;
};

}  // namespace lorvane::support
