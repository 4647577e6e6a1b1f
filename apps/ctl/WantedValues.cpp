#include "WantedValues.h"

#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderDescription.h"
#include "RecorderSession.h"
#include "changes/ChangeList.h"
#include "store/ConfigAddress.h"

#include <QFile>
#include <QSet>
#include <QStringDecoder>

namespace paravue
{

namespace
{

/// What is wrong with \a text; empty when \a wanted got its value.
QString readAssignment(const QString &text, QList<WantedValue> &wanted)
{
    const qsizetype sign = text.indexOf(u'=');
    const QString path = text.left(sign).trimmed();
    if (sign < 0 || path.count(u'/') != 2 || path.split(u'/').contains(QString()))
        return ControlText::tr("a value is set as FILE/SECTION/KEY=VALUE");
    const QString value = text.mid(sign + 1);
    if (value.contains(u'\n') || value.contains(u'\r'))
        return ControlText::tr("the value of %1 has several lines").arg(path);
    wanted.append({path, value});
    return {};
}

Outcome readFile(const QString &path, QList<WantedValue> &wanted)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {ExitCode::LocalFile, ControlText::tr("cannot read %1: %2").arg(path, file.errorString())};
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(file.readAll());
    if (decoder.hasError())
        return {ExitCode::BadData, ControlText::tr("%1 is no UTF-8 text").arg(path)};
    int number = 0;
    for (QString line : text.split(u'\n')) {
        ++number;
        if (line.endsWith(u'\r'))
            line.chop(1);
        if (line.trimmed().isEmpty() || line.startsWith(u'#'))
            continue;
        if (const QString problem = readAssignment(line, wanted); !problem.isEmpty())
            return {ExitCode::BadData,
                    QStringLiteral("%1:%2: %3").arg(path, QString::number(number), problem)};
    }
    return {};
}

/// What is wrong with \a wanted as a whole; empty when nothing is.
QString problemOf(const QList<WantedValue> &wanted)
{
    QSet<QString> paths;
    for (const WantedValue &value : wanted) {
        if (paths.contains(value.path))
            return ControlText::tr("%1 is set twice").arg(value.path);
        paths.insert(value.path);
        if (!ChangeList::reachesTheRecorder(ConfigAddress(value.path)))
            return ControlText::tr("%1 is never sent").arg(value.path);
    }
    return {};
}

} // namespace

Outcome readWantedValues(const QString &path, QList<WantedValue> &wanted)
{
    if (const Outcome read = readFile(path, wanted); !read.isDone())
        return read;
    if (const QString problem = problemOf(wanted); !problem.isEmpty())
        return {ExitCode::BadData, QStringLiteral("%1: %2").arg(path, problem)};
    return {};
}

Outcome readWantedValues(const ControlCommandLine &line, QList<WantedValue> &wanted)
{
    if (!line.file.isEmpty()) {
        if (const Outcome read = readFile(line.file, wanted); !read.isDone())
            return read;
    }
    for (const QString &argument : line.arguments) {
        if (const QString problem = readAssignment(argument, wanted); !problem.isEmpty())
            return {ExitCode::WrongUsage, problem};
    }
    QSet<QString> given;
    for (const WantedValue &value : std::as_const(wanted))
        given.insert(value.path);
    for (auto value = line.values.cbegin(); value != line.values.cend(); ++value) {
        if (!given.contains(value.key()))
            wanted.append({value.key(), *value});
    }
    if (wanted.isEmpty())
        return {ExitCode::WrongUsage, ControlText::tr("no value was given")};
    const QString problem = problemOf(wanted);
    return problem.isEmpty() ? Outcome() : Outcome{ExitCode::WrongUsage, problem};
}

bool isPresent(const WantedValue &wanted, OrbSetup &store)
{
    return store.storedValue(wanted.path).value_or(QString()) == wanted.value.value_or(QString());
}

Outcome checkAgainstDescription(const QList<WantedValue> &wanted, RecorderSession &session,
                                const FileContents &files)
{
    Outcome unreadable;
    const auto described = readDescription(files, session.store(), unreadable);
    if (!described)
        return {};
    QStringList problems;
    for (const WantedValue &value : wanted) {
        if (isPresent(value, session.store()))
            continue;
        const QString problem = described->problemWith(value.path, value.value.value_or(QString()));
        if (!problem.isEmpty())
            problems << ControlText::tr("the value of %1 is not allowed: %2").arg(value.path, problem);
    }
    if (problems.isEmpty())
        return {};
    return {ExitCode::Rejected,
            ControlText::tr("%1; --force sends it").arg(problems.join(QStringLiteral("; ")))};
}

Outcome checkWantedValues(const QList<WantedValue> &wanted, RecorderSession &session,
                          const FileContents &files, bool isForced)
{
    OrbNetSetup &store = session.store();
    const QStringList fetched = store.fetchedFiles();
    const QStringList unsent = store.property("unsentFiles").toStringList();
    for (const WantedValue &value : wanted) {
        const QString file = value.path.section(u'/', 0, 0);
        if (!fetched.contains(file))
            return {ExitCode::Different, ControlText::tr("the recorder has no file \"%1\"").arg(file)};
        if (unsent.contains(file))
            return {ExitCode::WrongUsage, ControlText::tr("the recorder takes no file \"%1\"").arg(file)};
        if (!isForced && !store.storedValue(value.path) && !isPresent(value, store))
            return {ExitCode::Different,
                    ControlText::tr("the recorder has no value %1; --force sets it").arg(value.path)};
    }
    return isForced ? Outcome() : checkAgainstDescription(wanted, session, files);
}

} // namespace paravue
