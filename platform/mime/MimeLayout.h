#pragma once

#include <string>
#include <vector>

#include "mailstore/ItemRecord.h"
#include "mime/MimeTree.h"

/// What the parts of a message are to the reader of a mail: which one is its text, which are attachments.
namespace lorvane::mime {

/// A part that the model shows as an attachment.
struct AttachmentPart {
    Entity* entity = nullptr;
    bool related = false;  ///< belongs to the HTML it stands beside
};

struct MessageLayout {
    Entity* body = nullptr;  ///< the part that is the item's text; null where the message has none
    mailstore::BodyKind kind = mailstore::BodyKind::Plain;
    Entity* textAlternative = nullptr;        ///< the plain rendition beside an HTML or rich body
    std::vector<Entity*> otherRenditions;     ///< renditions of the text that are dropped once the text changes
    std::vector<AttachmentPart> attachments;  ///< in the order of the message
};

/// Of alternatives HTML is the body, else rich text, else plain text, else the last text. Outside alternatives the first text that is not marked as an
/// attachment is the body, and later ones are attachments. A message that is one text is a body whatever its name.
MessageLayout layoutOf(Entity& root);

/// The text of a part in UTF-16, as `kind` needs it: text/enriched and text/richtext lose their markup.
std::u16string textOf(const Entity& part);

/// The file name a part is sent under, empty where there is none; path parts are cut off.
std::u16string fileNameOf(const Entity& part);

/// The content id without its angle brackets.
std::u16string contentIdOf(const Entity& part);

}  // namespace lorvane::mime
