#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "WindowRig.h"
#include "instruments/Marshal.h"
#include "store/FoldersRig.h"
#include "support/ThisThread.h"

/// Word's side of the add-in runs on a thread of its own, where the shared state is empty: it takes the host side's by the connection class, and hands it back.
namespace lorvane::host {
namespace {

using namespace support;

class OtherThreadsState : public testing::Test {
protected:
    OtherThreadsState() : pump_(run.desktop().onPump([this] { marshal_.serve(); })) {}

    /// Runs on another thread with an apartment of its own, while the host pumps.
    template <class Program>
    void elsewhere(Program&& program) {
        std::atomic<bool> isOver = false;
        const Object machine = marshal_.carried(run.apartment().machine);
        std::thread other([&] {
            {
                ApartmentScope scope(machine);
                program(scope.apartment());
            }
            isOver = true;
            marshal_.wake();
        });
        marshal_.serveUntil([&] { return isOver.load(); });
        other.join();
        run.desktop().pump();
    }

    /// The host side's connection class, from elsewhere.
    static Object hostSide(const Apartment& here) {
        const Application application(here.machine.CreateObject(u"Outlook.Application", u"localhost"));
        return application.CreateObject(addInProgId);
    }
    struct Shared {
        Variant folder = Variant(Object()), nameSpace = Variant(Object()), application = Variant(Object());
    };
    static Shared taken(const Object& connect, Variant folder = Variant(Object())) {
        Shared shared{std::move(folder)};
        connect.call(Member::WordEditorVariablesGet,
                     {Argument::byReference(shared.folder), Argument::byReference(shared.nameSpace), Argument::byReference(shared.application)});
        return shared;
    }

    TestRun run;

private:
    instruments::Marshal marshal_;
    Subscription pump_;
};

TEST_F(OtherThreadsState, IsEmptyThere) {
    run.newMail();
    const void* const host = thisThread();
    elsewhere([&](Apartment& here) {
        EXPECT_NE(thisThread(), host);
        EXPECT_FALSE(here.gOutlook);
        EXPECT_FALSE(here.gNameSpace);
        EXPECT_FALSE(here.TemplatesFolder);
        EXPECT_FALSE(here.gRdoSession);
        EXPECT_EQ(explorerKeys(), Keys());
        EXPECT_EQ(inspectorKeys(), Keys());
    });
    EXPECT_EQ(explorerKeys(), Keys{0});
    EXPECT_EQ(inspectorKeys(), Keys{0});
}

TEST_F(OtherThreadsState, ReceivesTheHostSides) {
    const std::u16string entryId = run.apartment().TemplatesFolder.EntryID();
    elsewhere([&](Apartment& here) {
        const Shared shared = taken(hostSide(here));
        here.TemplatesFolder = MAPIFolder(shared.folder.toObject());
        here.gNameSpace = NameSpace(shared.nameSpace.toObject());
        here.gOutlook = Application(shared.application.toObject());
        EXPECT_EQ(here.TemplatesFolder.EntryID(), entryId);
        EXPECT_EQ(here.gNameSpace.GetFolderFromID(entryId, u"").Name(), u"Lorvane");
        EXPECT_EQ(OutlookVersion(), u"11");
    });
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), entryId);
}

TEST_F(OtherThreadsState, KeepsAFolderOfItsOwn) {
    const std::u16string otherId = run.addFolder(topFolder(run), u"Other").EntryID();
    elsewhere([&](Apartment& here) {
        const Object connect = hostSide(here);
        const NameSpace session(taken(connect).nameSpace.toObject());
        const Shared shared = taken(connect, Variant(Object(session.GetFolderFromID(otherId, u""))));
        EXPECT_EQ(MAPIFolder(shared.folder.toObject()).EntryID(), otherId);
    });
}

TEST_F(OtherThreadsState, HandsAChosenFolderBack) {
    const MAPIFolder other = run.addFolder(topFolder(run), u"Other");
    elsewhere([otherId = other.EntryID()](Apartment& here) {
        const Object connect = hostSide(here);
        const Shared shared = taken(connect);
        const MAPIFolder chosen = NameSpace(shared.nameSpace.toObject()).GetFolderFromID(otherId, u"");
        connect.call(Member::WordEditorVariablesSet, {Variant(Object(chosen)), shared.nameSpace, shared.application});
        EXPECT_FALSE(here.TemplatesFolder) << "the state here is another one";
    });
    const Apartment& here = run.apartment();
    EXPECT_EQ(here.TemplatesFolder.EntryID(), other.EntryID());
    EXPECT_EQ(here.gOutlook, run.application());
    for (const Object& kept : {Object(here.TemplatesFolder), Object(here.gNameSpace), Object(here.gOutlook)})
        EXPECT_EQ(kept.dispatch(), instruments::stripped(kept).dispatch()) << "the host's own objects, that nothing has to carry";
    // The host side works with it at once.
    EXPECT_EQ(run.newMail().CurrentItem().Class(), item_class::Mail);
    EXPECT_EQ(here.TemplatesFolder.Items().Count(), 0);
}

TEST_F(OtherThreadsState, ReceivesNothingFromAHostSideThatLetGo) {
    baseClass(run).UnInitHandler();
    elsewhere([&](Apartment& here) {
        const Shared shared = taken(hostSide(here));
        EXPECT_FALSE(shared.folder.toObject());
        EXPECT_TRUE(shared.nameSpace.toObject());
        EXPECT_FALSE(shared.application.toObject());
    });
}

}  // namespace
}  // namespace lorvane::host
