#pragma once

#include <map>
#include <memory>
#include <string>
#include <typeindex>

#include "host/Form.h"
#include "host/Outlook.h"
#include "host/Services.h"

namespace lorvane::host {

/// The add-in's process-wide values: one set per thread that hosts the add-in.
///
/// Each module keeps its own values in a structure of its own, reached by `state<T>()`; what several modules share stands here under the names its users know.
class Apartment {
public:
    explicit Apartment(Object machineObject) : machine(std::move(machineObject)) {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment();

    Machine machine;
    std::u16string title = u"Lorvane";  ///< the application title of windows and messages
    Application gOutlook;               ///< the host; set first of all at connection
    NameSpace gNameSpace;               ///< the "MAPI" name space
    std::u16string gProgId;             ///< the add-in's ProgID as the host gives it
    Object gRdoSession;                 ///< the shared Redemption session
    MAPIFolder TemplatesFolder;         ///< the current folder of save operations; the private folder after start-up
    Forms forms;

    template <class T>
    T& state() {
        auto& slot = states_[std::type_index(typeid(T))];
        if (!slot) slot = std::make_shared<T>();
        return *static_cast<T*>(slot.get());
    }

private:
    std::map<std::type_index, std::shared_ptr<void>> states_;
};

/// The apartment of the calling thread; error 91 where none was entered.
Apartment& apartment();

/// Makes an apartment over a machine and enters it on this thread; leaves and ends it with the scope. Scopes nest.
class ApartmentScope {
public:
    explicit ApartmentScope(Object machine);
    ~ApartmentScope();
    ApartmentScope(const ApartmentScope&) = delete;
    ApartmentScope& operator=(const ApartmentScope&) = delete;
    Apartment& apartment() noexcept { return *mine_; }

private:
    std::unique_ptr<Apartment> mine_;
    Apartment* outer_;
};

}  // namespace lorvane::host
