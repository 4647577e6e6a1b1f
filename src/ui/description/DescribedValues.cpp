#include "ui/description/DescribedValues.h"

#include "changes/DescribedSecrets.h"
#include "store/OrbSetup.h"
#include "store/TextPattern.h"
#include "ui/base/WindowText.h"
#include "ui/description/DescribedGrid.h"
#include "ui/description/EnableTargets.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/NumberedRows.h"
#include "ui/description/TextResolver.h"
#include "ui/description/ValueMask.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace paravue
{

namespace
{

const QString TextTag = QStringLiteral("text");
const QString KeyTag = QStringLiteral("key");
const QString Separator = QStringLiteral(" › ");
const QString ItemTag = QStringLiteral("item");
const QString TimeFormat = QStringLiteral("yyyyMMddHHmmss");

QString withoutMarkup(QString text)
{
    static const QRegularExpression Tag(QStringLiteral("<[^<>]*>"));
    return text.remove(Tag).simplified();
}

QString withoutAccessKey(QString text)
{
    static const QRegularExpression Mark(QStringLiteral("&(.?)"));
    return text.replace(Mark, QStringLiteral("\\1")).simplified();
}

std::optional<int> limitAttribute(const QDomElement &element, const QString &name)
{
    bool isNumber = false;
    const int number = element.attribute(name).toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

QString rangeProblem(const DescribedValue &rule, const QString &value)
{
    bool isNumber = false;
    // A field may hold a fraction, a position may not.
    const double number =
        rule.kind == DescribedValue::Kind::Position ? value.toInt(&isNumber) : value.toDouble(&isNumber);
    if (!isNumber)
        return WindowText::tr("it is no number");
    if (rule.least && !(number >= *rule.least))
        return WindowText::tr("it is below %1").arg(*rule.least);
    if (rule.most && !(number <= *rule.most))
        return WindowText::tr("it is above %1").arg(*rule.most);
    return {};
}

QString textProblem(const DescribedValue &rule, const QString &value)
{
    if (value.trimmed().isEmpty())
        return rule.isRequired ? WindowText::tr("it must not be empty") : QString();
    if (!rule.pattern.isEmpty() && !TextPattern::ofRecorder(rule.pattern).matchesWhole(value))
        return WindowText::tr("it does not fit the pattern %1").arg(rule.pattern);
    if (!rule.mask.isEmpty() && !ValueMask(rule.mask).matches(value))
        return WindowText::tr("it does not fit the mask %1").arg(rule.mask);
    return rule.least || rule.most ? rangeProblem(rule, value) : QString();
}

QString choiceProblem(const DescribedValue &rule, const QString &value)
{
    QStringList values;
    for (const DescribedValue::Choice &choice : rule.choices) {
        if (choice.value == value)
            return {};
        values << choice.value;
    }
    return WindowText::tr("it is none of %1").arg(values.join(QStringLiteral(", ")));
}

} // namespace

QString DescribedValue::fullCaption() const
{
    QStringList parts{place, caption};
    parts.removeAll(QString());
    return parts.join(Separator);
}

QString DescribedValue::problemWith(const QString &value) const
{
    switch (kind) {
    case Kind::Choice:
    case Kind::Switch:
        return choiceProblem(*this, value);
    case Kind::Position:
        return rangeProblem(*this, value);
    case Kind::Time:
        return QDateTime::fromString(value, TimeFormat).isValid()
                   ? QString()
                   : WindowText::tr("it is no time such as 20240131235900");
    case Kind::Text:
        break;
    }
    return textProblem(*this, value);
}

class DescribedValues::Reader
{
public:
    Reader(const InterfaceDocument &document, const TextResolver &texts, DescribedValues &found)
        : m_texts(texts), m_enabled(document), m_found(found)
    {
        readContainer(document.root(), {});
    }

private:
    using Kind = DescribedValue::Kind;

    QString shown(const QDomElement &text) const { return m_texts.resolve(ownText(text)).text; }

    /// Tabs and dialogs are the containers of pages.
    void readContainer(const QDomElement &container, const QStringList &place)
    {
        for (QDomElement child = container.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            if (child.tagName() == ItemTag)
                readGrid(child, place);
            else if (child.tagName() == QLatin1StringView("tab"))
                readContainer(
                    child,
                    place +
                        QStringList(withoutAccessKey(
                            m_texts.resolve(child.firstChildElement(QStringLiteral("name")).text()).text)));
            else if (!child.firstChildElement(ItemTag).isNull())
                readContainer(child, QStringList(withoutMarkup(
                                         shown(child.firstChildElement(QStringLiteral("title"))))));
            else if (child.tagName() != QLatin1StringView("translations"))
                readContainer(child, place);
        }
    }

    void readGrid(const QDomElement &item, const QStringList &place)
    {
        const DescribedGrid grid(item);
        for (const DescribedCell &cell : grid.cells()) {
            if (cell.type == QLatin1StringView("gridlayout"))
                readGrid(cell.element, place);
            else if (cell.type == QLatin1StringView("tabwidget"))
                readContainer(cell.element, place);
            else if (!m_enabled.leaveDisabled(cell.element))
                readControl(cell, grid, place);
        }
    }

    void readControl(const DescribedCell &cell, const DescribedGrid &grid, const QStringList &place)
    {
        if (cell.type == QLatin1StringView("edit"))
            readEdit(begun(cell, grid, place, Kind::Text), cell.element);
        else if (cell.type == QLatin1StringView("dropdown"))
            readDropDown(begun(cell, grid, place, Kind::Choice), cell.element);
        else if (cell.type == QLatin1StringView("checkbox"))
            readSwitch(begun(cell, grid, place, Kind::Switch), cell.element);
        else if (cell.type == QLatin1StringView("scroll"))
            readScroll(begun(cell, grid, place, Kind::Position), cell.element);
        else if (cell.type == QLatin1StringView("datetime"))
            add(begun(cell, grid, place, Kind::Time), childAddresses(cell.element).mid(0, 1));
        else if (cell.type == QLatin1StringView("vornschedule"))
            readSchedule(begun(cell, grid, place, Kind::Text), cell.element);
        else if (cell.type == QLatin1StringView("maskctrl"))
            readCells(begun(cell, grid, place, Kind::Text), cell.element, 1);
        else if (cell.type == QLatin1StringView("PTZAlarm"))
            readCells(begun(cell, grid, place, Kind::Text), cell.element, zoneCount(cell.element));
    }

    DescribedValue begun(const DescribedCell &cell, const DescribedGrid &grid, QStringList place,
                         Kind kind) const
    {
        DescribedValue value;
        value.kind = kind;
        place.removeAll(QString());
        value.place = place.join(Separator);
        if (kind == Kind::Switch)
            value.caption = withoutAccessKey(shown(cell.element.firstChildElement(TextTag)));
        if (value.caption.isEmpty())
            value.caption = withoutMarkup(shown(grid.labelOf(cell).firstChildElement(TextTag)));
        if (value.caption.isEmpty())
            value.caption = withoutMarkup(shown(cell.element.firstChildElement(QStringLiteral("tooltip"))));
        value.unit = withoutMarkup(shown(cell.element.firstChildElement(QStringLiteral("unit"))));
        value.isSecret = isMarkedSecret(cell.element.attribute(QStringLiteral("password")),
                                        cell.element.attribute(QStringLiteral("secret")));
        return value;
    }

    void add(DescribedValue value, const QStringList &addresses)
    {
        for (const QString &address : addresses) {
            value.path = OrbSetup::path(address);
            m_found.m_byPath[value.path].append(m_found.m_values.size());
            m_found.m_values.append(value);
        }
    }

    void readEdit(DescribedValue value, const QDomElement &element)
    {
        value.pattern = element.attribute(QStringLiteral("validator"));
        value.mask = element.attribute(QStringLiteral("inputMask"));
        value.least = limitAttribute(element, QStringLiteral("minimum"));
        value.most = limitAttribute(element, QStringLiteral("maximum"));
        value.isRequired = element.attribute(QStringLiteral("required")) == QLatin1StringView("yes");
        add(value, childAddresses(element));
    }

    void readSwitch(DescribedValue value, const QDomElement &element)
    {
        value.choices = {{QStringLiteral("on"), {}}, {QStringLiteral("off"), {}}};
        add(value, childAddresses(element));
    }

    /// The plan of a day has a character for each hour, half or quarter of an hour.
    void readSchedule(DescribedValue value, const QDomElement &element)
    {
        QString characters;
        for (const QDomElement &kind : scheduleKinds(element))
            characters += QRegularExpression::escape(kind.attribute(QStringLiteral("value")));
        const QString entry = u'[' + (characters.isEmpty() ? QStringLiteral("0-3") : characters) + u']';
        value.pattern = QStringLiteral("%1{24}|%1{48}|%1{96}").arg(entry);
        add(value, dayAddresses(element));
    }

    static int zoneCount(const QDomElement &element)
    {
        const int named = int(childTexts(element, TextTag).size());
        return named > 0 ? std::min(named, MostAlarmZones) : UsualAlarmZones;
    }

    /// A row of a grid over a picture has a digit for each cell.
    void readCells(DescribedValue value, const QDomElement &element, int most)
    {
        const QSize size = cellGridSize(element);
        value.pattern = QStringLiteral("[0-%1]{1,%2}").arg(most).arg(size.width());
        add(value, rowAddresses(element, size.height()));
    }

    void readScroll(DescribedValue value, const QDomElement &element)
    {
        value.least = intAttribute(element, QStringLiteral("minvalue"));
        value.most = intAttribute(element, QStringLiteral("maxvalue"));
        add(value, childAddresses(element).mid(0, 1));
    }

    /// The n-th text goes with the key inside it or, without one, with the n-th key beside the texts.
    void readDropDown(const DescribedValue &value, const QDomElement &element)
    {
        const QStringList beside = childAddresses(element);
        QStringList paths;
        QHash<QString, QList<DescribedValue::Choice>> choices; // by path
        qsizetype number = 0;
        for (QDomElement text = element.firstChildElement(TextTag); !text.isNull();
             text = text.nextSiblingElement(TextTag), ++number) {
            const QDomElement inner = text.firstChildElement(KeyTag);
            const QString assignment = inner.isNull() ? beside.value(number) : addressText(inner);
            if (assignment.isEmpty())
                continue;
            const QString path = OrbSetup::path(assignment);
            if (!choices.contains(path))
                paths << path;
            choices[path].append({OrbSetup::defValue(assignment), withoutMarkup(shown(text))});
        }
        for (const QString &path : std::as_const(paths)) {
            DescribedValue own = value;
            own.choices = choices.value(path);
            add(own, {path});
        }
        for (const QString &set : childTexts(element, QStringLiteral("keyset"))) {
            for (const QString &assignment : set.split(u','))
                m_found.m_assignments.insert(assignment.trimmed());
        }
    }

    const TextResolver &m_texts;
    const EnableTargets m_enabled;
    DescribedValues &m_found;
};

DescribedValues::DescribedValues(const InterfaceDocument &document, const TextResolver &texts)
{
    Reader(document, texts, *this);
}

QString DescribedValues::problemWith(const QString &path, const QString &value) const
{
    const PatternBudget oneValue;
    QString problem;
    for (const qsizetype index : m_byPath.value(path)) {
        const QString own = m_values[index].problemWith(value);
        if (own.isEmpty())
            return {};
        if (problem.isEmpty())
            problem = own;
    }
    return m_assignments.contains(path + u'/' + value) ? QString() : problem;
}

} // namespace paravue
