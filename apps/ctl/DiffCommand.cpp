#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "SettingsSource.h"
#include "TerminalText.h"
#include "ValuePatterns.h"
#include "WantedValues.h"

#include <QJsonArray>

#include <array>
#include <functional>
#include <memory>

namespace paravue
{

namespace
{

using Sides = std::array<SettingsSource, 2>;

struct DiffReport {
    QList<ValueDifference> differences;
    QStringList onlyFirst; ///< files
    QStringList onlySecond;
};

void keepMatching(ConfigurationValues &values, ValuePatterns &patterns)
{
    for (auto file = values.begin(); file != values.end(); ++file) {
        FileValues kept;
        for (auto value = file->all().cbegin(); value != file->all().cend(); ++value) {
            if (patterns.contains(file.key() + u'/' + value.key()))
                kept.set(value.key(), *value);
        }
        *file = kept;
    }
}

/// Of \a values those that \a wanted tells something of.
ConfigurationValues restricted(const ConfigurationValues &values, const ConfigurationValues &wanted)
{
    ConfigurationValues kept;
    for (auto file = wanted.cbegin(); file != wanted.cend(); ++file) {
        const FileValues all = values.value(file.key());
        FileValues &own = kept[file.key()];
        for (auto value = file->all().cbegin(); value != file->all().cend(); ++value) {
            if (const auto found = all.value(value.key()))
                own.set(value.key(), *found);
        }
    }
    return kept;
}

/// The files of \a side that \a other lacks, unless it has left them out.
QStringList filesOnlyIn(const SettingsSource &side, const SettingsSource &other)
{
    QStringList names;
    for (auto file = side.values.cbegin(); file != side.values.cend(); ++file) {
        if (!file->all().isEmpty() && !other.values.contains(file.key()) &&
            !other.leftOut.contains(file.key()))
            names << file.key();
    }
    return names;
}

DiffReport compare(Sides &sides)
{
    auto &[first, second] = sides;
    DiffReport report;
    if (first.isPartial || second.isPartial) {
        const ConfigurationValues firstValues = first.values;
        if (second.isPartial)
            first.values = restricted(first.values, second.values);
        if (first.isPartial)
            second.values = restricted(second.values, firstValues);
    } else {
        report.onlyFirst = filesOnlyIn(first, second);
        report.onlySecond = filesOnlyIn(second, first);
    }
    report.differences = differences(first.values, second.values, first.leftOut + second.leftOut);
    report.differences.removeIf([](const ValueDifference &value) { return value.isOnlyAKey(); });
    return report;
}

bool isSecret(const Sides &sides, const QString &path)
{
    return sides[0].secrets.contains(path) || sides[1].secrets.contains(path);
}

QString textOf(const DiffReport &found, const Sides &sides, bool showsSecrets)
{
    QString text;
    for (const ValueDifference &value : found.differences)
        text +=
            changeText(value.path, value.before, value.after, !showsSecrets && isSecret(sides, value.path));
    for (const QString &name : found.onlyFirst)
        text += ControlText::tr("only in %1: %2").arg(sides[0].name, terminalText(name)) + u'\n';
    for (const QString &name : found.onlySecond)
        text += ControlText::tr("only in %1: %2").arg(sides[1].name, terminalText(name)) + u'\n';
    return text;
}

QJsonObject documentOf(const DiffReport &found, const Sides &sides, bool showsSecrets)
{
    QJsonArray rows;
    for (const ValueDifference &value : found.differences) {
        const bool isMarked = isSecret(sides, value.path);
        const bool isHidden = isMarked && !showsSecrets;
        rows.append(QJsonObject{{"path", value.path},
                                {"first", shownInJson(value.before, isHidden)},
                                {"second", shownInJson(value.after, isHidden)},
                                {"secret", isMarked}});
    }
    return {{"format", "paravue-differences"},
            {"version", 1},
            {"first", sides[0].name},
            {"second", sides[1].name},
            {"differences", rows},
            {"onlyFirst", QJsonArray::fromStringList(found.onlyFirst)},
            {"onlySecond", QJsonArray::fromStringList(found.onlySecond)}};
}

/// Is called with the number of values that differ.
using DiffEnd = std::function<void(const Outcome &, const CommandReport &, qsizetype)>;

void finish(Sides &sides, const QStringList &patternTexts, const ControlCommandLine &line, const DiffEnd &end)
{
    ValuePatterns patterns(patternTexts);
    if (!patterns.isEmpty()) {
        for (SettingsSource &side : sides)
            keepMatching(side.values, patterns);
    }
    const DiffReport found = compare(sides);
    CommandReport report;
    if (line.json)
        report.document = documentOf(found, sides, line.secrets);
    else
        report.text = textOf(found, sides, line.secrets);
    const bool isSame =
        found.differences.isEmpty() && found.onlyFirst.isEmpty() && found.onlySecond.isEmpty();
    Outcome outcome{isSame ? ExitCode::Done : ExitCode::Different};
    if (const QStringList unmatched = patterns.unmatched(); !unmatched.isEmpty())
        outcome = {
            ExitCode::Different,
            ControlText::tr("there is no value that fits %1").arg(unmatched.join(QStringLiteral(", ")))};
    end(outcome, report, found.differences.size());
}

/// Both sides while they are read, at the same time.
struct DiffRun {
    ControlCommandLine line;
    CommandEnd end;
    Sides sides;
    std::array<Outcome, 2> outcomes;
    int missing = 2;
};

} // namespace

void runDiff(const ControlCommandLine &line, const CommandEnd &end)
{
    const auto run = std::make_shared<DiffRun>(DiffRun{line, end, {}, {}});
    for (size_t i = 0; i < run->sides.size(); ++i) {
        readSource(line.arguments[qsizetype(i)], line,
                   [run, i](const Outcome &outcome, const SettingsSource &side) {
                       run->outcomes[i] = outcome;
                       run->sides[i] = side;
                       if (--run->missing > 0)
                           return;
                       const Outcome &failed = run->outcomes[run->outcomes[0].isDone() ? 1 : 0];
                       if (failed.isDone())
                           finish(run->sides, run->line.arguments.mid(2), run->line,
                                  [run](const Outcome &compared, const CommandReport &report, qsizetype) {
                                      run->end(compared, report);
                                  });
                       else
                           run->end(failed, {});
                   });
    }
}

void runCheck(const ControlCommandLine &line, const CommandEnd &end)
{
    ControlCommandLine own = line;
    own.file = line.wanted;
    QList<WantedValue> wanted;
    if (const Outcome read = readWantedValues(own, wanted); !read.isDone())
        return end(read, {});
    readRecorder(line, [=](const Outcome &outcome, const SettingsSource &recorder) {
        if (!outcome.isDone())
            return end(outcome, {});
        Sides sides{recorder, sourceOf(wanted, QStringLiteral("wanted"))};
        finish(sides, {}, line, [end](const Outcome &compared, const CommandReport &report, qsizetype count) {
            end(compared.isDone()
                    ? compared
                    : Outcome{compared.code, ControlText::tr("values that differ: %1").arg(count)},
                report);
        });
    });
}

} // namespace paravue
