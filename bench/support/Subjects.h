#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Subjects and categories as templates have them, the same in every run.
namespace lorvane::bench {

struct TemplateRow {
    std::u16string entryId, storeId, subject, categories;
};

/// A word that stands in the given part of the subjects, by hundredths of a percent.
struct Share {
    std::u16string_view word;
    std::uint32_t perTenThousand;
    const char* name;
};
inline constexpr std::array<Share, 3> shares{{{u"xylophon", 1, "0.01 %"}, {u"quarter", 500, "5 %"}, {u"offer", 6000, "60 %"}}};

inline std::vector<TemplateRow> templateRows(std::size_t count) {
    static constexpr std::u16string_view words[] = {u"Answer",   u"about",    u"our",     u"your",    u"Invoice",   u"reminder", u"Meeting", u"with",
                                                    u"Customer", u"delivery", u"late",    u"Welcome", u"to",        u"the",      u"support", u"Größe",
                                                    u"für",      u"Rückruf",  u"Termin",  u"thanks",  u"and",       u"regards",  u"price",   u"list",
                                                    u"new",      u"old",      u"Order",   u"No.",     u"confirmed", u"refused",  u"street",  u"Contract",
                                                    u"signed",   u"Résumé",   u"project", u"weekly",  u"(urgent)",  u"Re:",      u"2027"};
    static constexpr std::u16string_view categories[] = {u"Sales", u"Support", u"Customers", u"Private", u"Travel", u"Projects", u"Finance", u"Staff"};
    std::mt19937 engine(20280110);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    const std::u16string storeId(96, u'7');
    std::vector<TemplateRow> rows;
    rows.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        TemplateRow row;
        constexpr std::u16string_view digits = u"0123456789ABCDEF";
        for (int digit = 0; digit < 48; ++digit) row.entryId += digits[(digit < 40 ? i >> (digit % 5 * 4) : random()) % 16];
        row.storeId = storeId;
        for (std::uint32_t word = 3 + random() % 5; word > 0; --word) {
            if (!row.subject.empty()) row.subject += u' ';
            row.subject += words[random() % std::size(words)];
        }
        for (const Share& share : shares) {
            if (random() % 10000 < share.perTenThousand) row.subject.append(u" ").append(share.word);
        }
        row.subject += u' ';
        for (std::uint32_t number = random() % 100000; number > 0; number /= 10) row.subject += static_cast<char16_t>(u'0' + number % 10);
        for (std::uint32_t category = random() % 3; category > 0; --category) {
            if (!row.categories.empty()) row.categories += u", ";
            row.categories += categories[random() % std::size(categories)];
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace lorvane::bench
