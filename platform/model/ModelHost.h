#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/Object.h"
#include "model/HostOptions.h"

namespace lorvane::model {

class HostCore;

/// A complete mail host in one process: stores, items, recipients, editors, windows, and the helpers around them, reached late by name like a real one.
///
///     screen::Desktop desktop;
///     model::HostOptions options(desktop);
///     options.defaultStore = mailstore::makeMemoryStore(u"Personal Folders", 2);
///     model::ModelHost host(std::move(options));
///     host::Application application(host.application());
///
/// Ends with its windows. Objects that are still held stay usable.
class ModelHost {
public:
    explicit ModelHost(HostOptions options);
    ModelHost(const ModelHost&) = delete;
    ModelHost& operator=(const ModelHost&) = delete;
    ~ModelHost();

    host::Object machine() const;      ///< where a run begins: `CreateObject` and the services
    host::Object application() const;  ///< the running application
    host::Object addInInst() const;    ///< the host's entry for the add-in

    /// What `Application.CreateObject` makes for a ProgID (any case); a second factory of a ProgID takes the place of the first.
    void registerClass(std::u16string progId, std::function<host::Object()> factory);

    /// Loads an add-in: its connection class is what `CreateObject` gives for its ProgID from now on, and hears of the connection, by name. The host's own
    /// object and its entry for the add-in are handed out as given, since something may stand in front of them. An error of the add-in is its caller's.
    void loadAddIn(const host::Object& connection, const host::Object& application, const host::Object& addInInst);
    /// Tells the add-in that it is unloaded, and lets it go; nothing where none is loaded.
    void unloadAddIn();

private:
    friend class Driver;
    std::shared_ptr<HostCore> core_;
    host::Object addIn_;
};

}  // namespace lorvane::model
