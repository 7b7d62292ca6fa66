#include "model/InspectorObject.h"

#include "model/ApplicationObjects.h"
#include "model/BuiltInBars.h"
#include "model/Failures.h"
#include "model/ItemObject.h"
#include "model/ModelMembers.h"
#include "model/WordObjects.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

constexpr std::int32_t inspectorClass = 35;
constexpr std::int32_t save = 0, discard = 1;

/// Takes back that an event of the item is under way.
struct Turn {
    bool& flag;
    ~Turn() { flag = false; }
};

}  // namespace

InspectorObject::InspectorObject(std::shared_ptr<ItemState> item) : HostWindow(item->sharedCore()), item_(std::move(item)) {
    item_->inspector = this;
}

InspectorObject::~InspectorObject() {
    if (item_->inspector != this) return;
    item_->inspector = nullptr;
    item_->noteClosed();
}

std::u16string InspectorObject::caption() const {
    const std::u16string& subject = item_->head().subject;
    return subject.empty() ? std::u16string(u"Untitled") : subject;
}

void InspectorObject::keys(const std::vector<screen::KeyStroke>& strokes) {
    if (fields_) fields_->keys(strokes);
}

EditorFields& InspectorObject::fields() {
    if (!fields_) raiseFailed(u"The item's window is not open.");
    return *fields_;
}

EditorFields& InspectorObject::loadedFields() {
    requireOpen();
    item_->requireAlive();
    if (!fields_) fields_.emplace(*item_);
    return *fields_;
}

host::Object InspectorObject::wordEditor() {
    requireOpen();
    item_->requireAlive();
    if (!item_->isWordEdited()) return {};
    loadedFields();
    return makeWordDocument(*this);
}

bool InspectorObject::allowed(Member event) {
    Variant cancel(false);
    item_->events.raise(event, {host::Argument::byReference(cancel)});
    return !cancel.toBoolean();
}

void InspectorObject::display() {
    const host::Object held(this);
    requireOpen();
    item_->requireAlive();
    if (!isShown()) {
        item_->noteOpened();
        loadedFields().placeFocus();
    }
    show();
}

void InspectorObject::raiseNew() {
    core().inspectorsEvents.raise(member::NewInspector, {host::Object(this)});
}

void InspectorObject::appear() {
    if (opening_) return;
    opening_ = true;
    const Turn turn{opening_};
    const bool mayOpen = allowed(Member::Open);
    if (!isShown()) return;
    if (!mayOpen) return drop();
    HostWindow::appear();
}

std::vector<BarTree> InspectorObject::builtInBars() const {
    return item_->isWordEdited() ? wordBars(core().options) : inspectorBars(core().options);
}

void InspectorObject::commit() {
    if (fields_) fields_->commit(core().options.commitDelay);
}

void InspectorObject::commitAll() {
    if (fields_) fields_->commit(0);
}

void InspectorObject::close(std::int32_t mode) {
    if (mode != save && mode != discard) raiseInvalidArgument(u"A window is closed with 0 (save) or 1 (discard).");
    const host::Object held(this);
    requireOpen();
    if (closing_) return;
    closing_ = true;
    const Turn turn{closing_};

    if (isShown() && !allowed(Member::Close)) return;
    if (item_->isAlive()) {
        if (mode == save) {
            commitAll();
            // Nothing is written where nothing changed, so that a window on a folder that is only read closes as well.
            if (!item_->isSaved() || item_->isDirty()) item_->saveCommitted();
        } else {
            item_->revert();
        }
    }
    drop();
}

void InspectorObject::drop() {
    const host::Object held(this);
    if (isClosed()) return;
    // The fields go first: nothing that a close handler does to the item may reach documents that were given up.
    const auto item = item_;
    fields_.reset();
    closeForGood();
    // A close handler may have asked for Word's document once more.
    fields_.reset();
    item->noteClosed();
    if (item->inspector == this) item->inspector = nullptr;
}

void InspectorObject::reload() {
    reloadBody();
    reloadSubject();
    reloadRecipients();
}

void InspectorObject::reloadBody() {
    if (fields_) fields_->reloadBody();
}

void InspectorObject::reloadSubject() {
    if (fields_) fields_->reloadSubject();
}

void InspectorObject::reloadRecipients() {
    if (fields_) fields_->reloadRecipients();
}

Variant InspectorObject::use(Member member, host::Args args) {
    requireOpen();
    switch (member) {
        case Member::CurrentItem:
            return makeItem(item_);
        case Member::EditorType:
            item_->requireAlive();
            return item_->editorType();
        case member::IsWordMail:
            return item_->isWordEdited();
        case Member::WordEditor:
            if (core().guardsWordEditor()) throw host::HostError(Aborted, u"Operation aborted");
            return wordEditor();
        case member::CommandBars:
            return useCommandBars(args);
        case member::Caption:
            return caption();
        case Member::Class:
            return inspectorClass;
        case Member::Activate:
        case Member::Display:
            display();
            return {};
        case Member::Close:
            close(host::requiredArgument(args, 0).toInt32());
            return {};
        case Member::Application:
            return makeApplication(sharedCore());
        case Member::Session:
            return makeNameSpace(sharedCore());
        default:
            raiseUnknown(member);
    }
}

host::Object inspectorOf(const std::shared_ptr<ItemState>& item) {
    item->requireAlive();
    if (item->inspector) return host::Object(item->inspector);
    // An item has one window, whichever of its objects asks for it.
    if (item->isSaved()) {
        for (const auto& other : item->store()->liveStates(item->head().entryId)) {
            if (other->isShown()) return host::Object(other->inspector);
        }
    }
    return host::makeObject<InspectorObject>(item);
}

}  // namespace lorvane::model
