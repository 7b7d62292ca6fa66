#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "host/Controls.h"
#include "host/Routines.h"

/// Makes functions callable by arguments that come late: each is converted to the parameter's type as automation converts it, and one that the function changes
/// in place (a reference to something not const) is assigned.
///
///     constexpr Routine rows[] = {
///         routine<&Insert>(u"TextInsert", u"Insert", u"body, marker, text"),
///     };
namespace lorvane::host {

namespace detail {

/// A value as a parameter's type: text, numbers, enumerators by their number, facades around an object. A missing argument came as Empty.
template <class T>
T taken(const Variant& value) {
    if constexpr (std::same_as<T, Variant>)
        return value;
    else if constexpr (std::same_as<T, std::u16string>)
        return value.toText();
    else if constexpr (std::same_as<T, bool>)
        return value.toBoolean();
    else if constexpr (std::same_as<T, std::int32_t>)
        return value.toInt32();
    else if constexpr (std::same_as<T, double>)
        return value.toDouble();
    else if constexpr (std::same_as<T, DateTime>)
        return value.toDate();
    else if constexpr (std::same_as<T, std::optional<std::int32_t>>)
        return value.isEmpty() ? T() : T(value.toInt32());
    else if constexpr (std::is_enum_v<T>)
        return static_cast<T>(value.toInt32());
    else
        return T(value.toObject());
}

template <class T>
Variant given(T&& value) {
    using Plain = std::remove_cvref_t<T>;
    if constexpr (std::derived_from<Plain, Object>)
        return Variant(Object(value));
    else if constexpr (std::same_as<Plain, PaddedText>)
        return Variant(value.text());
    else if constexpr (std::is_enum_v<Plain>)
        return Variant(static_cast<std::int32_t>(value));
    else
        return Variant(std::forward<T>(value));
}

/// One argument on its way into a parameter of type A and back.
template <class A>
class Parameter {
    using Plain = std::remove_cvref_t<A>;
    using Held = std::conditional_t<std::same_as<Plain, std::u16string_view>, std::u16string, Plain>;

public:
    explicit Parameter(const Variant& value) : held_(taken<Held>(value.isMissing() ? Variant() : value)) {}
    Held& pass() noexcept { return held_; }
    void assignTo(const Argument& argument) const {
        if constexpr (std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>) argument.assign(given(held_));
    }

private:
    Held held_;
};

/// A control of a window. Error 13 for anything else.
template <class C>
class ControlParameter {
public:
    explicit ControlParameter(const Variant& value) : handle_(value.isMissing() ? Object() : value.toObject()), control_(find(handle_)) {
        if (handle_ && !control_) throw HostError(runtime_error::TypeMismatch);
    }
    C* get() const noexcept { return control_; }

private:
    static C* find(const Object& handle) noexcept { return dynamic_cast<C*>(Control::behind(handle)); }
    Object handle_;  // keeps the window alive
    C* control_;
};

template <std::derived_from<Control> C>
class Parameter<C*> {
public:
    explicit Parameter(const Variant& value) : control_(value) {}
    C* pass() const noexcept { return control_.get(); }
    void assignTo(const Argument&) const noexcept {}

private:
    ControlParameter<C> control_;
};

template <std::derived_from<Control> C>
class Parameter<C&> {
public:
    explicit Parameter(const Variant& value) : control_(value) {
        if (!control_.get()) throw HostError(runtime_error::ObjectNotSet);
    }
    C& pass() const noexcept { return *control_.get(); }
    void assignTo(const Argument&) const noexcept {}

private:
    ControlParameter<C> control_;
};

template <class R, class... A, class Function, std::size_t... I>
Variant runBound(Function&& function, Args args, std::index_sequence<I...>) {
    std::tuple<Parameter<A>...> parameters{Parameter<A>(argumentAt(args, I))...};
    Variant result;
    if constexpr (std::is_void_v<R>)
        function(std::get<I>(parameters).pass()...);
    else
        result = given(function(std::get<I>(parameters).pass()...));
    ((I < args.size() ? std::get<I>(parameters).assignTo(args[I]) : void()), ...);
    return result;
}

}  // namespace detail

/// A function or method bound to late arguments: `run(args)`, or `run(object, args)`.
template <auto Function>
struct Bound;

template <class R, class... A, R (*Function)(A...)>
struct Bound<Function> {
    static constexpr std::size_t arity = sizeof...(A);
    static Variant run(Args args) { return detail::runBound<R, A...>(Function, args, std::index_sequence_for<A...>()); }
};

template <class C, class R, class... A, R (C::*Function)(A...)>
struct Bound<Function> {
    static constexpr std::size_t arity = sizeof...(A);
    static Variant run(C& object, Args args) {
        const auto function = [&object](auto&&... values) -> R { return (object.*Function)(std::forward<decltype(values)>(values)...); };
        return detail::runBound<R, A...>(function, args, std::index_sequence_for<A...>());
    }
};

template <class C, class R, class... A, R (C::*Function)(A...) const>
struct Bound<Function> {
    static constexpr std::size_t arity = sizeof...(A);
    static Variant run(C& object, Args args) {
        const auto function = [&object](auto&&... values) -> R { return (object.*Function)(std::forward<decltype(values)>(values)...); };
        return detail::runBound<R, A...>(function, args, std::index_sequence_for<A...>());
    }
};

/// The row of a routine; does not compile where the names are not as many as the function's parameters.
template <auto Function>
consteval Routine routine(std::u16string_view module, std::u16string_view name, std::u16string_view parameters) {
    if (parameterCount(parameters) != Bound<Function>::arity) throw "a name for each parameter";
    return {module, name, parameters, &Bound<Function>::run};
}

}  // namespace lorvane::host
