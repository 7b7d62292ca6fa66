// Tag replacement, the splice of a text at its marker and the clean-up of proofing markup beside a copy of the same bytes; and the clean-up's growth on
// hostile texts.
// Usage: bench_text [--smoke]

#include <cstring>
#include <random>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "respond/TextInsert.h"
#include "support/Measure.h"
#include "text/GrammarCheck.h"
#include "text/TemplateTags.h"

namespace {

using namespace lorvane;
using namespace lorvane::bench;

using Text = std::u16string;

constexpr std::u16string_view startDelimiter = u"[<span", endDelimiter = u"</span>]", marker = u"Asdw34r2wjkytui983jnd2m";

Text number(std::size_t value) {
    return host::decimal(static_cast<std::int64_t>(value));
}

/// HTML as an editor writes it, with a tag in each thousand units, as typed or with proofing markup.
Text html(std::size_t bytes, bool proofed) {
    Text text = u"<html><head><style>p.MsoNormal {margin:0cm; font-size:11.0pt;}</style></head><body lang=EN-US>";
    for (std::size_t i = 0; text.size() * sizeof(char16_t) < bytes; ++i) {
        text +=
            u"<p class=MsoNormal><b>Paragraph " + number(i) + u"</b> thanks you for the order that you gave us, and tells what comes next.<o:p></o:p></p>\r\n";
        if (i % 8 == 0) text += proofed ? u"<p>Dear [<span class=SpellE>FirstName</span>],</p>" : u"<p>Dear [FirstName],</p>";
    }
    return text + u"</body></html>";
}

Text repeated(std::u16string_view piece, std::size_t bytes) {
    Text text;
    while (text.size() * sizeof(char16_t) < bytes) text += piece;
    return text;
}

Text span(std::u16string_view content) {
    return Text(startDelimiter).append(content).append(endDelimiter);
}

/// Texts made to be slow.
struct Family {
    const char* name;
    std::function<Text(std::size_t bytes)> make;
};

Text numberedSpans(std::size_t bytes) {
    Text text;
    for (std::size_t i = 0; text.size() * sizeof(char16_t) < bytes; ++i) text += span(u" i=" + number(i) + u">Date") + u" and so on ";
    return text;
}

Text fewPieces(std::size_t bytes) {
    std::mt19937 engine(20280110);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    Text text;
    while (text.size() * sizeof(char16_t) < bytes) {
        for (std::uint32_t depth = 16 + random() % 16; depth > 0; --depth) text += random() % 2 == 0 ? u"[<span a>" : u"[<span b>";
        text += u"Date</span>]";
        text.append(400, u'.');
    }
    return text;
}

Text fewPiecesSideBySide(std::size_t bytes) {
    std::mt19937 engine(20280110);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    Text text;
    while (text.size() * sizeof(char16_t) < bytes) {
        for (std::uint32_t depth = 12 + random() % 12; depth > 0; --depth) text += random() % 2 == 0 ? u"[<span a>" : u"[<span b>";
        text += u"Date</span>]";
    }
    return text;
}

const Family families[] = {
    {"starts alone", [](std::size_t bytes) { return repeated(startDelimiter, bytes); }},
    {"ends alone", [](std::size_t bytes) { return repeated(endDelimiter, bytes); }},
    {"starts and ends", [](std::size_t bytes) { return repeated(span(u""), bytes); }},
    {"equal spans side by side", [](std::size_t bytes) { return repeated(span(u" class=SpellE>Date"), bytes); }},
    {"different spans side by side", numberedSpans},
    {"one start, ends without a word, a word at the end",
     [](std::size_t bytes) { return span(u" i=0>x") + repeated(u" </span>]", bytes) + u"FullName</span>]"; }},
    {"nested fragments of few pieces, apart", fewPieces},
    {"nested fragments of few pieces, side by side", fewPiecesSideBySide},
};

double copying(const Text& text, int rounds) {
    std::vector<char16_t> target(text.size());
    return mediansInTurns(rounds, {{[&] {
                              std::memcpy(target.data(), text.data(), text.size() * sizeof(char16_t));
                              use(target.data());
                          }}})[0];
}

void measure(std::size_t bytes, const std::string& size, int rounds, Goal goal) {
    const Text plain = html(bytes, false);
    const Text proofed = html(bytes, true);
    Text marked = plain;
    marked.insert(marked.size() / 2, marker);
    const Text inserted = u"<p>Dear John,</p>";
    Text work;
    const double copy = copying(plain, rounds);
    const std::vector<double> times = mediansInTurns(rounds, {{[&] { text::ReplaceTag(work, u"[FirstName]", u"John"); }, [&] { work = plain; }},
                                                              {[&] { use(respond::Insert(marked, marker, inserted).size()); }},
                                                              {[&] { text::RemoveGrammarCheck(work, startDelimiter, endDelimiter); }, [&] { work = proofed; }},
                                                              {[&] { text::RemoveGrammarCheck(work, startDelimiter, endDelimiter); }, [&] { work = plain; }}});
    printTimes(size + ", tags replaced", times[0], "memcpy", copy, goal);
    printTimes(size + ", text put at its marker", times[1], "memcpy", copy, goal);
    printTimes(size + ", proofing markup taken out", times[2], "memcpy", copy, goal);
    printTimes(size + ", no proofing markup there", times[3], "memcpy", copy, goal);
}

void measureGrowth(const Family& family, std::size_t small, int rounds, Goal goal) {
    double times[2];
    for (int large = 0; large < 2; ++large) {
        const Text text = family.make(large ? 10 * small : small);
        Text work;
        times[large] = mediansInTurns(rounds, {{[&] { text::RemoveGrammarCheck(work, startDelimiter, endDelimiter); }, [&] { work = text; }}})[0];
    }
    printTimes(std::string("10 : 1, ") + family.name, times[1], "a tenth", times[0], goal);
}

}  // namespace

int main(int argc, char** argv) {
    const Arguments arguments = argumentsOf(argc, argv);
    const std::size_t mebibyte = (std::size_t{1} << 20) / (arguments.smoke ? 100 : 1);
    try {
        const Goal copies = arguments.smoke ? Goal{} : atMost(6);
        measure(mebibyte, arguments.smoke ? "10 KiB" : "1 MiB", arguments.rounds(), copies);
        measure(10 * mebibyte, arguments.smoke ? "100 KiB" : "10 MiB", arguments.rounds(), copies);
        for (const Family& family : families) measureGrowth(family, mebibyte, arguments.smoke ? 3 : 5, arguments.smoke ? Goal{} : atMost(12));
    } catch (const host::HostError& error) {
        return std::fprintf(stderr, "%s\n", error.what()), 1;
    }
}
