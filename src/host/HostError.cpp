#include "host/HostError.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/TextFunctions.h"

namespace lorvane::host {

namespace {

struct StandardText {
    std::int32_t number;
    std::u16string_view text;
};

// In ascending order of numbers: it is searched by halves.
constexpr std::array standardTexts{
    StandardText{host_failure::Failed, u"Unspecified error"},
    StandardText{host_failure::InvalidEntryId, u"The identity of an item or folder is not valid."},
    StandardText{host_failure::ObjectChanged, u"The operation cannot be performed because the object has been changed."},
    StandardText{host_failure::ObjectDeleted, u"The item has been moved or deleted."},
    StandardText{host_failure::NotFound, u"The operation failed. An object could not be found."},
    StandardText{host_failure::AccessDenied, u"You don't have appropriate permission to perform this operation."},
    StandardText{5, u"Invalid procedure call or argument"},
    StandardText{6, u"Overflow"},
    StandardText{7, u"Out of memory"},
    StandardText{9, u"Subscript out of range"},
    StandardText{11, u"Division by zero"},
    StandardText{13, u"Type mismatch"},
    StandardText{52, u"Bad file name or number"},
    StandardText{53, u"File not found"},
    StandardText{55, u"File already open"},
    StandardText{57, u"Device I/O error"},
    StandardText{58, u"File already exists"},
    StandardText{61, u"Disk full"},
    StandardText{62, u"Input past end of file"},
    StandardText{70, u"Permission denied"},
    StandardText{75, u"Path/File access error"},
    StandardText{76, u"Path not found"},
    StandardText{91, u"Object variable or With block variable not set"},
    StandardText{94, u"Invalid use of Null"},
    StandardText{380, u"Invalid property value"},
    StandardText{424, u"Object required"},
    StandardText{429, u"ActiveX component can't create object"},
    StandardText{438, u"Object doesn't support this property or method"},
    StandardText{445, u"Object doesn't support this action"},
    StandardText{448, u"Named argument not found"},
    StandardText{449, u"Argument not optional"},
    StandardText{450, u"Wrong number of arguments or invalid property assignment"},
    StandardText{457, u"This key is already associated with an element of this collection"},
    StandardText{3001, u"Arguments are of the wrong type, are out of acceptable range, or are in conflict with one another."},
    StandardText{3021, u"Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a current record."},
    StandardText{3219, u"Operation is not allowed in this context."},
    StandardText{3251, u"Current Recordset does not support the operation."},
    StandardText{3265, u"Item cannot be found in the collection corresponding to the requested name or ordinal."},
    StandardText{3367, u"Object is already in collection. Cannot append."},
    StandardText{3421, u"Application uses a value of the wrong type for the current operation."},
    StandardText{3704, u"Operation is not allowed when the object is closed."},
    StandardText{3705, u"Operation is not allowed when the object is open."},
    StandardText{3709, u"The connection cannot be used to perform this operation. It is either closed or invalid in this context."},
};
static_assert(std::ranges::is_sorted(standardTexts, {}, &StandardText::number));

std::u16string_view standardText(std::int32_t number) noexcept {
    const auto row = std::ranges::lower_bound(standardTexts, number, {}, &StandardText::number);
    if (row != standardTexts.end() && row->number == number) return row->text;
    return number < 0 ? u"Automation error" : u"Application-defined or object-defined error";
}

}  // namespace

HostError::HostError(std::int32_t number, std::u16string description) : number_(number), description_(std::move(description)) {
    what_ = std::to_string(number_) + ": " + toUtf8(description_);
}

HostError::HostError(std::int32_t number) : HostError(number, std::u16string(standardText(number))) {}

const char* HostError::what() const noexcept {
    return what_.c_str();
}

}  // namespace lorvane::host
