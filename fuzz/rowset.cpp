#include <memory>

#include "fuzz/FuzzInput.h"
#include "host/HostError.h"
#include "recordset/Collation.h"
#include "recordset/RowsetReader.h"
#include "recordset/RowsetWriter.h"

/// A rowset's text is refused in one way or loads; what loads is written, and what was written loads to the same text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lorvane;
    using namespace lorvane::recordset;
    const std::u16string text = fuzz::Input(data, size).text();
    const auto collation = Collation::of(u"en-US");
    const auto written = [&](std::u16string_view source) {
        View view(readRowset(source), collation);
        return writeRowset(view, RowsetEncoding::Utf16);
    };
    try {
        const std::u16string once = written(text);
        fuzz::require(written(once) == once, "what was written loads to the same");
    } catch (const host::HostError&) {
        // Refused.
    }
    return 0;
}
