#include <algorithm>
#include <cstring>

#include "fuzz/FuzzInput.h"
#include "host/HostError.h"
#include "mime/AnswerFields.h"
#include "mime/HeaderWriter.h"
#include "mime/MboxSplitter.h"
#include "mime/MimeReader.h"
#include "mime/MimeTree.h"
#include "mime/MimeWriter.h"

namespace {

using namespace lorvane;

mime::ReadOptions readOptions() {
    mime::ReadOptions options;
    options.zoneOffset = [](std::int64_t) { return 0; };
    return options;
}

mime::WriteOptions writeOptions() {
    mime::WriteOptions options;
    options.zoneMinutes = 0;
    options.newMessageId = [] { return "<1@localhost>"; };
    return options;
}

/// What an answer takes from a message is read from the answer as it was written.
void answer(const mailstore::ItemRecord& record) {
    const mime::AnswerFields fields = mime::answerFieldsOf(record);
    for (const auto* ids : {&fields.inReplyTo, &fields.references}) {
        const mime::HeaderField written{"", mime::messageIdsField("References", *ids, "\r\n")};
        fuzz::require(mime::decodeMessageIds(written.value()) == *ids, "the messages that an answer names are those that it was told");
    }
}

/// A message is refused or read. One that nobody changed is written byte for byte; one with another body has that body.
void readAndWrite(std::span<const std::uint8_t> bytes) {
    mailstore::ItemRecord record = mime::readMessage(bytes, readOptions());
    if (record.original) fuzz::require(mime::writeMessage(record, writeOptions()) == *record.original, "what was not changed is written byte for byte");
    answer(record);
    record.bodyKind = mailstore::BodyKind::Html;
    record.body = u"<HTML><BODY>other</BODY></HTML>";
    record.bodyChanged = true;
    const mailstore::ItemRecord again = mime::readMessage(mime::writeMessage(record, writeOptions()), readOptions());
    fuzz::require(again.body == record.body, "the changed body is the body that is read");
}

void split(std::span<const std::uint8_t> bytes) {
    const std::size_t size = bytes.size();
    mime::MboxSplitter mailbox([bytes](std::span<std::uint8_t> buffer) mutable {
        const std::size_t count = std::min(buffer.size(), bytes.size());
        std::copy_n(bytes.begin(), count, buffer.begin());
        bytes = bytes.subspan(count);
        return count;
    });
    std::size_t total = 0;
    while (const auto message = mailbox.next()) total += message->size();
    fuzz::require(total <= size, "a mailbox gives no more bytes than it has");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    try {
        readAndWrite(bytes);
    } catch (const host::HostError&) {
        // No mail, or beyond the limits.
    }
    split(bytes);
    return 0;
}
