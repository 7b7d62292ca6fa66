#pragma once

#include <cstdint>
#include <memory>

#include "host/CommandBars.h"
#include "host/WithEvents.h"

namespace lorvane::host {

/// What the add-in keeps for one Explorer: its toolbar popup, its menu, and their clicks. Lives until the Explorer's close event.
class ExplorerWrap final : public std::enable_shared_from_this<ExplorerWrap> {
public:
    ExplorerWrap();
    ~ExplorerWrap();

    const Object& Explorer() const noexcept { return m_objExpl_.get(); }
    void Explorer(const Object& explorer) { m_objExpl_.set(explorer, shared_from_this()); }
    std::int16_t Key = 0;

    /// Builds the popup in the toolbar and the menu. Runs with errors ignored: a control that cannot be made is just not there.
    void InitButton();

    // The toolbar popup.
    WithEvents CBB_Templates, CBB_Expl_CreateTempl, CBB_NewMail_UsingTempl, CBB_ReplyUsingTempl, CBB_ReplyALLUsingTempl, CBB_ForwardUsingTempl;
    WithEvents CBB_CreateNewActionProc, CBB_ReplyUsingProc, CBB_ReplyAllUsingProc, CBB_ForwardUsingProc;
    WithEvents CBB_Settings, CBB_Support, CBB_Help, CBB_Tutorial, CBB_About_Lorvane;
    // The menu.
    WithEvents gmnuSettings, gmnuTemplates, gmnuProcessTemplates, gcmdSupport, gmnuHelp, gmnuTutorial, gmnuabout;
    WithEvents gcmdAddForm;  ///< nothing is ever assigned to it

private:
    void buildToolbarPopup(const CommandBar& bar);
    void buildMenu();
    CommandBarControl toolsPopup(const CommandBar& menu);
    static void m_objExpl_Activate() {}         // nothing comes of it
    static void m_objExpl_SelectionChange() {}  // likewise
    void m_objExpl_Close();

    WithEvents m_objExpl_;
};

}  // namespace lorvane::host
