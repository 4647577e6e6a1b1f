#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "EditRun.h"
#include "RecorderSession.h"
#include "SettingsSource.h"
#include "ValuePatterns.h"
#include "snapshots/RestorePlan.h"

#include <algorithm>
#include <memory>

namespace paravue
{

namespace
{

/// Why the values of \a snapshot may not be meant for the recorder; empty when they are.
QString strangeness(const Snapshot &snapshot, const SnapshotInfo &recorder)
{
    const QString &owner = snapshot.info.recorder;
    if (!owner.isEmpty() && owner != recorder.recorder)
        return ControlText::tr("The snapshot is of the recorder %1.").arg(owner);
    return misfit(snapshot.info, recorder);
}

/// The paths of the values that \a patterns name, and what is wrong with these.
Outcome choose(const Snapshot &snapshot, const RestorePlan &plan, const QStringList &texts,
               QSet<QString> &paths)
{
    ValuePatterns patterns(texts);
    for (const ValueDifference &difference : plan.differences()) {
        if (patterns.contains(difference.path))
            paths.insert(difference.path);
    }
    if (patterns.unmatched().isEmpty())
        return {};
    // Those that do not differ are there, too.
    const ConfigurationValues values = valuesOf(snapshot.currentFiles());
    for (auto file = values.cbegin(); file != values.cend(); ++file) {
        for (auto value = file->all().cbegin(); value != file->all().cend(); ++value)
            patterns.contains(file.key() + u'/' + value.key());
    }
    const QStringList unmatched = patterns.unmatched();
    if (unmatched.isEmpty())
        return {};
    return {
        ExitCode::Different,
        ControlText::tr("the snapshot has no value that fits %1").arg(unmatched.join(QStringLiteral(", ")))};
}

/// The values of the snapshot that \a texts name and that the recorder has already.
QList<WantedValue> valuesPresent(const Snapshot &snapshot, const QStringList &texts,
                                 const ConfigurationValues &present)
{
    ValuePatterns patterns(texts);
    QList<WantedValue> found;
    const ConfigurationValues values = valuesOf(snapshot.currentFiles());
    for (auto file = values.cbegin(); file != values.cend(); ++file) {
        const FileValues own = present.value(file.key());
        for (auto value = file->all().cbegin(); value != file->all().cend(); ++value) {
            const QString path = file.key() + u'/' + value.key();
            if (own.value(value.key()) == *value && path.count(u'/') == 2 && patterns.contains(path))
                found.append({path, *value});
        }
    }
    return found;
}

/// The wanted lists that \a plan cannot restore.
QStringList listsKept(const RestorePlan &plan, const QSet<QString> &paths)
{
    QStringList kept;
    for (const QString &list : plan.movedLists().incomplete()) {
        const bool isWanted = std::any_of(paths.begin(), paths.end(),
                                          [&](const QString &path) { return path.startsWith(list + u'/'); });
        if (isWanted)
            kept << list;
    }
    kept.sort();
    return kept;
}

/// The wanted values that no address can name.
QStringList unnameable(const RestorePlan &plan, const QSet<QString> &paths)
{
    QStringList found;
    for (const ValueDifference &value : plan.differences()) {
        if (paths.contains(value.path) && !value.canBeSet() && !value.isOnlyAKey())
            found << value.path;
    }
    return found;
}

class RestoreSource
{
public:
    RestoreSource(const Snapshot &snapshot, const ControlCommandLine &line)
        : m_snapshot(snapshot), m_line(line)
    {
    }

    Outcome choose(RecorderSession &session, const FileContents &files, QList<WantedValue> &wanted)
    {
        SnapshotInfo recorder;
        recorder.recorder = session.recorder();
        describeRecorder(recorder, files);
        const QString strange = strangeness(m_snapshot, recorder);
        if (!m_line.force && !strange.isEmpty())
            return {ExitCode::Different, ControlText::tr("%1 With --force it is restored.").arg(strange)};

        const QStringList unsent = session.store().property("unsentFiles").toStringList();
        const ConfigurationValues present = valuesOf(files);
        const RestorePlan plan(m_snapshot, present, [&unsent](const QString &path) {
            return !unsent.contains(path.section(u'/', 0, 0));
        });
        QSet<QString> paths;
        if (const Outcome chosen = paravue::choose(m_snapshot, plan, m_line.arguments.mid(1), paths);
            !chosen.isDone())
            return chosen;
        m_listsKept = listsKept(plan, paths);
        m_unnameable = unnameable(plan, paths);
        for (const ValueDifference &value : plan.restored(paths.values())) {
            if (!value.isOnlyAKey())
                wanted.append({value.path, value.before});
        }
        const Outcome checked = m_line.force ? Outcome() : checkAgainstDescription(wanted, session, files);
        wanted += valuesPresent(m_snapshot, m_line.arguments.mid(1), present);
        return checked;
    }

    /// What a run has come to that has restored everything else.
    Outcome rest() const
    {
        QStringList problems;
        if (!m_listsKept.isEmpty())
            problems << ControlText::tr(
                            "entries of %1 were added, removed or renamed since, and the snapshot "
                            "has no passwords for them: these lists were not restored")
                            .arg(m_listsKept.join(QStringLiteral(", ")));
        if (!m_unnameable.isEmpty())
            problems << ControlText::tr(
                            "a \"/\" in a key or a section cannot be addressed, so these were not "
                            "restored: %1")
                            .arg(m_unnameable.join(QStringLiteral(", ")));
        return problems.isEmpty() ? Outcome()
                                  : Outcome{ExitCode::Different, problems.join(QStringLiteral("; "))};
    }

private:
    const Snapshot m_snapshot;
    const ControlCommandLine m_line;
    QStringList m_listsKept;
    QStringList m_unnameable;
};

} // namespace

void runRestore(const ControlCommandLine &line, const CommandEnd &end)
{
    Snapshot snapshot;
    if (const Outcome read = readSnapshot(line.arguments.constFirst(), snapshot); !read.isDone())
        return end(read, {});
    const auto source = std::make_shared<RestoreSource>(snapshot, line);
    runEdits(
        line,
        [source](RecorderSession &session, const FileContents &files, QList<WantedValue> &wanted) {
            return source->choose(session, files, wanted);
        },
        end, [source] { return source->rest(); });
}

} // namespace paravue
