#pragma once

#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "mailstore/ItemRecord.h"
#include "mailstore/TempFolder.h"

/// The built program, run as a process of its own.
namespace lorvane::cli::test {

/// What a process came to.
struct Ended {
    int status = -1;  ///< -1 where a signal ended it
    std::string out, err;
    bool operator==(const Ended&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Ended& ended);

/// What varies between calls.
struct Call {
    std::string input = {};                               ///< standard input
    std::map<std::string, std::string> environment = {};  ///< beside an otherwise empty environment
    std::filesystem::path outTo = {};                     ///< standard output goes into this file; `out` is empty then
    bool readerGone = false;                              ///< nobody reads standard output
};

/// A home of its own for the program, gone with the object: a store, and a folder for files, which is the one the program starts in.
///
///     Program lorvane;
///     lorvane.file("thanks.txt", "Dear [FirstName]");
///     EXPECT_EQ(lorvane({"template", "add", "--subject", "Thanks", "--text", "thanks.txt"}).status, 0);
class Program {
public:
    using Words = std::vector<std::string>;

    /// With `--store` and, unless the words have one, `--now 2028-01-10T09:00`.
    Ended operator()(const Words& words, const Call& call = {}) const;
    /// The words alone.
    Ended bare(const Words& words, const Call& call = {}) const;
    /// A command that must end well; gives its standard output.
    std::string done(const Words& words, const Call& call = {}) const;

    std::filesystem::path folder() const { return place_.path() / "files"; }
    std::filesystem::path store() const { return place_.path() / "store"; }
    std::filesystem::path home() const { return place_.path() / "home"; }

    std::filesystem::path file(const std::string& name, std::string_view content) const;  ///< makes it in the folder
    std::string content(const std::string& name) const;                                   ///< of a file in the folder, or by its whole path

    /// Makes a template by `template add`.
    void addText(const std::string& subject, std::string_view text) const;
    void addHtml(const std::string& subject, std::string_view html) const;

    /// The items in the folders of this name, whole, read from the store as another program would.
    std::vector<mailstore::ItemRecord> itemsIn(std::string_view folderName) const;
    std::vector<mailstore::ItemRecord> drafts() const { return itemsIn("Drafts"); }
    std::vector<mailstore::ItemRecord> templates() const { return itemsIn("Lorvane"); }
    std::size_t itemCount() const;    ///< in all folders
    std::string storedState() const;  ///< every folder, and every item with its version

    /// Its home lies in the folder for temporary files, unless told otherwise.
    explicit Program(const std::filesystem::path& root = std::filesystem::temp_directory_path());

private:
    mailstore::test::TempFolder place_;
};

/// A script of this folder, run by Python with these arguments; gives what it prints.
std::string python(const std::string& script, const std::vector<std::string>& arguments);

/// The folder of real mails and templates.
std::filesystem::path dataFolder();
/// The real mails, by their names.
std::vector<std::filesystem::path> realMails();

std::string textOf(const std::filesystem::path& file);

/// A draft with this body, and further header fields in front, each with its line end.
std::string draft(std::string_view body, std::string_view fields = "");
inline constexpr std::string_view sampleQuote = "Quote (Sample)";
inline constexpr std::string_view receivedRefusal = "Lorvane: You can only insert text into mails that are to be sent out.\n";

}  // namespace lorvane::cli::test
