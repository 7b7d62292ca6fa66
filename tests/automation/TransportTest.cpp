#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <system_error>

#include "automation/SocketTransport.h"
#include "automation/StreamTransport.h"
#include "mailstore/TempFolder.h"

namespace lorvane::automation {
namespace {

using Event = Transport::Event;

struct Ends {
    Ends() {
        std::array<int, 2> numbers{};
        EXPECT_EQ(::pipe2(numbers.data(), O_CLOEXEC), 0);
        reading.reset(numbers[0]);
        writing.reset(numbers[1]);
    }
    void write(std::string_view bytes) const { EXPECT_EQ(::write(writing.number(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size())); }
    std::string read() const {
        char buffer[256];
        const ssize_t count = ::read(reading.number(), buffer, sizeof buffer);
        return {buffer, static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }
    Descriptor reading, writing;
};

TEST(StreamTransport, LinesComeAndMessagesGo) {
    Ends in, out;
    StreamTransport transport(in.reading.number(), out.writing.number());
    EXPECT_EQ(transport.receive(0).event, Event::Nothing);
    in.write("one\ntwo\nthr");
    EXPECT_EQ(transport.receive(0).line, "one");
    EXPECT_EQ(transport.receive(0).line, "two");
    EXPECT_EQ(transport.receive(0).event, Event::Nothing);
    transport.send("{}");
    EXPECT_EQ(out.read(), "{}\n");
}

TEST(StreamTransport, WithTheEndOfTheInputTheLastLinesStillComeThenTheClientIsGone) {
    Ends in, out;
    StreamTransport transport(in.reading.number(), out.writing.number());
    in.write("one\ntwo");
    in.writing.reset();
    EXPECT_EQ(transport.receive(std::nullopt).line, "one");
    EXPECT_TRUE(transport.isConnected());
    EXPECT_EQ(transport.receive(std::nullopt).line, "two");
    EXPECT_EQ(transport.receive(std::nullopt).event, Event::Gone);
    EXPECT_FALSE(transport.isConnected());
    EXPECT_EQ(transport.awaitClient(std::nullopt), Transport::Awaited::Never);
}

TEST(StreamTransport, AClientThatCannotBeWrittenToIsGone) {
    ::signal(SIGPIPE, SIG_IGN);
    Ends in, out;
    StreamTransport transport(in.reading.number(), out.writing.number());
    out.reading.reset();
    transport.send("{}");
    EXPECT_FALSE(transport.isConnected());
    in.write("one\n");
    EXPECT_EQ(transport.receive(std::nullopt).event, Event::Gone);
}

TEST(StreamTransport, TheStopEndsAWaitAndAWriteThatNobodyReads) {
    Ends in, out, stop;
    StreamTransport transport(in.reading.number(), out.writing.number(), stop.reading.number());
    stop.write("x");
    transport.send(std::string(10 << 20, 'x'));
    EXPECT_TRUE(transport.isStopped());
    EXPECT_EQ(transport.receive(std::nullopt).event, Event::Gone);
}

class SocketTest : public testing::Test {
protected:
    std::filesystem::path path() const { return place.path() / "door"; }
    int connect() const {
        const int number = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().native().copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::connect(number, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return number;
    }
    mailstore::test::TempFolder place;
};

TEST_F(SocketTest, OnlyItsOwnerMayOpenItAndItGoesWithTheDoor) {
    {
        const SocketTransport transport(path(), -1);
        struct stat found {};
        ASSERT_EQ(::stat(path().c_str(), &found), 0);
        EXPECT_TRUE(S_ISSOCK(found.st_mode));
        EXPECT_EQ(found.st_mode & 0777U, 0600U);
    }
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(SocketTest, OneClientAfterTheOther) {
    SocketTransport transport(path(), -1);
    EXPECT_EQ(transport.awaitClient(0), Transport::Awaited::Nothing);
    EXPECT_EQ(transport.receive(0).event, Event::Gone);
    Descriptor first(connect());
    ASSERT_EQ(transport.awaitClient(std::nullopt), Transport::Awaited::Client);
    const Descriptor second(connect());
    ASSERT_EQ(::write(first.number(), "a\n", 2), 2);
    ASSERT_EQ(::write(second.number(), "b\n", 2), 2);
    EXPECT_EQ(transport.receive(std::nullopt).line, "a");
    EXPECT_EQ(transport.receive(0).event, Event::Nothing) << "the second one waits";
    first.reset();
    EXPECT_EQ(transport.receive(std::nullopt).event, Event::Gone);
    ASSERT_EQ(transport.awaitClient(std::nullopt), Transport::Awaited::Client);
    EXPECT_EQ(transport.receive(std::nullopt).line, "b");
}

TEST_F(SocketTest, WhatLiesThereIsReplacedOnlyWhereItIsASocketThatNobodyListensOn) {
    {
        const SocketTransport transport(path(), -1);
        EXPECT_THROW(SocketTransport(path(), -1), std::system_error) << "another door listens";
        EXPECT_TRUE(std::filesystem::exists(path()));
    }
    {
        const Descriptor left(::socket(AF_UNIX, SOCK_STREAM, 0));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().native().copy(address.sun_path, sizeof address.sun_path - 1);
        ASSERT_EQ(::bind(left.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }
    EXPECT_NO_THROW(SocketTransport(path(), -1));
    mailstore::test::writeBytes(path(), {'x'});
    EXPECT_THROW(SocketTransport(path(), -1), std::system_error);
    EXPECT_EQ(mailstore::test::readBytes(path()).size(), 1U) << "a file stays as it is";
    EXPECT_THROW(SocketTransport(place.path() / std::string(200, 'x'), -1), std::system_error);
}

}  // namespace
}  // namespace lorvane::automation
