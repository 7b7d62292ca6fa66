#include "respond/FurtherWindows.h"

#include "host/Apartment.h"

namespace lorvane::respond {

using namespace host;

FurtherWindows& furtherWindows() {
    return apartment().state<FurtherWindows>();
}

std::u16string PickFolder() {
    const auto& pick = furtherWindows().pickFolder;
    return pick ? pick() : std::u16string();
}

bool CategorizeTemplate(const MailItem& item) {
    const auto& categorize = furtherWindows().categorizeTemplate;
    return categorize && categorize(item);
}

void OpenManual(std::int32_t topic) {
    if (const auto& open = furtherWindows().openManual) open(topic);
}

void ShowSearchTip(const Control& beside) {
    CloseSearchTip();
    if (const auto& show = furtherWindows().showSearchTip) show(beside);
}

void CloseSearchTip() {
    if (const auto& close = furtherWindows().closeSearchTip) close();
}

}  // namespace lorvane::respond
