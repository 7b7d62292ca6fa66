#include "host/Adodb.h"

#include "host/Apartment.h"

namespace lorvane::host {

Recordset makeRecordset() { return Recordset(apartment().machine.CreateObject(u"ADODB.Recordset")); }

}  // namespace lorvane::host
