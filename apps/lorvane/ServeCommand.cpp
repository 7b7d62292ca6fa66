#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>

#include "AddInTables.h"
#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "automation/Session.h"
#include "automation/SocketTransport.h"
#include "host/Locale.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

using namespace automation;

namespace {

/// A descriptor that becomes readable when the program is asked to end (SIGTERM, SIGINT), for as long as it lives.
class StopSignal {
public:
    StopSignal() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) throw std::system_error(errno, std::generic_category(), "no pipe");
        reading_.reset(ends[0]);
        writing_.reset(ends[1]);
        told = ends[1];
        struct sigaction action {};
        action.sa_handler = [](int) { [[maybe_unused]] const auto written = ::write(told, "", 1); };
        ::sigaction(SIGTERM, &action, &terminate_);
        ::sigaction(SIGINT, &action, &interrupt_);
    }
    ~StopSignal() {
        ::sigaction(SIGTERM, &terminate_, nullptr);
        ::sigaction(SIGINT, &interrupt_, nullptr);
    }
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;
    int descriptor() const noexcept { return reading_.number(); }

private:
    inline static int told = -1;
    Descriptor reading_, writing_;
    struct sigaction terminate_ {
    }, interrupt_{};
};

std::unique_ptr<Transport> transportFor(const ServeOptions& options, const StopSignal& stop) {
    if (options.socket.empty()) return std::make_unique<StreamTransport>(STDIN_FILENO, STDOUT_FILENO, stop.descriptor());
    return std::make_unique<SocketTransport>(options.socket, stop.descriptor());
}

/// The add-in's own box at connection is for a client to answer, so one is waited for. False where none will come.
bool awaitFirstClient(Transport& transport) {
    Transport::Awaited awaited = Transport::Awaited::Nothing;
    while (awaited == Transport::Awaited::Nothing) awaited = transport.awaitClient(std::nullopt);
    return awaited == Transport::Awaited::Client;
}

}  // namespace

ExitStatus runServe(const RunOptions& runOptions, const ServeOptions& options) {
    const StopSignal stop;
    RemoteUser user;
    Instruments instruments;
    std::optional<VirtualClock> clock;
    // Made with its first use: by then the run has seen to it that the moment is one.
    const auto virtualClock = [&]() -> VirtualClock& { return clock ? *clock : clock.emplace(host::dateTimeFromIso(host::fromUtf8(runOptions.now))); };
    const bool isVirtual = !runOptions.now.empty();
    RunParts parts;
    parts.user = &user;
    parts.connects = false;
    if (isVirtual) parts.moment = [&](const screen::Desktop& desktop) { return virtualClock().now(desktop); };
    RunOptions watched = runOptions;
    watched.decorate = [&](const host::Object& object) { return instruments.decorate(object); };
    Run run(watched, parts);
    const std::unique_ptr<Transport> transport = transportFor(options, stop);

    SessionParts session{.machine = {.user = user,
                                     .windows = run.windows(),
                                     .driver = run.driver(),
                                     .clipboard = run.services().clipboardContent(),
                                     .instruments = instruments,
                                     .clock = isVirtual ? &virtualClock() : nullptr,
                                     .application = run.application(),
                                     .reading = [&run] { return run.readOptions(); },
                                     .onAct = [&run](std::u16string_view act) { run.noteAct(act); }},
                         .application = run.application(),
                         .addInInst = run.addInInst(),
                         .connection = run.connection(),
                         .tables = addInTables()};
    const std::unique_ptr<Pace> pace = isVirtual ? std::make_unique<Pace>() : std::make_unique<RealPace>(run.windows().desktop());
    Session door(*transport, *pace, session);
    if (!options.socket.empty()) tell("lorvane: serving at " + options.socket);
    if (!awaitFirstClient(*transport)) return ExitStatus::Done;
    run.connect();
    instruments.clear();
    door.serve();
    return ExitStatus::Done;
}

}  // namespace lorvane::cli
