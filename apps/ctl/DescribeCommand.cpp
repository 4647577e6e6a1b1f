#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderDescription.h"
#include "RecorderSession.h"
#include "TerminalText.h"
#include "ValuePatterns.h"
#include "changes/ChangeList.h"
#include "store/ConfigAddress.h"

#include <QJsonArray>

#include <algorithm>

namespace paravue
{

namespace
{

using Kind = DescribedValue::Kind;

QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::Choice:
        return QStringLiteral("choice");
    case Kind::Switch:
        return QStringLiteral("switch");
    case Kind::Position:
        return QStringLiteral("position");
    case Kind::Time:
        return QStringLiteral("time");
    case Kind::Text:
        break;
    }
    return QStringLiteral("text");
}

QString rangeText(const DescribedValue &value)
{
    if (!value.least && !value.most)
        return {};
    return (value.least ? QString::number(*value.least) : QString()) + QStringLiteral("..") +
           (value.most ? QString::number(*value.most) : QString());
}

/// What the value may be, on one line.
QString ruleText(const DescribedValue &value)
{
    QStringList parts;
    for (const DescribedValue::Choice &choice : value.choices) {
        const bool isClear = choice.caption.isEmpty() || choice.caption == choice.value;
        parts << (isClear ? choice.value : QStringLiteral("%1 (%2)").arg(choice.value, choice.caption));
    }
    if (!parts.isEmpty())
        return parts.join(QStringLiteral(", "));
    parts << rangeText(value);
    if (!value.pattern.isEmpty())
        parts << ControlText::tr("pattern %1").arg(value.pattern);
    if (!value.mask.isEmpty())
        parts << ControlText::tr("mask %1").arg(value.mask);
    if (value.isRequired)
        parts << ControlText::tr("not empty");
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString textOf(const QList<DescribedValue> &values)
{
    qsizetype width = 0;
    for (const DescribedValue &value : values)
        width = std::max(width, value.path.size());
    QString text;
    for (const DescribedValue &value : values) {
        QStringList columns{terminalText(value.path).leftJustified(width), kindName(value.kind),
                            terminalText(ruleText(value)), terminalText(value.fullCaption())};
        columns.removeAll(QString());
        text += columns.join(QStringLiteral("  ")) + u'\n';
    }
    return text;
}

QJsonObject objectOf(const DescribedValue &value)
{
    QJsonObject object{{"path", value.path},       {"type", kindName(value.kind)},
                       {"place", value.place},     {"caption", value.caption},
                       {"secret", value.isSecret}, {"required", value.isRequired}};
    QJsonArray choices;
    for (const DescribedValue::Choice &choice : value.choices)
        choices.append(QJsonObject{{"value", choice.value}, {"caption", choice.caption}});
    const auto addText = [&object](const char *name, const QString &text) {
        if (!text.isEmpty())
            object.insert(QLatin1StringView(name), text);
    };
    if (!choices.isEmpty())
        object.insert(QStringLiteral("choices"), choices);
    if (value.least)
        object.insert(QStringLiteral("minimum"), *value.least);
    if (value.most)
        object.insert(QStringLiteral("maximum"), *value.most);
    addText("pattern", value.pattern);
    addText("mask", value.mask);
    addText("unit", value.unit);
    return object;
}

Outcome describe(RecorderSession &session, const ControlCommandLine &line, CommandReport &report)
{
    FileContents files;
    if (const Outcome read = session.contents(files); !read.isDone())
        return read;
    Outcome problem;
    const auto described = readDescription(files, session.store(), problem);
    if (!described)
        return problem;
    ValuePatterns patterns(line.arguments);
    QList<DescribedValue> values = described->all();
    values.removeIf([&](const DescribedValue &value) {
        return !ChangeList::reachesTheRecorder(ConfigAddress(value.path)) || !patterns.contains(value.path);
    });
    report.text = textOf(values);
    QJsonArray rows;
    for (const DescribedValue &value : std::as_const(values))
        rows.append(objectOf(value));
    report.document = {{"format", "paravue-description"},
                       {"version", 1},
                       {"recorder", session.recorder()},
                       {"values", rows}};
    const QStringList unmatched = patterns.unmatched();
    if (unmatched.isEmpty())
        return {};
    return {ExitCode::Different,
            ControlText::tr("nothing fits %1 that a user can set").arg(unmatched.join(QStringLiteral(", ")))};
}

} // namespace

void runDescribe(const ControlCommandLine &line, const CommandEnd &end)
{
    RecorderSession::runFetched(line, end, describe);
}

} // namespace paravue
