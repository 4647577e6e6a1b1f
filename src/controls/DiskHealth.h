#pragma once

#include <QString>

namespace paravue
{

/// How healthy a disk is, estimated from its S.M.A.R.T. attributes.
///
/// The report is the table that smartctl lists, one attribute per line, each line ended by a line feed or, as
/// configuration values carry it, by a backslash and an "n". Columns are found by their distance from the
/// start of a line, so a missing line gives figures without a meaning. A column that is no decimal number, or
/// lies behind the end of the report, counts as 0.
struct DiskHealth {
    /// All is 0 without a report.
    static DiskHealth ofReport(QString report);

    /// 0 to 100: the least of the attribute's own value of the age, what the power-on hours leave of 15000,
    /// and what the reallocated sectors leave up to their threshold.
    int healthPercent = 0;
    int powerOnHours = 0;         ///< raw value of attribute 9
    int powerOnValue = 0;         ///< normalised value of attribute 9
    int reallocatedRaw = 0;       ///< raw value of attribute 5
    int reallocatedThreshold = 0; ///< threshold of attribute 5
};

} // namespace paravue
