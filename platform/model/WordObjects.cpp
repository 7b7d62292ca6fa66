#include "model/WordObjects.h"

#include "html/BodySource.h"
#include "html/ClipboardHtml.h"
#include "model/Failures.h"
#include "model/InspectorObject.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

/// What the objects of one document share: each holds the window, and is of no use once that was closed.
class WordObject : public ModelObject {
public:
    explicit WordObject(InspectorObject& inspector) : ModelObject(inspector.sharedCore()), window_(&inspector), inspector_(inspector) {}

    void put(Member member, const Variant& value, host::Args) final {
        inspector_.loadedFields();
        assign(member, value);
    }

protected:
    Variant use(Member member, host::Args args) final {
        inspector_.loadedFields();
        return useOpen(member, args);
    }
    virtual Variant useOpen(Member member, host::Args args) = 0;
    virtual void assign(Member member, const Variant&) { raiseUnknown(member); }

    InspectorObject& inspector() const noexcept { return inspector_; }
    EditorFields& fields() const { return inspector_.fields(); }
    html::EditorDocument& body() const { return fields().body(); }

private:
    host::Object window_;
    InspectorObject& inspector_;
};

/// The whole body of a document.
class WordRange final : public WordObject {
public:
    using WordObject::WordObject;
    std::u16string_view className() const noexcept override { return u"Range"; }

protected:
    Variant useOpen(Member member, host::Args) override {
        switch (member) {
            case Member::Text:
                return body().visible();
            case Member::Select:
                body().selectAll();
                return {};
            case Member::Copy:
                copy();
                return {};
            case Member::Paste:
                pasteOver();
                return {};
            default:
                raiseUnknown(member);
        }
    }

    void assign(Member member, const Variant& value) override {
        if (member != Member::Text) raiseUnknown(member);
        const std::u16string text = value.toText();
        if (text == body().visible()) return;
        body().setSource(html::sourceOfText(body().kind(), text));
        fields().noteChanges();
    }

private:
    void copy() const {
        const auto& fill = core().options.setClipboardContent;
        if (!fill) return;
        PasteContent content{body().visible(), std::nullopt};
        if (body().kind() == html::TextKind::Html) {
            const std::string block = html::clipboardBlock(html::bodySource(body().source()));
            content.htmlFormat.emplace(block.begin(), block.end());
        }
        fill(content);
    }

    void pasteOver() const {
        const std::size_t start = body().selectionStart(), length = body().selectionLength();
        body().selectAll();
        if (!fields().paste(EditorFieldName::Body)) body().select(start, length);
    }
};

/// The caret in the body, or what is selected there, wherever the keys go.
class WordSelection final : public WordObject {
public:
    using WordObject::WordObject;
    std::u16string_view className() const noexcept override { return u"Selection"; }

protected:
    Variant useOpen(Member member, host::Args args) override {
        switch (member) {
            case Member::Text:
                return body().selectedText();
            case Member::TypeText:
                type(host::argumentNamed(args, Member::Text, 0));
                return {};
            case Member::Paste:
                fields().paste(EditorFieldName::Body);
                return {};
            default:
                raiseUnknown(member);
        }
    }

    void assign(Member member, const Variant& value) override {
        if (member != Member::Text) raiseUnknown(member);
        body().replaceSelection(value.toText());
        fields().noteChanges();
    }

private:
    void type(const Variant& text) const {
        if (text.isMissing()) throw host::HostError(host::runtime_error::ArgumentNotOptional);
        body().typeText(text.toText());
        fields().noteChanges();
    }
};

/// A global template among the add-ins (`Installed`) or among the templates (`Saved`).
class WordTemplateObject final : public WordObject {
public:
    WordTemplateObject(InspectorObject& inspector, std::shared_ptr<WordTemplate> known, bool asAddIn)
        : WordObject(inspector), known_(std::move(known)), asAddIn_(asAddIn) {}

    std::u16string_view className() const noexcept override { return asAddIn_ ? u"AddIn" : u"Template"; }
    const void* identity() const noexcept override { return asAddIn_ ? static_cast<const void*>(&known_->installed) : &known_->saved; }

protected:
    Variant useOpen(Member member, host::Args) override {
        if (member == Member::Name) return known_->name();
        return flag(member);
    }
    void assign(Member member, const Variant& value) override {
        bool& written = flag(member);
        written = value.toBoolean();
    }

private:
    bool& flag(Member member) const {
        if (member == (asAddIn_ ? member::Installed : member::Saved)) return asAddIn_ ? known_->installed : known_->saved;
        raiseUnknown(member);
    }

    std::shared_ptr<WordTemplate> known_;
    bool asAddIn_;
};

/// AddIns or Templates.
class WordTemplatesObject final : public WordObject {
public:
    WordTemplatesObject(InspectorObject& inspector, bool addIns) : WordObject(inspector), addIns_(addIns) {}

    std::u16string_view className() const noexcept override { return addIns_ ? u"AddIns" : u"Templates"; }

    host::Object at(const Variant& index) const {
        const auto& all = core().wordTemplates.all();
        if (index.kind() == Variant::Kind::Text) {
            if (const auto known = core().wordTemplates.find(index.text())) return element(known);
        } else if (const std::int32_t number = index.toInt32(); number >= 1 && static_cast<std::size_t>(number) <= all.size()) {
            return element(all[static_cast<std::size_t>(number) - 1]);
        }
        raiseUnknownToWord();
    }

protected:
    Variant useOpen(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(core().wordTemplates.all().size());
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            case Member::Add:
                if (!addIns_) raiseUnknown(member);
                return add(host::requiredArgument(args, 0).toText());
            default:
                raiseUnknown(member);
        }
    }

private:
    host::Object add(std::u16string_view path) const {
        if (path.empty()) raiseInvalidArgument(u"An add-in needs a path.");
        return element(core().wordTemplates.add(path));
    }
    host::Object element(const std::shared_ptr<WordTemplate>& known) const { return host::makeObject<WordTemplateObject>(inspector(), known, addIns_); }

    bool addIns_;
};

class WordApplication final : public WordObject {
public:
    using WordObject::WordObject;
    std::u16string_view className() const noexcept override { return u"Application"; }

protected:
    Variant useOpen(Member member, host::Args args) override {
        switch (member) {
            case Member::Selection:
                return host::makeObject<WordSelection>(inspector());
            case member::AddIns:
                return templates(true, args);
            case member::Templates:
                return templates(false, args);
            case Member::Name:
                return u"Microsoft Word";
            case Member::Version:
                return core().options.version;
            case Member::Application:
                return host::Object(this);
            default:
                raiseUnknown(member);
        }
    }

private:
    Variant templates(bool addIns, host::Args args) {
        const host::Object all = host::makeObject<WordTemplatesObject>(inspector(), addIns);
        return args.empty() ? all : host::implementation<WordTemplatesObject>(all)->at(args[0].value());
    }
};

class WordDocument final : public WordObject {
public:
    using WordObject::WordObject;
    std::u16string_view className() const noexcept override { return u"Document"; }
    const void* identity() const noexcept override { return inspector().wordIdentity(); }

protected:
    Variant useOpen(Member member, host::Args args) override {
        switch (member) {
            case Member::Range:
                return host::makeObject<WordRange>(inspector());
            case member::CommandBars:
                return inspector().useCommandBars(args);
            case Member::Application:
                return host::makeObject<WordApplication>(inspector());
            default:
                raiseUnknown(member);
        }
    }
};

}  // namespace

host::Object makeWordDocument(InspectorObject& inspector) {
    return host::makeObject<WordDocument>(inspector);
}

}  // namespace lorvane::model
