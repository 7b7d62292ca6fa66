#include "host/Routines.h"

#include "host/Redemption.h"
#include "host/RoutineBinding.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"

namespace lorvane::host {

namespace {

constexpr std::int32_t WrongNumberOfArguments = 450;
constexpr std::u16string_view divider = u", ";

/// A name of a list without its brackets.
std::u16string_view bare(std::u16string_view name) noexcept {
    return name.starts_with(u'[') ? name.substr(1, name.size() - 2) : name;
}

/// Takes the next name off a list of parameters.
std::u16string_view takeName(std::u16string_view& list) noexcept {
    const std::size_t end = list.find(divider);
    const std::u16string_view name = list.substr(0, end);
    list = end == std::u16string_view::npos ? std::u16string_view() : list.substr(end + divider.size());
    return name;
}

constexpr Routine rows[] = {
    routine<&setting>(u"basGlobals", u"setting", u"key, [byDefault]"),
    routine<&saveSetting>(u"basGlobals", u"saveSetting", u"key, value"),
    routine<&OutlookVersion>(u"basGlobals", u"OutlookVersion", u""),
    routine<&OutlookMajorVersion>(u"basGlobals", u"OutlookMajorVersion", u""),
    routine<&IsGuardedOutlook10>(u"basGlobals", u"IsGuardedOutlook10", u""),
    routine<&ensureOutlook>(u"basGlobals", u"ensureOutlook", u""),
    routine<&ensureNameSpace>(u"basGlobals", u"ensureNameSpace", u""),
    routine<&MsgBox>(u"basGlobals", u"MsgBox", u"text, [style], [title]"),
    routine<&MessageBox4Word>(u"basGlobals", u"MessageBox4Word", u"text, style, title"),
    routine<&InitializeRDOSession>(u"basGlobals", u"InitializeRDOSession", u""),
    routine<&SafeMapiCleanup>(u"basGlobals", u"SafeMapiCleanup", u""),
};

/// A value that is a facade, or an object, of the apartment.
template <auto Member>
constexpr GlobalValue object(std::u16string_view name) {
    using Facade = std::remove_cvref_t<decltype(std::declval<Apartment&>().*Member)>;
    return {name, [] { return Variant(Object(apartment().*Member)); }, [](const Variant& value) { apartment().*Member = Facade(value.toObject()); }};
}

template <auto Member>
constexpr GlobalValue text(std::u16string_view name) {
    return {name, [] { return Variant(apartment().*Member); }, [](const Variant& value) { apartment().*Member = value.toText(); }};
}

constexpr GlobalValue values[] = {
    object<&Apartment::gOutlook>(u"gOutlook"),       object<&Apartment::gNameSpace>(u"gNameSpace"),           text<&Apartment::gProgId>(u"gProgId"),
    object<&Apartment::gRdoSession>(u"gRdoSession"), object<&Apartment::TemplatesFolder>(u"TemplatesFolder"), text<&Apartment::title>(u"title"),
};

}  // namespace

std::optional<std::size_t> parameterIndex(std::u16string_view parameters, std::u16string_view name) noexcept {
    for (std::size_t index = 0; !parameters.empty(); ++index)
        if (equalsIgnoreCase(bare(takeName(parameters)), name)) return index;
    return std::nullopt;
}

void requireArguments(std::u16string_view parameters, Args args) {
    if (args.size() > parameterCount(parameters)) throw HostError(WrongNumberOfArguments, u"Wrong number of arguments");
    for (std::size_t index = 0; !parameters.empty(); ++index) {
        const std::u16string_view name = takeName(parameters);
        if (!name.starts_with(u'[') && argumentAt(args, index).isMissing())
            throw HostError(runtime_error::ArgumentNotOptional, std::u16string(u"Argument not optional: ").append(name));
    }
}

RoutineTable routines() {
    return rows;
}

GlobalTable globalValues() {
    return values;
}

}  // namespace lorvane::host
