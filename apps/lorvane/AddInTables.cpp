#include "AddInTables.h"

#include "host/Connect.h"
#include "host/RoutineBinding.h"
#include "respond/Routines.h"
#include "store/Routines.h"
#include "text/Routines.h"

namespace lorvane::cli {

namespace {

/// Of the add-in's lifecycle, which stands above its parts.
constexpr host::Routine lifecycle[] = {
    host::routine<&host::OpenInBrowser>(u"basGlobals", u"OpenInBrowser", u"target"),
};

constexpr host::NamedClass classes[] = {
    {u"Connect", &host::makeObject<host::Connect>},
};

}  // namespace

automation::AddInTables addInTables() {
    return {{host::routines(), text::routines(), store::routines(), respond::routines(), lifecycle}, {host::globalValues(), store::globalValues()}, classes};
}

}  // namespace lorvane::cli
