#include "host/LifecycleRoutines.h"

#include "host/Connect.h"
#include "host/RoutineBinding.h"
#include "host/WindowCommands.h"
#include "host/WordTemplate.h"
#include "host/basExplCol.h"
#include "host/basOutlInsp.h"
#include "host/modCommandBarCode.h"

namespace lorvane::host {

namespace {

/// With its arguments one by one, as other programs give them.
CommandBarControl addInspControl(std::u16string_view progId, const CommandBar& bar, std::u16string_view caption, std::u16string_view tag,
                                 std::u16string_view tooltip, std::int32_t face, bool beginGroup, std::int32_t style, bool enabled) {
    return AddInspControl(progId, bar, {caption, tag, tooltip, face, beginGroup, style, enabled});
}

constexpr Routine rows[] = {
    routine<&OpenInBrowser>(u"basGlobals", u"OpenInBrowser", u"target"),
    routine<&RemoveExplMenu>(u"Connect", u"RemoveExplMenu", u"path"),
    routine<&AddExpl>(u"basExplCol", u"AddExpl", u"explorer"),
    routine<&AddInsp>(u"basOutlInsp", u"AddInsp", u"inspector"),
    routine<&AddWordTemplate>(u"basOutlInsp", u"AddWordTemplate", u"inspector, name"),
    routine<&SetWordTemplateSaved>(u"basOutlInsp", u"SetWordTemplateSaved", u"inspector, name"),
    routine<&ExplorerMenuPopUpAdd>(u"modCommandBarCode", u"ExplorerMenuPopUpAdd", u"bar, caption, tooltip, beginGroup, [before]"),
    routine<&ExplorerMenuControlAdd>(u"modCommandBarCode", u"ExplorerMenuControlAdd", u"popup, caption, beginGroup, [before], face, style"),
    routine<&addInspControl>(u"modCommandBarCode", u"AddInspControl", u"progId, bar, caption, tag, tooltip, face, beginGroup, style, enabled"),
    routine<&AddInspPopup>(u"modCommandBarCode", u"AddInspPopup", u"bar, caption, tooltip, beginGroup, [before]"),
    routine<&AddPopupItem>(u"modCommandBarCode", u"AddPopupItem", u"popup, caption, [before], [beginGroup]"),
    routine<&typeAtCaret>(u"basGlobals", u"typeAtCaret", u"text"),
};

constexpr NamedClass classes[] = {
    {u"Connect", &makeObject<Connect>},
};

}  // namespace

RoutineTable lifecycleRoutines() {
    return rows;
}

ClassTable lifecycleClasses() {
    return classes;
}

}  // namespace lorvane::host
