#pragma once

#include "automation/Handles.h"
#include "automation/Rpc.h"
#include "host/Variant.h"

namespace lorvane::automation {

/// Values of the platform surface as JSON, both ways.
///
/// | value | JSON |
/// | text, number, boolean | the same |
/// | Empty, Nothing | null |
/// | Null | {"$null": true} |
/// | date | {"$date": "2028-01-10T09:00:00"} |
/// | array from 1 | an array; any other {"lower": 0, "items": […]} |
/// | record | an object |
/// | bytes | {"$base64": "…"} |
/// | object | {"$obj": 7, "class": "MailItem"} |
/// | missing argument | {"$missing": true} |
class Values {
public:
    explicit Values(Handles& handles) noexcept : handles_(handles) {}

    /// Takes objects up as handles. HostError for a number or date that JSON cannot say.
    Json toJson(const host::Variant& value) const;
    /// RpcError (InvalidParams) for a form that means nothing, an object that is not held, or a number beyond 53 bits.
    host::Variant fromJson(const Json& json) const;
    /// The same for an argument, which may be missing.
    host::Variant argumentFromJson(const Json& json) const;
    /// The object that a parameter names, by its number alone or by its form.
    host::Object objectFromJson(const Json& json) const;

private:
    Json objectToJson(const host::Object& object) const;
    host::Variant numberFromJson(const Json& json) const;
    host::Variant tableFromJson(const Json& json) const;
    host::Array itemsFromJson(const Json& json, std::int32_t lower) const;

    Handles& handles_;
};

}  // namespace lorvane::automation
