#include "host/OutAddIn.h"

#include "host/Apartment.h"

namespace lorvane::host {

void OutAddIn::InitHandler(const Application& application, std::u16string_view progId) {
    objOutlook_ = application;
    apartment().gOutlook = application;
    progId_ = progId;
    objNS_ = objOutlook_.GetNamespace(u"MAPI");
    colExpl_ = objOutlook_.Explorers();
    colInsp_ = objOutlook_.Inspectors();
    objExpl_ = objOutlook_.ActiveExplorer();
    objInsp_ = objOutlook_.getObject(Member::Inspector);
    initialised_ = true;
}

void OutAddIn::UnInitHandler() {
    objInsp_ = {};
    objExpl_ = {};
    colInsp_ = {};
    colExpl_ = {};
    objNS_ = {};
    Apartment& here = apartment();
    here.TemplatesFolder = {};
    here.gOutlook = {};
    objOutlook_ = {};
    initialised_ = false;
}

}  // namespace lorvane::host
