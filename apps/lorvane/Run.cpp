#include "Run.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

#include "ExitStatus.h"
#include "Streams.h"
#include "host/AddIn.h"
#include "host/Guards.h"
#include "host/Locale.h"
#include "host/TextFunctions.h"
#include "host/UntoldErrors.h"
#include "mime/MimeReader.h"
#include "recordset/Collation.h"
#include "recordset/Recordset.h"
#include "recordset/Stream.h"
#include "respond/TextInsert.h"
#include "services/RegionNames.h"

namespace lorvane::cli {

using namespace host;

namespace {

/// Full version texts for those who name a major version alone.
std::u16string versionText(const std::string& version) {
    if (version == "9") return u"9.0.0.2711";
    if (version == "10") return u"10.0.0.2627";
    if (version == "11") return u"11.0.0.5510";
    if (version.empty() || version.find_first_not_of("0123456789.") != std::string::npos || version.front() == '.')
        throw CommandEnd(ExitStatus::Usage, "--host-version is a number like 11 or 10.0.0.6515, not " + version);
    return fromUtf8(version);
}

model::EditorKind editorKind(const std::string& editor) {
    if (editor == "plain") return model::EditorKind::Plain;
    if (editor == "rich") return model::EditorKind::Rich;
    return editor == "word" ? model::EditorKind::Word : model::EditorKind::Html;
}

std::string environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// The locale of the environment, by the order that programs follow.
std::string environmentLocale() {
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"})
        if (std::string value = environmentText(name); !value.empty()) return value;
    return {};
}

std::optional<DateTime> fixedMoment(const std::string& now) {
    if (now.empty()) return std::nullopt;
    try {
        return dateTimeFromIso(fromUtf8(now));
    } catch (const HostError&) {
        throw CommandEnd(ExitStatus::Usage, "--now is a moment like 2028-01-10T09:00, not " + now);
    }
}

/// A locale that was asked for must be known; that of the environment may give way.
std::u16string localeFrom(const std::string& asked) {
    if (asked.empty()) return fromUtf8(environmentLocale());
    const std::u16string name = fromUtf8(asked);
    if (!services::regionName(name)) throw CommandEnd(ExitStatus::Usage, "--locale is a name like en-US, en-GB or de-DE, not " + asked);
    return name;
}

/// Open from the start, so that nothing is done where it cannot be written; closed where no log is wanted.
std::ofstream openLog(const std::string& file) {
    std::ofstream log;
    if (file.empty()) return log;
    if (file == "-") throw CommandEnd(ExitStatus::Usage, "--log needs a file: standard output is for the result");
    log.open(file, std::ios::trunc);
    if (!log) throw CommandEnd(ExitStatus::Fault, "cannot write " + file + ": " + std::strerror(errno));
    return log;
}

std::filesystem::path folderOrUnderHome(const char* variable, const char* underHome) {
    if (const std::string folder = environmentText(variable); !folder.empty()) return folder;
    const std::string home = environmentText("HOME");
    if (home.empty()) throw CommandEnd(ExitStatus::Fault, std::string("neither HOME nor ") + variable + " is set: name the store with --store");
    return std::filesystem::path(home) / underHome;
}

std::filesystem::path storeFolder(const RunOptions& options) {
    return options.store ? std::filesystem::absolute(*options.store) : folderOrUnderHome("XDG_DATA_HOME", ".local/share") / "lorvane";
}

std::shared_ptr<mailstore::SqliteFile> openStore(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw CommandEnd(ExitStatus::Fault, "cannot make the folder " + folder.string() + ": " + error.message());
    mailstore::SqliteOptions options;
    options.typedMarks = {std::u16string(respond::caretMarker)};
    auto file = std::make_shared<mailstore::SqliteFile>(folder / storeFileName, options);
    for (const std::u16string& subject : file->mending().subjects)
        tell(u"lorvane: took the caret mark of an interrupted insertion out of \"" + onOneLine(subject) + u"\"");
    for (const HostError& failure : file->mending().failures) tell(u"lorvane: an interrupted insertion was left as it is: " + failure.description());
    return file;
}

}  // namespace

std::filesystem::path storeFileOf(const RunOptions& options) {
    return storeFolder(options) / storeFileName;
}

StoreFiles::StoreFiles(const RunOptions& options) : folder(storeFolder(options)) {
    if (options.store) {
        applicationData = folder / "application-data";
        documents = folder / "documents";
    } else {
        applicationData = folderOrUnderHome("XDG_CONFIG_HOME", ".config") / "lorvane";
        documents = folderOrUnderHome("XDG_DOCUMENTS_DIR", "Documents");
    }
    const auto file = openStore(folder);
    mailStore = file->mailStore();
    settings = file->settings();
}

Mailbox mailboxFrom(const std::string& text) {
    const std::size_t open = text.rfind('<');
    const std::size_t close = text.rfind('>');
    const bool bracketed = open != std::string::npos && close != std::string::npos && open < close;
    const std::string address = bracketed ? text.substr(open + 1, close - open - 1) : text;
    if (address.find('@') == std::string::npos || address.find_first_of(" \t\r\n<>") != std::string::npos)
        throw CommandEnd(ExitStatus::Usage, "an address looks like \"Name <name@example.com>\", not " + text);
    std::u16string name(bracketed ? Trim(fromUtf8(text.substr(0, open))) : std::u16string_view());
    if (name.size() > 1 && name.front() == u'"' && name.back() == u'"') name = name.substr(1, name.size() - 2);
    return {name, fromUtf8(address)};
}

Run::Run(const RunOptions& options, const RunParts& parts)
    : moment_(fixedMoment(options.now)),
      version_(versionText(options.hostVersion)),
      localeName_(localeFrom(options.locale)),
      account_(options.from.empty() ? Mailbox{u"Lorvane User", u"user@localhost"} : mailboxFrom(options.from)),
      accountGiven_(!options.from.empty()),
      log_(openLog(options.log)),
      files_(options),
      windows_(desktop_),
      user_(windows_) {
    if (account_.name.empty()) account_.name = account_.address;
    user_.onBox([](const screen::ScriptedUser::BoxRecord& box) { tell(box.title + u": " + box.text); });
    if (options.answerYes) user_.answerWith([](const screen::BoxShown&) { return std::optional(msgbox::Yes); });

    services::ServiceOptions serviceOptions;
    serviceOptions.places = {files_.documents, files_.applicationData, {}};
    serviceOptions.settings = files_.settings;
    if (moment_) serviceOptions.now = [moment = *moment_] { return moment; };
    if (parts.moment) serviceOptions.now = [this, moment = parts.moment] { return moment(desktop_); };
    serviceOptions.localeName = localeName_;
    serviceOptions.shell = [](const services::ShellRequest& request) {
        tell(u"lorvane: to be opened by yourself: " + request.file);
        return services::Shell::done;
    };
    services_ = std::make_unique<services::Services>(std::move(serviceOptions));

    model::HostOptions hostOptions(desktop_);
    hostOptions.version = version_;
    hostOptions.editor = editorKind(options.editor);
    hostOptions.accountName = account_.name;
    hostOptions.accountAddress = account_.address;
    hostOptions.screen = makeObject<screen::ScriptedScreen>(windows_, parts.user ? *parts.user : user_);
    hostOptions.services = *services_;
    hostOptions.clipboardContent = [this] { return model::PasteContent{services_->clipboardContent().text(), services_->clipboardContent().html()}; };
    hostOptions.setClipboardContent = [this](const model::PasteContent& content) {
        services_->clipboardContent().replaceContent(content.text, content.htmlFormat);
    };
    // Only a command that makes a table waits for the locale's order.
    hostOptions.makeRecordset = [locale = Region(services_->region).LocaleName()] { return recordset::makeRecordset(recordset::Collation::of(locale)); };
    hostOptions.makeStream = recordset::makeStream;
    hostOptions.defaultStore = files_.mailStore;
    host_ = std::make_unique<model::ModelHost>(std::move(hostOptions));
    driver_ = std::make_unique<model::Driver>(*host_);

    Object machine = host_->machine();
    application_ = host_->application();
    addInInst_ = host_->addInInst();
    if (options.decorate)
        for (Object* object : {&machine, &application_, &addInInst_}) *object = options.decorate(*object);
    if (log_.is_open()) {
        recorder_ = std::make_unique<instruments::Recorder>();
        user_.onAct([this](std::u16string_view act) { noteAct(act); });
        machine = recorder_->decorate(machine);
        application_ = recorder_->decorate(application_);
    }
    apartment_ = std::make_unique<ApartmentScope>(machine);
    connect_ = makeAddIn();
    if (!options.noExplorer) driver_->openExplorer();
    if (parts.connects) connect();
}

void Run::connect() {
    host_->loadAddIn(connect_, application_, addInInst_);
}

Run::~Run() {
    ignoringErrors([&] { host_->unloadAddIn(); });
    for (const std::u16string& error : apartment().state<UntoldErrors>().texts) tell(error);
    if (!recorder_) return;
    log_ << recorder_->text() << std::flush;
    if (!log_) tell("lorvane: the log could not be written whole");
}

bool Run::isPassive() const {
    return !host::apartment().gOutlook;
}

void Run::requireConnected() const {
    if (isPassive()) throw CommandEnd(ExitStatus::Refused, "the add-in does not work with this version of the host");
}

DateTime Run::now() const {
    return Clock(services_->clock).Now();
}

std::string Run::newMessageId() {
    std::ostringstream id;
    id << '<';
    if (moment_) {
        id << toUtf8(Replace(isoText(now()), u":", u"")) << '.' << ++messageIds_;
    } else {
        std::random_device random;
        id << std::hex << random() << random() << random() << random();
    }
    const std::u16string_view address = account_.address;
    id << '@' << toUtf8(address.substr(address.rfind(u'@') + 1)) << '>';
    return id.str();
}

void Run::noteAct(std::u16string_view act) {
    if (recorder_) recorder_->note(act);
}

mime::ReadOptions Run::readOptions() const {
    mime::ReadOptions reading;
    reading.accountName = account_.name;
    reading.accountAddress = account_.address;
    reading.now = now();
    return reading;
}

mailstore::ItemRecord Run::readMessage(const std::string& file, const Bytes& bytes) const {
    try {
        return mime::readMessage(bytes, readOptions());
    } catch (const HostError& error) {
        throw CommandEnd(ExitStatus::Fault, file + ": " + toUtf8(error.description()));
    }
}

bool Run::sawError() const {
    if (apartment().state<UntoldErrors>().texts.size() != untoldBefore_) return true;
    const auto& boxes = user_.Boxes();
    return std::any_of(boxes.begin() + static_cast<std::ptrdiff_t>(firstBox_), boxes.end(), [](const auto& box) {
        const bool aside = box.title.starts_with(u"modTemplateLog.") || box.title.starts_with(u"basAttachments.RemoveAttachmentsFromTemp");
        return box.style == msgbox::Critical && box.text.starts_with(u"Error ") && !aside;
    });
}

bool Run::sawRefusal() const {
    const auto& boxes = user_.Boxes();
    return std::any_of(boxes.begin() + static_cast<std::ptrdiff_t>(firstBox_), boxes.end(),
                       [](const auto& box) { return box.title.starts_with(u"No Permission"); });
}

bool Run::sawBox() const {
    return user_.Boxes().size() > firstBox_;
}

void Run::forgetBoxes() {
    firstBox_ = user_.Boxes().size();
    untoldBefore_ = apartment().state<UntoldErrors>().texts.size();
}

}  // namespace lorvane::cli
