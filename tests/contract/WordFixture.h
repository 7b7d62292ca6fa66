#pragma once

#include "contract/HostFixture.h"

/// A run with Word as the editor, and short ways through its documents.
namespace lorvane::contract {

inline Object rangeOf(const Object& document) {
    return object(document, u"Range");
}
/// `Range.Text`.
inline std::u16string textOf(const Object& document) {
    return text(rangeOf(document), u"Text");
}
inline void writeText(const Object& document, std::u16string_view value) {
    put(rangeOf(document), u"Text", value);
}
inline Object wordOf(const Object& document) {
    return object(document, u"Application");
}
inline Object selectionOf(const Object& document) {
    return object(wordOf(document), u"Selection");
}
/// `Selection.TypeText`.
inline void typeText(const Object& document, std::u16string_view value) {
    call(selectionOf(document), u"TypeText", {value});
}
/// `Selection.Paste`, as the add-in calls it.
inline void pasteAtSelection(const Object& document) {
    call(selectionOf(document), u"Paste", {std::int16_t{0}});
}

/// Over each kind of store, with Word as the editor.
class WordRun : public EachStore {
protected:
    RunningHost& host() { return started_ ? EachStore::host() : start({}); }
    RunningHost& start(HostSetup setup) {
        started_ = true;
        setup.editor = Editor::Word;
        return EachStore::start(setup);
    }
    HostUnderTest& person() { return host().person(); }

    MailItem richItem(std::u16string_view run) {
        const MailItem item = host().newItem();
        put(makeSafeMailItem(item), u"RTFBody", rtf(run));
        return item;
    }
    /// The shown window of an item, with the caret at a place of the body.
    Inspector openAt(const MailItem& item, std::int32_t position) {
        const Inspector inspector = host().open(item);
        person().focus(inspector, Field::Body, position);
        return inspector;
    }
    /// The window of an item, saved where it is new, that is not shown.
    static Inspector hidden(const MailItem& item) {
        if (item.EntryID().empty()) item.Save();
        return item.GetInspector();
    }
    static MailItem saved(const Inspector& inspector) {
        inspector.CurrentItem().Save();
        return inspector.CurrentItem();
    }

private:
    bool started_ = false;
};

}  // namespace lorvane::contract
