#pragma once

#include <vector>

#include "automation/AddInObjects.h"
#include "automation/Door.h"
#include "automation/Person.h"

namespace lorvane::automation {

/// What a door is made of beside its transport: the machine with the add-in in it.
struct SessionParts {
    PersonsMachine machine;
    host::Object application, addInInst, connection;
    AddInTables tables;
};

/// A door on a running machine, with all the objects that a client begins with.
class Session {
public:
    Session(Transport& transport, Pace& pace, const SessionParts& parts);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Serves until no client will come any more. What a client leaves up is closed behind it, and what it laid ready or set to fail forgotten.
    void serve();

private:
    void leave();

    RemoteUser& user_;
    screen::WindowList& windows_;
    Instruments& instruments_;
    Person person_;
    Door door_;
};

/// The objects that a client begins with, by name and meaning.
struct RootRow {
    std::string_view name, doc;
};
std::vector<RootRow> rootRows();

}  // namespace lorvane::automation
