#include "Chooser.h"

#include <vector>

#include "ExitStatus.h"
#include "host/TextFunctions.h"

namespace lorvane::cli {

using namespace host;

namespace {

/// A line may show another text than the template's own subject, for which it stands in.
bool mayBe(std::u16string_view shown, std::u16string_view subject) {
    if (shown.starts_with(u"[Subject could not be read.")) return true;
    if (subject.empty()) subject = u"NO SUBJECT";
    return shown == RTrim(subject) || shown == std::u16string(subject) + u" (Shared)";
}

}  // namespace

std::u16string subjectOfLine(const respond::frmEmail& chooser, std::int32_t line) {
    constexpr std::size_t subjectWidth = 600;  // the key behind it is not for the eye
    return std::u16string(RTrim(Left(chooser.lstEmails.List(line), subjectWidth)));
}

std::int32_t lineOfTemplate(respond::frmEmail& chooser, const std::string& subjectUtf8, const std::string& entryId) {
    const std::u16string subject = fromUtf8(subjectUtf8);
    const std::u16string wantedId = fromUtf8(entryId);
    std::vector<std::int32_t> lines;
    std::string identities;
    const std::int32_t count = chooser.lstEmails.Visible ? chooser.lstEmails.ListCount() : 0;
    for (std::int32_t line = 0; line < count; ++line) {
        if (!mayBe(subjectOfLine(chooser, line), subject)) continue;
        const auto identity = chooser.identityOfLine(line);
        if (!wantedId.empty() && identity.entryId != wantedId) continue;
        if (apartment().gNameSpace.GetItemFromID(identity.entryId, identity.storeId).Subject() != subject) continue;
        lines.push_back(line);
        identities += "\n  " + toUtf8(identity.entryId);
    }
    if (lines.empty())
        throw CommandEnd(ExitStatus::Refused, "there is no template with the subject \"" + subjectUtf8 + "\"" + (entryId.empty() ? "" : " and that id"));
    if (lines.size() > 1)
        throw CommandEnd(ExitStatus::Refused, "several templates have the subject \"" + subjectUtf8 + "\"; choose one with --id:" + identities);
    return lines.front();
}

}  // namespace lorvane::cli
