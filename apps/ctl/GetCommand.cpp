#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderSession.h"
#include "SecretValues.h"
#include "TerminalText.h"
#include "snapshots/SnapshotDifferences.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>
#include <vector>

namespace paravue
{

namespace
{

struct FoundValue {
    QString path;
    QString value;
    bool isSecret;
};

/// A pattern of values, and whether it has matched one.
struct ValuePattern {
    explicit ValuePattern(const QString &text) : text(text)
    {
        // "net" and "net/untitled" stand for what is in them.
        QString expression;
        for (const QChar letter : text) {
            if (letter == u'*')
                expression += QStringLiteral(".*");
            else if (letter == u'?')
                expression += u'.';
            else
                expression += QRegularExpression::escape(QString(letter));
        }
        if (text.count(u'/') < 2)
            expression += QStringLiteral("(/.*)?");
        whole.setPattern(QRegularExpression::anchoredPattern(expression));
        whole.setPatternOptions(QRegularExpression::DotMatchesEverythingOption);
    }

    QString text;
    QRegularExpression whole;
    bool hasMatched = false;
};

bool isWanted(std::vector<ValuePattern> &patterns, const QString &path)
{
    bool isMatched = patterns.empty();
    for (ValuePattern &pattern : patterns) {
        const bool matches = pattern.whole.match(path).hasMatch();
        pattern.hasMatched = pattern.hasMatched || matches;
        isMatched = isMatched || matches;
    }
    return isMatched;
}

std::vector<FoundValue> wantedValues(const FileContents &files, std::vector<ValuePattern> &patterns)
{
    const SecretValues secrets(files);
    const ConfigurationValues all = valuesOf(files);
    std::vector<FoundValue> found;
    for (auto file = all.cbegin(); file != all.cend(); ++file) {
        const auto &values = file->all();
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            const QString path = file.key() + u'/' + value.key();
            if (isWanted(patterns, path))
                found.push_back({path, *value, secrets.contains(path)});
        }
    }
    std::sort(found.begin(), found.end(),
              [](const FoundValue &a, const FoundValue &b) { return a.path < b.path; });
    return found;
}

void printText(const std::vector<FoundValue> &values, bool showsSecrets)
{
    qsizetype width = 0;
    for (const FoundValue &value : values)
        width = std::max(width, value.path.size());
    QTextStream out(stdout);
    for (const FoundValue &value : values) {
        out << terminalText(value.path).leftJustified(width) << "  "
            << (value.isSecret && !showsSecrets ? SecretKeys::dots() : terminalText(value.value)) << '\n';
    }
}

void printJson(const std::vector<FoundValue> &values, bool showsSecrets, const QString &recorder)
{
    QJsonArray rows;
    for (const FoundValue &value : values) {
        QJsonObject row{{"path", value.path}, {"secret", value.isSecret}};
        row.insert("value", value.isSecret && !showsSecrets ? QJsonValue() : QJsonValue(value.value));
        rows.append(row);
    }
    const QJsonObject document{
        {"format", "paravue-values"}, {"version", 1}, {"recorder", recorder}, {"values", rows}};
    QTextStream(stdout) << QJsonDocument(document).toJson();
}

} // namespace

Outcome runGet(RecorderSession &session, const ControlCommandLine &line)
{
    std::vector<ValuePattern> patterns;
    for (const QString &pattern : line.arguments)
        patterns.emplace_back(pattern);
    if (const Outcome fetched = session.fetch(); !fetched.isDone())
        return fetched;
    FileContents files;
    if (const Outcome read = session.contents(files); !read.isDone())
        return read;
    const std::vector<FoundValue> values = wantedValues(files, patterns);
    if (line.json)
        printJson(values, line.secrets, recorderOfAddress(session.store().address()));
    else
        printText(values, line.secrets);
    QStringList unmatched;
    for (const ValuePattern &pattern : patterns) {
        if (!pattern.hasMatched)
            unmatched << pattern.text;
    }
    if (unmatched.isEmpty())
        return {};
    return {
        ExitCode::Different,
        ControlText::tr("the recorder has no value that fits %1").arg(unmatched.join(QStringLiteral(", ")))};
}

} // namespace paravue
