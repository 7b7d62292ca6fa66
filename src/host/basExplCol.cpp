#include "host/basExplCol.h"

#include "host/Apartment.h"
#include "host/TextFunctions.h"
#include "host/wrapperKeys.h"

namespace lorvane::host {

ExplorerWraps& explorerWraps() {
    return apartment().state<ExplorerWraps>();
}

void AddExpl(const Object& explorer) {
    ExplorerWraps& wraps = explorerWraps();
    const auto wrapper = std::make_shared<ExplorerWrap>();
    wrapper->Explorer(explorer);
    wrapper->Key = wraps.gExplorerKey;
    wraps.gExplorerWraps.Add(wrapper, keyText(wrapper->Key));
    wrapper->InitButton();
    increment(wraps.gExplorerKey);
}

void KillExpl(std::int16_t key, std::shared_ptr<ExplorerWrap>& wrapper) {
    WrapperCollection<ExplorerWrap>& wraps = explorerWraps().gExplorerWraps;
    if (wraps.Item(keyText(key)) != wrapper) throw HostError(1, u"Unexpected Error in KillExpl");
    wraps.Remove(keyText(key));
    wrapper.reset();
}

}  // namespace lorvane::host
