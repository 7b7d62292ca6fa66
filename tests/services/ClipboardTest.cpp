#include <gtest/gtest.h>

#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

using host::Bytes;
using Formats = std::map<std::u16string, Bytes>;

class ClipboardTest : public testing::Test, protected Rig {
protected:
    Clipboard& content() { return services.clipboardContent(); }

    /// The platform's steps for one block.
    void placeBlock(std::u16string_view format, const Bytes& bytes) {
        const std::int32_t number = clipboard.RegisterClipboardFormat(format);
        ASSERT_TRUE(clipboard.OpenClipboard());
        const std::int32_t block = clipboard.GlobalAlloc(0, static_cast<std::int32_t>(bytes.size()) + 2);
        clipboard.RtlMoveMemory(clipboard.GlobalLock(block), bytes);
        clipboard.GlobalUnlock(block);
        clipboard.EmptyClipboard();
        clipboard.SetClipboardData(number, block);
        clipboard.CloseClipboard();
    }
};

TEST_F(ClipboardTest, TextReplacesEverything) {
    EXPECT_EQ(content().text(), std::nullopt);
    placeBlock(u"HTML Format", {'x'});
    clipboard.SetText(u"Grüße \U0001F600\xD800");
    EXPECT_EQ(content().text(), u"Grüße \U0001F600\xD800");
    EXPECT_EQ(content().html(), std::nullopt);
    clipboard.SetText(u"");
    EXPECT_EQ(content().text(), u"") << "an empty text is there all the same";
    clipboard.Clear();
    EXPECT_EQ(content().formats(), Formats{});
}

TEST_F(ClipboardTest, ABlockReplacesEverythingAndItsUnwrittenBytesAreZero) {
    clipboard.SetText(u"old");
    placeBlock(u"HTML Format", {'a', 'b'});
    EXPECT_EQ(content().html(), (Bytes{'a', 'b', 0, 0}));
    EXPECT_EQ(content().formats(), (Formats{{u"HTML Format", {'a', 'b', 0, 0}}}));
    EXPECT_EQ(content().text(), std::nullopt);
}

TEST_F(ClipboardTest, FormatsAreNumberedByNameInAnyCase) {
    EXPECT_EQ(clipboard.RegisterClipboardFormat(u"HTML Format"), 0xC000);
    EXPECT_EQ(clipboard.RegisterClipboardFormat(u"Rich Text Format"), 0xC001);
    EXPECT_EQ(clipboard.RegisterClipboardFormat(u"html format"), 0xC000);
    EXPECT_EQ(clipboard.RegisterClipboardFormat(u""), 0);
}

TEST_F(ClipboardTest, SeveralFormatsStandTogether) {
    ASSERT_TRUE(clipboard.OpenClipboard());
    clipboard.EmptyClipboard();
    const std::int32_t text = clipboard.GlobalAlloc(0, 3);
    clipboard.RtlMoveMemory(text, {'h', 0xFC});
    clipboard.SetClipboardData(1, text);
    const std::int32_t picture = clipboard.GlobalAlloc(0, 1);
    clipboard.SetClipboardData(8, picture);
    clipboard.CloseClipboard();
    EXPECT_EQ(content().formats(), (Formats{{u"CF_TEXT", {'h', 0xFC, 0}}, {u"#8", {0}}}));
    EXPECT_EQ(content().text(), u"hü") << "text in the code page is text too";
}

TEST_F(ClipboardTest, ItOpensOnceUntilItIsClosed) {
    EXPECT_TRUE(clipboard.OpenClipboard());
    EXPECT_FALSE(clipboard.OpenClipboard());
    EXPECT_EQ(errorOf([&] { clipboard.SetText(u"x"); }), 521);
    EXPECT_EQ(errorOf([&] { clipboard.Clear(); }), 521);
    clipboard.CloseClipboard();
    EXPECT_TRUE(clipboard.OpenClipboard());
}

TEST_F(ClipboardTest, AClosedClipboardIsLeftAloneByTheSteps) {
    clipboard.SetText(u"kept");
    clipboard.EmptyClipboard();
    const std::int32_t block = clipboard.GlobalAlloc(0, 1);
    clipboard.SetClipboardData(1, block);
    clipboard.CloseClipboard();
    EXPECT_EQ(content().text(), u"kept");
    EXPECT_NE(clipboard.GlobalLock(block), 0) << "the block is still the program's";
}

TEST_F(ClipboardTest, ABlockThatWasHandedOverIsNoLongerTheProgramsOwn) {
    const std::int32_t format = clipboard.RegisterClipboardFormat(u"HTML Format");
    ASSERT_TRUE(clipboard.OpenClipboard());
    const std::int32_t block = clipboard.GlobalAlloc(0, 4);
    clipboard.SetClipboardData(format, block);
    EXPECT_EQ(clipboard.GlobalLock(block), 0);
    EXPECT_EQ(errorOf([&] { clipboard.RtlMoveMemory(block, {1}); }), 5);
    clipboard.SetClipboardData(format, block);
    clipboard.SetClipboardData(0, clipboard.GlobalAlloc(0, 4));
    EXPECT_EQ(content().formats(), (Formats{{u"HTML Format", Bytes(4)}}));
}

TEST_F(ClipboardTest, EachStepCanBeRefused) {
    clipboard.SetText(u"kept");
    content().refuseRegistration(true);
    content().refuseOpen(true);
    content().refuseAlloc(true);
    EXPECT_EQ(clipboard.RegisterClipboardFormat(u"HTML Format"), 0);
    EXPECT_FALSE(clipboard.OpenClipboard());
    EXPECT_EQ(clipboard.GlobalAlloc(0, 4), 0);
    EXPECT_EQ(errorOf([&] { clipboard.SetText(u"x"); }), 521);
    EXPECT_EQ(errorOf([&] { clipboard.Clear(); }), 521);
    EXPECT_EQ(content().text(), u"kept");

    content().refuseRegistration(false);
    content().refuseOpen(false);
    content().refuseAlloc(false);
    content().refuseLock(true);
    const std::int32_t block = clipboard.GlobalAlloc(0, 4);
    EXPECT_EQ(clipboard.GlobalLock(block), 0);
    content().refuseLock(false);
    EXPECT_NE(clipboard.GlobalLock(block), 0);
    placeBlock(u"HTML Format", {1});
    EXPECT_TRUE(content().html());
}

TEST_F(ClipboardTest, TheUserReplacesWhatIsOnIt) {
    content().refuseOpen(true);
    content().replaceText(u"from elsewhere");
    EXPECT_EQ(content().text(), u"from elsewhere");
    content().replace({{u"html format", {'h'}}, {u"CF_UNICODETEXT", {'t', 0, 'x', 0}}});
    EXPECT_EQ(content().html(), Bytes{'h'});
    EXPECT_EQ(content().text(), u"tx");
    EXPECT_EQ(errorOf([&] { content().replace({{u"", {}}}); }), 5);
    content().clear();
    EXPECT_EQ(content().formats(), Formats{});
}

}  // namespace
}  // namespace lorvane::services::test
