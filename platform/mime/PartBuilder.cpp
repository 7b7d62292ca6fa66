#include "mime/PartBuilder.h"

#include <algorithm>
#include <cstdint>

#include "host/TextFunctions.h"
#include "mime/HeaderWriter.h"
#include "mime/TransferCoding.h"

namespace lorvane::mime {
namespace {

bool isContentField(const HeaderField& field) noexcept {
    return startsWithAscii(field.name, "Content-");
}

std::uint64_t hashOf(std::string_view bytes) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    return hash;
}

std::string hexOf(std::uint64_t number) {
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4) text += "0123456789abcdef"[number >> shift & 15];
    return text;
}

/// A boundary that follows from the parts and does not stand in them.
std::string boundaryFor(const std::vector<Part>& parts) {
    std::string all;
    for (const Part& part : parts) all += serialize(*part);
    for (std::uint64_t seed = hashOf(all);; ++seed) {
        std::string boundary = "=_lorvane_" + hexOf(seed);
        if (all.find(boundary) == std::string::npos) return boundary;
    }
}

bool isToken(std::string_view text) noexcept {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](char c) { return c > 32 && c < 127 && std::string_view("()<>@,;:\\\"/[]?=").find(c) == std::string_view::npos; });
}

/// The type as it can stand in a header.
std::string mediaType(std::u16string_view given) {
    const std::string type = lowerAscii(host::toUtf8(given));
    const std::size_t slash = type.find('/');
    const bool valid = slash != std::string::npos && isToken(std::string_view(type).substr(0, slash)) && isToken(std::string_view(type).substr(slash + 1));
    return valid && !type.starts_with("multipart/") && type.size() < 100 ? type : "application/octet-stream";
}

/// Whether bytes can go through mail as they are, as an embedded message must: short lines, no NUL, no line end of another kind, no boundary in it.
bool canGoAsIs(std::string_view bytes, const std::vector<std::string>& avoid) {
    std::size_t line = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool feed = bytes[i] == '\n';
        if (bytes[i] == '\0' || (bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n')) || (feed && (i == 0 || bytes[i - 1] != '\r')))
            return false;
        line = feed ? 0 : line + 1;
        if (line > 998) return false;
    }
    return std::none_of(avoid.begin(), avoid.end(), [&](const std::string& boundary) { return bytes.find("--" + boundary) != std::string_view::npos; });
}

std::string contentIdText(std::u16string_view id) {
    std::u16string clean;
    for (const char16_t unit : id)
        if (unit > 0x20 && unit != 0x7F && unit != u'<' && unit != u'>') clean += unit;
    return "<" + host::toUtf8(clean) + ">";
}

}  // namespace

std::string contentDigest(std::string_view bytes) {
    return hexOf(hashOf(bytes));
}

namespace {

bool beginsWithLineEnd(std::string_view text) noexcept {
    return text.starts_with('\r') || text.starts_with('\n');
}

/// The boundary line behind a part: the next part's, or the last one of the multipart. Null for a message as a whole.
std::string* boundaryBehind(const Entity& part) noexcept {
    if (!part.parent) return nullptr;
    auto& siblings = part.parent->children;
    const auto next = std::find_if(siblings.begin(), siblings.end(), [&](const Part& sibling) { return sibling.get() == &part; }) + 1;
    return next == siblings.end() ? &part.parent->closing : &(*next)->delimiter;
}

/// A line of a field that lost the blank in front of it is known by the field behind it: as the last line of a header it needs the blank.
void mendLastFold(std::string& raw) {
    const std::size_t before = raw.size() < 2 ? std::string::npos : raw.rfind('\n', raw.size() - 2);
    if (before == std::string::npos) return;
    if (raw[before + 1] != ' ' && raw[before + 1] != '\t') raw.insert(before + 1, 1, ' ');
}

}  // namespace

void PartBuilder::endField(std::string& raw) const {
    if (!raw.ends_with('\n')) raw += newline_;
    mendLastFold(raw);
}

/// A part that had nothing in it may lack the line ends around it: that of its boundary where the message was cut off there, and that of the next boundary.
void PartBuilder::endHeader(Entity& entity) const {
    if (!entity.delimiter.empty() && !entity.delimiter.ends_with('\n')) entity.delimiter += newline_;
    if (std::string* behind = boundaryBehind(entity); behind && !behind->empty() && !beginsWithLineEnd(*behind)) behind->insert(0, newline_);
    if (!entity.fields.empty()) endField(entity.fields.back().raw);
    if (entity.separator.empty()) entity.separator = newline_;
}

void PartBuilder::setField(Entity& entity, std::string_view name, std::string raw) const {
    auto& fields = entity.fields;
    const auto isNamed = [&](const HeaderField& field) { return equalsAscii(field.name, name); };
    auto first = std::find_if(fields.begin(), fields.end(), isNamed);
    if (first == fields.end()) {
        if (raw.empty()) return;
        endHeader(entity);
        fields.push_back({std::string(name), std::move(raw)});
        return;
    }
    if (!raw.empty()) (first++)->raw = std::move(raw);
    fields.erase(std::remove_if(first, fields.end(), isNamed), fields.end());
    endHeader(entity);
}

void PartBuilder::dropMeasures(Entity& entity) const {
    for (const char* name : {"Content-Length", "Content-MD5", "Lines"}) setField(entity, name, {});
}

Part PartBuilder::text(std::string_view type, std::u16string_view text) const {
    auto part = std::make_unique<Entity>();
    fillText(*part, type, text);
    return part;
}

void PartBuilder::setText(Entity& leaf, std::string_view type, std::u16string_view text) const {
    fillText(leaf, type, text);
    if (!leaf.parent) endText(leaf);
}

void PartBuilder::endText(Entity& leaf) const {
    if (leaf.content.empty() || leaf.content.ends_with('\n')) return;
    const bool quoted = transferEncodingNamed(leaf.value("Content-Transfer-Encoding")) == TransferEncoding::QuotedPrintable;
    leaf.content += (quoted ? "=" : "") + newline_;
}

void PartBuilder::fillText(Entity& leaf, std::string_view type, std::u16string_view text) const {
    dropMeasures(leaf);
    const std::string bytes = host::toUtf8(text);
    const std::string quoted = encodeQuotedPrintable(bytes, newline_);
    const std::string base64 = encodeBase64(bytes, newline_);
    const bool useQuoted = quoted.size() <= base64.size();
    leaf.content = useQuoted ? quoted : base64;
    leaf.type = type;
    setField(leaf, "Content-Type", parameterField("Content-Type", type, {{"charset", u"utf-8"}}, newline_));
    setField(leaf, "Content-Transfer-Encoding", tokenField("Content-Transfer-Encoding", useQuoted ? "quoted-printable" : "base64", newline_));
    endHeader(leaf);
}

Part PartBuilder::attachment(const mailstore::AttachmentRecord& attachment, bool related, const std::vector<std::string>& avoid) const {
    auto part = std::make_unique<Entity>();
    const std::string_view data = attachment.data ? std::string_view(reinterpret_cast<const char*>(attachment.data->data()), attachment.data->size()) : "";
    std::string type = mediaType(attachment.type == 5 && attachment.mimeType.empty() ? u"message/rfc822" : std::u16string_view(attachment.mimeType));
    const bool embedded = type.starts_with("message/");
    const bool asIs = embedded && canGoAsIs(data, avoid);
    if (embedded && !asIs) type = "application/octet-stream";
    std::vector<Parameter> name;
    if (!attachment.fileName.empty()) name.push_back({"filename", attachment.fileName});
    const bool foreign = std::any_of(data.begin(), data.end(), [](char c) { return static_cast<unsigned char>(c) > 127; });
    part->type = type;
    part->content = asIs ? std::string(data) : encodeBase64(data, newline_);
    setField(*part, "Content-Type", tokenField("Content-Type", type, newline_));
    setField(*part, "Content-Transfer-Encoding", tokenField("Content-Transfer-Encoding", !asIs ? "base64" : foreign ? "8bit" : "7bit", newline_));
    setField(*part, "Content-Disposition", parameterField("Content-Disposition", related ? "inline" : "attachment", name, newline_));
    if (!attachment.contentId.empty()) setField(*part, "Content-ID", tokenField("Content-ID", contentIdText(attachment.contentId), newline_));
    endHeader(*part);
    return part;
}

void PartBuilder::setParts(Entity& entity, std::string_view subtype, std::vector<Part> parts) const {
    entity.type = "multipart/" + std::string(subtype);
    entity.content.clear();
    for (Part& part : parts) part->delimiter.clear();
    entity.boundary = boundaryFor(parts);
    std::vector<Parameter> parameters{{"boundary", host::fromUtf8(entity.boundary)}};
    if (subtype == "related") parameters.insert(parameters.begin(), {"type", host::fromUtf8(parts.front()->type)});
    setField(entity, "Content-Type", parameterField("Content-Type", entity.type, parameters, newline_));
    endHeader(entity);
    entity.children.clear();
    for (Part& part : parts) {
        part->delimiter = (entity.children.empty() ? "" : newline_) + "--" + entity.boundary + newline_;
        entity.append(std::move(part));
    }
    entity.closing = newline_ + "--" + entity.boundary + "--" + newline_;
}

Part PartBuilder::multipart(std::string_view subtype, std::vector<Part> parts) const {
    auto entity = std::make_unique<Entity>();
    setParts(*entity, subtype, std::move(parts));
    return entity;
}

void PartBuilder::append(Entity& multipart, Part part) const {
    if (multipart.closing.empty()) multipart.closing = newline_ + "--" + multipart.boundary + "--" + newline_;
    // A closing line that follows the last part at once, without an empty line for itself, still needs one of its own.
    part->delimiter = newline_ + "--" + multipart.boundary + newline_;
    if (!beginsWithLineEnd(multipart.closing)) multipart.closing.insert(0, newline_);
    multipart.append(std::move(part));
}

Entity& PartBuilder::wrap(Entity& entity, std::string_view subtype) const {
    auto inner = std::make_unique<Entity>();
    const auto firstContent =
        std::stable_partition(entity.fields.begin(), entity.fields.end(), [](const HeaderField& field) { return !isContentField(field); });
    inner->fields.assign(std::make_move_iterator(firstContent), std::make_move_iterator(entity.fields.end()));
    entity.fields.erase(firstContent, entity.fields.end());
    inner->separator = newline_;
    inner->content = std::move(entity.content);
    inner->children = std::move(entity.children);
    for (const Part& child : inner->children) child->parent = inner.get();
    inner->closing = std::move(entity.closing);
    inner->boundary = std::move(entity.boundary);
    inner->type = std::move(entity.type);
    endHeader(*inner);
    Entity& wrapped = *inner;
    std::vector<Part> parts;
    parts.push_back(std::move(inner));
    setParts(entity, subtype, std::move(parts));
    return wrapped;
}

void PartBuilder::replaceContent(Entity& entity, Part part) const {
    dropMeasures(entity);
    for (const char* name : {"Content-Type", "Content-Transfer-Encoding", "Content-Disposition"}) setField(entity, name, {});
    for (const HeaderField& field : part->fields) setField(entity, field.name, field.raw);
    endHeader(entity);
    entity.content = std::move(part->content);
    entity.children.clear();
    for (Part& child : part->children) entity.append(std::move(child));
    entity.closing = std::move(part->closing);
    entity.boundary = std::move(part->boundary);
    entity.type = std::move(part->type);
}

}  // namespace lorvane::mime
