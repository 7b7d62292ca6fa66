#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/Member.h"
#include "host/Object.h"
#include "host/Variant.h"
#include "recordset/FieldType.h"
#include "recordset/View.h"

namespace lorvane::recordset {

class Collation;
class FieldObject;
class FieldsObject;

/// Members of recordsets that the add-in's logic does not use. They are reached by name.
namespace own_member {
inline constexpr auto number(int offset) {
    return static_cast<host::Member>(host::platformMembers + 0x100 + offset);
}
inline constexpr host::Member BOF = number(0), MovePrevious = number(1), MoveLast = number(2), EditMode = number(3), State = number(4), Status = number(5),
                              DefinedSize = number(6), Attributes = number(7), ActualSize = number(8);
}  // namespace own_member

/// The object "ADODB.Recordset": fields first appended, then opened, then rows; or opened on a stream, from its position on, that holds a rowset.
/// A rowset that cannot be read leaves it closed, as it was. `Save` writes the rowset to a stream, which it opens where it is closed.
///
/// A field object stays on its recordset and shows the current row, wherever that is.
class Recordset final : public host::Dispatch {
public:
    explicit Recordset(std::shared_ptr<const Collation> collation);
    ~Recordset() override;

    host::Variant get(host::Member member, host::Args args) override;
    void put(host::Member member, const host::Variant& value, host::Args args) override;
    host::Variant call(host::Member member, host::Args args) override;
    std::optional<host::Member> memberNamed(std::u16string_view name) const override;
    std::u16string_view className() const noexcept override { return u"Recordset"; }

    /// The rows behind the object; `Closed` (3704) where it is not open.
    View& view();
    bool isOpen() const noexcept { return view_ != nullptr; }

private:
    friend class FieldObject;
    friend class FieldsObject;

    const std::vector<FieldDefinition>& fields() const noexcept;
    std::size_t fieldIndex(const host::Variant& nameOrNumber) const;
    host::Object fieldAt(std::size_t index);
    host::Object fieldsObject();
    void append(host::Args args);
    void open(host::Args args);
    void openFrom(const host::Object& source);
    void save(host::Args args);
    void close();
    host::Object clone();
    void putFilter(const host::Variant& value);
    host::Variant getOwn(host::Member member);

    std::shared_ptr<const Collation> collation_;
    std::vector<FieldDefinition> appended_;  // until it is opened
    std::u16string sortBeforeOpen_;
    std::unique_ptr<View> view_;
    // The objects handed out and still held by someone, so that the same field is the same object.
    std::vector<FieldObject*> fieldObjects_;
    FieldsObject* fieldsObject_ = nullptr;
};

/// A new, closed recordset whose sort follows the collation.
host::Object makeRecordset(std::shared_ptr<const Collation> collation);

}  // namespace lorvane::recordset
