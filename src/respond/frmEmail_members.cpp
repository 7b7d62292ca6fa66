#include "host/RoutineBinding.h"
#include "respond/frmEmail.h"

/// What the chooser offers by name, beside its controls and members.
namespace lorvane::respond {

using namespace host;

namespace {

/// A method of the chooser for late arguments.
template <auto Method>
auto late(frmEmail& form) {
    return [&form](Args args) { return Bound<Method>::run(form, args); };
}

}  // namespace

void frmEmail::publishOperations() {
    addMethod(u"UpdateEmailList", [this](Args) { return Variant(UpdateEmailList() == ListResult::Filled); });
    addMethod(u"InList", late<&frmEmail::InList>(*this));
    addMethod(u"ToggleControls", late<&frmEmail::ToggleControls>(*this));
    addMethod(u"EnableButtons", late<&frmEmail::EnableButtons>(*this));
    addMethod(u"DisableButtons", late<&frmEmail::DisableButtons>(*this));
    addMethod(u"ShowTips", late<&frmEmail::ShowTips>(*this));
    addMethod(u"HideTips", late<&frmEmail::HideTips>(*this));
    addMethod(u"ShowBlankState", late<&frmEmail::ShowBlankState>(*this));
    addMethod(u"SaveLastUsedFolder", late<&frmEmail::SaveLastUsedFolder>(*this));
    addMethod(u"CopyTextFromEmail", late<&frmEmail::CopyTextFromEmail>(*this));
    addMethod(u"CheckMouseInBody", [this](Args args) {
        const bool inBody = CheckMouseInBody(requiredArgument(args, 0).toBoolean());
        if (args.size() > 1) args[1].assign(Variant(inBody));
        return Variant(inBody);
    });
}

}  // namespace lorvane::respond
