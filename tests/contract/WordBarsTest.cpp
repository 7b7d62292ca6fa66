#include "contract/Bars.h"
#include "contract/WordFixture.h"

/// The command bars of a window that Word edits.
namespace lorvane::contract {

class WordBars : public WordRun {};
INSTANTIATE_EACH_STORE(WordBars);

TEST_P(WordBars, TheDocumentsBarsAreTheInspectors) {
    const Inspector inspector = host().open(host().htmlItem(u"Dear John"));
    EXPECT_EQ(object(inspector.WordEditor(), u"CommandBars"), object(inspector, u"CommandBars"));
    const Object respond = control(object(inspector.WordEditor(), u"CommandBars", {u"Lorvane"}), u"&Respond");
    EXPECT_EQ(respond, control(bar(inspector, u"Lorvane"), u"Respond"));
}

TEST_P(WordBars, TheTemplateBringsABar) {
    const Inspector inspector = host().open(host().htmlItem(u"Dear John"));
    Names captions;
    for (const ShownBar& one : person().bars(inspector))
        if (one.name == u"Lorvane") captions = names(one.controls, &ShownControl::caption);
    EXPECT_EQ(captions, (Names{u"Lo&rvane", u"Save Template", u"Create Template", u"Insert m-Field", u"&Respond", u"Help"}));
    put(control(bar(inspector, u"Lorvane"), u"Insert m-Field"), u"Visible", false);
    EXPECT_FALSE(truth(control(object(inspector.WordEditor(), u"CommandBars", {u"Lorvane"}), u"Insert m-Field"), u"Visible"));
}

TEST_P(WordBars, AnAppointmentHasTheHostsOwnBars) {
    MailItem appointment = host().newItem(u"IPM.Appointment");
    const Inspector inspector = host().open(appointment);
    EXPECT_NEGATIVE_ERROR(bar(inspector, u"Lorvane"));
    EXPECT_TRUE(bar(inspector, u"Standard"));
}

}  // namespace lorvane::contract
