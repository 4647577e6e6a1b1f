#include "changes/ChangeList.h"

#include "changes/StateDirectives.h"
#include "store/ConfigAddress.h"
#include "store/OrbSettings.h"
#include "store/OrbSetup.h"

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

const QLatin1StringView PristineSuffix(".original");

} // namespace

/// The values that the recorder has in one file: those of the copy that was fetched, and over them those that
/// were saved since.
class PristineFile
{
public:
    explicit PristineFile(const QString &path) : m_settings(path) {}
    /// The copy is not written.
    ~PristineFile() { m_settings.forget(); }
    Q_DISABLE_COPY_MOVE(PristineFile)

    std::optional<QString> value(const QString &path)
    {
        const auto saved = m_saved.constFind(path);
        if (saved != m_saved.constEnd())
            return *saved;
        const QString *found = m_settings.find(ConfigAddress(path).entry());
        return found ? std::optional(*found) : std::nullopt;
    }
    void setSaved(const QString &path, const QString &value) { m_saved.insert(path, value); }

private:
    OrbSettings m_settings;
    QHash<QString, QString> m_saved; ///< by path
};

bool ChangeList::reachesTheRecorder(const ConfigAddress &address)
{
    return address.hasKey() && address.file() != QLatin1StringView("general") &&
           address.file() != QLatin1StringView("tmp") && !address.file().endsWith(PristineSuffix) &&
           address.path() != QLatin1StringView("time/untitled/YYYYMMDDHHMMSS");
}

bool ChangeList::isSent(const OrbSetup &store, const QString &file)
{
    return !store.property("unsentFiles").toStringList().contains(file);
}

ChangeList::ChangeList(OrbSetup &store) : m_store(&store), m_unobserved(store.fetchedFiles())
{
    // Those of a local store have no pristine copies. One that was not used holds no edits.
    for (const QString &name : store.usedFiles()) {
        if (!name.endsWith(PristineSuffix) && !m_unobserved.contains(name))
            m_unobserved << name;
    }
    m_store->addObserver(*this);
}

ChangeList::~ChangeList()
{
    if (m_store)
        m_store->removeObserver(*this);
}

const Change *ChangeList::find(const QString &path) const
{
    const auto found = m_changes.constFind(path);
    return found == m_changes.constEnd() ? nullptr : &*found;
}

bool ChangeList::isSecret(const QString &path) const
{
    if (m_secrets.contains(path))
        return true;
    if (std::exchange(m_directedMarks, m_secrets.markCount()) != m_secrets.markCount())
        m_directedSecrets.clear();
    const QString file = ConfigAddress(path).file().toString();
    auto directed = m_directedSecrets.find(file);
    if (directed == m_directedSecrets.end()) {
        std::optional<QSet<QString>> paths{QSet<QString>()};
        if (m_store)
            paths = statedirectives::secretPaths(*m_store, file,
                                                 [this](const QString &key) { return secretValues(key); });
        directed = m_directedSecrets.insert(file, paths);
    }
    return !*directed || (*directed)->contains(path);
}

/// See statedirectives::SecretValues.
std::optional<QStringList> ChangeList::secretValues(const QString &path) const
{
    if (!m_secrets.contains(path))
        return {};
    const ConfigAddress address(path);
    if (!address.hasKey() || !m_store->fileExists(address.file().toString()))
        return QStringList();
    return QStringList{m_store->storedValue(path).value_or(QString()), oldValue(path).value_or(QString())};
}

void ChangeList::addEarlierEdits()
{
    for (const QString &file : std::exchange(m_unobserved, {})) {
        if (!m_store || !isSent(*m_store, file))
            continue;
        for (const QString &address : m_store->regexp_values(file + QStringLiteral("/.*/.*")))
            update(OrbSetup::path(address));
    }
}

QList<Change> ChangeList::pendingChanges() const
{
    QList<Change> pending;
    for (const QString &file : m_store ? m_store->fetchedFiles() : QStringList()) {
        if (!isSent(*m_store, file))
            continue;
        for (Change change : statedirectives::pendingChanges(*m_store, file)) {
            change.isSecret = isSecret(change.path);
            if (!m_changes.contains(change.path))
                pending << change;
        }
    }
    return pending;
}

QList<Change> ChangeList::all() const
{
    QStringList paths = m_changes.keys();
    std::sort(paths.begin(), paths.end());
    QList<Change> changes;
    changes.reserve(paths.size());
    for (const QString &path : std::as_const(paths)) {
        changes << m_changes.value(path);
        changes.last().isSecret = isSecret(path); // may have been marked since
    }
    return changes;
}

std::optional<QString> ChangeList::oldValue(const QString &path) const
{
    const QString file = ConfigAddress(path).file().toString();
    if (!m_store || !m_store->fileExists(file))
        return {};
    return pristine(file).value(path);
}

void ChangeList::takeBack(const QString &path)
{
    if (m_store)
        m_store->putBack(path, oldValue(path));
}

void ChangeList::accept(const QList<Change> &sent)
{
    for (const Change &change : sent) {
        const QString file = ConfigAddress(change.path).file().toString();
        if (!m_store || !m_store->fileExists(file))
            continue;
        pristine(file).setSaved(change.path, change.newValue);
        m_doubted.remove(change.path);
        const bool wasChanged = m_changes.remove(change.path);
        update(change.path);
        if (wasChanged && !m_changes.contains(change.path))
            Q_EMIT changed(change.path);
    }
}

void ChangeList::doubt(const QList<Change> &sent)
{
    for (const Change &change : sent) {
        // What an earlier save has sent it may have as well.
        if (change.newValue != oldValue(change.path))
            m_doubted.insert(change.path, change.newValue);
        update(change.path);
    }
}

void ChangeList::settle(const QString &file)
{
    const QStringList paths = m_doubted.keys();
    for (const QString &path : paths) {
        if (ConfigAddress(path).file() != file)
            continue;
        m_doubted.remove(path);
        const bool wasChanged = m_changes.remove(path);
        update(path);
        if (wasChanged && !m_changes.contains(path))
            Q_EMIT changed(path);
    }
}

bool ChangeList::isDoubted(const QString &path, const QString &value) const
{
    const auto doubted = m_doubted.constFind(path);
    return doubted != m_doubted.constEnd() && *doubted == value;
}

/// What the recorder has, or may have, instead of the value \a now; \a now itself when it surely has that.
std::optional<QString> ChangeList::valueBefore(const QString &path, const std::optional<QString> &now) const
{
    const std::optional<QString> old = oldValue(path);
    const auto doubted = m_doubted.constFind(path);
    return now == old && doubted != m_doubted.constEnd() ? std::optional(*doubted) : old;
}

/// To be called when what the recorder has may be another value than before.
void ChangeList::update(const QString &path)
{
    if (m_store->fileExists(ConfigAddress(path).file().toString()))
        valueSet(path, m_store->storedValue(path));
}

void ChangeList::valueSet(const QString &path, const std::optional<QString> &now)
{
    // Typing sets one value again and again.
    const auto known = m_changes.find(path);
    if (known != m_changes.end()) {
        if (!m_doubted.isEmpty())
            known->oldValue = valueBefore(path, now);
        if (now == known->oldValue) {
            m_changes.erase(known);
            Q_EMIT changed(path);
        } else {
            known->newValue = now.value_or(QString());
        }
        return;
    }
    const ConfigAddress address(path);
    const QString file = address.file().toString();
    if (!reachesTheRecorder(address) || !isSent(*m_store, file) || !m_store->fileExists(file))
        return;
    const std::optional<QString> before = valueBefore(path, now);
    if (now == before)
        return;
    m_changes.insert(path, {path, before, now.value_or(QString()), m_secrets.isKnown(path)});
    Q_EMIT changed(path);
}

void ChangeList::fileReplaced(const QString &name)
{
    const QString file = name.endsWith(PristineSuffix) ? name.chopped(PristineSuffix.size()) : name;
    const QString prefix = file + u'/';
    m_unobserved.removeAll(file);
    m_pristine.erase(file);
    m_directedSecrets.remove(file);
    const auto isInFile = [&prefix](auto change) { return change.key().startsWith(prefix); };
    m_doubted.removeIf(isInFile);
    if (m_changes.removeIf(isInFile) > 0)
        Q_EMIT dropped(file);
}

PristineFile &ChangeList::pristine(const QString &file) const
{
    std::unique_ptr<PristineFile> &known = m_pristine[file];
    if (!known) {
        // A local store has no pristine copies, but its files are not written before their first edit.
        const QString copy = file + PristineSuffix;
        known = std::make_unique<PristineFile>(m_store->filePath(m_store->fileExists(copy) ? copy : file));
    }
    return *known;
}

} // namespace paravue
