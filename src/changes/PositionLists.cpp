#include "changes/PositionLists.h"

#include <algorithm>

namespace paravue
{

namespace
{

const QStringList CountKeys{QStringLiteral("CNT"), QStringLiteral("PACKAGES")};
const QLatin1StringView NameKey("NAME");

bool isCount(const QString &path)
{
    return CountKeys.contains(path.section(u'/', 2));
}

bool tellsEntries(const QString &path)
{
    return isCount(path) || path.section(u'/', 2).startsWith(NameKey);
}

} // namespace

QString positionlists::placeOf(const QString &path)
{
    const QString key = path.section(u'/', 2);
    const bool isOfAnEntry = !key.isEmpty() && key.back().isDigit();
    return isOfAnEntry || isCount(path) ? path.section(u'/', 0, 1) : QString();
}

MovedLists::MovedLists(const QList<ValueDifference> &differences, const HasKey &hasKey,
                       const QStringList &leftOut)
{
    for (const ValueDifference &difference : differences) {
        const QString place = positionlists::placeOf(difference.path);
        if (place.isEmpty() || !tellsEntries(difference.path) || m_lists.contains(place))
            continue;
        if (isCount(difference.path) ||
            std::any_of(CountKeys.begin(), CountKeys.end(),
                        [&](const QString &key) { return hasKey(place + u'/' + key); }))
            m_lists.insert(place);
    }
    QSet<QString> incomplete;
    for (const QString &path : leftOut)
        incomplete.insert(path.contains(u'/') ? positionlists::placeOf(path) : path);
    for (const QString &list : std::as_const(m_lists)) {
        if (incomplete.contains(list) || incomplete.contains(list.section(u'/', 0, 0)))
            m_incomplete.insert(list);
    }
}

QString MovedLists::listOf(const QString &path) const
{
    const QString place = positionlists::placeOf(path);
    return m_lists.contains(place) ? place : QString();
}

bool MovedLists::canBeSet(const QString &path) const
{
    return !m_incomplete.contains(positionlists::placeOf(path));
}

QSet<QString> MovedLists::completed(const QStringList &chosen, const QStringList &all) const
{
    QSet<QString> paths;
    QSet<QString> lists;
    for (const QString &path : chosen) {
        if (const QString list = listOf(path); list.isEmpty())
            paths.insert(path);
        else if (canBeSet(path))
            lists.insert(list);
    }
    for (const QString &path : all) {
        if (lists.contains(positionlists::placeOf(path)))
            paths.insert(path);
    }
    return paths;
}

} // namespace paravue
