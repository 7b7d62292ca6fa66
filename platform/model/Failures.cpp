#include "model/Failures.h"

#include <string>

#include "host/Object.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::HostError;

void raiseNotFound() {
    throw HostError(host::host_failure::NotFound, u"The operation failed. An object could not be found.");
}

void raiseDeleted() {
    throw HostError(host::host_failure::ObjectDeleted, u"The item has been moved or deleted.");
}

void raiseInvalidArgument(std::u16string_view sentence) {
    throw HostError(InvalidArgument, std::u16string(sentence));
}

void raiseBadIndex() {
    throw HostError(BadIndex, u"Array index out of bounds.");
}

void raiseFailed(std::u16string_view sentence) {
    throw HostError(host::host_failure::Failed, std::u16string(sentence));
}

void raiseUnknownToWord() {
    throw HostError(UnknownToWord, u"The requested member of the collection does not exist.");
}

void raiseNoMember(std::u16string_view className, host::Member member) {
    // A number that the model has no name for is told as such.
    if (member < host::Member::Count_ || memberIndex(member) == memberIndexCount) host::raiseNoSuchMember(className, member);
    std::u16string text = u"Object doesn't support this property or method: ";
    text.append(className).append(u".").append(modelMemberName(member));
    throw HostError(host::runtime_error::NoSuchMember, std::move(text));
}

}  // namespace lorvane::model
