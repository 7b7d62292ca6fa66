#include "store/frmProgress.h"

#include "host/Apartment.h"
#include "host/TextFunctions.h"
#include "store/TemplateList.h"

namespace lorvane::store {

using namespace host;

namespace {

constexpr std::int32_t barWidth = 5000;  // twips, until a screen gives the real one
constexpr std::int32_t barMargin = 80;

}  // namespace

frmProgress::frmProgress()
    : Form(formName, u"Lorvane"),
      fra1progress(*this, u"fra1progress"),
      lbl1bar(*this, u"lbl1bar", u"", &fra1progress),
      lbl1progressbar(*this, u"lbl1progressbar", u"", &fra1progress),
      lblStatus(*this, u"lblStatus", u"", &fra1progress) {
    lbl1bar.Width = barWidth;
}

void frmProgress::Form_Activate() {
    // The chooser's list is cleared where the private folder turns out to be empty. Naming it here would load a chooser, which shows this window itself.
    Form* chooser = apartment().forms.find(u"frmEmail");
    auto* list = chooser ? dynamic_cast<ListBox*>(chooser->control(u"lstEmails")) : nullptr;
    LoadTemplateList(PrivateFolder, SharedFolder, list, true);
}

void frmProgress::showStep(std::int32_t counter, std::int32_t total) {
    lbl1progressbar.Width = static_cast<std::int32_t>(static_cast<double>(counter) / total * (lbl1bar.Width - barMargin));
    lblStatus.Caption = u"Loading E-mails ..." + decimal(counter) + u" of " + decimal(total) + u" ...";
    fra1progress.Refresh();
}

void frmProgress::finish() {
    PrivateFolder = {};
    SharedFolder = {};
    Hide();
    unload();
}

}  // namespace lorvane::store
