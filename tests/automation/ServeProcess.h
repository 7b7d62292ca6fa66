#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "automation/SocketTransport.h"
#include "mailstore/MailStore.h"
#include "mailstore/TempFolder.h"

namespace lorvane::automation::test {

using Json = nlohmann::json;

/// Lines over a descriptor that is owned; nothing waits longer than a minute.
class Line {
public:
    explicit Line(int reading = -1, int writing = -1) : reading_(reading), writing_(writing) {}
    void open(int reading, int writing);
    void write(std::string_view bytes) const;
    /// The next line; "" at the end.
    std::string read();
    void closeWriting() noexcept;

private:
    Descriptor reading_, writing_;
    std::string rest_;
};

/// `lorvane serve` as a process, on a store of its own. It is killed with the object where it has not ended.
///
///     ServeProcess door({"--now", "2028-01-10T09:00"});
///     EXPECT_EQ(door.ask("root", {{"name", "User"}})["class"], "User");
class ServeProcess {
public:
    explicit ServeProcess(const std::vector<std::string>& options, const std::filesystem::path& store = {});
    ~ServeProcess();
    ServeProcess(const ServeProcess&) = delete;
    ServeProcess& operator=(const ServeProcess&) = delete;

    void send(const std::string& method, const Json& params);  ///< ids count from 1
    void write(std::string_view bytes) { line_.write(bytes); }
    Json read();                                              ///< the next message; null at the end
    Json ask(const std::string& method, const Json& params);  ///< sends, and gives the result (or the message where it has none); notifications are passed over
    void signal(int number) const;
    void endInput() { line_.closeWriting(); }
    int wait();  ///< the exit status; minus the number of the signal that ended it

    std::filesystem::path folder() const { return place_.path(); }
    std::filesystem::path store() const { return store_; }
    std::string errorLine() { return errors_.read(); }  ///< the next line on standard error

private:
    mailstore::test::TempFolder place_;
    std::filesystem::path store_;
    pid_t process_ = -1;
    Line line_, errors_;
    int lastId_ = 0;
};

/// A connection to a socket that somebody listens on.
std::unique_ptr<Line> connectTo(const std::filesystem::path& socket);
/// Sends a request with id 1 over it and gives the answer.
Json askOver(Line& line, const std::string& method, const Json& params);
/// The result of a Python script of examples/, with what it printed.
struct Printed {
    int status;
    std::string text;
};
Printed runExample(const std::string& script, const std::vector<std::string>& arguments);

/// How many items the folder of this name has, in a store that no program has open.
std::size_t itemCount(const std::filesystem::path& store, std::u16string_view folder);

}  // namespace lorvane::automation::test
