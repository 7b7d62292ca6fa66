#include "host/WordTemplate.h"

#include "host/Apartment.h"
#include "host/Guards.h"
#include "host/Outlook.h"
#include "host/Redemption.h"
#include "host/basGlobals.h"

namespace lorvane::host {

namespace {

/// The Word that edits the item; a guarded host gives its editor through a safe wrapper only.
Object wordOf(const Object& inspector) {
    const Object document = IsGuardedOutlook10() ? makeSafeInspector(Inspector(inspector)).WordEditor() : Inspector(inspector).WordEditor();
    return document.getObject(Member::Application);
}

std::u16string templatePath(std::u16string_view name) {
    return apartment().machine.environment().AppPath() + std::u16string(name);
}

/// The template among Word's add-ins where Word did not know it by its path.
Object addInByFile(const Object& word, const std::u16string& path, std::u16string_view name) {
    constexpr std::size_t extension = 4;
    if (!apartment().machine.files().FileExists(path)) return {};
    const std::u16string_view fileName = name.substr(name.rfind(u'\\') + 1);
    Object addIn;
    if (fileName.size() > extension && ignoringErrors([&] { addIn = word.getObject(Member::AddIns, {fileName.substr(0, fileName.size() - extension)}); }))
        return addIn;
    try {
        addIn = word.getObject(Member::AddIns).call(Member::Add, {path}).toObject();
    } catch (const HostError& error) {
        MsgBox(error.description(), msgbox::Plain);
    }
    return addIn;
}

}  // namespace

void AddWordTemplate(const Object& inspector, std::u16string_view name) {
    ignoringErrors([&] {
        const Object word = wordOf(inspector);
        const std::u16string path = templatePath(name);
        Object addIn;
        if (!ignoringErrors([&] { addIn = word.getObject(Member::AddIns, {path}); })) addIn = addInByFile(word, path, name);
        if (!addIn.getBoolean(Member::Installed)) addIn.put(Member::Installed, true);
    });
}

void SetWordTemplateSaved(const Object& inspector, std::u16string_view name) {
    ignoringErrors([&] { wordOf(inspector).getObject(Member::Templates, {templatePath(name)}).put(Member::Saved, true); });
}

}  // namespace lorvane::host
