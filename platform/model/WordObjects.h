#pragma once

#include "host/Object.h"

namespace lorvane::model {

class InspectorObject;

/// Word's document of a window: `Range` (the whole body: `Text`, `Select`, `Copy`, `Paste`) and `Application`, which has `Selection` (`TypeText`, `Paste`,
/// `Text`), `AddIns` and `Templates`; `CommandBars` are the window's. It holds the window. All documents of a window are one object.
///
/// Members raise 0x80004005 once the window was closed, 0x8004010A once its item is gone, 0x800A1735 for a template that Word does not know. `Application` is
/// the same for all windows but for its `Selection`, which is that of the window it was reached through.
host::Object makeWordDocument(InspectorObject& inspector);

}  // namespace lorvane::model
