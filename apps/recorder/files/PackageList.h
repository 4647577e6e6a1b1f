#pragma once

#include "recorder/files/DebPackage.h"

namespace recorder
{

/// Changes of the recorder's "soft" file: PACKAGES, and PACKAGE_NAME_i, PACKAGE_VER_i, PACKAGE_DESC_i and
/// PACKAGE_PRIORITY_i for each, counted from 0. Everything else in the file stays.
struct PackageChange {
    QByteArray softFile;
    QString fault; // for the client to read; empty when the change is done
};

/// Adds the package, or replaces the one of the same name.
PackageChange withPackage(const QByteArray &softFile, const DebPackage &package);
/// Packages with the priority required, important or essential cannot be removed.
PackageChange withoutPackage(const QByteArray &softFile, const QByteArray &name);

/// Names with versions, for the report.
QList<QByteArray> packageTitles(const QByteArray &softFile);

} // namespace recorder
