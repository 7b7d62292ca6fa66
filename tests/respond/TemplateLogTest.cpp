#include <gtest/gtest.h>

#include "InsertRig.h"
#include "respond/modTemplateLog.h"
#include "store/FoldersRig.h"

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

class GermanLogTest : public TemplateLogTest {
protected:
    GermanLogTest() : TemplateLogTest({.now = u"2028-01-10T14:05:09", .locale = u"de-DE"}) {}
};

TEST_F(GermanLogTest, DateAndTimeKeepTheRegionsForm) {
    const MailItem offer = run.addTemplate(u"Angebot für €", plain(u"Text"));
    record(offer);
    EXPECT_EQ(content(), std::u16string(header) + line(u"Angebot für €", offer, u"10.01.2028,14:05:09"));
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

}  // namespace
}  // namespace lorvane::respond
