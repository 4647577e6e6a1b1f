#pragma once

#include "device/login/Credentials.h"
#include "device/login/SettingsText.h"

#include <optional>

namespace paravue
{

// The remembered logins in the group "authorization" of the settings: the keys "name", "url", "login",
// "level" and "password", each with the number of the record behind it, and their "count".

/// The record of the recorder at \a url, whatever way its address is written.
std::optional<Credentials> savedCredentials(const SettingsMap &settings, const QByteArray &url);

/// Puts \a record in place of what is kept for its recorder; without its remember flag the recorder is
/// forgotten. The records are numbered anew, from 0 and without gaps.
void saveCredentials(SettingsMap &settings, const Credentials &record);

} // namespace paravue
