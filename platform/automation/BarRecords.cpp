#include "automation/BarRecords.h"

#include "automation/Records.h"
#include "model/CommandBarObjects.h"

namespace lorvane::automation {

using host::Variant;

namespace {

Variant controlRecords(const std::vector<model::ControlTree>& controls);

Variant controlRecord(const model::ControlTree& control) {
    std::vector<host::Record::Field> fields = {{u"type", control.type},
                                               {u"id", control.id},
                                               {u"caption", control.caption},
                                               {u"tag", control.tag},
                                               {u"tooltipText", control.tooltip},
                                               {u"parameter", control.parameter},
                                               {u"onAction", control.onAction},
                                               {u"priority", control.priority},
                                               {u"beginGroup", control.beginGroup},
                                               {u"enabled", control.enabled},
                                               {u"visible", control.visible},
                                               {u"temporary", control.temporary},
                                               {u"builtIn", control.builtIn}};
    if (control.type == model::ControlObject::Popup) {
        fields.emplace_back(u"controls", controlRecords(control.controls));
    } else {
        fields.emplace_back(u"faceId", control.faceId);
        fields.emplace_back(u"style", control.style);
    }
    return record(std::move(fields));
}

Variant controlRecords(const std::vector<model::ControlTree>& controls) {
    return listOf(controls, controlRecord);
}

Variant barRecord(const model::BarTree& bar) {
    return record({{u"name", bar.name},
                   {u"position", bar.position},
                   {u"visible", bar.visible},
                   {u"temporary", bar.temporary},
                   {u"builtIn", bar.builtIn},
                   {u"controls", controlRecords(bar.controls)}});
}

}  // namespace

Variant barRecords(const std::vector<model::BarTree>& bars) {
    return listOf(bars, barRecord);
}

}  // namespace lorvane::automation
