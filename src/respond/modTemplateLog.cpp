#include "respond/modTemplateLog.h"

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"

namespace lorvane::respond {

using namespace host;

namespace {

constexpr std::u16string_view logHeader = u"User Name,Date,Time,Template Name,Template EntryID,Template StoreID";

void showUnableToWrite(std::u16string_view path) {
    const std::u16string text =
        u"Unable to create or write to the file " + LogFileName(path) + u"\r\n\r\nAccess is denied.\r\nPlease check your permissions on the folder or file.";
    MsgBox(text, msgbox::Exclamation, u"Unable to create the file - " + apartment().title);
}

std::u16string subjectOf(std::u16string_view entryID, std::u16string_view storeID) {
    ensureNameSpace();
    const MailItem item = apartment().gNameSpace.GetItemFromID(entryID, storeID);
    const std::int32_t itemClass = item.Class();
    std::u16string subject;
    if (itemClass == item_class::Mail || itemClass == item_class::Post) subject = item.Subject();
    return subject.empty() ? u"NO SUBJECT" : subject;
}

/// Only the subject is quoted, and nothing is escaped: the format other programs read.
std::u16string logLine(std::u16string_view subject, std::u16string_view entryID, std::u16string_view storeID) {
    const Machine& machine = apartment().machine;
    const Locale locale = machine.region().locale();
    const DateTime now = machine.clock().Now();
    std::u16string line = machine.environment().Variable(u"username");
    line += u"," + FormatDateTime(now, DateStyle::ShortDate, locale) + u"," + FormatDateTime(now, DateStyle::LongTime, locale);
    line += u",\"" + std::u16string(subject) + u"\",";
    line.append(entryID).append(u",").append(storeID);
    return line;
}

}  // namespace

void TemplateLogRecord(std::u16string_view entryID, std::u16string_view storeID) {
    withErrorBox(u"modTemplateLog.TemplateLogRecord", [&] {
        const std::u16string subject = subjectOf(entryID, storeID);
        const std::u16string path = GetPath();
        const std::u16string line = logLine(subject, entryID, storeID);
        if (!blnLogTemplate()) return;
        if (!blnFolderExist(path)) {
            MsgBox(
                u"The location for the log file is invalid. You might have deleted\r\nor renamed the folder where the log file was located.\r\n"
                u"Please go to the Settings form to set the correct location\r\nof the log file.",
                msgbox::Exclamation, u"Invalid File Location - " + apartment().title);
            return;
        }
        if (blnFileExist(path) || CreateLogFile(path, u"test")) WriteToFile(path, line);
    });
}

bool blnLogTemplate() {
    const std::u16string value = setting(u"LogTemplate");
    return Variant(value.empty() ? std::u16string(u"0") : value).toBoolean();
}

std::u16string GetPath() {
    return setting(u"TemplatesLogFilePath");
}

bool blnFolderExist(std::u16string_view path) {
    const std::size_t last = InStrRev(path, u"\\");
    return apartment().machine.files().FolderExists(Left(path, last == 0 ? 0 : last - 1));
}

bool blnFileExist(std::u16string_view path) {
    return apartment().machine.files().FileExists(path);
}

void WriteToFile(std::u16string_view path, std::u16string_view line) {
    if (!ignoringErrors([&] { apartment().machine.files().AppendText(path, std::u16string(line).append(CrLf)); })) showUnableToWrite(path);
}

bool CreateLogFile(std::u16string_view path, std::u16string_view probe) {
    const Files files = apartment().machine.files();
    const bool created = ignoringErrors([&] {
        files.WriteText(path, std::u16string(probe).append(CrLf));
        files.DeleteFile(path);
        files.WriteText(path, std::u16string(logHeader).append(CrLf));
    });
    if (!created) showUnableToWrite(path);
    return created;
}

std::u16string DefaultLogFile() {
    const std::u16string path = GetPath();
    if (!path.empty() && blnFolderExist(path)) return path;
    constexpr std::int32_t documents = 5;
    return apartment().machine.files().GetFolderPath(documents) + u"\\TemplatesLogFile.csv";
}

std::u16string LogFileName(std::u16string_view path) {
    return std::u16string(Mid(path, InStrRev(path, u"\\") + 1));
}

}  // namespace lorvane::respond
