#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderDescription.h"
#include "RecorderSession.h"
#include "SecretValues.h"
#include "TerminalText.h"
#include "ValuePatterns.h"
#include "snapshots/SnapshotDifferences.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <vector>

namespace paravue
{

namespace
{

struct FoundValue {
    QString path;
    QString value;
    bool isSecret = false;
};

std::vector<FoundValue> wantedValues(const FileContents &files, ValuePatterns &patterns)
{
    FileContents concerned = files;
    concerned.removeIf([&patterns](auto file) { return !patterns.mayConcern(file.key()); });
    const ConfigurationValues all = valuesOf(concerned);
    std::vector<FoundValue> found;
    for (auto file = all.cbegin(); file != all.cend(); ++file) {
        const auto &values = file->all();
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            const QString path = file.key() + u'/' + value.key();
            if (patterns.contains(path))
                found.push_back({path, *value});
        }
    }
    std::sort(found.begin(), found.end(),
              [](const FoundValue &a, const FoundValue &b) { return a.path < b.path; });
    return found;
}

void markSecrets(std::vector<FoundValue> &values, const FileContents &files)
{
    QStringList names;
    for (const FoundValue &value : values) {
        if (const QString name = value.path.section(u'/', 0, 0); names.isEmpty() || names.constLast() != name)
            names << name;
    }
    const SecretValues secrets(files, names);
    for (FoundValue &value : values)
        value.isSecret = secrets.contains(value.path);
}

/// Captions by path, from the description.
using Captions = QHash<QString, QString>;

Outcome readCaptions(RecorderSession &session, const FileContents &files, Captions &captions)
{
    Outcome problem;
    const auto described = readDescription(files, session.store(), problem);
    for (const DescribedValue &value : described ? described->all() : QList<DescribedValue>()) {
        if (!captions.contains(value.path))
            captions.insert(value.path, value.fullCaption());
    }
    return problem;
}

QString textOf(const std::vector<FoundValue> &values, bool showsSecrets, const Captions &captions)
{
    qsizetype width = 0;
    for (const FoundValue &value : values)
        width = std::max(width, value.path.size());
    QString text;
    for (const FoundValue &value : values) {
        text += terminalText(value.path).leftJustified(width) + QStringLiteral("  ") +
                shownInText(value.value, value.isSecret && !showsSecrets);
        if (const QString caption = captions.value(value.path); !caption.isEmpty())
            text += QStringLiteral("  (%1)").arg(terminalText(caption));
        text += u'\n';
    }
    return text;
}

QJsonObject documentOf(const std::vector<FoundValue> &values, bool showsSecrets, const QString &recorder,
                       const Captions &captions)
{
    QJsonArray rows;
    for (const FoundValue &value : values) {
        QJsonObject row{{"path", value.path},
                        {"secret", value.isSecret},
                        {"value", shownInJson(value.value, value.isSecret && !showsSecrets)}};
        if (const auto caption = captions.constFind(value.path); caption != captions.cend())
            row.insert(QStringLiteral("caption"), *caption);
        rows.append(row);
    }
    return {{"format", "paravue-values"}, {"version", 1}, {"recorder", recorder}, {"values", rows}};
}

Outcome report(RecorderSession &session, const ControlCommandLine &line, CommandReport &report)
{
    FileContents files;
    if (const Outcome read = session.contents(files); !read.isDone())
        return read;
    ValuePatterns patterns(line.arguments);
    std::vector<FoundValue> values = wantedValues(files, patterns);
    markSecrets(values, files);
    Captions captions;
    if (const Outcome read = line.captions ? readCaptions(session, files, captions) : Outcome();
        !read.isDone())
        return read;
    if (line.json)
        report.document = documentOf(values, line.secrets, session.recorder(), captions);
    else
        report.text = textOf(values, line.secrets, captions);
    const QStringList unmatched = patterns.unmatched();
    if (unmatched.isEmpty())
        return {};
    return {
        ExitCode::Different,
        ControlText::tr("the recorder has no value that fits %1").arg(unmatched.join(QStringLiteral(", ")))};
}

} // namespace

void runGet(const ControlCommandLine &line, const CommandEnd &end)
{
    RecorderSession::runFetched(line, end, report);
}

} // namespace paravue
