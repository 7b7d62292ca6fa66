#include "recordset/Recordset.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "recordset/Collation.h"
#include "recordset/Errors.h"
#include "recordset/RowsetReader.h"
#include "recordset/RowsetWriter.h"
#include "recordset/Stream.h"

namespace lorvane::recordset {

using host::Args;
using host::Member;
using host::Object;
using host::Variant;

namespace {

struct NamedMember {
    std::u16string_view name;
    Member member;
};

constexpr NamedMember ownMembers[] = {
    {u"BOF", own_member::BOF},
    {u"MovePrevious", own_member::MovePrevious},
    {u"MoveLast", own_member::MoveLast},
    {u"EditMode", own_member::EditMode},
    {u"State", own_member::State},
    {u"Status", own_member::Status},
    {u"DefinedSize", own_member::DefinedSize},
    {u"Attributes", own_member::Attributes},
    {u"ActualSize", own_member::ActualSize},
};

std::optional<Member> ownMember(std::u16string_view name) {
    for (const NamedMember& row : ownMembers) {
        if (host::equalsIgnoreCase(row.name, name)) return row.member;
    }
    return std::nullopt;
}

}  // namespace

/// "Field": the cell of the current row under one name.
class FieldObject final : public host::Dispatch {
public:
    FieldObject(Recordset& recordset, std::size_t index) : owner_(&recordset), recordset_(recordset), index_(index) {}
    ~FieldObject() override { recordset_.fieldObjects_[index_] = nullptr; }

    Variant get(Member member, Args) override {
        switch (member) {
            case Member::Value:
                return recordset_.view().value(index());
            case Member::Name:
                return definition().name;
            case Member::Type:
                return definition().type;
            default:
                break;
        }
        if (member == own_member::DefinedSize) return definition().definedSize;
        if (member == own_member::Attributes) return definition().attributes;
        if (member == own_member::ActualSize) return actualSize();
        host::raiseNoSuchMember(className(), member);
    }
    void put(Member member, const Variant& value, Args) override {
        if (member != Member::Value) host::raiseNoSuchMember(className(), member);
        recordset_.view().setValue(index(), value);
    }
    Variant call(Member member, Args args) override { return get(member, args); }
    std::optional<Member> memberNamed(std::u16string_view name) const override {
        const auto own = ownMember(name);
        return own ? own : Dispatch::memberNamed(name);
    }
    std::u16string_view className() const noexcept override { return u"Field"; }

private:
    // A field may be held while its recordset is closed and opened on a source that has fewer.
    std::size_t index() const {
        if (index_ >= recordset_.fields().size()) raise(error::ItemNotFound);
        return index_;
    }
    const FieldDefinition& definition() const { return recordset_.fields()[index()]; }
    Variant actualSize() const {
        const Variant value = recordset_.view().value(index());
        if (value.kind() == Variant::Kind::Text) return static_cast<std::int32_t>(value.text().size());
        return value.isEmpty() || value.isNull() ? std::int32_t{0} : definition().definedSize;
    }

    Object owner_;
    Recordset& recordset_;
    std::size_t index_;
};

/// "Fields": the columns, appended one by one until the recordset is opened.
class FieldsObject final : public host::Dispatch {
public:
    explicit FieldsObject(Recordset& recordset) : owner_(&recordset), recordset_(recordset) {}
    ~FieldsObject() override { recordset_.fieldsObject_ = nullptr; }

    Variant get(Member member, Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(recordset_.fields().size());
            case Member::Item:
                return recordset_.fieldAt(recordset_.fieldIndex(host::requiredArgument(args, 0)));
            default:
                host::raiseNoSuchMember(className(), member);
        }
    }
    void put(Member member, const Variant&, Args) override { host::raiseNoSuchMember(className(), member); }
    Variant call(Member member, Args args) override {
        if (member != Member::Append) return get(member, args);
        recordset_.append(args);
        return {};
    }
    std::u16string_view className() const noexcept override { return u"Fields"; }

private:
    Object owner_;
    Recordset& recordset_;
};

Recordset::Recordset(std::shared_ptr<const Collation> collation) : collation_(std::move(collation)) {}

Recordset::~Recordset() = default;

View& Recordset::view() {
    if (!view_) raise(error::Closed);
    return *view_;
}

const std::vector<FieldDefinition>& Recordset::fields() const noexcept {
    return view_ ? view_->table()->fields() : appended_;
}

std::size_t Recordset::fieldIndex(const Variant& nameOrNumber) const {
    if (nameOrNumber.kind() != Variant::Kind::Text) {
        const std::int32_t number = nameOrNumber.toInt32();
        if (number < 0 || static_cast<std::size_t>(number) >= fields().size()) raise(error::ItemNotFound);
        return static_cast<std::size_t>(number);
    }
    const auto found = std::ranges::find_if(fields(), [&](const FieldDefinition& field) { return host::equalsIgnoreCase(field.name, nameOrNumber.text()); });
    if (found == fields().end()) raise(error::ItemNotFound);
    return static_cast<std::size_t>(found - fields().begin());
}

Object Recordset::fieldAt(std::size_t index) {
    fieldObjects_.resize(std::max(fieldObjects_.size(), fields().size()));
    if (fieldObjects_[index]) return Object(fieldObjects_[index]);
    Object made = host::makeObject<FieldObject>(*this, index);
    fieldObjects_[index] = host::implementation<FieldObject>(made);
    return made;
}

Object Recordset::fieldsObject() {
    if (fieldsObject_) return Object(fieldsObject_);
    Object made = host::makeObject<FieldsObject>(*this);
    fieldsObject_ = host::implementation<FieldsObject>(made);
    return made;
}

void Recordset::append(Args args) {
    if (view_) raise(error::IllegalOperation);
    FieldDefinition field;
    field.name = host::requiredArgument(args, 0).toText();
    field.type = host::requiredArgument(args, 1).toInt32();
    const Variant& size = host::argumentAt(args, 2);
    const Variant& attributes = host::argumentAt(args, 3);
    if (!size.isMissing()) field.definedSize = size.toInt32();
    if (!attributes.isMissing()) field.attributes = attributes.toInt32();
    if (field.name.empty() || !storageOf(field.type) || field.definedSize < 0) raise(error::BadArgument);
    const bool isTaken = std::ranges::any_of(appended_, [&](const FieldDefinition& other) { return host::equalsIgnoreCase(other.name, field.name); });
    if (isTaken) raise(error::AlreadyInCollection);
    appended_.push_back(completed(std::move(field)));
}

void Recordset::open(Args args) {
    if (view_) raise(error::Open);
    // A table made in memory has no source; a text that would name one needs a connection.
    const Variant& source = host::argumentAt(args, 0);
    if (source.kind() == Variant::Kind::Object) {
        const bool alone = std::ranges::all_of(args.subspan(1), [](const host::Argument& further) { return further.value().isMissing(); });
        if (!alone) raise(error::BadArgument);
        return openFrom(source.toObject());
    }
    if (appended_.empty() || (!source.isMissing() && !source.isEmpty())) raise(error::InvalidConnection);
    auto view = std::make_unique<View>(std::make_shared<Table>(appended_), collation_);
    view->setSort(sortBeforeOpen_);
    view_ = std::move(view);
}

void Recordset::openFrom(const Object& source) {
    auto* const stream = host::implementation<Stream>(source);
    if (!stream) raise(error::BadArgument);
    auto view = std::make_unique<View>(readRowset(stream->readRest()), collation_);
    view->setSort(sortBeforeOpen_);
    view_ = std::move(view);
}

void Recordset::save(Args args) {
    constexpr std::int32_t persistXml = 1;
    view();
    const Variant& target = host::requiredArgument(args, 0);
    const Variant& format = host::argumentAt(args, 1);
    auto* const stream = target.kind() == Variant::Kind::Object ? host::implementation<Stream>(target.toObject()) : nullptr;
    // Files, and the binary format that goes without saying, are not offered.
    if (!stream || format.isMissing() || format.toInt32() != persistXml) raise(error::NotSupported);
    const std::u16string text = writeRowset(*view_, RowsetEncoding::Utf16);
    if (!stream->isOpen()) stream->open();
    stream->write(text);
    if (view_->recordCount() > 0) view_->moveFirst();
}

void Recordset::close() {
    if (view().editMode() != View::EditMode::None) raise(error::IllegalOperation);
    appended_ = view_->table()->fields();
    sortBeforeOpen_.clear();
    view_.reset();
}

Object Recordset::clone() {
    const auto& table = view().table();
    Object made = makeRecordset(collation_);
    host::implementation<Recordset>(made)->view_ = std::make_unique<View>(table, collation_);
    return made;
}

void Recordset::putFilter(const Variant& value) {
    if (value.kind() == Variant::Kind::Text) return view().setFilter(value.text());
    if (value.kind() == Variant::Kind::Array || value.kind() == Variant::Kind::Object) raise(error::BadArgument);
    const std::int32_t group = value.toInt32();
    if (group == 0) return view().setFilter({});
    // The groups of rows by their fate at a server, which a table in memory does not have.
    raise(group >= 1 && group <= 5 && group != 4 ? error::NotSupported : error::BadArgument);
}

Variant Recordset::get(Member member, Args args) {
    switch (member) {
        case Member::AbsolutePosition:
            return view().absolutePosition();
        case Member::EndOfFile:
            return view().atEof();
        case Member::RecordCount:
            return view().recordCount();
        case Member::Sort:
            return view_ ? view_->sortText() : sortBeforeOpen_;
        case Member::Filter:
            return view().filterText().empty() ? Variant(std::int32_t{0}) : Variant(view().filterText());
        case Member::Fields:
            return args.empty() ? fieldsObject() : fieldAt(fieldIndex(args[0].value()));
        default:
            return getOwn(member);
    }
}

Variant Recordset::getOwn(Member member) {
    if (member == own_member::BOF) return view().atBof();
    if (member == own_member::EditMode) return static_cast<std::int32_t>(view().editMode());
    if (member == own_member::Status) return view().status();
    if (member == own_member::State) return std::int32_t{view_ ? 1 : 0};
    host::raiseNoSuchMember(className(), member);
}

void Recordset::put(Member member, const Variant& value, Args) {
    switch (member) {
        case Member::AbsolutePosition:
            return view().setAbsolutePosition(value.toInt32());
        case Member::Filter:
            return putFilter(value);
        case Member::Sort:
            if (view_)
                view_->setSort(value.toText());
            else
                sortBeforeOpen_ = value.toText();
            return;
        default:
            host::raiseNoSuchMember(className(), member);
    }
}

Variant Recordset::call(Member member, Args args) {
    switch (member) {
        case Member::Open:
            open(args);
            return {};
        case Member::Close:
            close();
            return {};
        case Member::Save:
            save(args);
            return {};
        case Member::AddNew:
            if (!args.empty()) raise(error::NotSupported);
            view().addNew();
            return {};
        case Member::Update:
            if (!args.empty()) raise(error::NotSupported);
            view().update();
            return {};
        case Member::Delete:
            view().remove();
            return {};
        case Member::MoveFirst:
            view().moveFirst();
            return {};
        case Member::MoveNext:
            view().moveNext();
            return {};
        case Member::CancelUpdate:
            view().cancelUpdate();
            return {};
        case Member::Clone:
            return clone();
        default:
            break;
    }
    if (member == own_member::MovePrevious) return view().movePrevious(), Variant();
    if (member == own_member::MoveLast) return view().moveLast(), Variant();
    return get(member, args);
}

std::optional<Member> Recordset::memberNamed(std::u16string_view name) const {
    const auto own = ownMember(name);
    return own ? own : Dispatch::memberNamed(name);
}

Object makeRecordset(std::shared_ptr<const Collation> collation) {
    return host::makeObject<Recordset>(std::move(collation));
}

}  // namespace lorvane::recordset
