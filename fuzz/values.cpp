#include "fuzz/FuzzInput.h"
#include "host/HostError.h"
#include "host/Locale.h"
#include "host/PaddedText.h"
#include "host/Variant.h"
#include "store/TemplateFolders.h"
#include "store/TemplateList.h"

namespace {

using namespace lorvane;

template <class Reading>
void readOrRefuse(Reading&& reading) {
    try {
        reading();
    } catch (const host::HostError& error) {
        fuzz::require(error.number() > 0, "a text that cannot be read is a run-time error");
    }
}

}  // namespace

/// Settings are texts that anybody can write, and list lines carry a key behind their text: both are read back or refused.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::u16string text = fuzz::Input(data, size).text();
    const host::Variant value(text);
    readOrRefuse([&] { value.toBoolean(); });
    readOrRefuse([&] { value.toInt16(); });
    readOrRefuse([&] { value.toInt32(); });
    readOrRefuse([&] { value.toDouble(); });
    readOrRefuse([&] { value.toDate(); });
    readOrRefuse([&] { host::dateTimeFromIso(text); });
    for (const std::u16string_view region : {u"en-US", u"en-GB", u"de-DE"})
        readOrRefuse(
            [&] { host::FormatDateTime(host::dateTimeFromText(text, host::knownLocale(region)), host::DateStyle::General, host::knownLocale(region)); });
    host::Val(text);

    fuzz::require(host::PaddedText(text).text() == text, "a padded text gives what it was made from");
    readOrRefuse([&] { store::GetListId(text); });
    if (text.size() <= 600) {
        const auto position = static_cast<std::int32_t>(size % 100000);
        fuzz::require(store::GetListId(store::MakeListEntry(text, position).text()) == position, "a line gives the position it was made with");
    }
    return 0;
}
