#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "host/Adodb.h"
#include "host/Form.h"
#include "host/ObjectProperty.h"
#include "host/Outlook.h"
#include "host/Redemption.h"
#include "store/TemplateList.h"

namespace lorvane::respond {

/// What a filling of the list came to. Everything but `Filled` is a false result to the callers.
enum class ListResult {
    Filled,
    Empty,       ///< nothing to show
    Stopped,     ///< a key was pressed meanwhile; the lines so far stay
    Failed,      ///< an error was shown; the lines so far stay
    Superseded,  ///< the window was unloaded or filled anew meanwhile: the caller changes nothing
};

/// How a template's text travels into the open item.
enum class InsertionRoute : std::int32_t { ClipboardText = 0, HtmlReady = 1, PlainSplice = 2 };

/// The template chooser: a searchable list with a preview, and what can be done with the chosen template.
///
/// The opener loads the window, sets its members and shows it. It ends with a copy, with an insertion that passed its first checks, or by its close button.
class frmEmail final : public host::Form {
public:
    static constexpr std::u16string_view formName = u"frmEmail";
    frmEmail();

    // Set by the opener before the window is shown.
    host::Property<bool> DisableInsert;      ///< without an open item to insert into: only copying is offered
    host::Property<bool> NewMailUsingTempl;  ///< new mail mode
    host::Property<bool> ReplyUsingTempl;    ///< reply mode
    host::Property<std::int32_t> ReplyKind;  ///< 1 reply, 2 reply to all, 3 forward
    host::Property<bool> FromInspector;      ///< the reply was started in an Inspector
    host::ObjectProperty AnsweredMail;       ///< the mail being answered

    // The controls, in the order of the window.
    host::Panel picLorvane;
    host::Label lblShowTips, lblChangeFolder;
    host::Panel picTemplatesFldr;
    host::TextBox txtFolder;
    host::Button cmdPickfolder;
    host::ComboBox cmbSubFolder;
    host::Label lblSubFolder, Label2;
    host::TextBox txtSearch;
    host::Button cmdClear;
    host::Panel fraShow;
    host::OptionButton optAll, optPrivate, optShared;
    host::ComboBox cmbCategories;
    host::ListBox lstEmails;
    host::Panel picBlankBkGrnd;
    host::Label lblNoEmails, lblSearching, lblLoadingEmails;
    host::Panel picPreviewPane, fraPreviewPane;
    host::TextBox txtSubject, txtPreview;
    host::Label Label6;
    host::Button cmdNew, cmdEdit, cmdDelete;
    host::Label lblFldrMainBtns, lblHide, lblRightClick;
    host::Button cmdInsert, cmdInsertWithFormat, cmdCopyToClipBoard, cmdCopyHTMLToClipB, cmdClose, cmdHelp;
    host::Timer tmrCompleteType;
    host::Menu mnuTemplateMaint, mcmdInsert, mcmdInsertWithFormat, mnuSeparator1, mcmdEdit, cmdCategorize, mcmdDelete, mnuSeparator, cmdCopyCBWithFormatting,
        cmdCopyToCB;

    /// Merges the tables of the scope, filters them by category and search text and lists the subjects in order. Yields at each row.
    ListResult UpdateEmailList();
    ListResult lastListResult() const noexcept { return lastListResult_; }

    void ToggleControls(bool on);
    void EnableButtons();
    void DisableButtons();
    void ShowTips();  ///< the banner at full height, from now on at each opening
    void HideTips();
    /// Index of the combo's line that equals the text, case significant; 0 where there is none, or for "".
    std::int32_t InList(const host::ComboBox& combo, std::u16string_view text) const;

    /// Prepares the template's text for the open item: on the clipboard, or as an HTML fragment in `html`. `format` is the item's body format.
    InsertionRoute CopyTextFromEmail(const host::SafeMailItem& templateSafe, std::int32_t format, std::u16string& html, const host::Object& targetItem);
    /// Takes a snapshot of the open item's fields (`compare` false), or compares with it: true where none of them took what was typed.
    bool CheckMouseInBody(bool compare);

    /// The identity of the template on the chosen line: positions the list's table there.
    struct TemplateIdentity {
        std::u16string entryId, storeId;
    };
    TemplateIdentity identityOfLine(std::int32_t line);
    host::MailItem itemOfLine(std::int32_t line);

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload() override;

private:
    // Opening.
    struct FolderKeys {
        std::u16string privateStoreId, privateEntryId, sharedEntryId, sharedStoreId;
    };
    void takeNameSpace();
    FolderKeys readFolderKeys() const;
    void openSharedFolder(const FolderKeys& keys);
    store::Scope scopeAtOpening() const;
    host::OptionButton& optionOf(store::Scope scope);
    void disableScopesWithoutSharing();
    void loadTables(store::Scope scope, bool missingOnly);
    bool loadingStep(const std::function<void()>& step);
    void showTipAtOpening();
    void applyModes();
    void applyCopyMode();
    void SaveLastUsedFolder();
    void DispFldrMaintBtns();
    void showMaintenanceButtons(bool shown);

    // The list and what narrows it.
    bool copyScopeInto(const host::Recordset& list) const;
    ListResult fillList(std::uint32_t run);
    ListResult listRows(const host::Recordset& rows, std::uint32_t run, double& widest);
    void showListOrEmpty(ListResult result, std::u16string_view emptyText);
    void showList();
    void ShowBlankState(bool loading, bool searching);
    std::u16string_view emptyTextOfSearch() const;
    void changeScope(store::Scope scope);
    void enableScopes(bool on);
    void restartSearchTimer();

    void cmbCategories_Click();
    void optAll_Click();
    void optPrivate_Click();
    void optShared_Click();
    void txtSearch_Change();
    void txtSearch_KeyDown();
    void tmrCompleteType_Timer();
    void lstEmails_Click();
    void cmdClear_Click();
    void cmdClose_Click();
    void cmdInsert_Click();
    void cmdInsertWithFormat_Click();

    // Copying and keeping templates.
    void lstEmails_DblClick();
    void lstEmails_MouseDown(std::int32_t button, double y);
    void cmdCopyToClipBoard_Click();
    void cmdCopyHTMLToClipB_Click();
    void cmdNew_Click();
    void cmdEdit_Click();
    void cmdDelete_Click();
    void deleteChosenTemplate();
    bool isOpenInInspector(std::u16string_view entryId) const;

    // Another folder, other categories.
    void cmdPickfolder_Click();
    void useFolder(const host::MAPIFolder& folder);
    void cmdCategorize_Click();
    void reloadCategories();

    // The window's own doings.
    void lblChangeFolder_Click();
    void lblShowTips_Click();
    void cmdHelp_Click();
    void FldrMaintBtnsClick();
    void wireMaintenance();
    void wireLinks();
    void publishOperations();

    // Insertion.
    enum class NextStep { SaveTarget, Release };
    void insertChosenTemplate();
    NextStep insertIntoActiveItem(const host::MailItem& templateItem, host::SafeMailItem& target);
    NextStep insertIntoMail(const host::MailItem& templateItem, const host::SafeMailItem& templateSafe, host::SafeMailItem& target);
    NextStep insertIntoPost(const host::MailItem& templateItem, const host::SafeMailItem& templateSafe, host::SafeMailItem& target);
    NextStep insertIntoTask(const host::MailItem& templateItem, const host::SafeMailItem& templateSafe, host::SafeMailItem& target);
    bool caretIsInWordBody();
    void spliceHtml(const host::MailItem& templateItem, host::MailItem& item, host::SafeMailItem& target, std::u16string& html);
    void splicePlain(const host::MailItem& templateItem, const host::SafeMailItem& templateSafe, host::MailItem& item, host::SafeMailItem& target,
                     std::u16string& html);

    bool opening_ = true;
    bool stop_ = false;
    bool withFormat_ = false;
    store::Scope scope_ = store::Scope::All;
    std::uint32_t listRun_ = 0;
    ListResult lastListResult_ = ListResult::Failed;  // until the loading has come so far
    host::MAPIFolder privateFolder_;
    host::MAPIFolder sharedFolder_;
    host::Recordset rsCurrentList_;
    std::array<std::u16string, 5> caretSnapshot_;  // To, CC, BCC, SentOnBehalfOfName, Subject
};

}  // namespace lorvane::respond
