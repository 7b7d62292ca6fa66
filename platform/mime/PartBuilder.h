#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mailstore/ItemRecord.h"
#include "mime/MimeTree.h"

/// New parts, and changes to those of a parsed message. All keep what they are not told to change.
namespace lorvane::mime {

using Part = std::unique_ptr<Entity>;

/// 16 hexadecimal digits that follow from the bytes.
std::string contentDigest(std::string_view bytes);

class PartBuilder {
public:
    explicit PartBuilder(std::string_view newline) : newline_(newline) {}

    std::string_view newline() const noexcept { return newline_; }

    /// A part of text in UTF-8.
    Part text(std::string_view type, std::u16string_view text) const;
    /// Makes an existing leaf such a part; its other fields stay, but for those that measure the old content.
    void setText(Entity& leaf, std::string_view type, std::u16string_view text) const;
    /// Ends the last line of a message that is one text; a soft break keeps the line end out of the text.
    void endText(Entity& leaf) const;
    /// `avoid`: boundaries that an embedded message must not hold.
    Part attachment(const mailstore::AttachmentRecord& attachment, bool related, const std::vector<std::string>& avoid) const;

    Part multipart(std::string_view subtype, std::vector<Part> parts) const;
    /// Puts a part behind the others of a multipart that has some.
    void append(Entity& multipart, Part part) const;
    /// Makes `entity` a multipart whose first part is what it was; fields that describe content go with it. Gives that part.
    Entity& wrap(Entity& entity, std::string_view subtype) const;
    /// Gives `entity` the content of `part`, and its content fields but for those it has itself and `part` does not; name, place and other fields stay.
    void replaceContent(Entity& entity, Part part) const;

    /// Writes the field in the place of the first of its name, drops the others, or puts it behind all; an empty `raw` only drops.
    void setField(Entity& entity, std::string_view name, std::string raw) const;

private:
    void endHeader(Entity& entity) const;
    void endField(std::string& raw) const;  // the last of a header
    void dropMeasures(Entity& entity) const;
    void fillText(Entity& leaf, std::string_view type, std::u16string_view text) const;
    void setParts(Entity& entity, std::string_view subtype, std::vector<Part> parts) const;
    std::string newline_;
};

}  // namespace lorvane::mime
