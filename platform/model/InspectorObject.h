#pragma once

#include <memory>
#include <optional>

#include "model/EditorFields.h"
#include "model/HostWindow.h"
#include "model/ItemState.h"

namespace lorvane::model {

/// The window of one item. Hidden until it is displayed; its editor's documents exist while it is shown, or from the moment that Word's document is asked for.
class InspectorObject final : public HostWindow {
public:
    explicit InspectorObject(std::shared_ptr<ItemState> item);
    ~InspectorObject() override;

    std::u16string_view className() const noexcept override { return u"Inspector"; }
    std::u16string caption() const override;
    void keys(const std::vector<screen::KeyStroke>& strokes) override;

    /// Shows the window, or brings it to the front. The item's Open event comes behind the news of the window, before it is displayed; where it refuses, the
    /// window closes again.
    void display();
    /// 0 commits all and saves, 1 drops what was not saved; error 0x80070057 for another mode. The item may refuse to close in its Close event.
    void close(std::int32_t mode);
    /// Goes because its item is gone.
    void drop();
    /// Commits the documents as the run delays it.
    void commit();
    /// Commits all that was typed.
    void commitAll();

    /// True while the window holds what its item does not.
    bool isEdited() const { return fields_ && fields_->isEdited(); }
    /// Takes in the item as it was saved elsewhere.
    void reload();
    void reloadBody();
    void reloadSubject();
    void reloadRecipients();

    const std::shared_ptr<ItemState>& item() const noexcept { return item_; }
    /// The documents; error 0x80004005 while there are none.
    EditorFields& fields();
    /// The documents, loaded now where there are none; error 0x80004005 once the window was closed, 0x8004010A once its item is gone.
    EditorFields& loadedFields();
    /// Word's document of the window, loaded now where it was not; Nothing where Word is not the editor.
    host::Object wordEditor();
    /// What tells Word's document of this window from any other object.
    const void* wordIdentity() const noexcept { return &fields_; }

protected:
    host::Variant use(host::Member member, host::Args args) override;
    std::vector<HostWindow*>& siblings() const noexcept override { return core().inspectors; }
    void raiseNew() override;
    void appear() override;
    std::vector<BarTree> builtInBars() const override;

private:
    bool allowed(host::Member event);

    std::shared_ptr<ItemState> item_;
    std::optional<EditorFields> fields_;
    bool opening_ = false, closing_ = false;
};

/// The item's window, also where another object of the item opened it; a hidden one is made where it has none.
host::Object inspectorOf(const std::shared_ptr<ItemState>& item);

}  // namespace lorvane::model
