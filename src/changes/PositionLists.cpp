#include "changes/PositionLists.h"

#include "changes/DescribedSecrets.h"
#include "store/IniGrammar.h"
#include "store/OrbSetup.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <utility>
#include <vector>

namespace paravue
{

namespace
{

const QStringList CountKeys{QStringLiteral("CNT"), QStringLiteral("PACKAGES")};
const QStringList NameKeys{QStringLiteral("NAME"), QStringLiteral("PACKAGE_NAME_")};

QString sectionOf(const QString &path)
{
    return path.section(u'/', 0, 1);
}

bool isNumbered(const QString &path)
{
    return path.back().isDigit();
}

QString withoutNumber(QString path)
{
    while (!path.isEmpty() && path.back().isDigit())
        path.chop(1);
    return path;
}

} // namespace

/// A list as its element describes it, by paths.
struct PositionLists::DescribedList {
    QString count;
    QStringList columns; ///< without the numbers of the rows
};

PositionLists::PositionLists(const QByteArray &description)
{
    m_secrets.setSource([description] { return describedSecrets(description); });
    QXmlStreamReader xml(description);
    std::vector<DescribedList> open; // of the elements around
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement && !open.empty()) {
            add(open.back());
            open.pop_back();
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        const bool isCountTag = xml.name() == QLatin1StringView("row_count");
        if (open.empty() || !(isCountTag || xml.name() == QLatin1StringView("column_source"))) {
            open.emplace_back();
            continue;
        }
        const QString path =
            OrbSetup::path(xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed());
        if (isCountTag)
            open.back().count = path;
        else
            open.back().columns << path;
    }
}

void PositionLists::add(const DescribedList &list)
{
    if (list.count.count(u'/') != 2)
        return;
    const QString place = sectionOf(list.count);
    m_counts.insert(place, list.count);
    m_described.insert(list.count, list.count);
    // Without a name any value may be what tells an entry from the others.
    QStringList names = list.columns.filter(QStringLiteral("NAME"), Qt::CaseInsensitive);
    if (names.isEmpty())
        names = list.columns;
    for (const QString &name : std::as_const(names))
        m_names.insert(withoutNumber(name));
    for (const QString &column : list.columns) {
        const QString section = sectionOf(column);
        m_described.insert(withoutNumber(column), list.count);
        m_described.insert(section, list.count);
        if (section != place)
            m_places.insert(section, place);
    }
}

bool PositionLists::isCount(const QString &path) const
{
    return CountKeys.contains(path.section(u'/', 2)) || m_described.value(path) == path;
}

QString PositionLists::describedList(const QString &path) const
{
    return m_described.value(isNumbered(path) && !isCount(path) ? withoutNumber(path) : path);
}

QString PositionLists::placeOf(const QString &path) const
{
    const QString section = sectionOf(path);
    if (isCount(path))
        return section;
    const bool isOfAnEntry = path.count(u'/') >= 2 && isNumbered(path);
    return isOfAnEntry ? m_places.value(section, section) : QString();
}

bool PositionLists::isBesideList(const QString &path) const
{
    const QString section = sectionOf(path);
    return section.endsWith(u'/' + DefaultSection.toString()) && m_described.contains(section) &&
           describedList(path).isEmpty() && !m_secrets.contains(path);
}

QString PositionLists::entryOf(const QString &path) const
{
    return placeOf(path) + u'/' + path.mid(withoutNumber(path).size());
}

bool PositionLists::tellsEntry(const QString &path) const
{
    const QString key = path.section(u'/', 2);
    return m_names.contains(withoutNumber(path)) ||
           std::any_of(NameKeys.begin(), NameKeys.end(),
                       [&key](const QString &name) { return key.startsWith(name); });
}

QStringList PositionLists::knownCountsOf(const QString &place)
{
    QStringList paths;
    for (const QString &key : CountKeys)
        paths << place + u'/' + key;
    return paths;
}

MovedLists::MovedLists(const PositionLists &grammar, const QList<ValueDifference> &differences,
                       const HasKey &hasKey, const QStringList &leftOut)
    : m_grammar(grammar)
{
    const auto hasAny = [&hasKey](const QStringList &paths) {
        return std::any_of(paths.begin(), paths.end(), hasKey);
    };
    for (const ValueDifference &difference : differences) {
        const QString place = m_grammar.placeOf(difference.path);
        if (place.isEmpty() || m_lists.contains(place))
            continue;
        const bool isCount = m_grammar.isCount(difference.path);
        const QStringList known = PositionLists::knownCountsOf(place);
        if (!isCount &&
            !(m_grammar.tellsEntry(difference.path) && hasAny(known + m_grammar.describedCountsOf(place))))
            continue;
        m_lists.insert(place);
        if (known.contains(difference.path) || hasAny(known))
            m_sections.insert(place);
    }
    QSet<QString> incomplete;
    for (const QString &path : leftOut)
        incomplete.insert(path.contains(u'/') ? listOf(path) : path);
    for (const QString &list : std::as_const(m_lists)) {
        if (incomplete.contains(list) || incomplete.contains(list.section(u'/', 0, 0)))
            m_incomplete.insert(list);
    }
}

QString MovedLists::listOf(const QString &path) const
{
    const QString place = m_grammar.placeOf(path);
    const bool isOfTheList = m_sections.contains(place) || !m_grammar.isBesideList(path);
    return m_lists.contains(place) && isOfTheList ? place : QString();
}

bool MovedLists::canBeSet(const QString &path) const
{
    return !m_incomplete.contains(listOf(path));
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
        if (lists.contains(listOf(path)))
            paths.insert(path);
    }
    return paths;
}

} // namespace paravue
