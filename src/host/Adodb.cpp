#include "host/Adodb.h"

#include "host/Apartment.h"

namespace lorvane::host {

Recordset makeRecordset() {
    return Recordset(apartment().machine.CreateObject(u"ADODB.Recordset"));
}

Stream makeStream() {
    return Stream(apartment().machine.CreateObject(u"ADODB.Stream"));
}

}  // namespace lorvane::host
