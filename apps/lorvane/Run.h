#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "RunOptions.h"
#include "host/Apartment.h"
#include "instruments/Recorder.h"
#include "mailstore/ItemRecord.h"
#include "mailstore/SqliteStore.h"
#include "mime/MimeReader.h"
#include "model/Driver.h"
#include "model/ModelHost.h"
#include "screen/ScriptedScreen.h"
#include "screen/ScriptedUser.h"
#include "services/Services.h"

namespace lorvane::cli {

/// The name of the store's file in its folder.
inline constexpr const char* storeFileName = "store.sqlite";
/// Where a run has its store; nothing is made.
std::filesystem::path storeFileOf(const RunOptions& options);

/// The files of a run: the store with its settings, and where application data and documents lie.
struct StoreFiles {
    explicit StoreFiles(const RunOptions& options);  ///< makes what is missing
    std::filesystem::path folder, applicationData, documents;
    std::shared_ptr<mailstore::MailStore> mailStore;
    std::shared_ptr<mailstore::SettingsStore> settings;
};

/// A name and an address, from "Name <address>" or an address alone; ends the command where it is neither.
struct Mailbox {
    std::u16string name, address;
};
Mailbox mailboxFrom(const std::string& text);

/// What a command that serves others puts in the place of the run's own parts.
struct RunParts {
    screen::User* user = nullptr;                                  ///< sits before the screen; the run's script where there is none
    std::function<host::DateTime(const screen::Desktop&)> moment;  ///< what the clock says
    bool connects = true;                                          ///< else `connect` is called later
};

/// One run of the program: the model host over the store, its user a script, with the add-in connected from the constructor to the destructor.
///
/// Each message box is told on standard error and answered No, else Cancel, else OK, unless the run answers Yes.
class Run {
public:
    explicit Run(const RunOptions& options, const RunParts& parts = {});
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// The host loads the add-in.
    void connect();
    bool isPassive() const;  ///< the add-in refused this version of the host
    /// Ends the command where the add-in refused the host.
    void requireConnected() const;

    const model::Driver& driver() const noexcept { return *driver_; }
    const services::Services& services() const noexcept { return *services_; }
    screen::WindowList& windows() noexcept { return windows_; }
    const host::Object& application() const noexcept { return application_; }  ///< as the add-in sees it
    const host::Object& addInInst() const noexcept { return addInInst_; }      ///< likewise
    const host::Object& connection() const noexcept { return connect_; }       ///< the add-in's connection class
    screen::ScriptedUser& user() noexcept { return user_; }
    const Mailbox& account() const noexcept { return account_; }
    bool accountGiven() const noexcept { return accountGiven_; }
    const StoreFiles& files() const noexcept { return files_; }
    host::DateTime now() const;
    void noteAct(std::u16string_view act);  ///< into the log, where one is wanted
    mime::ReadOptions readOptions() const;  ///< how a message is taken in
    /// What the bytes of a message file are as an item; ends the command with a line that names the file where they are no message.
    mailstore::ItemRecord readMessage(const std::string& file, const host::Bytes& bytes) const;
    /// Counts up from run to run of the same command line where the clock stands, so that output stays the same; else unique.
    std::string newMessageId();
    /// True where the standard error box of a command's own steps was shown, or could not be, since the last call of `forgetBoxes`; the usage log and the
    /// clean-up of temporary files are none of them.
    bool sawError() const;
    bool sawRefusal() const;  ///< a message of the add-in that access was denied
    bool sawBox() const;      ///< any message box since then
    void forgetBoxes();

private:
    // What may be wrong in the options comes before the files are touched.
    std::optional<host::DateTime> moment_;
    std::u16string version_, localeName_;
    Mailbox account_;
    bool accountGiven_ = false;
    std::ofstream log_;
    StoreFiles files_;
    std::uint32_t messageIds_ = 0;
    std::size_t firstBox_ = 0;
    std::size_t untoldBefore_ = 0;
    screen::Desktop desktop_;
    screen::WindowList windows_;
    screen::ScriptedUser user_;
    std::unique_ptr<services::Services> services_;
    std::unique_ptr<model::ModelHost> host_;
    std::unique_ptr<model::Driver> driver_;
    std::unique_ptr<instruments::Recorder> recorder_;
    std::unique_ptr<host::ApartmentScope> apartment_;
    host::Object application_, addInInst_, connect_;
};

}  // namespace lorvane::cli
