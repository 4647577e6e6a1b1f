#include "recorder/files/PackageList.h"

#include "recorder/files/IniValues.h"

#include <algorithm>

namespace recorder
{

namespace
{

constexpr int MaxPackages = 500;
constexpr char CountName[] = "PACKAGES";
constexpr char KeyPrefix[] = "PACKAGE_";

QList<DebPackage> readPackages(const QByteArray &softFile)
{
    const QMap<QByteArray, QByteArray> values = iniValues(softFile);
    const int count = std::clamp(values.value(QByteArray("/") + CountName).toInt(), 0, MaxPackages);
    QList<DebPackage> packages;
    for (int i = 0; i < count; ++i) {
        const auto field = [&](const char *name) {
            return values.value(QByteArray("/") + KeyPrefix + name + '_' + QByteArray::number(i));
        };
        packages.append({field("NAME"), field("VER"), field("DESC"), field("PRIORITY"), QString()});
    }
    return packages;
}

QByteArray entry(const QByteArray &name, int index, const QByteArray &value)
{
    return KeyPrefix + name + '_' + QByteArray::number(index) + "='" + value + "'\n";
}

/// The file with these packages in place of its own, all at its end.
QByteArray withPackages(const QByteArray &softFile, const QList<DebPackage> &packages)
{
    QByteArray result;
    for (const QByteArray &line : softFile.split('\n')) {
        IniValue value;
        const bool isPackage =
            parseIniLine(line, value) && (value.name == CountName || value.name.startsWith(KeyPrefix));
        if (!isPackage && !line.isEmpty())
            result += line + '\n';
    }
    result += CountName + QByteArray("=") + QByteArray::number(packages.size()) + '\n';
    for (int i = 0; i < packages.size(); ++i) {
        const DebPackage &package = packages[i];
        result += entry("NAME", i, package.name) + entry("VER", i, package.version) +
                  entry("DESC", i, package.description) + entry("PRIORITY", i, package.priority);
    }
    return result;
}

} // namespace

PackageChange withPackage(const QByteArray &softFile, const DebPackage &package)
{
    QList<DebPackage> packages = readPackages(softFile);
    const auto same = std::find_if(packages.begin(), packages.end(),
                                   [&](const DebPackage &other) { return other.name == package.name; });
    if (same == packages.end() && packages.size() >= MaxPackages)
        return {softFile, QStringLiteral("there is no room for another package")};
    if (same != packages.end())
        *same = package;
    else
        packages.append(package);
    return {withPackages(softFile, packages), QString()};
}

PackageChange withoutPackage(const QByteArray &softFile, const QByteArray &name)
{
    QList<DebPackage> packages = readPackages(softFile);
    const QString shown = QString::fromUtf8(name.left(64));
    const auto found = std::find_if(packages.begin(), packages.end(),
                                    [&](const DebPackage &package) { return package.name == name; });
    if (name.isEmpty() || found == packages.end())
        return {softFile, QStringLiteral("the package %1 is not installed").arg(shown)};
    if (QList<QByteArray>{"required", "important", "essential"}.contains(found->priority))
        return {softFile, QStringLiteral("the package %1 cannot be done without").arg(shown)};
    packages.erase(found);
    return {withPackages(softFile, packages), QString()};
}

QList<QByteArray> packageTitles(const QByteArray &softFile)
{
    QList<QByteArray> titles;
    for (const DebPackage &package : readPackages(softFile))
        titles.append(package.name + ' ' + package.version);
    return titles;
}

} // namespace recorder
