#include "mailstore/StoreErrors.h"

#include <string>

namespace lorvane::mailstore {

using host::HostError;
namespace failure = host::host_failure;

HostError folderNotFound() {
    return HostError(failure::NotFound, u"The folder could not be found. It may have been deleted.");
}

HostError itemNotFound() {
    return HostError(failure::NotFound, u"The item could not be found. It may have been moved or deleted.");
}

HostError itemChangedMeanwhile() {
    return HostError(failure::ObjectChanged, u"The item cannot be saved because it was changed by another program or in another window.");
}

HostError folderNameTaken(std::u16string_view name) {
    return HostError(failure::Failed, u"A folder with the name \"" + std::u16string(name) + u"\" already exists there.");
}

HostError rootCannotBeRemoved() {
    return HostError(failure::AccessDenied, u"The top folder of a store cannot be deleted.");
}

HostError storeDamaged(std::u16string_view source, std::u16string_view detail) {
    return HostError(failure::Failed,
                     u"The store " + std::u16string(source) + u" is damaged: " + std::u16string(detail) + u" It was left as it is; restore it from a copy.");
}

}  // namespace lorvane::mailstore
