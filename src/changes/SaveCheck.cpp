#include "changes/SaveCheck.h"

#include "changes/ChangeList.h"
#include "changes/PositionLists.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

const QLatin1StringView CopySuffix(".original");

/// Nothing when it cannot be read to its end: an empty text would be taken for that of the recorder.
std::optional<QByteArray> contentOf(OrbSetup &store, const QString &name)
{
    QFile file(store.fileExists(name) ? store.filePath(name) : QString());
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(std::move(content)) : std::nullopt;
}

/// A number, a date or a time of day.
bool isMeasured(const QString &value)
{
    const auto isPart = [](QChar c) { return c.isDigit() || QStringLiteral(".,:-+/ TZ%").contains(c); };
    return std::any_of(value.begin(), value.end(), [](QChar c) { return c.isDigit(); }) &&
           std::all_of(value.begin(), value.end(), isPart);
}

/// Recorders count, and have clocks and thermometers.
bool isMeasured(const ValueDifference &difference)
{
    return isMeasured(difference.before.value_or(QString())) &&
           isMeasured(difference.after.value_or(QString()));
}

/// The values of files that are read when one of them is asked for the first time.
class LazyValues
{
public:
    explicit LazyValues(const QMap<QString, QByteArray> &files) : m_files(files) {}

    std::optional<QString> value(const QString &path)
    {
        const QString name = path.section(u'/', 0, 0);
        auto file = m_read.find(name);
        if (file == m_read.end())
            file = m_read.insert(name, FileValues(m_files.value(name)));
        return file->value(path.section(u'/', 1));
    }

private:
    const QMap<QString, QByteArray> m_files;
    QHash<QString, FileValues> m_read; ///< by name
};

QList<ValueDifference> sentDifferences(const QString &name, const QByteArray &before, const QByteArray &after)
{
    if (before == after)
        return {};
    QList<ValueDifference> all = differences(name, FileValues(before), FileValues(after));
    all.removeIf([](const ValueDifference &difference) {
        return difference.isOnlyAKey() || !ChangeList::reachesTheRecorder(ConfigAddress(difference.path));
    });
    return all;
}

} // namespace

SaveCheck::SaveCheck(OrbSetup &store, ChangeList &changes, IsEditable isEditable)
    : m_store(&store), m_changes(changes), m_isEditable(std::move(isEditable))
{
    store.addObserver(*this);
}

SaveCheck::~SaveCheck()
{
    if (m_store)
        m_store->removeObserver(*this);
}

void SaveCheck::compare()
{
    fetch({});
}

void SaveCheck::confirm(const QStringList &arrived)
{
    fetch(arrived);
}

void SaveCheck::fetch(const std::optional<QStringList> &only)
{
    cancel();
    m_recorder.clear();
    m_reader = m_store ? m_store->reader(only) : nullptr;
    if (!m_reader)
        return fail(tr("There is no recorder to ask"));
    // Through the event loop: the store must not be deleted by what it tells.
    connect(m_reader.get(), &OrbSetup::loadDone, this, &SaveCheck::collect, Qt::QueuedConnection);
    connect(
        m_reader.get(), &OrbSetup::pseudothrow, this,
        [this](const QString &message) {
            if (!m_reader)
                return;
            const QString explanation = m_reader->explanation(message);
            fail(explanation.isEmpty() ? message : explanation);
        },
        Qt::QueuedConnection);
    m_reader->load();
}

void SaveCheck::cancel()
{
    m_reader.reset();
}

void SaveCheck::fail(const QString &problem)
{
    cancel();
    // The caller of compare() waits for the end only after it.
    QMetaObject::invokeMethod(
        this, [this, problem] { Q_EMIT finished(problem); }, Qt::QueuedConnection);
}

void SaveCheck::collect()
{
    if (!m_reader)
        return;
    for (const QString &name : m_reader->fetchedFiles()) {
        if (!m_store || !m_store->fileExists(name) || name == QLatin1StringView("general"))
            continue;
        const auto content = contentOf(*m_reader, name);
        if (!content) {
            m_recorder.clear();
            return fail(tr("The copy of \"%1\" cannot be read").arg(name));
        }
        m_recorder.insert(name, *content);
    }
    m_lists = PositionLists(m_store ? contentOf(*m_store, QStringLiteral("interface")).value_or(QByteArray())
                                    : QByteArray());
    // The user may have given another login.
    if (m_store)
        m_store->setAddress(m_reader->address());
    m_reader.release()->deleteLater();
    Q_EMIT finished(QString());
}

/// What the recorder is known to have in the file \a name.
QByteArray SaveCheck::known(const QString &name) const
{
    const auto sent = m_known.constFind(name);
    // Without it all of the file counts as changed, and is taken from the recorder.
    return sent != m_known.constEnd() ? *sent : contentOf(*m_store, name + CopySuffix).value_or(QByteArray());
}

/// Of the described lists with some of the \a differences those that the window only shows, as a log of
/// events.
QSet<QString> SaveCheck::shownOnly(const QList<ValueDifference> &differences) const
{
    QSet<QString> shown;
    for (const ValueDifference &difference : differences) {
        if (const QString list = m_lists.describedList(difference.path); !list.isEmpty())
            shown.insert(list);
    }
    const auto dropEdited = [&](const QString &name, const QByteArray &content) {
        const FileValues values(content);
        for (auto value = values.all().cbegin(); value != values.all().cend(); ++value) {
            const QString path = name + u'/' + value.key();
            const QString list = m_lists.describedList(path);
            if (shown.contains(list) && (m_isEditable(path) || m_changes.find(path)))
                shown.remove(list);
        }
    };
    for (auto file = m_recorder.cbegin(); !shown.isEmpty() && file != m_recorder.cend(); ++file) {
        dropEdited(file.key(), known(file.key()));
        dropEdited(file.key(), *file);
    }
    return shown;
}

/// What somebody else may have changed. The log of the recorder and other lists that are only shown are its
/// own.
QList<ValueDifference> SaveCheck::othersDifferences() const
{
    QList<ValueDifference> found;
    for (auto file = m_recorder.cbegin(); m_store && file != m_recorder.cend(); ++file)
        found += sentDifferences(file.key(), known(file.key()), *file);
    const QSet<QString> shown = shownOnly(found);
    found.removeIf([&](const ValueDifference &difference) {
        return m_changes.isDoubted(difference.path, difference.after.value_or(QString())) ||
               shown.contains(m_lists.describedList(difference.path));
    });
    return found;
}

QList<ForeignChange> SaveCheck::foreignChanges() const
{
    QList<ForeignChange> result;
    const QList<ValueDifference> found = othersDifferences();
    for (const ValueDifference &difference : found) {
        if (!difference.canBeSet())
            continue; // the recorder's is kept with its file
        const Change *own = m_changes.find(difference.path);
        if (own && own->newValue == difference.after.value_or(QString()))
            continue;
        if (own || m_isEditable(difference.path) || !isMeasured(difference))
            result.append({difference.path, difference.before.value_or(QString()),
                           difference.after.value_or(QString()),
                           own ? std::optional(own->newValue) : std::nullopt});
    }
    addMoved(result, found);
    return result;
}

/// The edits of the user in lists in which somebody else has changed something.
QList<ValueDifference> SaveCheck::editsBeside(const QList<ValueDifference> &differences) const
{
    QSet<QString> touched;
    for (const ValueDifference &difference : differences)
        touched.insert(m_lists.placeOf(difference.path));
    touched.remove(QString());
    QList<ValueDifference> edits;
    for (const Change &change : touched.isEmpty() ? QList<Change>() : m_changes.all()) {
        if (touched.contains(m_lists.placeOf(change.path)) &&
            m_recorder.contains(ConfigAddress(change.path).file().toString()))
            edits.append({change.path, change.oldValue, change.newValue});
    }
    return edits;
}

/// Adds the edits of the user in lists whose entries have moved, at the recorder or here.
void SaveCheck::addMoved(QList<ForeignChange> &changes, const QList<ValueDifference> &differences) const
{
    const QList<ValueDifference> edits = editsBeside(differences);
    LazyValues recorder(m_recorder);
    // An entry that the user has renamed, and of which somebody else has changed nothing, is the same one at
    // the recorder, unless the number of entries or names there are others now.
    QSet<QString> touched;
    for (const ValueDifference &difference : differences)
        touched.insert(m_lists.entryOf(difference.path));
    QList<ValueDifference> moving = edits;
    moving.removeIf([&](const ValueDifference &edit) {
        return !m_lists.isCount(edit.path) && !touched.contains(m_lists.entryOf(edit.path));
    });
    const MovedLists moved(m_lists, differences + moving,
                           [&recorder](const QString &path) { return recorder.value(path).has_value(); });
    QSet<QString> listed;
    for (ForeignChange &change : changes) {
        change.movedList = moved.listOf(change.path);
        listed.insert(change.path);
    }
    for (const ValueDifference &edit : edits) {
        const QString now = recorder.value(edit.path).value_or(QString());
        const QString list = moved.listOf(edit.path);
        if (!list.isEmpty() && !listed.contains(edit.path) && edit.after != now)
            changes.append({edit.path, edit.before.value_or(QString()), now, edit.after, list});
    }
}

/// Those that the recorder has otherwise than is known. A clock that has gone on makes no other file.
QStringList SaveCheck::differingFiles() const
{
    QStringList names;
    for (auto file = m_recorder.cbegin(); m_store && file != m_recorder.cend(); ++file) {
        if (!sentDifferences(file.key(), known(file.key()), *file).isEmpty())
            names << file.key();
    }
    return names;
}

void SaveCheck::merge(const QSet<QString> &own)
{
    QStringList files = differingFiles();
    QSet<QString> foreign;
    QSet<QString> ownLists;
    QMap<QString, QString> values; ///< of this side, by path
    for (const ForeignChange &change : foreignChanges()) {
        foreign.insert(change.path);
        if (own.contains(change.path)) {
            values.insert(change.path, change.own.value_or(change.before));
            ownLists.insert(change.movedList);
        } else if (const QString name = ConfigAddress(change.path).file().toString(); !files.contains(name)) {
            files << name; // an edit in a list that is counted in another file
        }
    }
    ownLists.remove(QString());
    const auto isOfOwnList = [&](const QString &path) { return ownLists.contains(m_lists.placeOf(path)); };
    for (const QString &name : files) {
        for (const ValueDifference &difference : sentDifferences(name, known(name), m_recorder.value(name))) {
            if (difference.canBeSet() && isOfOwnList(difference.path))
                values.insert(difference.path, difference.before.value_or(QString()));
        }
    }
    for (const Change &change : m_changes.all()) {
        if ((!foreign.contains(change.path) || isOfOwnList(change.path)) &&
            files.contains(ConfigAddress(change.path).file().toString()))
            values.insert(change.path, change.newValue);
    }
    for (auto file = m_recorder.cbegin(); file != m_recorder.cend(); ++file) {
        if (!files.contains(file.key()))
            m_changes.settle(file.key());
    }
    takeRecorders(files);
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        m_store->setValue(value.key() + u'/' + value.value());
}

void SaveCheck::noteSaveBegins()
{
    if (!std::exchange(m_repeatsEdits, false))
        m_edited.clear();
    for (const Change &change : m_changes.all())
        m_edited.insert(change.path);
}

void SaveCheck::noteSaved(const QStringList &arrived)
{
    for (const QString &name : arrived) {
        if (const auto content = m_store ? contentOf(*m_store, name) : std::nullopt)
            m_known.insert(name, *content);
    }
}

QList<ValueDifference> SaveCheck::keptOtherwise() const
{
    QList<ValueDifference> result;
    for (auto file = m_recorder.cbegin(); m_store && file != m_recorder.cend(); ++file) {
        for (const ValueDifference &difference : sentDifferences(file.key(), known(file.key()), *file)) {
            const bool counts = m_edited.contains(difference.path) || m_isEditable(difference.path);
            if (counts && difference.canBeSet())
                result.append(difference);
        }
    }
    return result;
}

bool SaveCheck::keepRecorders()
{
    return takeRecorders(differingFiles());
}

/// The values of keptOtherwise(). Of a list whose entries the recorder has moved they are all that differ:
/// one alone would be given to whoever has its position now.
QList<ValueDifference> SaveCheck::valuesToKeep() const
{
    const QList<ValueDifference> values = keptOtherwise();
    const bool hasPlaces = std::any_of(values.begin(), values.end(), [this](const ValueDifference &value) {
        return !m_lists.placeOf(value.path).isEmpty();
    });
    if (!hasPlaces)
        return values;
    QList<ValueDifference> all;
    for (auto file = m_recorder.cbegin(); m_store && file != m_recorder.cend(); ++file)
        all += sentDifferences(file.key(), known(file.key()), *file);
    LazyValues recorder(m_recorder);
    const MovedLists moved(m_lists, all,
                           [&recorder](const QString &path) { return recorder.value(path).has_value(); });
    const QSet<QString> kept = moved.completed(pathsOf(values), pathsOf(all));
    all.removeIf([&kept](const ValueDifference &difference) {
        return !difference.canBeSet() || !kept.contains(difference.path);
    });
    return all;
}

bool SaveCheck::keepSent()
{
    const QList<ValueDifference> values = valuesToKeep();
    if (!keepRecorders())
        return false;
    for (const ValueDifference &value : values)
        m_store->setValue(value.path + u'/' + value.before.value_or(QString()));
    return true;
}

std::optional<QByteArray> SaveCheck::newerFile(const QString &name) const
{
    for (const auto *files : {&m_recorder, &m_known}) {
        if (const auto file = files->constFind(name); file != files->constEnd())
            return *file;
    }
    return {};
}

bool SaveCheck::takeRecorders(const QStringList &names)
{
    bool areTaken = true;
    for (const QString &name : names)
        areTaken = m_store->takeAsFetched(name, m_recorder.value(name)) && areTaken;
    return areTaken;
}

void SaveCheck::fileReplaced(const QString &name)
{
    m_known.remove(name);
    m_recorder.remove(name);
}

} // namespace paravue
