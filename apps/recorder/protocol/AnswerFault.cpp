#include "recorder/protocol/AnswerFault.h"

#include "recorder/files/RecorderText.h"
#include "recorder/protocol/CommandTable.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace recorder
{

namespace
{

using Kind = AnswerFault::Kind;

enum class Value { None, Number, Text, Length };

struct KindRow {
    Kind kind;
    const char *name;
    Value value = Value::None;
    const char *valueName = "";
    qint64 least = 0;
    qint64 most = 0;
    qint64 standard = 0;
    const char *onlyAt = nullptr; ///< the one request that the kind applies to
};

constexpr qint64 OneHour = 60 * 60 * 1000;
constexpr qint64 MaxSeed = std::numeric_limits<quint32>::max();
constexpr char Setup[] = "GET SETUP";

constexpr KindRow KindRows[] = {
    {Kind::Bytewise, "bytewise"},
    {Kind::Pieces, "pieces", Value::Number, "SEED", 0, MaxSeed, 1},
    {Kind::Late, "late", Value::Number, "MS", 0, OneHour, 1000},
    {Kind::Never, "never"},
    {Kind::CloseBefore, "close-before"},
    {Kind::CloseWithin, "close-within"},
    {Kind::CloseAfter, "close-after"},
    {Kind::Reset, "reset"},
    {Kind::Error, "error", Value::Text, "TEXT"},
    {Kind::NoAnswerLine, "no-answer-line"},
    {Kind::Length, "length", Value::Length, "N|less|more|none"},
    {Kind::GarbageBefore, "garbage-before"},
    {Kind::GarbageBehind, "garbage-behind"},
    {Kind::Refuse, "refuse", Value::Number, "N", 1, 1'000'000, 1, AnswerFault::Login},
    {Kind::Truncated, "truncated", Value::None, "", 0, 0, 0, Setup},
    {Kind::NoXml, "no-xml", Value::None, "", 0, 0, 0, Setup},
    {Kind::NoGzip, "no-gzip", Value::None, "", 0, 0, 0, Setup},
    {Kind::Bomb, "bomb", Value::None, "", 0, 0, 0, Setup},
    {Kind::Deep, "deep", Value::None, "", 0, 0, 0, Setup},
    {Kind::Entities, "entities", Value::None, "", 0, 0, 0, Setup},
    {Kind::Controls, "controls", Value::None, "", 0, 0, 0, Setup},
    {Kind::Directives, "directives", Value::None, "", 0, 0, 0, "GET STATE CONFIG"},
};

QString formOf(const KindRow &row)
{
    const QString name = QString::fromLatin1(row.name);
    const QString value = QString::fromLatin1(row.valueName);
    switch (row.value) {
    case Value::None:
        break;
    case Value::Number:
    case Value::Text:
        return name + QStringLiteral("[=%1]").arg(value);
    case Value::Length:
        return name + u'=' + value;
    }
    return name;
}

bool isLength(const QString &text)
{
    constexpr qsizetype MaxDigits = 40;
    if (text == u"less" || text == u"more" || text == u"none")
        return true;
    const QStringView digits = QStringView(text).sliced(text.startsWith(u'-') ? 1 : 0);
    return !digits.isEmpty() && digits.size() <= MaxDigits &&
           std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// What is wrong with the value, or empty. A null \a text is a value that was not given.
QString readValue(const KindRow &row, const QString &text, AnswerFault &fault)
{
    const QString name = QString::fromLatin1(row.name);
    fault.number = row.standard;
    fault.text = text.toUtf8();
    switch (row.value) {
    case Value::None:
        return text.isNull() ? QString() : RecorderText::tr("%1 takes no value").arg(name);
    case Value::Text:
        return text.contains(u'\n') ? RecorderText::tr("%1 takes one line").arg(name) : QString();
    case Value::Length:
        return isLength(text)
                   ? QString()
                   : RecorderText::tr("%1 takes a number, less, more or none, not \"%2\"").arg(name, text);
    case Value::Number:
        break;
    }
    bool isNumber = true;
    if (!text.isNull())
        fault.number = text.toLongLong(&isNumber);
    if (isNumber && fault.number >= row.least && fault.number <= row.most)
        return {};
    return RecorderText::tr("%1 takes a number from %2 to %3, not \"%4\"")
        .arg(name, QString::number(row.least), QString::number(row.most), text);
}

/// What is wrong with the place, or empty. A null \a text is a place that was not given.
QString readPlace(const KindRow &row, const QString &text, AnswerFault &fault)
{
    if (row.onlyAt) {
        fault.request = row.onlyAt;
        if (text.isNull() || text.toUtf8() == fault.request)
            return {};
        return RecorderText::tr("%1 is possible @%2 only")
            .arg(QLatin1StringView(row.name), QLatin1StringView(row.onlyAt));
    }
    if (text.isNull() || text == u"all")
        return {};
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber && number >= 1) {
        fault.answer = number;
        return {};
    }
    fault.request = text.toUtf8();
    if (fault.request == AnswerFault::Login || parseCommand(fault.request).kind != Command::Kind::Unknown)
        return {};
    return RecorderText::tr(
               "@ takes login, a command such as \"GET NET CONFIG\", the number of an answer or all, "
               "not \"%1\"")
        .arg(text);
}

} // namespace

QString nameOf(AnswerFault::Kind kind)
{
    const auto *row = std::find_if(std::begin(KindRows), std::end(KindRows),
                                   [kind](const KindRow &candidate) { return candidate.kind == kind; });
    return QString::fromLatin1(row->name);
}

QStringList answerFaultForms()
{
    QStringList forms;
    for (const KindRow &row : KindRows)
        forms << formOf(row);
    return forms;
}

std::optional<AnswerFault> readAnswerFault(const QString &text, QString &reason)
{
    // The text of an error may hold both characters.
    const qsizetype at = text.lastIndexOf(u'@');
    const QString what = text.left(at < 0 ? text.size() : at);
    const QString where = at < 0 ? QString() : text.mid(at + 1);
    const qsizetype equals = what.indexOf(u'=');
    const QString name = what.left(equals < 0 ? what.size() : equals);
    const QString value = equals < 0 ? QString() : what.mid(equals + 1);
    const auto *row = std::find_if(std::begin(KindRows), std::end(KindRows), [&](const KindRow &candidate) {
        return name == QLatin1StringView(candidate.name);
    });
    if (row == std::end(KindRows)) {
        reason = RecorderText::tr("there is no fault \"%1\", only %2")
                     .arg(name, answerFaultForms().join(QStringLiteral(", ")));
        return std::nullopt;
    }
    AnswerFault fault{row->kind};
    reason = readValue(*row, value, fault);
    if (reason.isEmpty())
        reason = readPlace(*row, where, fault);
    return reason.isEmpty() ? std::optional(fault) : std::nullopt;
}

} // namespace recorder
