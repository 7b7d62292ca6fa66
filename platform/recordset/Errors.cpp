#include "recordset/Errors.h"

#include <string>
#include <string_view>

#include "host/HostError.h"

namespace lorvane::recordset {

namespace {

struct Row {
    std::int32_t number;
    std::u16string_view text;
};

constexpr Row rows[] = {
    {error::BadArgument, u"Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another."},
    {error::NoCurrentRecord, u"Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current record."},
    {error::IllegalOperation, u"Operation is not allowed in this context."},
    {error::NotSupported, u"Object or provider is not capable of performing requested operation."},
    {error::ItemNotFound, u"Item cannot be found in the collection corresponding to the requested name or ordinal."},
    {error::AlreadyInCollection, u"Object is already in collection. Cannot append."},
    {error::WrongValueType, u"Application uses a value of the wrong type for the current operation."},
    {error::Closed, u"Operation is not allowed when the object is closed."},
    {error::Open, u"Operation is not allowed when the object is open."},
    {error::InvalidConnection, u"The connection cannot be used to perform this operation. It is either closed or invalid in this context."},
    {error::MultipleStep, u"Multiple-step operation generated errors. Check each status value."},
};

}  // namespace

void raise(std::int32_t number) {
    for (const Row& row : rows) {
        if (row.number == number) throw host::HostError(number, std::u16string(row.text));
    }
    throw host::HostError(number);
}

void raiseNotARowset(std::u16string_view reason) {
    throw host::HostError(error::NotARowset, std::u16string(u"Recordset cannot be created from the specified source. ").append(reason));
}

}  // namespace lorvane::recordset
