#include "changes/StateDirectives.h"

#include "changes/ChangeList.h"
#include "changes/FileValues.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"

#include <QFile>
#include <QSignalBlocker>

#include <algorithm>

namespace paravue::statedirectives
{

namespace
{

/// Empty unless the file has directives; nothing when it cannot be read.
std::optional<QByteArray> directedText(OrbSetup &store, const QString &name)
{
    if (!store.fileExists(name))
        return QByteArray();
    QFile file(store.filePath(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {};
    return text.contains("#!") ? text : QByteArray();
}

/// What sending the file \a name makes other values of.
QList<ValueDifference> sendingDifferences(OrbSetup &store, const QString &name)
{
    // Wrong addresses are reported when the file is sent.
    const QSignalBlocker quiet(store);
    const auto valueOf = [&store](const QString &address) { return std::optional(store.value(address)); };
    const QByteArray text = directedText(store, name).value_or(QByteArray());
    if (text.isEmpty())
        return {};
    const CompiledState compiled = preview(QString::fromUtf8(text), valueOf);
    if (compiled.fault != CompiledState::Fault::None)
        return {};
    QList<ValueDifference> found = differences(name, FileValues(text), FileValues(compiled.text.toUtf8()));
    found.removeIf([](const ValueDifference &difference) { return difference.isOnlyAKey(); });
    return found;
}

QList<Change> changesOf(const QList<ValueDifference> &differences)
{
    QList<Change> changes;
    for (const ValueDifference &difference : differences)
        changes.append({difference.path, difference.before, difference.after.value_or(QString())});
    return changes;
}

bool containsAny(const QString &text, const QStringList &parts)
{
    return std::any_of(parts.begin(), parts.end(),
                       [&text](const QString &part) { return text.contains(part); });
}

} // namespace

CompiledState preview(const QString &text, const ValueLookup &valueOf, qsizetype maximumGrowth)
{
    qsizetype left = RunsOfEach * text.count(u"#!") + MoreRuns;
    // A directive without a value changes nothing, so each that follows is reached once.
    const auto boundedValueOf = [&](const QString &address) {
        return left-- > 0 ? valueOf(address) : std::nullopt;
    };
    CompiledState compiled = applyStateDirectives(text, boundedValueOf, maximumGrowth);
    return left < 0 ? CompiledState{CompiledState::Fault::TooSlow} : compiled;
}

std::optional<QSet<QString>> secretPaths(OrbSetup &store, const QString &name, const SecretValues &secrets)
{
    const auto text = directedText(store, name);
    if (!text || text->isEmpty())
        return text ? std::optional(QSet<QString>()) : std::nullopt;
    // No value that a file has by chance.
    const QString mark = QStringLiteral("\u2060secret\u2060");
    QStringList hidden;
    const CompiledState marked =
        preview(QString::fromUtf8(*text), [&](const QString &address) -> std::optional<QString> {
            const auto values = secrets(OrbSetup::path(address));
            if (!values)
                return {};
            hidden += *values;
            return mark;
        });
    if (marked.fault != CompiledState::Fault::None)
        return {};
    const FileValues present(*text);
    QSet<QString> paths;
    for (const ValueDifference &difference : differences(name, present, FileValues(marked.text.toUtf8())))
        paths.insert(difference.path);
    // A pattern need not match what it was replaced with.
    hidden.removeDuplicates();
    hidden.removeIf([](const QString &value) { return value.size() < ShortestSecret; });
    for (auto value = present.all().cbegin(); value != present.all().cend(); ++value) {
        if (containsAny(*value, hidden))
            paths.insert(name + u'/' + value.key());
    }
    return paths;
}

QList<Change> pendingChanges(OrbSetup &store, const QString &name)
{
    return changesOf(sendingDifferences(store, name));
}

QList<Change> pendingChanges(OrbSetup &store, const QString &name, const QSet<QString> &paths)
{
    QList<ValueDifference> found = sendingDifferences(store, name);
    if (found.isEmpty())
        return {};
    const QSignalBlocker quiet(store);
    const auto valueOfOthers = [&](const QString &address) {
        return paths.contains(OrbSetup::path(address)) ? std::nullopt : std::optional(store.value(address));
    };
    const QString text = QString::fromUtf8(directedText(store, name).value_or(QByteArray()));
    const FileValues others(preview(text, valueOfOthers).text.toUtf8());
    found.removeIf([&others](const ValueDifference &difference) {
        return !difference.after || others.value(difference.path.section(u'/', 1)) == difference.after;
    });
    return changesOf(found);
}

QStringList lostKeys(OrbSetup &store, const QString &name)
{
    QStringList lost;
    for (const ValueDifference &difference : sendingDifferences(store, name)) {
        if (!difference.after)
            lost << difference.path;
    }
    return lost;
}

} // namespace paravue::statedirectives
