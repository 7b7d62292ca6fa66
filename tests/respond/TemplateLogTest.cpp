#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "InsertRig.h"
#include "mailstore/TempFolder.h"
#include "respond/modTemplateLog.h"

/// The usage log.
namespace lorvane::respond {
namespace {

using namespace host;
using namespace support;

constexpr std::u16string_view header = u"User Name,Date,Time,Template Name,Template EntryID,Template StoreID\r\n";

class TemplateLogTest : public testing::Test {
protected:
    explicit TemplateLogTest(RunOptions options = {}) : run(std::move(options)) {
        run.setSetting(u"LogTemplate", u"True");
        run.setSetting(u"TemplatesLogFilePath", path);
    }
    void record(const MailItem& item) { TemplateLogRecord(item.EntryID(), item.Parent().StoreID()); }
    std::u16string content() const { return files().FileExists(path) ? files().ReadText(path) : std::u16string(); }
    static Files files() { return apartment().machine.files(); }
    std::u16string line(std::u16string_view subject, const MailItem& item, std::u16string_view moment = u"1/10/2028,9:00:00 AM") const {
        return u"jpublic," + std::u16string(moment) + u",\"" + std::u16string(subject) + u"\"," + item.EntryID() + u"," + item.Parent().StoreID() + u"\r\n";
    }
    void expectBox(std::u16string_view title, std::u16string_view text, std::int32_t style = 48) {
        ASSERT_EQ(run.boxes().size(), 1U);
        EXPECT_EQ(run.lastBox().title, title);
        EXPECT_EQ(run.lastBox().text, text);
        EXPECT_EQ(run.lastBox().style, style);
    }
    TestRun run;
    std::u16string path = files().GetFolderPath(5) + u"\\TemplatesLogFile.csv";
};

TEST_F(TemplateLogTest, TheFirstUseWritesTheHeaderToo) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    record(offer);
    EXPECT_EQ(content(), std::u16string(header) + line(u"Offer", offer));
    record(offer);
    EXPECT_EQ(content(), std::u16string(header) + line(u"Offer", offer) + line(u"Offer", offer));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(TemplateLogTest, SwitchedOffTouchesNoFileAndSaysNothing) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    for (const std::u16string_view off : {u"", u"False", u"0"}) {
        run.setSetting(u"LogTemplate", off);
        record(offer);
    }
    run.setSetting(u"TemplatesLogFilePath", u"\\no\\folder\\log.csv");
    record(offer);
    EXPECT_EQ(content(), u"");
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(TemplateLogTest, ANumberOtherThanZeroIsOn) {
    run.setSetting(u"LogTemplate", u"-1");
    EXPECT_TRUE(blnLogTemplate());
    run.setSetting(u"LogTemplate", u"true");
    EXPECT_TRUE(blnLogTemplate());
}

TEST_F(TemplateLogTest, OnlyTheSubjectIsQuotedAndNothingIsEscaped) {
    const MailItem comma = run.addTemplate(u"Offer, second", plain(u"Text"));
    const MailItem quote = run.addTemplate(u"The \"best\" offer", plain(u"Text"));
    record(comma);
    record(quote);
    EXPECT_EQ(content(), std::u16string(header) + line(u"Offer, second", comma) + line(u"The \"best\" offer", quote));
}

TEST_F(TemplateLogTest, AnEmptySubjectIsNoSubject) {
    const MailItem none = run.addTemplate(u"", plain(u"Text"));
    record(none);
    EXPECT_EQ(content(), std::u16string(header) + line(u"NO SUBJECT", none));
}

TEST_F(TemplateLogTest, APostKeepsItsSubjectAndOtherClassesHaveNone) {
    const MailItem post = addPost(run, run.templatesFolder(), u"Post");
    const MailItem contact = addPost(run, run.templatesFolder(), u"Contact", u"", u"IPM.Contact", item_class::Contact);
    record(post);
    record(contact);
    EXPECT_EQ(content(), std::u16string(header) + line(u"Post", post) + line(u"NO SUBJECT", contact));
}

TEST_F(TemplateLogTest, AMissingFolderIsToldAtEachUse) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.setSetting(u"TemplatesLogFilePath", u"\\no\\such\\folder\\log.csv");
    record(offer);
    expectBox(u"Invalid File Location - Lorvane",
              u"The location for the log file is invalid. You might have deleted\r\nor renamed the folder where the log file was located.\r\n"
              u"Please go to the Settings form to set the correct location\r\nof the log file.");
    record(offer);
    EXPECT_EQ(run.boxes().size(), 2U);
}

TEST_F(TemplateLogTest, APathThatWasNeverSetIsAMissingFolder) {
    run.setSetting(u"TemplatesLogFilePath", u"");
    record(run.addTemplate(u"Offer", plain(u"Text")));
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Invalid File Location - Lorvane");
}

TEST_F(TemplateLogTest, AFileThatCannotBeWrittenIsToldByItsNameAlone) {
    // A folder of that name cannot be written to as a file.
    files().CreateFolder(path);
    EXPECT_FALSE(CreateLogFile(path, u"test"));
    expectBox(u"Unable to create the file - Lorvane",
              u"Unable to create or write to the file TemplatesLogFile.csv\r\n\r\nAccess is denied.\r\nPlease check your permissions on the folder or file.");
    WriteToFile(path, u"x");
    EXPECT_EQ(run.boxes().size(), 2U);
    EXPECT_EQ(run.lastBox().title, u"Unable to create the file - Lorvane");
}

TEST_F(TemplateLogTest, ATemplateThatIsGoneIsToldByTheStandardBox) {
    TemplateLogRecord(u"00AA", u"00BB");
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"modTemplateLog.TemplateLogRecord - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
    EXPECT_EQ(content(), u"");
}

TEST_F(TemplateLogTest, ASettingThatIsNoBooleanIsError13) {
    run.setSetting(u"LogTemplate", u"perhaps");
    record(run.addTemplate(u"Offer", plain(u"Text")));
    expectBox(u"modTemplateLog.TemplateLogRecord - Lorvane", u"Error 13: Type mismatch", 16);
}

TEST_F(TemplateLogTest, PathsAreTakenApartAtTheLastBackslash) {
    EXPECT_EQ(LogFileName(u"\\a\\b\\log.csv"), u"log.csv");
    EXPECT_EQ(LogFileName(u"log.csv"), u"log.csv");
    EXPECT_TRUE(blnFolderExist(path));
    EXPECT_FALSE(blnFolderExist(path + u"\\below"));
    EXPECT_EQ(GetPath(), path);
}

TEST_F(TemplateLogTest, TheDefaultFileIsTheSettingsOneWhereItsFolderIsThere) {
    EXPECT_EQ(DefaultLogFile(), path);
    run.setSetting(u"TemplatesLogFilePath", path.substr(0, path.rfind(u'\\')) + u"\\other.csv");
    EXPECT_EQ(DefaultLogFile(), path.substr(0, path.rfind(u'\\')) + u"\\other.csv");
    for (const std::u16string_view setting : {u"", u"\\no\\such\\folder\\x.csv"}) {
        run.setSetting(u"TemplatesLogFilePath", setting);
        EXPECT_EQ(DefaultLogFile(), path);
    }
}

/// The log as other programs find it: the bytes of the file.
std::string bytesOf(std::u16string surfacePath) {
    std::ranges::replace(surfacePath, u'\\', u'/');
    const Bytes bytes = mailstore::test::readBytes(std::filesystem::path(surfacePath));
    return {bytes.begin(), bytes.end()};
}

struct RegionalForm {
    std::u16string_view locale, now;
    std::string_view written;
};

void PrintTo(const RegionalForm& form, std::ostream* stream) {
    *stream << toUtf8(form.locale) << " " << form.written;
}

class RegionalLogTest : public testing::TestWithParam<RegionalForm> {};

TEST_P(RegionalLogTest, DateAndTimeKeepTheUsersFormInTheSystemsCodePage) {
    TestRun run({.now = std::u16string(GetParam().now), .locale = std::u16string(GetParam().locale)});
    const std::u16string path = apartment().machine.files().GetFolderPath(5) + u"\\Team log.csv";
    run.setSetting(u"LogTemplate", u"True");
    run.setSetting(u"TemplatesLogFilePath", path);
    const MailItem offer = run.addTemplate(u"Angebot für €", plain(u"Text"));
    TemplateLogRecord(offer.EntryID(), offer.Parent().StoreID());
    EXPECT_EQ(bytesOf(path), toUtf8(header) + "jpublic," + std::string(GetParam().written) + ",\"Angebot f\xFCr \x80\"," + toUtf8(offer.EntryID()) + "," +
                                 toUtf8(offer.Parent().StoreID()) + "\r\n");
    EXPECT_TRUE(run.boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Regions, RegionalLogTest,
                         testing::Values(RegionalForm{u"en-US", u"2028-01-10T14:05:09", "1/10/2028,2:05:09 PM"},
                                         RegionalForm{u"en-US", u"2028-12-31T00:00:00", "12/31/2028,12:00:00 AM"},
                                         RegionalForm{u"en-GB", u"2028-01-10T14:05:09", "10/01/2028,14:05:09"},
                                         RegionalForm{u"de-DE", u"2028-01-10T04:05:09", "10.01.2028,04:05:09"}));

/// How the file is made and written.
class LogCallsTest : public TemplateLogTest {
protected:
    LogCallsTest() : TemplateLogTest({.instruments = true}) {
        run.recorder().leaveOut(u"Machine");
        run.recorder().clear();
    }
    std::vector<std::u16string> fileCalls() {
        std::vector<std::u16string> calls;
        for (const auto& call : run.recorder().calls())
            if (call.className == u"Files") calls.push_back(call.member + (call.arguments.size() > 1 ? u" " + call.arguments[1].toText() : u""));
        return calls;
    }
    void expectUnable() {
        expectBox(
            u"Unable to create the file - Lorvane",
            u"Unable to create or write to the file TemplatesLogFile.csv\r\n\r\nAccess is denied.\r\nPlease check your permissions on the folder or file.");
    }
};

TEST_F(LogCallsTest, AProbeProvesThatTheFolderCanBeWrittenTo) {
    EXPECT_TRUE(CreateLogFile(path, u"test"));
    EXPECT_EQ(fileCalls(), (std::vector<std::u16string>{u"WriteText test\r\n", u"DeleteFile", u"WriteText " + std::u16string(header)}));
    EXPECT_EQ(content(), header);
}

TEST_F(LogCallsTest, EachStepOfTheProbeMayBeRefused) {
    struct Step {
        std::u16string_view member;
        std::size_t nth;
    };
    std::size_t boxes = 0;
    for (const Step& step : {Step{u"WriteText", 1}, Step{u"DeleteFile", 1}, Step{u"WriteText", 2}}) {
        run.faults().failNth(u"Files", step.member, step.nth, runtime_error::PathFileAccess);
        EXPECT_FALSE(CreateLogFile(path, u"test"));
        EXPECT_EQ(run.boxes().size(), ++boxes);
        EXPECT_EQ(run.lastBox().title, u"Unable to create the file - Lorvane");
    }
    EXPECT_TRUE(CreateLogFile(path, u"test"));
    EXPECT_EQ(content(), header) << "what a refused probe left does not matter";
}

TEST_F(LogCallsTest, AFileThatCannotBeMadeGetsNoLine) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    run.faults().failNth(u"Files", u"WriteText", 1, runtime_error::PathFileAccess);
    record(offer);
    expectUnable();
    EXPECT_EQ(content(), u"");
}

TEST_F(LogCallsTest, AReadOnlyFileIsToldByItsNameAndTheUseIsLost) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    record(offer);
    const std::u16string before = content();
    run.faults().failNth(u"Files", u"AppendText", 1, runtime_error::PathFileAccess);
    record(offer);
    expectUnable();
    EXPECT_EQ(content(), before);
    record(offer);
    EXPECT_EQ(content(), before + line(u"Offer", offer)) << "each use is a try of its own";
}

TEST_F(LogCallsTest, AFileOfTheSystemThatTakesNothingIsToldTheSameWay) {
    std::u16string file = path;
    std::ranges::replace(file, u'\\', u'/');
    std::filesystem::create_symlink("/dev/full", std::filesystem::path(file));
    record(run.addTemplate(u"Offer", plain(u"Text")));
    expectUnable();
}

TEST_F(LogCallsTest, SwitchedOffTheLineIsBuiltButNoFileIsAsked) {
    run.setSetting(u"LogTemplate", u"");
    record(run.addTemplate(u"Offer", plain(u"Text")));
    EXPECT_EQ(timesCalled(run, u"Environment", u"Variable"), 1U);
    EXPECT_EQ(timesCalled(run, u"Clock", u"Now"), 1U);
    EXPECT_TRUE(fileCalls().empty());
}

TEST_F(LogCallsTest, TheFileIsHeldForOneLineOnly) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    record(offer);
    run.recorder().clear();
    record(offer);
    EXPECT_EQ(fileCalls(), (std::vector<std::u16string>{u"FolderExists", u"FileExists", u"AppendText " + line(u"Offer", offer)}));
}

TEST_F(TemplateLogTest, AFileWithoutAFolderInItsPathHasNone) {
    run.setSetting(u"TemplatesLogFilePath", u"log.csv");
    record(run.addTemplate(u"Offer", plain(u"Text")));
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Invalid File Location - Lorvane");
}

TEST_F(TemplateLogTest, AnEmptyFileThatIsThereGetsNoHeader) {
    const MailItem offer = run.addTemplate(u"Offer", plain(u"Text"));
    files().WriteText(path, u"");
    record(offer);
    EXPECT_EQ(content(), line(u"Offer", offer));
}

TEST(LogOrderTest, CopiesAreLoggedAndSoIsTheChosenRow) {
    TestRun run;
    run.setSetting(u"LogTemplate", u"True");
    const std::u16string path = apartment().machine.files().GetFolderPath(5) + u"\\log.csv";
    run.setSetting(u"TemplatesLogFilePath", path);
    run.addTemplate(u"Alpha", plain(u"Text"));
    run.addTemplate(u"Beta", support::html(document(u"<B>x</B>")));
    useTemplate(run, u"Beta", u"cmdCopyToClipBoard");
    useTemplate(run, u"Beta", u"cmdCopyHTMLToClipB");
    const std::u16string text = apartment().machine.files().ReadText(path);
    EXPECT_NE(text.find(u"\"Beta\""), text.rfind(u"\"Beta\""));
    EXPECT_EQ(text.find(u"Alpha"), std::u16string::npos);
}

/// The copy buttons log behind the copying.
class CopyLogTest : public testing::TestWithParam<std::u16string_view> {
protected:
    CopyLogTest() {
        run.setSetting(u"LogTemplate", u"True");
        run.setSetting(u"TemplatesLogFilePath", path);
        run.addTemplate(u"Beta", support::html(document(u"<B>x</B>")));
    }
    TestRun run{{.instruments = true}};
    std::u16string path = apartment().machine.files().GetFolderPath(5) + u"\\log.csv";
};

INSTANTIATE_TEST_SUITE_P(Buttons, CopyLogTest, testing::Values(u"cmdCopyToClipBoard", u"cmdCopyHTMLToClipB"));

TEST_P(CopyLogTest, TheLineComesWhenTheClipboardIsFilled) {
    openChooser(run, [&](ScriptedUser& she) {
        run.recorder().clear();
        she.Click(chooserName, GetParam());
    });
    const auto& calls = run.recorder().calls();
    const auto firstOf = [&](std::u16string_view member) {
        return std::ranges::find_if(calls, [&](const auto& call) { return call.member == member; }) - calls.begin();
    };
    const auto copied = firstOf(GetParam() == u"cmdCopyToClipBoard" ? u"SetText" : u"SetClipboardData");
    EXPECT_LT(copied, firstOf(u"AppendText"));
    EXPECT_LT(firstOf(u"AppendText"), firstOf(u"Unload"));
    EXPECT_LT(firstOf(u"Unload"), static_cast<std::ptrdiff_t>(calls.size()));
}

TEST_P(CopyLogTest, AFolderThatIsGoneIsToldAndTheCopyIsThereAllTheSame) {
    run.setSetting(u"TemplatesLogFilePath", u"\\no\\such\\folder\\log.csv");
    useTemplate(run, u"Beta", GetParam());
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"Invalid File Location - Lorvane");
    EXPECT_TRUE(run.clipboardText() || run.clipboardHtml());
    EXPECT_FALSE(isChooserOpen());
}

}  // namespace
}  // namespace lorvane::respond
