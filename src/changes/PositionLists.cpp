#include "changes/PositionLists.h"

#include <QStringList>

#include <algorithm>

namespace paravue::positionlists
{

namespace
{

const QStringList CountKeys{QStringLiteral("CNT"), QStringLiteral("PACKAGES")};
const QLatin1StringView NameKey("NAME");

bool tellsEntries(const QString &path)
{
    const QString key = path.section(u'/', 2);
    return CountKeys.contains(key) || key.startsWith(NameKey);
}

} // namespace

QString placeOf(const QString &path)
{
    const QString key = path.section(u'/', 2);
    const bool isOfAnEntry = !key.isEmpty() && key.back().isDigit();
    return isOfAnEntry || CountKeys.contains(key) ? path.section(u'/', 0, 1) : QString();
}

QSet<QString> moved(const QList<ValueDifference> &differences,
                    const std::function<bool(const QString &path)> &hasKey)
{
    QSet<QString> places;
    for (const ValueDifference &difference : differences) {
        const QString place = placeOf(difference.path);
        if (place.isEmpty() || !tellsEntries(difference.path) || places.contains(place))
            continue;
        if (std::any_of(CountKeys.begin(), CountKeys.end(),
                        [&](const QString &key) { return hasKey(place + u'/' + key); }))
            places.insert(place);
    }
    return places;
}

} // namespace paravue::positionlists
