#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Variant.h"

namespace lorvane::host {

class PropertyOwner;

/// A property of a window or control as by-name access sees it.
class PropertyBase {
public:
    PropertyBase(PropertyOwner& owner, std::u16string_view name);
    PropertyBase(const PropertyBase&) = delete;
    PropertyBase& operator=(const PropertyBase&) = delete;
    virtual ~PropertyBase() = default;

    std::u16string_view name() const noexcept { return name_; }
    virtual Variant read() const = 0;
    virtual void write(const Variant& value) = 0;  ///< converts as automation does; error 13 or 6 where it cannot

protected:
    PropertyOwner& owner_;

private:
    std::u16string_view name_;
};

/// What has properties and methods that are reached by name: a window or a control.
class PropertyOwner {
public:
    PropertyOwner() = default;
    PropertyOwner(const PropertyOwner&) = delete;
    PropertyOwner& operator=(const PropertyOwner&) = delete;
    virtual ~PropertyOwner() = default;

    using Method = std::function<Variant(Args)>;

    PropertyBase* property(std::u16string_view name) const noexcept;  ///< any case; null where there is none
    const std::vector<PropertyBase*>& properties() const noexcept { return properties_; }

    /// By-name access of the surface: numbers run from `windowMembers` over the properties and then the methods.
    std::optional<Member> memberByName(std::u16string_view name) const noexcept;
    /// The other way; "?" for a number that is neither a property nor a method.
    std::u16string_view nameOfMember(Member member) const noexcept;
    Variant getMember(Member member, Args args, std::u16string_view className);
    void putMember(Member member, const Variant& value, std::u16string_view className);
    Variant callMember(Member member, Args args, std::u16string_view className);

protected:
    void addMethod(std::u16string_view name, Method method);
    /// Runs after a property got another value, whoever set it. Controls raise their events here.
    virtual void propertyChanged(PropertyBase&) {}

private:
    friend class PropertyBase;
    template <class T>
    friend class Property;
    std::vector<PropertyBase*> properties_;
    std::vector<std::pair<std::u16string_view, Method>> methods_;
};

namespace detail {
template <class T>
T fromVariant(const Variant& value);
template <>
inline std::u16string fromVariant(const Variant& value) {
    return value.toText();
}
template <>
inline bool fromVariant(const Variant& value) {
    return value.toBoolean();
}
template <>
inline std::int32_t fromVariant(const Variant& value) {
    return value.toInt32();
}
}  // namespace detail

/// A typed property: reads like a value, and assigning another value tells the owner, as in `txtSearch.Text = u""`.
template <class T>
class Property final : public PropertyBase {
public:
    Property(PropertyOwner& owner, std::u16string_view name, T initial = {}) : PropertyBase(owner, name), value_(std::move(initial)) {}

    const T& get() const noexcept { return value_; }
    operator const T&() const noexcept { return value_; }
    Property& operator=(T value) {
        set(std::move(value));
        return *this;
    }
    void set(T value) {
        if (value == value_) return;
        value_ = std::move(value);
        owner_.propertyChanged(*this);
    }
    /// Changes the value without an event: for the owner itself, whose own step tells of it.
    void setQuietly(T value) { value_ = std::move(value); }

    Variant read() const override { return Variant(value_); }
    void write(const Variant& value) override { set(detail::fromVariant<T>(value)); }

private:
    T value_;
};

/// An event of a control: one handler, set by the window. Raising an event nobody handles does nothing.
template <class... A>
class Event {
public:
    using Handler = std::function<void(A...)>;
    Event& operator=(Handler handler) {
        handler_ = std::move(handler);
        return *this;
    }
    void operator()(A... args) const {
        if (handler_) handler_(args...);
    }

private:
    Handler handler_;
};

}  // namespace lorvane::host
