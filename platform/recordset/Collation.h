#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct UCollator;

namespace lorvane::recordset {

/// The order of texts in a locale, letters before accents and without regard to case (the collation's secondary strength).
///
/// The collation library is the truth. For units whose place in the order does not depend on their neighbours, its weights are also kept in a table, so that
/// whole columns of ordinary text sort without a call a comparison; a text with any other unit goes through the library.
class Collation {
public:
    /// `localeName` as "en-US" or "de-DE"; an unknown one gives the root order. Raises host_failure::Failed where the library has no data.
    explicit Collation(std::u16string_view localeName);
    ~Collation();
    Collation(const Collation&) = delete;
    Collation& operator=(const Collation&) = delete;

    /// The order of a locale, made at its first use and then shared by the whole process, threads included: the library takes milliseconds to tell what the
    /// table needs. Errors as above.
    static std::shared_ptr<const Collation> of(std::u16string_view localeName);

    /// Negative, 0 or positive. Case never counts.
    int compare(std::u16string_view a, std::u16string_view b) const;

    /// Appends the library's sort key of the text, closed by a byte 0: keys compare as their texts do, byte by byte.
    void appendKey(std::u16string_view text, std::vector<std::uint8_t>& keys) const;

    /// The weights of one unit: letters first, accents second, each list without the ones that are ignored. 0 is no weight.
    struct Weights {
        static constexpr std::size_t most = 4;
        std::uint8_t letterCount = 0, accentCount = 0;
        bool known = false;
        std::array<std::uint8_t, most> letters{}, accents{};
    };

    /// Whether every plain text (units below U+0080) is told by the weights below alone.
    bool plainIsTabled() const noexcept { return plainTabled_; }
    /// Whether the text is told by the weights of its units alone.
    bool isTabled(std::u16string_view text) const noexcept;
    const Weights& weights(char16_t unit) const noexcept { return unit < table_.size() ? table_[unit] : unknown_; }
    /// The letter weight of a unit of a tabled text that has exactly one, else 0.
    std::uint8_t singleWeight(char16_t unit) const noexcept { return singles_[unit]; }
    /// The order of two tabled texts whose letters are equal, by their accents.
    int compareAccents(std::u16string_view a, std::u16string_view b) const noexcept;

private:
    void fillTable();

    UCollator* collator_ = nullptr;
    std::vector<Weights> table_;
    Weights unknown_;
    std::vector<std::uint8_t> singles_;  // by unit of the table
    std::vector<std::uint8_t> known_;    // by any unit: 1 where the table tells it
    bool plainTabled_ = false;
};

}  // namespace lorvane::recordset
