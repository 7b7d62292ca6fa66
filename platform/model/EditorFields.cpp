#include "model/EditorFields.h"

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "model/ClipboardFragment.h"
#include "model/HostCore.h"

namespace lorvane::model {

using html::EditorDocument;
using html::TextKind;
using screen::KeyStroke;

namespace {

constexpr std::int32_t mailClass = 43;

/// The recipient type of the address fields To, CC and BCC.
constexpr std::int32_t recipientType(std::size_t field) noexcept {
    return static_cast<std::int32_t>(field) + 1;
}

TextKind documentKind(ItemState& item) {
    const auto kind = item.record().bodyKind;
    // The kind of the text itself: tasks and the like may come with any.
    return static_cast<TextKind>(kind == mailstore::BodyKind::None ? item.editorKind() : kind);
}

std::u16string documentSource(ItemState& item) {
    return item.record().bodyKind == mailstore::BodyKind::None ? html::emptySource(documentKind(item)) : item.record().body;
}

}  // namespace

void EditorField::restart() {
    versions_.clear();
    versions_.push_back({std::nullopt, document.source()});
    noted_ = document.revision();
}

void EditorField::note(std::uint64_t pump, std::uint32_t delay) {
    if (document.revision() == noted_) return;
    noted_ = document.revision();
    if (versions_.back().pump == pump) {
        versions_.back().source = document.source();
    } else {
        versions_.push_back({pump, document.source()});
    }
    while (versions_.size() > 1 && isReached(versions_[1], pump, delay)) versions_.pop_front();
}

void EditorField::reload(TextKind kind, std::u16string source) {
    document.setSource(kind, std::move(source));
    restart();
}

const std::u16string& EditorField::asOf(std::uint64_t pump, std::uint32_t delay) const {
    auto version = versions_.rbegin();
    while (version + 1 != versions_.rend() && !isReached(*version, pump, delay)) ++version;
    return version->source;
}

EditorFields::EditorFields(ItemState& item) : item_(item), hasAddresses_(item.head().itemClass == mailClass), focus_(EditorFieldName::Body) {
    for (std::size_t i = 0; i < knownNames_.size(); ++i) {
        if (hasAddresses_) knownNames_[i] = item.recipientNames(recipientType(i));
        fields_.emplace_back(TextKind::Plain, knownNames_[i], EditorDocument::Lines::One);
    }
    fields_.emplace_back(TextKind::Plain, item.head().subject, EditorDocument::Lines::One);
    fields_.emplace_back(documentKind(item), documentSource(item), EditorDocument::Lines::Many);
}

void EditorFields::placeFocus() {
    focus_ = hasAddresses_ && !item_.isSaved() && item_.recipients().empty() ? EditorFieldName::To : EditorFieldName::Body;
}

std::uint64_t EditorFields::pumps() const noexcept {
    return item_.core().options.desktop.pumpCount();
}

bool EditorFields::has(EditorFieldName field) const noexcept {
    return hasAddresses_ || field >= EditorFieldName::Subject;
}

void EditorFields::setFocus(EditorFieldName field) {
    if (!has(field)) throw host::HostError(host::runtime_error::InvalidProcedureCall);
    focus_ = field;
}

void EditorFields::noteChanges() {
    for (EditorField& field : fields_) field.note(pumps(), item_.core().options.commitDelay);
}

void EditorFields::keys(const std::vector<KeyStroke>& strokes) {
    std::u16string typed;
    const auto typeWaiting = [&] {
        if (!typed.empty()) focused().typeText(typed);
        typed.clear();
    };
    for (const KeyStroke& stroke : strokes) {
        if (stroke.key == KeyStroke::Key::Character && !stroke.control && !stroke.alt) {
            typed += stroke.character;
            continue;
        }
        typeWaiting();
        key(stroke);
    }
    typeWaiting();
    noteChanges();
}

void EditorFields::key(const KeyStroke& stroke) {
    if (stroke.alt) return;
    EditorDocument& document = focused();
    switch (stroke.key) {
        case KeyStroke::Key::Character:
            return controlKey(stroke.character);
        case KeyStroke::Key::Backspace:
            return document.backspace();
        case KeyStroke::Key::Delete:
            return document.del();
        case KeyStroke::Key::Enter:
            return document.enter();
        case KeyStroke::Key::Tab:
            return moveFocus(stroke.shift);
        case KeyStroke::Key::Home:
            return stroke.control ? document.setCaret(0) : document.home();
        case KeyStroke::Key::End:
            return stroke.control ? document.setCaret(EditorDocument::End) : document.end();
        case KeyStroke::Key::Left:
            return document.left();
        case KeyStroke::Key::Right:
            return document.right();
        default:
            return;
    }
}

void EditorFields::controlKey(char16_t character) {
    switch (host::foldUnit(character)) {
        case u'a':
            return focused().selectAll();
        case u'c':
            copySelection();
            return;
        case u'v':
            paste(focus_);
            return;
        case u'x':
            if (copySelection()) focused().cut();
            return;
        default:
            return;
    }
}

void EditorFields::moveFocus(bool back) {
    const auto first = hasAddresses_ ? EditorFieldName::To : EditorFieldName::Subject;
    if (back && focus_ > first) {
        focus_ = static_cast<EditorFieldName>(static_cast<std::uint8_t>(focus_) - 1);
    } else if (!back && focus_ < EditorFieldName::Body) {
        focus_ = static_cast<EditorFieldName>(static_cast<std::uint8_t>(focus_) + 1);
    }
}

bool EditorFields::copySelection() {
    const host::Object& clipboard = item_.core().options.services.clipboard;
    if (!clipboard || focused().selectionLength() == 0) return false;
    clipboard.call(host::Member::SetText, {focused().selectedText()});
    return true;
}

bool EditorFields::paste(EditorFieldName field) {
    const auto& clipboard = item_.core().options.clipboardContent;
    if (!clipboard) return false;
    const PasteContent content = clipboard();
    const auto fragment = content.htmlFormat ? fragmentOfHtmlFormat(*content.htmlFormat) : std::nullopt;
    if (!fragment && !content.text) return false;
    document(field).paste(fragment, content.text);
    noteChanges();
    return true;
}

void EditorFields::reloadBody() {
    at(EditorFieldName::Body).reload(documentKind(item_), documentSource(item_));
}

void EditorFields::reloadSubject() {
    at(EditorFieldName::Subject).reload(TextKind::Plain, item_.head().subject);
}

void EditorFields::reloadRecipients() {
    if (!hasAddresses_) return;
    for (std::size_t i = 0; i < knownNames_.size(); ++i) {
        std::u16string names = item_.recipientNames(recipientType(i));
        // A field whose recipients stay as they are keeps what was typed into it.
        if (names == knownNames_[i]) continue;
        fields_[i].reload(TextKind::Plain, names);
        knownNames_[i] = std::move(names);
    }
}

bool EditorFields::isEdited() const {
    for (std::size_t i = 0; i < knownNames_.size(); ++i) {
        if (fields_[i].document.source() != knownNames_[i]) return true;
    }
    const EditorField& subject = fields_[static_cast<std::size_t>(EditorFieldName::Subject)];
    const EditorField& body = fields_[static_cast<std::size_t>(EditorFieldName::Body)];
    return subject.document.source() != item_.head().subject || body.document.source() != documentSource(item_);
}

void EditorFields::commit(std::uint32_t delay) {
    const std::uint64_t pump = pumps();
    if (hasAddresses_) {
        for (std::size_t i = 0; i < knownNames_.size(); ++i) {
            item_.commitRecipientNames(recipientType(i), fields_[i].asOf(pump, delay));
            knownNames_[i] = item_.recipientNames(recipientType(i));
        }
    }
    item_.commitSubject(at(EditorFieldName::Subject).asOf(pump, delay));
    const EditorField& bodyField = at(EditorFieldName::Body);
    item_.commitBody(static_cast<mailstore::BodyKind>(bodyField.document.kind()), bodyField.asOf(pump, delay));
}

}  // namespace lorvane::model
