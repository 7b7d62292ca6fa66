#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/Apartment.h"

/// What every module of the add-in uses: the host's version, message boxes, settings, the shared connection.
namespace lorvane::host {

/// Where nearly all settings lie.
inline constexpr std::u16string_view settingsApplication = u"kelvorn";
inline constexpr std::u16string_view settingsSection = u"0x951592256";

/// A value of the settings store, "" (or `byDefault`) where it was never written. Read anew on every call.
std::u16string setting(std::u16string_view key, std::u16string_view byDefault = u"");
void saveSetting(std::u16string_view key, std::u16string_view value);

/// The host's major version: `Application.Version` up to the first ".". Connects by itself where `gOutlook` is empty.
std::u16string OutlookVersion();
/// The same as a number, for the tests that compare it so.
std::int32_t OutlookMajorVersion();

/// True on version 10 from build 6515 on, where an Inspector's Word editor is reached through a safe wrapper only.
bool IsGuardedOutlook10();

/// Connects to the running host where `gOutlook` is empty.
void ensureOutlook();
/// Takes the "MAPI" name space where `gNameSpace` is empty; connects first.
void ensureNameSpace();

/// The ordinary message box; an empty title shows the application title. Gives the button pressed.
std::int32_t MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title = u"");
/// The message box of paths that run while an item editor is open: owned by the foreground window, which gets the focus back. Gives the button pressed.
std::int32_t MessageBox4Word(std::u16string_view text, std::int32_t style, std::u16string_view title);

/// Makes the shared Redemption session: on a host of version 9 it logs on by itself, on any other it shares the host's logon. A failure is not reported.
void InitializeRDOSession();

}  // namespace lorvane::host
