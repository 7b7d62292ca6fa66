#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "mime/Messages.h"

/// Whatever is written reads back in equal code units and bytes.
namespace lorvane::mime {
namespace {

using mailstore::BodyKind;
using mailstore::ItemRecord;

class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

    std::u16string text(std::size_t pieces) {
        static const std::u16string scraps[] = {u"a",
                                                u" ",
                                                u"  ",
                                                u"\t",
                                                u"\r\n",
                                                u"\r",
                                                u"\n",
                                                u"\r\n\r\n",
                                                u"\r\nFrom me",
                                                u"From ",
                                                u"\r\n.\r\n",
                                                u"--",
                                                u"-- \r\n",
                                                u"=",
                                                u"=3D",
                                                u"\u00E9",
                                                u"\uD55C\uAD6D",
                                                u"🎉",
                                                u"\uFEFF",
                                                u"\uFFFF",
                                                u"<BR>",
                                                u"&amp;",
                                                u"\u0001",
                                                u"\u00A0",
                                                u"=?utf-8?q?x?=",
                                                u"word ",
                                                std::u16string(90, u'x'),
                                                std::u16string(1200, u'y') + u" "};
        std::u16string out;
        for (std::size_t count = below(pieces + 1); count > 0; --count) out += scraps[below(std::size(scraps))];
        return out;
    }

    std::string bytes() {
        std::string out;
        for (std::size_t count = below(400); count > 0; --count) out += static_cast<char>(below(256));
        return out;
    }

    ItemRecord item() {
        static constexpr BodyKind kinds[] = {BodyKind::Plain, BodyKind::Html, BodyKind::Rich};
        ItemRecord item = testing::draft(kinds[below(3)], text(30));
        item.head.subject = text(12);
        item.head.categories = text(4);
        for (std::size_t count = below(4); count > 0; --count) {
            const bool related = item.bodyKind == BodyKind::Html && below(2) == 0;
            item.attachments.push_back(testing::file(u"n" + text(3) + u".bin", u"application/x-test", bytes()));
            for (char16_t& unit : item.attachments.back().fileName)
                if (unit == u'/' || unit == u'\\') unit = u'_';
            item.attachments.back().displayName = item.attachments.back().fileName;
            if (related || below(3) == 0) item.attachments.back().contentId = u"id" + std::u16string(1 + below(4), u'x') + u"@y";
            item.attachments.back().inlinePicture = related;
        }
        return item;
    }

private:
    std::mt19937 random_;
};

/// Inline pictures are read where the HTML is, the others behind it.
std::vector<mailstore::AttachmentRecord> inOrderOfTheMessage(const std::vector<mailstore::AttachmentRecord>& attachments) {
    auto ordered = attachments;
    std::stable_partition(ordered.begin(), ordered.end(), [](const auto& attachment) { return attachment.inlinePicture; });
    return ordered;
}

TEST(RoundTrip, WhatIsWrittenReadsBackTheSame) {
    Generator generate(424242);
    for (int round = 0; round < 400; ++round) {
        const ItemRecord item = generate.item();
        const std::string message = testing::write(item);
        const ItemRecord back = testing::read(message);
        ASSERT_EQ(back.head.subject, item.head.subject) << message;
        ASSERT_EQ(back.head.categories, item.head.categories) << message;
        ASSERT_EQ(back.bodyKind, item.bodyKind) << message;
        ASSERT_EQ(back.body, item.body) << message;
        ASSERT_EQ(back.recipients, item.recipients);
        ASSERT_EQ(back.attachments, inOrderOfTheMessage(item.attachments)) << message;
        ASSERT_EQ(testing::write(back), message);
    }
}

TEST(RoundTrip, ChangesToAWrittenMessageReadBackTheSame) {
    Generator generate(99);
    for (int round = 0; round < 400; ++round) {
        ItemRecord item = testing::read(testing::write(generate.item()));
        const ItemRecord other = generate.item();
        if (generate.below(2) == 0) {
            item.bodyKind = other.bodyKind;
            item.body = other.body;
            item.bodyChanged = true;
        }
        if (!item.attachments.empty() && generate.below(2) == 0)
            item.attachments.erase(item.attachments.begin() + static_cast<std::ptrdiff_t>(generate.below(item.attachments.size())));
        for (const auto& attachment : other.attachments) item.attachments.push_back(attachment);
        if (generate.below(2) == 0) item.head.subject = other.head.subject;
        const std::string message = testing::write(item);
        const ItemRecord back = testing::read(message);
        ASSERT_EQ(back.bodyKind, item.bodyKind) << message;
        ASSERT_EQ(back.body, item.body) << message;
        ASSERT_EQ(back.head.subject, item.head.subject);
        ASSERT_EQ(back.attachments.size(), item.attachments.size());
        for (const auto& attachment : item.attachments)
            EXPECT_TRUE(std::any_of(back.attachments.begin(), back.attachments.end(), [&](const auto& found) {
                return found.fileName == attachment.fileName && found.contentId == attachment.contentId && *found.data == *attachment.data;
            }));
    }
}

}  // namespace
}  // namespace lorvane::mime
