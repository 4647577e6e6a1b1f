#include "check/WordCheck.h"

#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "ui/description/InterfaceDocument.h"

#include <QHash>
#include <QStringList>

namespace paravue
{
namespace
{

using Words = QHash<QString, QStringList>;

/// For a tag its attributes that are numbers.
const Words &numbers()
{
    static const Words words{
        {"item",
         {"row", "column", "rowSpan", "columnSpan", "width", "height", "minvalue", "maxvalue", "value",
          "ctrlColumns", "ctrlRows", "points"}},
        {"window", {"width", "height"}},
        {"column", {"width"}},
        {"accesslevel", {"level"}},
        {"stretch", {"row", "column"}},
        {"timetask", {"period"}},
    };
    return words;
}

/// For an attribute of an item the words that it may have.
const Words &keywords()
{
    static const Words words{
        {"alignment", {"left", "center", "right"}},
        {"valign", {"top", "center", "bottom"}},
        {"orientation", {"horizontal", "vertical"}},
        {"enabled", {"yes", "no"}},
        {"visible", {"yes", "no"}},
        {"textside", {"left", "right"}},
        {"password", {"on", "off"}},
        {"default", {"on", "off"}},
        {"checkable", {"true", "false"}},
        {"clearpassword", {"true", "false"}},
        {"mask", {"motion", "privacy"}},
        {"calendarPopup", {"on", "off"}},
        {"color", {"green", "blue", "darkCyan", "red"}},
    };
    return words;
}

bool isNumber(const QString &text)
{
    bool isNumber = false;
    text.toInt(&isNumber);
    return isNumber;
}

void checkElementText(const QDomElement &element, ProblemList &problems)
{
    const QString tag = element.tagName();
    const QString parent = element.parentNode().toElement().tagName();
    const QString text = element.text();
    const bool isSize = parent == QLatin1String("window") &&
                        (tag == QLatin1String("width") || tag == QLatin1String("height"));
    if ((isSize || tag == QLatin1String("stretch") || tag == QLatin1String("selection")) && !isNumber(text))
        problems.warning(element, CheckText::tr("\"%1\" is no number and counts as 0").arg(text));
    static const QStringList positions{"North", "South", "West", "East"};
    if (tag == QLatin1String("tabposition") && !positions.contains(text))
        problems.warning(element, CheckText::tr("Unknown word \"%1\"; known are %2")
                                      .arg(text, positions.join(QStringLiteral(", "))));
}

} // namespace

void checkWords(const QDomElement &element, ProblemList &problems)
{
    const QString tag = element.tagName();
    if (isDecoration(tag))
        problems.error(element, CheckText::tr("The window uses the tag \"%1\" itself").arg(tag));
    for (const QString &name : numbers().value(tag)) {
        const QString value = element.attribute(name, QStringLiteral("0"));
        if (!isNumber(value))
            problems.warning(element,
                             CheckText::tr("%1=\"%2\" is no number and counts as 0").arg(name, value));
    }
    if (tag == QLatin1String("item")) {
        for (auto known = keywords().constBegin(); known != keywords().constEnd(); ++known) {
            const QString word = element.attribute(known.key(), known->first());
            if (!known->contains(word))
                problems.warning(element, CheckText::tr("Unknown word in %1=\"%2\"; known are %3")
                                              .arg(known.key(), word, known->join(QStringLiteral(", "))));
        }
    }
    checkElementText(element, problems);
}

} // namespace paravue
