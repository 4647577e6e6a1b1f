#pragma once

#include "device/login/Credentials.h"

namespace paravue
{

/// Fills \a record in from what is remembered of the recorder at \a record.url, else with the default login
/// and an empty password. Asks nobody.
void fillInLogin(Credentials &record);

/// Remembers \a record in place of what was kept for its recorder; forgets that without the remember flag.
void Save(const Credentials &record);

} // namespace paravue
