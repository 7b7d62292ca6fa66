#include "model/ItemText.h"

#include "html/EditorDocument.h"

namespace lorvane::model {

namespace {

html::TextKind textKind(BodyKind kind) noexcept {
    return static_cast<html::TextKind>(kind);
}

}  // namespace

std::u16string visibleBody(BodyKind kind, std::u16string_view source) {
    return kind == BodyKind::None ? std::u16string(source) : html::textOfSource(textKind(kind), source);
}

std::u16string sourceFromText(BodyKind kind, std::u16string_view text) {
    return html::sourceOfText(textKind(kind), text);
}

}  // namespace lorvane::model
