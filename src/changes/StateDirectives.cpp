#include "changes/StateDirectives.h"

#include "changes/ChangeList.h"
#include "changes/FileValues.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"
#include "store/StateTemplate.h"

#include <QFile>
#include <QSignalBlocker>

namespace paravue::statedirectives
{

namespace
{

/// Empty unless the file has directives.
QByteArray directedText(OrbSetup &store, const QString &name)
{
    QFile file(store.fileExists(name) ? store.filePath(name) : QString());
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = file.readAll();
    return text.contains("#!") ? text : QByteArray();
}

QList<ValueDifference> effects(const QString &name, const QByteArray &text, const ValueLookup &valueOf)
{
    if (text.isEmpty())
        return {};
    const CompiledState compiled = applyStateDirectives(QString::fromUtf8(text), valueOf);
    if (compiled.fault != CompiledState::Fault::None)
        return {};
    QList<ValueDifference> all = differences(name, FileValues(text), FileValues(compiled.text.toUtf8()));
    all.removeIf([](const ValueDifference &difference) { return difference.isOnlyAKey(); });
    return all;
}

} // namespace

QSet<QString> secretPaths(OrbSetup &store, const QString &name,
                          const std::function<bool(const QString &path)> &isSecret)
{
    // No value that a file has by chance.
    const QString mark = QStringLiteral("\u2060secret\u2060");
    const auto markSecrets = [&](const QString &address) {
        return isSecret(OrbSetup::path(address)) ? std::optional(mark) : std::nullopt;
    };
    QSet<QString> paths;
    for (const ValueDifference &difference : effects(name, directedText(store, name), markSecrets))
        paths.insert(difference.path);
    return paths;
}

QList<Change> pendingChanges(OrbSetup &store, const QString &name)
{
    // Wrong addresses are reported when the file is sent.
    const QSignalBlocker quiet(store);
    const auto valueOf = [&store](const QString &address) { return std::optional(store.value(address)); };
    QList<Change> changes;
    for (const ValueDifference &difference : effects(name, directedText(store, name), valueOf))
        changes.append({difference.path, difference.before, difference.after.value_or(QString())});
    return changes;
}

} // namespace paravue::statedirectives
