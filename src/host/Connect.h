#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/Object.h"
#include "host/OutAddIn.h"
#include "host/Variant.h"

namespace lorvane::host {

/// The add-in's connection class: the host calls it when it loads and unloads the add-in. One for each apartment.
///
/// Other instances of the add-in reach its public methods by name, through `Application.CreateObject("Lorvane.Connect")`.
class Connect final : public Dispatch {
public:
    /// Runs with errors ignored: a failing statement is skipped and the next one runs. On a host of version 12 or more only a message is shown, and the add-in
    /// stays passive. `addInInst` is the host's object for the add-in.
    void AddinInstance_OnConnection(const Object& application, std::int32_t connectMode, const Object& addInInst);
    void AddinInstance_OnDisconnection(std::int32_t removeMode);

    /// Hands out the shared state; a folder that arrives as Nothing receives the current one. Errors are ignored.
    void WordEditorVariablesGet(Variant& folder, Variant& nameSpace, Variant& application);
    /// Takes all three back as the shared state. Errors are ignored.
    void WordEditorVariablesSet(const Variant& folder, const Variant& nameSpace, const Variant& application);

    /// Fills the clipboard with a template's formatted text, its tags replaced, by a hidden Word-edited Inspector of the template. `response` may be Nothing.
    void CopyRangeToClipBoard(std::u16string_view entryId, std::u16string_view storeId, const Object& response, std::int32_t responseKind,
                              std::u16string_view recipientMode, const Object& sourceMail);
    /// Pastes the clipboard at Word's selection in the active Inspector. An error shows the standard box.
    void PasteRangeToEmail();
    /// Shows the message of a saved template in the host's own instance, for the Word side.
    void DisplayTemplateSaveMsg();

    const std::shared_ptr<OutAddIn>& gBaseClass() const noexcept { return baseClass_; }  ///< null before a connection and behind a disconnection
    void gBaseClass(std::shared_ptr<OutAddIn> baseClass) noexcept { baseClass_ = std::move(baseClass); }

    std::u16string_view className() const noexcept override { return u"Connect"; }
    Variant get(Member member, Args args) override;
    void put(Member member, const Variant& value, Args args) override;
    Variant call(Member member, Args args) override;

private:
    std::shared_ptr<OutAddIn> baseClass_;
};

/// Takes the add-in's entry out of the Tools menu of each wrapped Explorer: "Outer/Inner", where only the first Explorer's menu goes through the outer name. An
/// outer popup goes as well once it is empty. Runs with errors ignored.
void RemoveExplMenu(std::u16string path);

/// Opens a page or file with the program the user has for it.
void OpenInBrowser(std::u16string_view target);

}  // namespace lorvane::host
