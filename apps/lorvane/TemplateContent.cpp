#include "TemplateContent.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "ExitStatus.h"
#include "Streams.h"
#include "host/Guards.h"
#include "host/Services.h"
#include "host/TextFunctions.h"
#include "model/ModelMembers.h"

namespace lorvane::cli {

using namespace host;

namespace {

constexpr std::int32_t byValue = 1;
constexpr std::int32_t longFileNameTag = 0x3707001F;

std::u16string surfacePath(const std::string& file) {
    const std::string absolute = std::filesystem::absolute(file).string();
    return Replace(fromUtf8(absolute), u"/", u"\\");
}

void requireReadable(const std::string& file) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored) || ::access(file.c_str(), R_OK) != 0)
        throw CommandEnd(ExitStatus::Fault, "cannot read " + file + " to attach it");
}

void attach(const SafeMailItem& item, const std::string& file) {
    const std::u16string name = fromUtf8(std::filesystem::path(file).filename().string());
    item.Attachments().Add(surfacePath(file), byValue, item.Attachments().Count() + 1, name);
}

/// Empty HTML would leave an item as it is that has a text of another kind; in an item of its own kind it takes the place of the text.
void writeHtml(const SafeMailItem& item, const std::u16string& html) {
    item.put(Member::BodyFormat, body_format::Html);
    item.HTMLBody(html);
}

/// In an HTML item the text would become HTML.
void writeText(const SafeMailItem& item, const std::u16string& text) {
    item.put(Member::BodyFormat, body_format::Plain);
    item.Body(text);
}

void takeText(const SafeMailItem& item, const SafeMailItem& from) {
    switch (from.BodyFormat()) {
        case body_format::Html:
            return writeHtml(item, from.HTMLBody());
        case body_format::RichText:
            return item.put(model::member::RTFBody, from.getText(model::member::RTFBody));
        default:
            return writeText(item, from.Body());
    }
}

/// Each goes through a file with a plain name, since its own may be none of a file; it gets that back on the other side.
void takeAttachments(const Attachments& attachments, const Attachments& from) {
    for (std::int32_t index = attachments.Count(); index >= 1; --index) attachments.Item(index).call(Member::Delete);
    const std::u16string folder = apartment().machine.files().GetTempPath();
    for (std::int32_t index = 1; index <= from.Count(); ++index) {
        const Attachment source = from.Item(index);
        const std::u16string path = folder + u"attachment" + decimal(index);
        source.SaveAsFile(path);
        const Attachment added = attachments.Add(path, byValue, index, source.DisplayName());
        added.setFields(longFileNameTag, source.FileName());
    }
}

}  // namespace

void requireShortSubject(const std::u16string& subject) {
    if (subject.size() > longestSubject) throw CommandEnd(ExitStatus::Refused, "the subject has over 600 characters; no list could show it");
}

ReadContent::ReadContent(const TemplateContent& content) : content_(content) {
    if (content_.subject) requireShortSubject(fromUtf8(*content_.subject));
    if (!content_.text.empty()) text_ = readTextInput(content_.text);
    if (!content_.html.empty()) html_ = readTextInput(content_.html);
    if (!content_.eml.empty()) message_ = readInput(content_.eml);
    for (const std::string& file : content_.attach) requireReadable(file);
}

void ReadContent::writeTo(const SafeMailItem& item) const {
    if (content_.subject) item.Subject(fromUtf8(*content_.subject));
    if (content_.categories) item.Categories(fromUtf8(*content_.categories));
    if (!content_.text.empty()) writeText(item, text_);
    if (!content_.html.empty()) writeHtml(item, html_);
    for (const std::string& file : content_.attach) attach(item, file);
}

void takeContent(const SafeMailItem& item, const SafeMailItem& from) {
    takeText(item, from);
    takeAttachments(item.Attachments(), from.Attachments());
}

UnfinishedItem::~UnfinishedItem() {
    if (finished_) return;
    ignoringErrors([&] { run_.driver().purge(item_); });
}

MailItem importDraft(Run& run, mailstore::ItemRecord record) {
    return MailItem(run.driver().import(std::move(record), apartment().gNameSpace.GetDefaultFolder(default_folder::Drafts)));
}

}  // namespace lorvane::cli
