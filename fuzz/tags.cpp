#include <utility>

#include "fuzz/FuzzInput.h"
#include "host/TextFunctions.h"
#include "text/GrammarCheck.h"
#include "text/NaiveGrammarCheck.h"
#include "text/TemplateTags.h"

/// Tags are replaced as a plain replacement does it, and the clean-up of tags gives what its oracle gives.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lorvane;
    constexpr std::size_t longest = 2048;  // the oracle is slow
    if (size > longest) return 0;
    static constexpr std::pair<std::u16string_view, std::u16string_view> delimiters[] = {
        {u"[", u"]"}, {u"&lt;", u"&gt;"}, {u"<", u">"}, {u"aa", u"a"}, {u"ab", u"ba"},
    };
    fuzz::Input input(data, size);
    const auto& [open, close] = delimiters[input.byte() % std::size(delimiters)];
    const std::u16string text = input.text();

    std::u16string cleaned = text;
    text::RemoveGrammarCheck(cleaned, open, close);
    fuzz::require(cleaned == text::naiveRemoveGrammarCheck(text, open, close), "the clean-up gives what its oracle gives");

    std::u16string replaced = text;
    text::ReplaceTag(replaced, u"[FullName]", u"John Public");
    fuzz::require(replaced == host::Replace(text, u"[FullName]", u"John Public", host::Compare::IgnoreCase), "a tag is replaced wherever it stands");
    return 0;
}
