#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "host/Object.h"

namespace lorvane::host {

struct Array;

/// Keeps texts for all who hold one of them: a text that was handed out stays as it is and where it is.
class TextKeeper {
public:
    virtual ~TextKeeper() = default;
    /// The text that the keeper handed out with this number, which means something to the keeper alone.
    virtual std::u16string_view keptText(std::uint64_t number) const noexcept = 0;
};

/// A text where its keeper has it: whoever passes it on need not look at it.
struct KeptText {
    std::shared_ptr<const TextKeeper> keeper;
    std::uint64_t number = 0;

    std::u16string_view view() const noexcept { return keeper->keptText(number); }
    bool operator==(const KeptText& other) const noexcept { return view() == other.view(); }
};

/// A value that crosses the platform surface, with the conversions of automation.
///
/// Booleans are -1 and 0 as numbers. A conversion that cannot be made raises error 13, one out of range error 6, and one of Null error 94.
/// Missing, objects, arrays and bytes cannot be made numbers or text: error 13. Only `toObject`, `toArray`, `toBytes` and `text` raise 13 for Null too.
/// Text is UTF-16; code units are kept as they are, lone surrogates included. Where it has a keeper it is copied when it is first asked for as the value's own.
class Variant {
public:
// GCC takes the scoped enumerator `Bytes` for one that hides the type of that name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
    enum class Kind { Empty, Null, Missing, Boolean, Int16, Int32, Double, Date, Text, Object, Array, Bytes };
#pragma GCC diagnostic pop

    Variant() noexcept = default;
    template <std::same_as<bool> T>
    Variant(T value) noexcept : value_(value) {}
    Variant(std::int16_t value) noexcept : value_(value) {}
    Variant(std::int32_t value) noexcept : value_(value) {}
    Variant(double value) noexcept : value_(value) {}
    Variant(DateTime value) noexcept : value_(value) {}
    Variant(std::u16string value) noexcept : value_(std::move(value)) {}
    Variant(std::u16string_view value) : value_(std::u16string(value)) {}
    Variant(const char16_t* value) : value_(std::u16string(value)) {}
    Variant(KeptText value) noexcept : value_(std::move(value)) {}  ///< a text like any other, from a keeper
    Variant(Object value) noexcept : value_(std::move(value)) {}
    Variant(Array value);
    Variant(Bytes value);

    static Variant null() noexcept;
    static Variant missing() noexcept;  ///< an optional argument that was not given

    Kind kind() const noexcept {
        // The kinds are counted in the order of the storage's alternatives; a kept text is a text.
        return std::holds_alternative<KeptText>(value_) ? Kind::Text : static_cast<Kind>(value_.index());
    }
    bool isEmpty() const noexcept {
        return kind() == Kind::Empty;
    }
    bool isNull() const noexcept {
        return kind() == Kind::Null;
    }
    bool isMissing() const noexcept {
        return kind() == Kind::Missing;
    }

    bool toBoolean() const;        ///< numbers: not 0; text: "True"/"False" in any case, or a number
    std::int16_t toInt16() const;  ///< rounds half to even; error 6 out of range
    std::int32_t toInt32() const;  ///< rounds half to even; error 6 out of range
    double toDouble() const;
    DateTime toDate() const;        ///< text by `dateTimeFromText` in en-US; error 6 outside the years 100 to 9999
    std::u16string toText() const;  ///< Empty gives ""; Boolean "True"/"False"; numbers "." as mark, up to 15 digits, no group marks; dates general in en-US
    Object toObject() const;        ///< Empty gives Nothing; any other kind but Object is error 13
    const Array& toArray() const;   ///< error 13 unless an array
    const Bytes& toBytes() const;   ///< error 13 unless bytes

    /// The text as the value's own; error 13 unless the kind is Text.
    const std::u16string& text() const;
    /// The text in place, for callers that must not copy: until the value changes, or `text` makes a kept one its own. Error 13 unless the kind is Text.
    std::u16string_view textView() const;
    /// The text's keeper and number; null where the text is the value's own, and for any other kind.
    const KeptText* keptText() const noexcept {
        return std::get_if<KeptText>(&value_);
    }

    /// Same kind and same value; objects compare by identity.
    friend bool operator==(const Variant& a, const Variant& b);

private:
    struct NullTag {
        bool operator==(const NullTag&) const = default;
    };
    struct MissingTag {
        bool operator==(const MissingTag&) const = default;
    };
    using Storage = std::variant<std::monostate, NullTag, MissingTag, bool, std::int16_t, std::int32_t, double, DateTime, std::u16string, Object,
                                 std::shared_ptr<const Array>, std::shared_ptr<const Bytes>, KeptText>;
    mutable Storage value_;  // a kept text becomes the value's own when it is asked for
};

/// The text of a property that an item or entry may lack: "" for Null, else as `toText`.
std::u16string fieldText(const Variant& field);

/// A list of values with its lower bound, as automation passes arrays.
struct Array {
    std::int32_t lower = 0;
    std::vector<Variant> items;

    bool operator==(const Array&) const = default;
};

/// One argument of a member's use: a value, a variable passed by reference, or a named one.
///
/// A platform reads `value()`; where `isByReference()` it may write back with `assign`.
class Argument {
public:
    template <class T>
    requires std::constructible_from<Variant, T> &&(!std::same_as<std::remove_cvref_t<T>, Argument>)Argument(T&& value) : value_(std::forward<T>(value)) {}

    static Argument byReference(Variant& variable);
    static Argument named(Member name, Variant value);

    const Variant& value() const noexcept { return reference_ ? *reference_ : value_; }
    bool isByReference() const noexcept { return reference_ != nullptr; }
    Member name() const noexcept { return name_; }  ///< Member::None for a positional argument
    void assign(Variant value) const;               ///< writes the caller's variable; nothing for an argument by value
    Variant* reference() const noexcept { return reference_; }

private:
    Variant value_;
    Variant* reference_ = nullptr;
    Member name_ = Member::None;
};

/// The value of positional argument `index` (from 0), or Missing where it was not given.
const Variant& argumentAt(Args args, std::size_t index) noexcept;
/// The value of argument `name`, else of position `index`, else Missing.
const Variant& argumentNamed(Args args, Member name, std::size_t index) noexcept;
/// The value of a positional argument that must be there; error 449 otherwise.
const Variant& requiredArgument(Args args, std::size_t index);

}  // namespace lorvane::host
