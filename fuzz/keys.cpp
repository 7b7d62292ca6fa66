#include "fuzz/FuzzInput.h"
#include "host/HostError.h"
#include "screen/KeyString.h"

/// A key string is refused with error 5 or parsed; a text as it stands has strokes in any case, one for each character at the most.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lorvane;
    const std::u16string text = fuzz::Input(data, size).text();
    try {
        const auto strokes = screen::parseKeys(text);
        for (std::size_t begin = 0; begin < strokes.size();) {
            const std::size_t end = screen::endOfRun(strokes, begin);
            fuzz::require(end > begin && end <= strokes.size(), "runs follow each other");
            begin = end;
        }
    } catch (const host::HostError& error) {
        fuzz::require(error.number() == host::runtime_error::InvalidProcedureCall, "a broken key string is error 5");
    }
    fuzz::require(screen::keysOfText(text).size() <= text.size(), "no character is typed by more than one key");
    return 0;
}
