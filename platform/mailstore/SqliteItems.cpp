#include "mailstore/SqliteItems.h"

#include "mailstore/PropertyBlob.h"

namespace lorvane::mailstore {

namespace {

void saveDetails(SqliteDatabase& database, std::int64_t item, const ItemRecord& record) {
    const Bytes properties = encodeProperties(record.properties);
    const Bytes userProperties = encodeUserProperties(record.userProperties);
    const Bytes recipients = encodeRecipients(record.recipients);
    Statement(database, R"sql(
        INSERT INTO details (item, properties, user_properties, recipients) VALUES (?, ?, ?, ?)
        ON CONFLICT (item) DO UPDATE SET properties = excluded.properties, user_properties = excluded.user_properties, recipients = excluded.recipients
        WHERE properties IS NOT excluded.properties OR user_properties IS NOT excluded.user_properties OR recipients IS NOT excluded.recipients)sql")
        .bind(item)
        .bind(properties)
        .bind(userProperties)
        .bind(recipients)
        .run();
}

void saveBody(SqliteDatabase& database, std::int64_t item, const ItemRecord& record) {
    Statement(database, R"sql(
        INSERT INTO bodies (item, kind, changed, text) VALUES (?, ?, ?, ?)
        ON CONFLICT (item) DO UPDATE SET kind = excluded.kind, changed = excluded.changed, text = excluded.text
        WHERE kind IS NOT excluded.kind OR changed IS NOT excluded.changed OR text IS NOT excluded.text)sql")
        .bind(item)
        .bind(static_cast<std::int64_t>(record.bodyKind))
        .bind(record.bodyChanged)
        .bind(record.body)
        .run();
}

void saveAttachment(SqliteDatabase& database, std::int64_t item, std::size_t position, const AttachmentRecord& attachment) {
    const Bytes properties = encodeProperties(attachment.properties);
    Statement(database, R"sql(
        INSERT INTO attachments (item, position, file_name, display_name, type, mime_type, content_id, inline, properties, data)
        VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
        ON CONFLICT (item, position) DO UPDATE SET file_name = excluded.file_name, display_name = excluded.display_name, type = excluded.type,
            mime_type = excluded.mime_type, content_id = excluded.content_id, inline = excluded.inline, properties = excluded.properties, data = excluded.data
        WHERE file_name IS NOT excluded.file_name OR display_name IS NOT excluded.display_name OR type IS NOT excluded.type
            OR mime_type IS NOT excluded.mime_type OR content_id IS NOT excluded.content_id OR inline IS NOT excluded.inline
            OR properties IS NOT excluded.properties OR data IS NOT excluded.data)sql")
        .bind(item)
        .bind(static_cast<std::int64_t>(position))
        .bind(attachment.fileName)
        .bind(attachment.displayName)
        .bind(attachment.type)
        .bind(attachment.mimeType)
        .bind(attachment.contentId)
        .bind(attachment.inlinePicture)
        .bind(properties)
        .bindOptional(attachment.data)
        .run();
}

void saveAttachments(SqliteDatabase& database, std::int64_t item, const std::vector<AttachmentRecord>& attachments) {
    for (std::size_t position = 0; position < attachments.size(); ++position) saveAttachment(database, item, position, attachments[position]);
    Statement(database, "DELETE FROM attachments WHERE item = ? AND position >= ?").bind(item).bind(static_cast<std::int64_t>(attachments.size())).run();
}

void saveOriginal(SqliteDatabase& database, std::int64_t item, const std::shared_ptr<const Bytes>& original) {
    if (!original) {
        Statement(database, "DELETE FROM originals WHERE item = ?").bind(item).run();
        return;
    }
    Statement(database, R"sql(
        INSERT INTO originals (item, data) VALUES (?, ?)
        ON CONFLICT (item) DO UPDATE SET data = excluded.data WHERE data IS NOT excluded.data)sql")
        .bind(item)
        .bind(std::span<const std::uint8_t>(*original))
        .run();
}

void loadDetails(SqliteDatabase& database, std::int64_t item, ItemRecord& record) {
    Statement row(database, "SELECT properties, user_properties, recipients FROM details WHERE item = ?");
    if (!row.bind(item).step()) database.raiseDamaged(u"the properties of an item are missing.");
    record.properties = decodeProperties(row.bytes(0), database.fileName());
    record.userProperties = decodeUserProperties(row.bytes(1), database.fileName());
    record.recipients = decodeRecipients(row.bytes(2), database.fileName());
}

void loadBody(SqliteDatabase& database, std::int64_t item, ItemRecord& record) {
    Statement row(database, "SELECT kind, changed, text FROM bodies WHERE item = ?");
    if (!row.bind(item).step()) database.raiseDamaged(u"the text of an item is missing.");
    const std::int64_t kind = row.number(0);
    if (kind < 0 || kind > static_cast<std::int64_t>(BodyKind::Rich)) database.raiseDamaged(u"the kind of an item's text is unknown.");
    record.bodyKind = static_cast<BodyKind>(kind);
    record.bodyChanged = row.number(1) != 0;
    record.body = row.text(2);
}

void loadAttachments(SqliteDatabase& database, std::int64_t item, ItemRecord& record) {
    Statement row(database,
                  "SELECT file_name, display_name, type, mime_type, content_id, inline, properties, data FROM attachments WHERE item = ? ORDER BY position");
    row.bind(item);
    while (row.step()) {
        AttachmentRecord& attachment = record.attachments.emplace_back();
        attachment.fileName = row.text(0);
        attachment.displayName = row.text(1);
        attachment.type = row.number32(2);
        attachment.mimeType = row.text(3);
        attachment.contentId = row.text(4);
        attachment.inlinePicture = row.number(5) != 0;
        attachment.properties = decodeProperties(row.bytes(6), database.fileName());
        attachment.data = row.optionalBytes(7);
    }
}

void loadOriginal(SqliteDatabase& database, std::int64_t item, ItemRecord& record) {
    Statement row(database, "SELECT data FROM originals WHERE item = ?");
    if (row.bind(item).step()) record.original = row.optionalBytes(0);
}

}  // namespace

void saveParts(SqliteDatabase& database, std::int64_t item, const ItemRecord& record) {
    saveDetails(database, item, record);
    saveBody(database, item, record);
    saveAttachments(database, item, record.attachments);
    saveOriginal(database, item, record.original);
}

void loadParts(SqliteDatabase& database, std::int64_t item, ItemRecord& record) {
    loadDetails(database, item, record);
    loadBody(database, item, record);
    loadAttachments(database, item, record);
    loadOriginal(database, item, record);
}

}  // namespace lorvane::mailstore
