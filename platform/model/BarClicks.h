#pragma once

#include <string_view>

namespace lorvane::model {

class HostWindow;

/// A person's click on a control of a window: "Bar/Popup/Caption", captions in any case without "&". The window comes to the front first. A popup's own entry
/// opens nothing by itself. Error 5, with a sentence, for a window that is not displayed and for a bar or control that is absent, hidden or disabled; for
/// the popups on the way too.
void clickBar(HostWindow& window, std::u16string_view path);

}  // namespace lorvane::model
