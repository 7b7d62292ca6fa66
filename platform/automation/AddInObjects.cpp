#include "automation/AddInObjects.h"

#include <algorithm>

#include "automation/TableObject.h"
#include "host/Apartment.h"
#include "host/RoutineBinding.h"
#include "host/TextFunctions.h"

namespace lorvane::automation {

using host::Args;
using host::Routine;
using host::Variant;

namespace {

constexpr std::u16string_view newName = u"New", newParameters = u"className";

/// The tables put together.
struct Book {
    explicit Book(const AddInTables& tables) : classes(tables.classes) {
        for (const host::RoutineTable table : tables.routines)
            for (const Routine& routine : table) routines.push_back(&routine);
        for (const Routine* routine : routines)
            if (std::ranges::find(modules, routine->module) == modules.end()) modules.push_back(routine->module);
    }

    /// The routine of the module, else the first of that name on any other one.
    std::optional<std::size_t> find(std::u16string_view module, std::u16string_view name) const {
        std::optional<std::size_t> anywhere;
        for (std::size_t index = 0; index < routines.size(); ++index) {
            if (!host::equalsIgnoreCase(routines[index]->name, name)) continue;
            if (routines[index]->module == module) return index;
            if (!anywhere) anywhere = index;
        }
        return anywhere;
    }

    std::vector<const Routine*> routines;
    std::vector<std::u16string_view> modules;
    host::ClassTable classes;
};

class Module final : public TableObject {
public:
    Module(std::shared_ptr<const Book> book, std::u16string_view name) : book_(std::move(book)), name_(name) {}

    std::u16string_view className() const noexcept override { return name_; }
    /// One object stands for a module however often it is asked for.
    const void* identity() const noexcept override { return name_.data(); }

protected:
    std::size_t rowCount() const noexcept override { return book_->routines.size(); }
    std::optional<std::size_t> find(std::u16string_view name) const override { return book_->find(name_, name); }
    std::u16string_view nameAt(std::size_t row) const noexcept override { return book_->routines[row]->name; }
    std::u16string_view parametersAt(std::size_t row) const override { return book_->routines[row]->parameters; }
    bool givesArgumentsBackAt(std::size_t) const override { return true; }
    Variant runAt(std::size_t row, Args args) override { return book_->routines[row]->run(args); }

private:
    std::shared_ptr<const Book> book_;
    std::u16string_view name_;
};

/// Its rows are the routines, then the modules, then `New`.
class Modules final : public TableObject {
public:
    explicit Modules(std::shared_ptr<const Book> book) : book_(std::move(book)) {}
    std::u16string_view className() const noexcept override { return u"Modules"; }

protected:
    std::size_t rowCount() const noexcept override { return newRow() + 1; }
    std::u16string_view nameAt(std::size_t row) const noexcept override {
        if (isRoutine(row)) return book_->routines[row]->name;
        return row == newRow() ? newName : book_->modules[row - firstModule()];
    }
    std::u16string_view parametersAt(std::size_t row) const override {
        if (isRoutine(row)) return book_->routines[row]->parameters;
        return row == newRow() ? newParameters : std::u16string_view();
    }
    bool givesArgumentsBackAt(std::size_t row) const override { return isRoutine(row); }
    Variant runAt(std::size_t row, Args args) override {
        if (isRoutine(row)) return book_->routines[row]->run(args);
        if (row == newRow()) return make(args[0].value().toText());
        return host::makeObject<Module>(book_, book_->modules[row - firstModule()]);
    }

private:
    std::size_t firstModule() const noexcept { return book_->routines.size(); }
    std::size_t newRow() const noexcept { return firstModule() + book_->modules.size(); }
    bool isRoutine(std::size_t row) const noexcept { return row < firstModule(); }

    Variant make(const std::u16string& name) const {
        for (const host::NamedClass& known : book_->classes)
            if (host::equalsIgnoreCase(known.name, name)) return known.make();
        throw host::HostError(host::runtime_error::CannotCreateObject, u"The add-in has no class \"" + name + u"\".");
    }

    std::shared_ptr<const Book> book_;
};

std::u16string GetSetting(std::u16string_view app, std::u16string_view section, std::u16string_view key, std::u16string_view byDefault) {
    return host::apartment().machine.settings().GetSetting(app, section, key, byDefault);
}

void SaveSetting(std::u16string_view app, std::u16string_view section, std::u16string_view key, std::u16string_view value) {
    host::apartment().machine.settings().SaveSetting(app, section, key, value);
}

constexpr Routine settingsRows[] = {
    host::routine<&GetSetting>(u"Globals", u"GetSetting", u"app, section, key, [default]"),
    host::routine<&SaveSetting>(u"Globals", u"SaveSetting", u"app, section, key, value"),
};

/// Its rows are the settings' routines, then the values.
class Globals final : public TableObject {
public:
    explicit Globals(const std::vector<host::GlobalTable>& tables) {
        for (const host::GlobalTable table : tables)
            for (const host::GlobalValue& value : table) values_.push_back(&value);
    }
    std::u16string_view className() const noexcept override { return u"Globals"; }

protected:
    std::size_t rowCount() const noexcept override { return std::size(settingsRows) + values_.size(); }
    std::u16string_view nameAt(std::size_t row) const noexcept override { return isRoutine(row) ? settingsRows[row].name : value(row).name; }
    std::u16string_view parametersAt(std::size_t row) const override { return isRoutine(row) ? settingsRows[row].parameters : std::u16string_view(); }
    Variant runAt(std::size_t row, Args args) override { return isRoutine(row) ? settingsRows[row].run(args) : value(row).read(); }
    bool writeAt(std::size_t row, const Variant& written) override {
        if (!isRoutine(row)) value(row).write(written);
        return !isRoutine(row);
    }

private:
    static bool isRoutine(std::size_t row) noexcept { return row < std::size(settingsRows); }
    const host::GlobalValue& value(std::size_t row) const noexcept { return *values_[row - std::size(settingsRows)]; }

    std::vector<const host::GlobalValue*> values_;
};

class FormsObject final : public TableObject {
public:
    std::u16string_view className() const noexcept override { return u"Forms"; }

protected:
    std::size_t rowCount() const noexcept override { return host::apartment().forms.knownNames().size(); }
    std::u16string_view nameAt(std::size_t row) const noexcept override { return host::apartment().forms.knownNames()[row]; }
    Variant runAt(std::size_t row, Args) override { return host::Object(host::apartment().forms.useNamed(nameAt(row))); }
};

}  // namespace

host::Object makeModules(const AddInTables& tables) {
    return host::makeObject<Modules>(std::make_shared<const Book>(tables));
}

host::Object makeGlobals(const AddInTables& tables) {
    return host::makeObject<Globals>(tables.globals);
}

host::Object makeForms() {
    return host::makeObject<FormsObject>();
}

host::RoutineTable settingsRoutines() noexcept {
    return settingsRows;
}

}  // namespace lorvane::automation
