#include "model/ModelHost.h"

#include <utility>

#include "host/Variant.h"
#include "model/ApplicationObjects.h"
#include "model/HostCore.h"

namespace lorvane::model {

ModelHost::ModelHost(HostOptions options) : core_(std::make_shared<HostCore>(std::move(options))) {}

ModelHost::~ModelHost() {
    core_->shutDown();
}

host::Object ModelHost::machine() const {
    return makeMachine(core_);
}

host::Object ModelHost::application() const {
    return makeApplication(core_);
}

host::Object ModelHost::addInInst() const {
    return makeAddInInst(core_);
}

void ModelHost::registerClass(std::u16string progId, std::function<host::Object()> factory) {
    core_->registerClass(std::move(progId), std::move(factory));
}

// The modes of a connection and of its end, and the empty list that goes with each.
namespace {
constexpr std::int32_t connectAtStartUp = 1, removeAtShutdown = 0;
}

void ModelHost::loadAddIn(const host::Object& connection, const host::Object& application, const host::Object& addInInst) {
    registerClass(this->addInInst().getText(host::Member::ProgId), [connection] { return connection; });
    addIn_ = connection;
    connection.call(host::Member::AddinInstance_OnConnection, {application, connectAtStartUp, addInInst, host::Array()});
}

void ModelHost::unloadAddIn() {
    const host::Object addIn = std::exchange(addIn_, {});
    if (addIn) addIn.call(host::Member::AddinInstance_OnDisconnection, {removeAtShutdown, host::Array()});
}

}  // namespace lorvane::model
