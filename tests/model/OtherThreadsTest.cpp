#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "host/Apartment.h"
#include "instruments/Marshal.h"
#include "mailstore/MemoryStore.h"
#include "model/Driver.h"
#include "model/ModelHost.h"
#include "model/ModelMembers.h"
#include "support/ThisThread.h"

/// The host as a program on another thread has it: through objects that are carried over.
namespace lorvane::model {
namespace {

using host::Member;
using host::Object;
using host::Variant;

struct Listener final : host::EventSink {
    std::vector<const void*> heard;
    std::vector<std::u16string> subjects;
    void onEvent(Member, host::Args args) override {
        heard.push_back(support::thisThread());
        subjects.push_back(host::Inspector(host::argumentAt(args, 0).toObject()).CurrentItem().Subject());
    }
};

class OtherThreads : public testing::Test {
protected:
    OtherThreads() {
        HostOptions options(desktop);
        options.defaultStore = mailstore::makeMemoryStore(u"Personal Folders", 2);
        model = std::make_unique<ModelHost>(std::move(options));
        pump = desktop.onPump([this] { marshal.serve(); });
    }

    /// A second program of the machine on its own thread, with its own apartment, while the host pumps.
    template <class Program>
    void run(Program&& program) {
        std::atomic<bool> isOver = false;
        const Object machine = marshal.carried(model->machine());
        std::thread other([&] {
            {
                host::ApartmentScope scope(machine);
                program(scope.apartment());
            }
            isOver = true;
            marshal.wake();
        });
        marshal.serveUntil([&] { return isOver.load(); });
        other.join();
        desktop.pump();
    }

    screen::Desktop desktop;
    instruments::Marshal marshal;
    std::unique_ptr<ModelHost> model;
    host::Subscription pump;
};

TEST_F(OtherThreads, TheMachineConnectsToTheRunningHost) {
    std::u16string entryId;
    run([&](host::Apartment& here) {
        const host::Application application(here.machine.call(Member::CreateObject, {u"Outlook.Application", u"localhost"}).toObject());
        const host::MailItem mail = application.CreateItem(0);
        mail.Subject(u"From elsewhere");
        mail.Save();
        entryId = mail.EntryID();
        EXPECT_EQ(application, model->application());
    });
    EXPECT_EQ(host::Application(model->application()).GetNamespace(u"MAPI").GetItemFromID(entryId, u"").Subject(), u"From elsewhere");
}

TEST_F(OtherThreads, WhatTheHostMakesForThemIsItsOwn) {
    const Object shared = model->addInInst();
    model->registerClass(u"Lorvane.Connect", [shared] { return shared; });
    run([&](host::Apartment& here) {
        const host::Application application(here.machine.CreateObject(u"Outlook.Application"));
        const Object connect = application.call(Member::CreateObject, {u"Lorvane.Connect"}).toObject();
        EXPECT_EQ(connect, shared);
        EXPECT_EQ(connect.getText(Member::ProgId), u"Lorvane.Connect");
    });
    // What the host makes may hold the host.
    model->registerClass(u"Lorvane.Connect", [] { return host::Object(); });
}

TEST_F(OtherThreads, TheyHearTheHostsEventsOnTheirOwnThread) {
    run([&](host::Apartment& here) {
        const host::Application application(here.machine.CreateObject(u"Outlook.Application"));
        const auto listener = std::make_shared<Listener>();
        const host::Subscription connection = application.Inspectors().advise(listener);
        const host::MailItem mail = application.CreateItem(0);
        mail.Subject(u"Seen");
        mail.Display();
        EXPECT_EQ(listener->heard, std::vector<const void*>{support::thisThread()});
        EXPECT_EQ(listener->subjects, std::vector<std::u16string>{u"Seen"});
    });
    EXPECT_EQ(host::Application(model->application()).Inspectors().Count(), 1);
}

TEST_F(OtherThreads, TheEventPumpServesThem) {
    const host::Application application(marshal.carried(model->application()));
    std::atomic<bool> isOver = false;
    std::thread other([&] {
        EXPECT_EQ(application.getText(Member::Name), u"Outlook");
        isOver = true;
    });
    while (!isOver) desktop.pump();
    other.join();
}

}  // namespace
}  // namespace lorvane::model
