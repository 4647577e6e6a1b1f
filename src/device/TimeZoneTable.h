#pragma once

#include "ParavueSetupExport.h"

#include <QString>

#include <span>

namespace paravue
{

/// A time zone that a recorder can be set to.
struct TimeZoneRow {
    int offsetMinutes;   ///< of standard time, ahead of UTC
    const char *rule;    ///< as the recorder's TIME_ZONE takes it; CTimeZoner describes the form
    const char *english; ///< main places
    const char *russian; ///< the same, in UTF-8
    const char *zones;   ///< names of the IANA database that follow this rule, separated by blanks
};

/// The time zones of the world, from west to east; each rule stands there once.
///
/// Not among them are the few that no such rule describes: Morocco and Western Sahara, and Palestine, whose
/// clocks follow the month of Ramadan, and the Chatham Islands, which change at a quarter to three.
PARAVUE_EXPORT std::span<const TimeZoneRow> timeZoneTable();

/// "UTC+3, Moscow, Minsk"; Russian for the language "ru", English for any other.
PARAVUE_EXPORT QString timeZoneCaption(const TimeZoneRow &row, const QString &language);

} // namespace paravue
