#include "crash/SavedStates.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>

#include "host/TextFunctions.h"
#include "mailstore/PropertyBlob.h"
#include "mailstore/TempFolder.h"

namespace lorvane::crash {

namespace {

using mailstore::test::PlacedItem;
using mailstore::test::readBytes;
using mailstore::test::writeBytes;

std::string text(const host::Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

/// Everything of an item but its identity and version.
std::string fullText(const PlacedItem& item) {
    const mailstore::ItemRecord& record = item.record;
    std::string full = mailstore::test::lineOf(item);
    full += '\n' + host::toUtf8(record.head.messageClass) + std::to_string(record.head.itemClass) + (record.bodyChanged ? " changed" : "");
    full += text(mailstore::encodeProperties(record.properties)) + text(mailstore::encodeUserProperties(record.userProperties)) +
            text(mailstore::encodeRecipients(record.recipients));
    for (const mailstore::AttachmentRecord& attachment : record.attachments) {
        full += host::toUtf8(attachment.displayName + u"|" + attachment.mimeType + u"|" + attachment.contentId) + (attachment.inlinePicture ? "|inline" : "") +
                text(mailstore::encodeProperties(attachment.properties)) + (attachment.data ? text(*attachment.data) : "none");
    }
    full += record.original ? text(*record.original) : "none";
    return withoutRound(full);
}

std::vector<PlacedItem> notIn(const Items& items, const Items& others) {
    std::vector<PlacedItem> result;
    std::ranges::copy_if(items, std::back_inserter(result), [&others](const PlacedItem& item) { return std::ranges::find(others, item) == others.end(); });
    return result;
}

std::vector<std::string> sortedTexts(const Items& items) {
    std::vector<std::string> texts;
    std::ranges::transform(items, std::back_inserter(texts), fullText);
    std::ranges::sort(texts);
    return texts;
}

std::uint32_t bigEndian(const host::Bytes& bytes, std::size_t at) {
    return static_cast<std::uint32_t>(bytes[at]) << 24 | static_cast<std::uint32_t>(bytes[at + 1]) << 16 | static_cast<std::uint32_t>(bytes[at + 2]) << 8 |
           bytes[at + 3];
}

/// The sizes at which the log ends with a commit. Frames of pages follow the log's head; that of a commit tells the size of the file.
std::vector<std::size_t> commitsIn(const host::Bytes& log) {
    constexpr std::size_t logHead = 32, frameHead = 24;
    std::vector<std::size_t> ends;
    if (log.size() < logHead) return ends;
    const std::size_t frame = frameHead + bigEndian(log, 8);
    for (std::size_t at = logHead; at + frame <= log.size(); at += frame) {
        if (bigEndian(log, at + 4) != 0) ends.push_back(at + frame);
    }
    return ends;
}

/// A reader that sees the store as it was: meanwhile nothing goes from the log into the file.
class Reader {
public:
    explicit Reader(const std::filesystem::path& file) {
        if (sqlite3_open(file.c_str(), &connection_) != SQLITE_OK ||
            sqlite3_exec(connection_, "BEGIN; SELECT count(*) FROM items", nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error("the store cannot be read");
    }
    ~Reader() { sqlite3_close(connection_); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

private:
    sqlite3* connection_ = nullptr;
};

}  // namespace

Difference difference(const Items& before, const Items& after) {
    return {sortedTexts(notIn(before, after)), sortedTexts(notIn(after, before))};
}

std::string summary(const Items& before, const Items& after) {
    std::string lines;
    for (const PlacedItem& item : notIn(before, after)) lines += "- " + withoutRound(mailstore::test::lineOf(item)) + "\n";
    for (const PlacedItem& item : notIn(after, before)) lines += "+ " + withoutRound(mailstore::test::lineOf(item)) + "\n";
    return lines;
}

Items itemsNow(const std::filesystem::path& store) {
    const mailstore::SqliteFile file(store);
    file.check();
    return mailstore::test::itemsOf(*file.mailStore());
}

std::vector<Items> savedStates(const std::filesystem::path& store, const std::function<void()>& act) {
    std::vector<Items> states = {itemsNow(store)};
    const host::Bytes base = readBytes(store);
    host::Bytes log;
    {
        const Reader reader(store);
        act();
        log = readBytes(store.string() + "-wal");
    }
    const mailstore::test::TempFolder place;
    const std::filesystem::path copy = place.file("store.sqlite");
    for (const std::size_t end : commitsIn(log)) {
        writeBytes(copy, base);
        writeBytes(copy.string() + "-wal", {log.begin(), log.begin() + static_cast<std::ptrdiff_t>(end)});
        Items items = itemsNow(copy);
        if (items != states.back()) states.push_back(std::move(items));
    }
    return states;
}

std::vector<Items> savedStates(const Program& program, const CommandUnderTest& command, std::uint32_t round) {
    const Program::Words words = command.prepare(program, round);
    return savedStates(storeOf(program), [&] {
        const cli::test::Ended ended = program(words);
        EXPECT_EQ(ended.status, command.status) << ended;
    });
}

}  // namespace lorvane::crash
