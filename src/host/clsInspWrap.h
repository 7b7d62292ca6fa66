#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/CommandBars.h"
#include "host/WithEvents.h"

namespace lorvane::host {

/// What the add-in keeps for one Inspector: its item, its bar, and the bar's clicks. Lives until the Inspector's close event.
class clsInspWrap final : public std::enable_shared_from_this<clsInspWrap> {
public:
    clsInspWrap();
    ~clsInspWrap();

    /// Builds the bar, unless the host is of version "12". Runs with errors ignored: a control that cannot be made is just not there.
    void InitButton();

    // The item, by its class.
    void MailItem(const Object& mail);
    void ContactItem(const Object& contact);
    void AppointmentItem(const Object& appointment);
    void TaskItem(const Object& task);
    void PostItem(const Object& post);

    void Inspector(const Object& inspector) { m_objInsp_.set(inspector, shared_from_this()); }
    const Object& Inspector() const noexcept { return m_objInsp_.get(); }
    void Key(std::int16_t key) noexcept { key_ = key; }
    std::int16_t Key() const noexcept { return key_; }

    /// `EntryID` of a mail, the class number as text of any other item.
    const std::u16string& identityText() const noexcept { return identityText_; }

    /// Deletes the buttons that the maker's other add-in may have put onto the same bar.
    void RemoveInspButtons();

    WithEvents CBB_Insp_File, CBB_Insp_CreateEmail, CBB_Insp_Reschedule, CBB_Insp_RelatedItems, CBB_Insp_save, CBB_Insp_save_sel, CBB_Insp_Help;
    WithEvents CBB_Insp_Reply, CBB_Insp_ReplyToAll, CBB_Insp_Forward, CBB_Insp_ReplyUsingProc, CBB_Insp_ReplyToAllUsingProc, CBB_Insp_ForwardUsingProc;
    WithEvents CBB_Insp_FullName, CBB_Insp_FirstName, CBB_Insp_Date;

private:
    void InitInspButtons(const Object& inspector);
    void BuildInspBar();
    void adjustTemplateBar();
    bool addButtons(const CommandBar& bar, std::int32_t itemClass);
    void addResponses(const CommandBar& bar);
    void addMergeFields(const CommandBar& bar);
    void enableByMileage();
    void showAndHide(const CommandBar& bar, std::int32_t itemClass);

    void m_objInsp_Activate();
    void m_objInsp_Close();
    static void m_objMail_Open() {}  // nothing comes of these four
    static void m_objMail_Close() {}
    static void m_objContact_Open() {}
    static void m_objContact_Close() {}

    WithEvents m_objInsp_, m_objMail_, m_objContact_;
    Object appointment_, task_, post_;
    CommandBarControl respondPopup_, mergeFieldPopup_;
    std::int16_t key_ = 0;
    std::u16string identityText_;
    bool isMail_ = false;
    bool wordEdited_ = false;     ///< by Word, on a host below version 12: the window's bars are Word's own
    bool templateAdded_ = false;  ///< `AddWordTemplate` has run once for this window
};

}  // namespace lorvane::host
