#include "host/TextFunctions.h"
#include "model/ApplicationObjects.h"
#include "model/HostCore.h"
#include "model/ModelObject.h"
#include "model/RdoObjects.h"
#include "model/SafeObjects.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

using Core = std::shared_ptr<HostCore>;

struct KnownClass {
    std::u16string_view progId;
    host::Object (*make)(Core core);
};

constexpr KnownClass knownClasses[] = {
    {u"qz7mRedemption.qz7mSafeMailItem", [](Core core) { return host::makeObject<SafeItem>(std::move(core), u"SafeMailItem"); }},
    {u"qz7mRedemption.qz7mSafePostItem", [](Core core) { return host::makeObject<SafeItem>(std::move(core), u"SafePostItem"); }},
    {u"qz7mRedemption.qz7mSafeInspector", makeSafeInspector},
    {u"qz7mRedemption.qz7mMAPIUtils", makeMapiUtils},
    {u"qz7mRedemption.qz7mRDOSession", makeRdoSession},
    {u"ADODB.Recordset", [](Core core) { return core->options.makeRecordset ? core->options.makeRecordset() : host::Object(); }},
    {u"ADODB.Stream", [](Core core) { return core->options.makeStream ? core->options.makeStream() : host::Object(); }},
};

/// The host itself is one process: whoever asks for it is connected to the running one.
constexpr std::u16string_view applicationProgId = u"Outlook.Application";

class MachineObject final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"Machine"; }
    const void* identity() const noexcept override { return &core().options; }

protected:
    Variant use(Member member, host::Args args) override {
        const HostOptions& options = core().options;
        switch (member) {
            case Member::CreateObject: {
                const std::u16string progId = host::requiredArgument(args, 0).toText();
                if (host::equalsIgnoreCase(progId, applicationProgId)) return makeApplication(sharedCore());
                return createByProgId(sharedCore(), progId);
            }
            case Member::Screen:
                return options.screen;
            case Member::Files:
                return options.services.files;
            case Member::Settings:
                return options.services.settings;
            case Member::Clock:
                return options.services.clock;
            case Member::Environment:
                return options.services.environment;
            case Member::Clipboard:
                return options.services.clipboard;
            case Member::Region:
                return options.services.region;
            case Member::Shell:
                return options.services.shell;
            default:
                raiseUnknown(member);
        }
    }
};

}  // namespace

host::Object createByProgId(const Core& core, std::u16string_view progId) {
    for (const KnownClass& known : knownClasses) {
        if (!host::equalsIgnoreCase(known.progId, progId)) continue;
        if (host::Object made = known.make(core)) return made;
    }
    throw host::HostError(host::runtime_error::CannotCreateObject);
}

host::Object makeMachine(Core core) {
    return host::makeObject<MachineObject>(std::move(core));
}

}  // namespace lorvane::model
