#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "html/EditorDocument.h"
#include "model/HostOptions.h"
#include "model/ItemState.h"

namespace lorvane::model {

/// The fields of an open item that a caret can stand in, in the order of the Tab key.
enum class EditorFieldName : std::uint8_t { To, Cc, Bcc, Subject, Body };

/// One text field of an open item: its document, and how it stood at the event pumps that a commit may reach back to.
class EditorField {
public:
    EditorField(html::TextKind kind, std::u16string source, html::EditorDocument::Lines lines) : document(kind, std::move(source), lines) { restart(); }

    html::EditorDocument document;

    /// Notes a change of the document; `pump` counts the event pumps so far, `delay` is how many a commit waits for.
    void note(std::uint64_t pump, std::uint32_t delay);
    /// Loads another source and forgets what was typed.
    void reload(html::TextKind kind, std::u16string source);
    /// The source as it stood `delay` pumps before `pump`.
    const std::u16string& asOf(std::uint64_t pump, std::uint32_t delay) const;

private:
    struct Version {
        std::optional<std::uint64_t> pump;  ///< none for what was loaded
        std::u16string source;
    };
    static bool isReached(const Version& version, std::uint64_t pump, std::uint32_t delay) noexcept { return !version.pump || *version.pump + delay <= pump; }
    void restart();

    std::deque<Version> versions_;
    std::uint64_t noted_ = 0;
};

/// The documents of an open item, and the keyboard in them. They belong to a shown window, or a hidden one that Word edits.
class EditorFields {
public:
    explicit EditorFields(ItemState& item);

    EditorFieldName focus() const noexcept { return focus_; }
    /// Where the caret stands when the window is shown: in the body; a new mail waits for its addressee.
    void placeFocus();
    bool has(EditorFieldName field) const noexcept;
    /// Error 5 for a field that the item's window does not have.
    void setFocus(EditorFieldName field);
    html::EditorDocument& focused() noexcept { return at(focus_).document; }
    html::EditorDocument& body() noexcept { return at(EditorFieldName::Body).document; }
    html::EditorDocument& document(EditorFieldName field) noexcept { return at(field).document; }

    void keys(const std::vector<screen::KeyStroke>& strokes);
    /// Pastes what the clipboard holds into a field; false where it holds nothing that an editor takes.
    bool paste(EditorFieldName field);
    /// Notes what was done to a document from outside the keyboard.
    void noteChanges();

    void reloadBody();
    void reloadSubject();
    void reloadRecipients();

    /// True while the fields hold what the item does not.
    bool isEdited() const;
    /// Writes the fields to the item as they stood `delay` event pumps ago.
    void commit(std::uint32_t delay);

private:
    EditorField& at(EditorFieldName field) noexcept { return fields_[static_cast<std::size_t>(field)]; }
    void key(const screen::KeyStroke& stroke);
    void controlKey(char16_t character);
    void moveFocus(bool back);
    bool copySelection();  ///< to the clipboard, as text; false where nothing is selected
    std::uint64_t pumps() const noexcept;

    ItemState& item_;
    bool hasAddresses_;
    std::vector<EditorField> fields_;
    EditorFieldName focus_;
    std::array<std::u16string, 3> knownNames_;  ///< To, CC and BCC of the item as the fields know them
};

}  // namespace lorvane::model
