#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "host/Outlook.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "mailstore/MemoryStore.h"
#include "model/Driver.h"
#include "model/ModelHost.h"
#include "model/ModelMembers.h"
#include "support/ErrorOf.h"

/// A model host over a store in memory, and a listener to its events.
namespace lorvane::model {

using host::Member;
using host::Variant;
using support::errorNumberOf;

/// Counts what it is told, and may act on it.
struct Listener final : host::EventSink {
    std::vector<Member> heard;
    std::function<void(Member, host::Args)> onHeard;
    void onEvent(Member event, host::Args args) override {
        heard.push_back(event);
        if (onHeard) onHeard(event, args);
    }
};

class ModelHostTest : public ::testing::Test {
protected:
    static HostOptions options(screen::Desktop& desktop, PasteContent& clipboard) {
        HostOptions made(desktop);
        made.defaultStore = mailstore::makeMemoryStore(u"Personal Folders", 2);
        made.clipboardContent = [&clipboard] { return clipboard; };
        return made;
    }

    void restart(const std::function<void(HostOptions&)>& change) {
        HostOptions changed = options(desktop, clipboard);
        change(changed);
        model = std::make_unique<ModelHost>(std::move(changed));
    }

    host::Application application() const { return host::Application(model->application()); }
    host::NameSpace session() const { return application().GetNamespace(u"MAPI"); }
    Driver driver() const { return Driver(*model); }
    host::SafeMailItem wrapped(const host::Object& item) const {
        host::SafeMailItem safe(model->machine().call(Member::CreateObject, {u"qz7mredemption.qz7msafemailitem"}).toObject());
        safe.Item(item);
        return safe;
    }
    host::MailItem savedMail(std::u16string_view subject, std::u16string_view html) const {
        host::MailItem mail = application().CreateItem(0);
        mail.Subject(subject);
        mail.HTMLBody(html);
        mail.Save();
        return mail;
    }
    void type(std::u16string_view keys) { desktop.sendKeys(keys); }

    screen::Desktop desktop;
    PasteContent clipboard;
    std::unique_ptr<ModelHost> model = std::make_unique<ModelHost>(options(desktop, clipboard));
};

}  // namespace lorvane::model
