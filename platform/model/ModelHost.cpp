#include "model/ModelHost.h"

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

}  // namespace lorvane::model
