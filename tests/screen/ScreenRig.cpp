#include "ScreenRig.h"

#include "host/TextFunctions.h"

namespace lorvane::screen {

namespace {

class ScreenOnlyMachine final : public host::Dispatch {
public:
    explicit ScreenOnlyMachine(host::Object screen) : screen_(std::move(screen)) {}
    std::u16string_view className() const noexcept override { return u"Machine"; }
    host::Variant get(host::Member member, host::Args) override {
        if (member == host::Member::Screen) return screen_;
        host::raiseNoSuchMember(className(), member);
    }
    void put(host::Member member, const host::Variant&, host::Args) override { host::raiseNoSuchMember(className(), member); }
    host::Variant call(host::Member member, host::Args) override { host::raiseNoSuchMember(className(), member); }

private:
    host::Object screen_;
};

}  // namespace

std::vector<std::string> frmSample::said;

frmSample::frmSample(std::u16string_view name) : Form(name, u"A sample") {
    lblLink.Click = [this] { log("lblLink_Click"); };
    lblLink.MouseMove = [this] { log("lblLink_MouseMove"); };
    txtSearch.KeyDown = [this](std::int32_t& code, std::int32_t shift) { log("KeyDown " + std::to_string(code) + "/" + std::to_string(shift)); };
    txtSearch.KeyPress = [this](std::int32_t& character) { log("KeyPress " + std::to_string(character)); };
    txtSearch.KeyUp = [this](std::int32_t& code, std::int32_t) { log("KeyUp " + std::to_string(code)); };
    txtSearch.Change = [this] {
        log("Change " + host::toUtf8(txtSearch.Text.get()) + "|" + std::to_string(txtSearch.SelStart.get()));
        if (atChange) atChange();
    };
    lstLines.MouseDown = [this](std::int32_t button, double, double y) {
        log("lstLines_MouseDown " + std::to_string(button) + " row " + std::to_string(lstLines.rowAt(y)));
    };
    lstLines.Click = [this] { log("lstLines_Click " + std::to_string(lstLines.ListIndex.get())); };
    lstLines.DblClick = [this] { log("lstLines_DblClick"); };
    cmbNames.Click = [this] { log("cmbNames_Click " + host::toUtf8(cmbNames.Text.get())); };
    cmbNames.Change = [this] { log("cmbNames_Change " + host::toUtf8(cmbNames.Text.get())); };
    optAll.Click = [this] { log("optAll_Click"); };
    optSome.Click = [this] { log("optSome_Click"); };
    chkTips.Click = [this] { log("chkTips_Click " + std::to_string(chkTips.Value.get())); };
    cmdOK.Click = [this] {
        log("cmdOK_Click");
        if (atOK) atOK();
    };
    cmdCancel.Click = [this] { log("cmdCancel_Click"); };
    tmrBeat.Tick = [this] {
        log("tmrBeat_Timer");
        if (atBeat) atBeat();
    };
    for (const auto* line : {u"one", u"two", u"three"}) {
        lstLines.AddItem(std::u16string_view(line));
        cmbNames.AddItem(line);
    }
}

void frmSample::Form_Load() {
    log("Load");
    if (atLoad) atLoad();
}

void frmSample::Form_Activate() {
    log("Activate");
    if (atActivate) atActivate();
}

void frmSample::log(const std::string& what) const {
    said.push_back(name() == formName ? what : host::toUtf8(name()) + " " + what);
}

ScreenTest::ScreenTest() : scope(host::makeObject<ScreenOnlyMachine>(host::makeObject<ScriptedScreen>(windows, user))) {
    said().clear();
    user.onFailure([](const host::HostError& error) { ADD_FAILURE() << "the script: " << error.what(); });
}

ScreenTest::~ScreenTest() {
    EXPECT_EQ(user.pending(), 0U) << "acts of the script never came";
}

}  // namespace lorvane::screen
