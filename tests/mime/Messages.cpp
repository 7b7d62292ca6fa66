#include "mime/Messages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace lorvane::mime::testing {

namespace tags = mailstore::tags;

mailstore::ItemRecord read(std::string_view message) {
    ReadOptions options;
    options.accountName = u"Ann Account";
    options.zoneOffset = [](std::int64_t) { return 7200; };
    return readMessage({reinterpret_cast<const std::uint8_t*>(message.data()), message.size()}, options);
}

std::string refusal(std::string_view message) {
    try {
        read(message);
    } catch (const host::HostError& error) {
        EXPECT_EQ(error.number(), host::host_failure::Failed);
        return host::toUtf8(error.description());
    }
    ADD_FAILURE() << "the message was read";
    return {};
}

WriteOptions options() {
    WriteOptions options;
    options.fromName = u"Ann Account";
    options.fromAddress = u"ann@example.org";
    options.date = host::DateTime{46762.375};  // 2028-01-10 09:00
    options.zoneMinutes = 60;
    options.newMessageId = [] { return std::string("<1@lorvane.example>"); };
    return options;
}

std::string write(const mailstore::ItemRecord& item) {
    const host::Bytes bytes = writeMessage(item, options());
    return {bytes.begin(), bytes.end()};
}

mailstore::ItemRecord draft(mailstore::BodyKind kind, std::u16string body) {
    mailstore::ItemRecord item;
    item.head.subject = u"A subject";
    item.recipients = {{u"John Public", u"john@example.com", u"SMTP", 1, true}};
    item.properties[tags::MessageFlags] = mailstore::message_flags::Unsent;
    item.bodyKind = kind;
    item.body = std::move(body);
    return item;
}

mailstore::AttachmentRecord file(std::u16string name, std::u16string type, std::string_view data) {
    mailstore::AttachmentRecord attachment;
    attachment.fileName = attachment.displayName = std::move(name);
    attachment.mimeType = std::move(type);
    attachment.data = std::make_shared<const host::Bytes>(data.begin(), data.end());
    return attachment;
}

mailstore::AttachmentRecord picture(std::u16string name, std::u16string contentId, std::string_view data) {
    mailstore::AttachmentRecord attachment = file(std::move(name), u"image/png", data);
    attachment.contentId = std::move(contentId);
    attachment.inlinePicture = true;
    return attachment;
}

std::string dataOf(const mailstore::AttachmentRecord& attachment) {
    return {attachment.data->begin(), attachment.data->end()};
}

std::u16string text(const mailstore::ItemRecord& item, std::uint32_t tag) {
    const auto found = item.properties.find(tag);
    return found == item.properties.end() ? u"(none)" : std::get<std::u16string>(found->second);
}

double date(const mailstore::ItemRecord& item, std::uint32_t tag) {
    const auto found = item.properties.find(tag);
    return found == item.properties.end() ? 0.0 : std::get<host::DateTime>(found->second).days;
}

std::int32_t flags(const mailstore::ItemRecord& item) {
    return std::get<std::int32_t>(item.properties.at(tags::MessageFlags));
}

std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read " + path);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

const std::map<std::string, std::string>& corpus() {
    static const std::map<std::string, std::string> mails = [] {
        const std::string folder = LORVANE_SOURCE_DIR "/../shared/data/mail";
        if (!std::filesystem::is_directory(folder)) throw std::runtime_error("the folder of real mails is missing: " + folder);
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().extension() == ".eml") found[entry.path().filename().string()] = readFile(entry.path().string());
        return found;
    }();
    return mails;
}

std::string crlf(std::string_view lines) {
    std::string out;
    for (const char c : lines) {
        if (c == '\n') out += '\r';
        out += c;
    }
    return out;
}

}  // namespace lorvane::mime::testing
