#pragma once

#include <string_view>
#include <utility>

#include "host/Property.h"

namespace lorvane::host {

/// A property of a window that holds an object, or Nothing: reads like the object, and assigning one keeps it.
class ObjectProperty final : public PropertyBase {
public:
    ObjectProperty(PropertyOwner& owner, std::u16string_view name) : PropertyBase(owner, name) {}

    const Object& get() const noexcept { return object_; }
    operator const Object&() const noexcept { return object_; }
    explicit operator bool() const noexcept { return static_cast<bool>(object_); }
    ObjectProperty& operator=(Object object) {
        object_ = std::move(object);
        return *this;
    }

    Variant read() const override { return Variant(object_); }
    void write(const Variant& value) override { object_ = value.toObject(); }

private:
    Object object_;
};

}  // namespace lorvane::host
