#include "automation/DoorRig.h"

#include "AddInTables.h"
#include "host/AddIn.h"
#include "host/Locale.h"
#include "mailstore/MemoryStore.h"
#include "recordset/Collation.h"
#include "recordset/Recordset.h"
#include "recordset/Stream.h"

namespace lorvane::automation::test {

namespace {

constexpr std::int32_t privateStoreKind = 2;
constexpr mailstore::StoreId storeId = {0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, 0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF};

}  // namespace

std::vector<Json> ScriptedTransport::sent() const {
    std::vector<Json> messages;
    for (const std::string& line : transcript_)
        if (line.starts_with("< ")) messages.push_back(Json::parse(line.substr(2)));
    return messages;
}

Transport::Received ScriptedTransport::receive(Milliseconds timeout) {
    if (lines_.empty()) {
        if (timeout == 0) return {Event::Nothing};
        connected_ = false;
        return {Event::Gone};
    }
    if (timeout == 0 && !lines_.front().early) return {Event::Nothing};
    Line line = std::move(lines_.front());
    lines_.pop_front();
    transcript_.push_back((line.early ? ">> " : "> ") + line.text);
    return {Event::Line, std::move(line.text)};
}

DoorRig::DoorRig(const DoorOptions& options)
    : store_(options.store ? options.store : mailstore::makeMemoryStore(u"Personal Folders", privateStoreKind, storeId)),
      clock_(host::dateTimeFromIso(u"2028-01-10T09:00:00")),
      services_(serviceOptions()) {
    host_ = std::make_unique<model::ModelHost>(hostOptions(options));
    driver_ = std::make_unique<model::Driver>(*host_);
    scope_ = std::make_unique<host::ApartmentScope>(instruments_.decorate(host_->machine()));
    application_ = instruments_.decorate(host_->application());
    addInInst_ = instruments_.decorate(host_->addInInst());
    connection_ = host::makeAddIn();
    driver_->openExplorer();
    session_ = std::make_unique<Session>(transport_, pace_, sessionParts(options.virtualTime));
}

DoorRig::~DoorRig() {
    host_->unloadAddIn();
}

services::ServiceOptions DoorRig::serviceOptions() {
    services::ServiceOptions options;
    options.places = {place_.path() / "documents", place_.path() / "data", place_.path()};
    options.now = [this] { return clock_.now(desktop_); };
    options.codePage = "windows-1252";
    options.userName = u"jpublic";
    return options;
}

model::HostOptions DoorRig::hostOptions(const DoorOptions& run) {
    model::HostOptions options(desktop_);
    options.version = run.version;
    options.screen = host::makeObject<screen::ScriptedScreen>(windows_, user_);
    options.services = services_;
    options.clipboardContent = [this] { return model::PasteContent{services_.clipboardContent().text(), services_.clipboardContent().html()}; };
    options.makeRecordset = [] { return recordset::makeRecordset(recordset::Collation::of(u"en-US")); };
    options.makeStream = recordset::makeStream;
    options.defaultStore = store_;
    return options;
}

SessionParts DoorRig::sessionParts(bool virtualTime) {
    return {.machine = {.user = user_,
                        .windows = windows_,
                        .driver = *driver_,
                        .clipboard = services_.clipboardContent(),
                        .instruments = instruments_,
                        .clock = virtualTime ? &clock_ : nullptr,
                        .application = application_,
                        .reading = [this] { return mime::ReadOptions{.now = clock_.now(desktop_), .zoneOffset = [](std::int64_t) { return 0; }}; }},
            .application = application_,
            .addInInst = addInInst_,
            .connection = connection_,
            .tables = cli::addInTables()};
}

int DoorRig::ask(const std::string& method, Json params, bool early) {
    say(Json{{"jsonrpc", "2.0"}, {"id", ++lastId_}, {"method", method}, {"params", std::move(params)}}.dump(), early);
    return lastId_;
}

void DoorRig::serve() {
    host_->loadAddIn(connection_, application_, addInInst_);
    instruments_.clear();
    session_->serve();
}

Json DoorRig::answerTo(int id) const {
    for (const Json& message : sent())
        if (message.contains("id") && message["id"] == id) return message.contains("result") ? message["result"] : message;
    return {{"no answer to", id}};
}

}  // namespace lorvane::automation::test
