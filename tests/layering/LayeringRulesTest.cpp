#include "layering/LayeringRules.h"

#include <gtest/gtest.h>

namespace lorvane::layering {
namespace {

/// What is wrong with a file that holds this one line; "" where nothing is.
std::string wrong(std::string_view path, std::string_view line) {
    const auto found = violations(path, line);
    return found.empty() ? "" : found.front().what;
}

TEST(LayeringRules, LogicMayIncludeTheFoldersBelowIt) {
    EXPECT_EQ(wrong("src/text/Tags.cpp", "#include \"host/Object.h\""), "");
    EXPECT_EQ(wrong("src/text/Tags.cpp", "#include \"text/Tags.h\""), "");
    EXPECT_EQ(wrong("src/store/Tables.h", "#include \"text/Tags.h\""), "");
    EXPECT_EQ(wrong("src/respond/frmEmail.cpp", "#include \"store/Tables.h\""), "");
    EXPECT_EQ(wrong("src/host/Member.h", "#include \"host/members.def\""), "");
}

TEST(LayeringRules, LogicMayNotIncludeTheFoldersAboveIt) {
    EXPECT_EQ(wrong("src/host/Object.h", "#include \"text/Tags.h\""), "src/host may not include \"text/Tags.h\"");
    EXPECT_EQ(wrong("src/text/Tags.h", "#include \"store/Tables.h\""), "src/text may not include \"store/Tables.h\"");
    EXPECT_EQ(wrong("src/store/Tables.cpp", "#include \"respond/frmEmail.h\""), "src/store may not include \"respond/frmEmail.h\"");
}

TEST(LayeringRules, OnlyTheLifecycleFilesOfTheSurfaceReachUpwards) {
    for (const std::string_view file : {"src/host/Connect.cpp", "src/host/OutAddIn.h", "src/host/ConnectByName.cpp", "src/host/clsInspWrap.cpp"}) {
        EXPECT_EQ(wrong(file, "#include \"respond/frmEmail.h\""), "") << file;
        EXPECT_EQ(wrong(file, "#include \"model/Store.h\""), "src/host may not include \"model/Store.h\"") << file;
    }
    EXPECT_EQ(wrong("src/host/ConnectPoint.h", "#include \"respond/frmEmail.h\""), "src/host may not include \"respond/frmEmail.h\"");
    EXPECT_EQ(wrong("src/text/Connect.h", "#include \"respond/frmEmail.h\""), "src/text may not include \"respond/frmEmail.h\"");
}

TEST(LayeringRules, LogicNeverIncludesThePlatform) {
    for (const FolderRule& platform : platformRules) {
        for (const FolderRule& source : sourceRules) {
            const std::string path = "src/" + std::string(source.folder) + "/Any.cpp";
            const std::string header = std::string(platform.folder) + "/Any.h";
            EXPECT_NE(wrong(path, "#include \"" + header + "\""), "") << path << " " << header;
            EXPECT_NE(wrong(path, "#include \"platform/" + header + "\""), "") << path << " " << header;
            EXPECT_NE(wrong(path, "#include <" + header + ">"), "") << path << " " << header;
        }
    }
}

TEST(LayeringRules, LogicIncludesNoLibraryAndNoSystemHeader) {
    for (const std::string_view header : {"QString", "QtCore/QString", "sqlite3.h", "windows.h", "unistd.h", "sys/stat.h", "nlohmann/json.hpp",
                                          "unicode/uchar.h", "gmime/gmime.h", "stdlib.h", "bits/stdc++.h"}) {
        EXPECT_EQ(wrong("src/text/Tags.cpp", "#include <" + std::string(header) + ">"), "<" + std::string(header) + "> is not of the C++ standard library");
    }
    EXPECT_NE(wrong("src/text/Tags.cpp", "#include \"sqlite3.h\""), "");
    EXPECT_EQ(wrong("src/text/Tags.cpp", "#include <string_view>"), "");
}

TEST(LayeringRules, LogicIncludesNoStandardHeaderThatGoesRoundThePlatform) {
    for (const std::string_view header : {"fstream", "filesystem", "chrono", "thread", "iostream", "mutex", "ctime"}) {
        EXPECT_NE(wrong("src/store/Tables.cpp", "#include <" + std::string(header) + ">"), "") << header;
        EXPECT_EQ(wrong("platform/screen/Clock.cpp", "#include <" + std::string(header) + ">"), "") << header;
    }
    for (const Forbidden& row : forbiddenHeaders) EXPECT_NE(wrong("src/host/Any.h", "#include <" + std::string(row.name) + ">"), "") << row.name;
    EXPECT_EQ(wrong("src/store/Tables.cpp", "#include <fstream>"), "<fstream> goes round the platform; use the surface's files");
}

TEST(LayeringRules, LogicCallsNothingThatGoesRoundThePlatform) {
    EXPECT_EQ(wrong("src/host/Any.cpp", "const char* name = std::getenv(\"USER\");"), "getenv goes round the platform; use the surface's environment");
    EXPECT_EQ(wrong("src/host/Any.cpp", "std::system(\"ls\");"), "std::system goes round the platform; use the surface's shell");
    for (const Forbidden& row : forbiddenNames) {
        EXPECT_NE(wrong("src/host/Any.cpp", "x = " + std::string(row.name) + ";"), "") << row.name;
        EXPECT_EQ(wrong("platform/model/Any.cpp", "x = " + std::string(row.name) + ";"), "") << row.name;
    }
}

TEST(LayeringRules, ALongerNameIsAnotherName) {
    EXPECT_EQ(wrong("src/host/Any.cpp", "getenvironment(); std::timeout(); std::system_error error;"), "");
}

TEST(LayeringRules, PlatformIncludesTheSurfaceLibrariesAndItsListedNeighbours) {
    EXPECT_EQ(wrong("platform/model/MailItem.cpp", "#include \"host/Object.h\""), "");
    EXPECT_EQ(wrong("platform/model/MailItem.cpp", "#include \"mailstore/ItemRecord.h\""), "");
    EXPECT_EQ(wrong("platform/mime/Reader.cpp", "#include \"html/Text.h\""), "");
    EXPECT_EQ(wrong("platform/mailstore/SqliteStore.cpp", "#include <sqlite3.h>"), "");
}

TEST(LayeringRules, PlatformIncludesNoLogicAndNoOtherNeighbour) {
    EXPECT_EQ(wrong("platform/model/MailItem.cpp", "#include \"text/Tags.h\""), "platform/model may not include \"text/Tags.h\"");
    EXPECT_EQ(wrong("platform/model/MailItem.cpp", "#include <respond/frmEmail.h>"), "<respond/frmEmail.h> is a header of ours: it is named in quotes");
    EXPECT_EQ(wrong("platform/mailstore/Store.h", "#include \"model/MailItem.h\""), "platform/mailstore may not include \"model/MailItem.h\"");
    EXPECT_EQ(wrong("platform/screen/Screen.h", "#include \"mailstore/MailStore.h\""), "platform/screen may not include \"mailstore/MailStore.h\"");
    EXPECT_EQ(wrong("platform/mime/Reader.cpp", "#include \"recordset/Recordset.h\""), "platform/mime may not include \"recordset/Recordset.h\"");
    EXPECT_EQ(wrong("platform/html/Text.h", "#include \"mime/Reader.h\""), "platform/html may not include \"mime/Reader.h\"");
}

TEST(LayeringRules, AFolderWithoutARowIsToldOnce) {
    const auto found = violations("src/extra/Any.h", "#include <thread>\n#include \"host/Object.h\"\n");
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found.front().what, "src/extra has no row in the table of folders");
    EXPECT_EQ(wrong("platform/gtk/Window.h", "int x;"), "platform/gtk has no row in the table of folders");
    EXPECT_EQ(wrong("src/Loose.h", "int x;"), "src/ has no row in the table of folders");
}

TEST(LayeringRules, HeadersAreNamedFromTheTop) {
    EXPECT_NE(wrong("src/text/Tags.cpp", "#include \"Tags.h\""), "");
    EXPECT_NE(wrong("src/text/Tags.cpp", "#include \"../host/Object.h\""), "");
    EXPECT_NE(wrong("src/text/Tags.cpp", "#include \"text/../../platform/model/MailItem.h\""), "");
}

TEST(LayeringRules, AnIncludeIsSeenHoweverItIsWritten) {
    EXPECT_NE(wrong("src/text/Tags.cpp", "  #  include<thread>"), "");
    EXPECT_NE(wrong("src/text/Tags.cpp", "/* why */ #include <thread>  // because"), "");
    EXPECT_EQ(wrong("src/text/Tags.cpp", "#include HEADER"), "an include whose name a macro gives cannot be checked");
}

TEST(LayeringRules, CommentsAndLiteralsBreakNoRule) {
    EXPECT_EQ(wrong("src/text/Tags.cpp", "// #include <thread>, getenv"), "");
    EXPECT_EQ(violations("src/text/Tags.cpp", "/*\n#include <thread>\ngetenv\n*/\n").size(), 0u);
    EXPECT_EQ(wrong("src/text/Tags.cpp", "auto a = \"getenv \\\" getenv\"; auto b = '\"'; auto c = \"fopen\";"), "");
    EXPECT_EQ(violations("src/text/Tags.cpp", "auto a = uR\"x(\n#include <thread>\n\" )x\";\n").size(), 0u);
    EXPECT_NE(wrong("src/text/Tags.cpp", "auto a = 1'000; getenv(\"A\"); auto b = 2'000;"), "");
    EXPECT_NE(wrong("src/text/Tags.cpp", "auto a = u'\"'; getenv(\"A\"); auto b = u8'\"';"), "");
}

TEST(LayeringRules, AViolationTellsItsLine) {
    const std::vector<Violation> expected = {{2, "<thread> goes round the platform; use nothing: the logic has no threads"},
                                             {4, "fopen goes round the platform; use the surface's files"}};
    EXPECT_EQ(violations("src/text/Tags.cpp", "#include <string>\n#include <thread>\n\nauto f = fopen(\"a\", \"r\");"), expected);
}

TEST(LayeringRules, FilesElsewhereHaveNoRules) {
    EXPECT_EQ(wrong("tests/text/TagsTest.cpp", "#include <thread>"), "");
}

TEST(LayeringRules, MemberRowsAreReadWithTheirIds) {
    const std::vector<std::string> expected = {"Save", "EndOfFile"};
    EXPECT_EQ(memberRows("// LORVANE_MEMBER(Name)\nLORVANE_MEMBER(Save)\nLORVANE_MEMBER_AS(EndOfFile, \"EOF\")\n#undef LORVANE_MEMBER\n"), expected);
}

TEST(LayeringRules, MembersAreNamedByQualifiedIdsInCode) {
    const std::vector<std::string> expected = {"Save", "EntryID"};
    EXPECT_EQ(membersNamed("item.call(host::Member::Save); get(Member::EntryID); // Member::Move\nauto s = \"Member::Close\"; GroupMember::Add;"), expected);
}

}  // namespace
}  // namespace lorvane::layering
