#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host/Apartment.h"
#include "screen/ScriptedScreen.h"
#include "screen/ScriptedUser.h"

namespace lorvane::screen {

/// A window with one control of each kind. What its handlers see goes into `log`; what they do besides is set by a test.
class frmSample : public host::Form {
public:
    static constexpr std::u16string_view formName = u"frmSample";

    explicit frmSample(std::u16string_view name = formName);
    ~frmSample() override { log("gone"); }

    host::Label lblLink{*this, u"lblLink", u"&Search for:"};
    host::TextBox txtSearch{*this, u"txtSearch"};
    host::TextBox txtOther{*this, u"txtOther"};
    host::ListBox lstLines{*this, u"lstLines"};
    host::ComboBox cmbNames{*this, u"cmbNames"};
    host::OptionButton optAll{*this, u"optAll", u"All"};
    host::OptionButton optSome{*this, u"optSome", u"Some"};
    host::CheckBox chkTips{*this, u"chkTips", u"&Tips"};
    host::Button cmdOK{*this, u"cmdOK", u"&OK"};
    host::Panel picPanel{*this, u"picPanel"};
    host::Button cmdInside{*this, u"cmdInside", u"Inside", &picPanel};
    host::Button cmdCancel{*this, u"cmdCancel", u"Cancel"};
    host::Timer tmrBeat{*this, u"tmrBeat"};

    std::function<void()> atLoad, atActivate, atOK, atBeat, atChange;

    /// What all windows of a test said, in order; outlives them.
    static std::vector<std::string> said;

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload() override { log("Unload"); }

    void log(const std::string& what) const;
};

/// The same under another name, for windows over windows.
class frmInner final : public frmSample {
public:
    static constexpr std::u16string_view formName = u"frmInner";
    frmInner() : frmSample(formName) {}
};

/// A machine with nothing but a screen, entered for the length of a test.
class ScreenTest : public testing::Test {
protected:
    ScreenTest();
    ~ScreenTest() override;

    /// The sentence of the HostError 5 that `act` raises; "" where it raises none.
    template <class Act>
    static std::u16string refusal(Act&& act) {
        try {
            act();
        } catch (const host::HostError& error) {
            EXPECT_EQ(error.number(), 5);
            return error.description();
        }
        return {};
    }

    static std::vector<std::string>& said() { return frmSample::said; }
    frmInner& inner() { return host::apartment().forms.use<frmInner>(); }
    frmSample& sample() { return host::apartment().forms.use<frmSample>(); }
    host::Screen screen() { return host::apartment().machine.screen(); }

    Desktop desktop;
    WindowList windows{desktop};
    ScriptedUser user{windows};
    host::ApartmentScope scope;
};

using Said = std::vector<std::string>;

}  // namespace lorvane::screen
