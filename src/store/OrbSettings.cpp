#include "store/OrbSettings.h"

#include "store/IniGrammar.h"
#include "store/IniMerge.h"
#include "store/IniOwnLines.h"
#include "store/TextPattern.h"
#include "store/WholeFile.h"
#include "store/WideRegisters.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <optional>
#include <string>

using namespace paravue;

namespace
{

Q_LOGGING_CATEGORY(settingsLog, "paravue.settings")

/// A smaller file is read as fast as it is looked at.
constexpr qsizetype LargeFile = 64 << 10;

/// Up to this size the repeated lines of a file without keys are written. A session that asks such a file for
/// a value twice a second must not fill the disk.
constexpr qsizetype RepeatLimit = 16 << 20;

bool holds(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.readAll() == content;
}

} // namespace

OrbSettings::OrbSettings(const QString &path) : m_path(path) {}

OrbSettings::~OrbSettings()
{
    write();
}

void OrbSettings::setPath(const QString &path)
{
    m_path = path;
    m_sectioned = false;
    m_loaded = false;
    m_text = {};
    m_entries.clear();
    m_unedited.clear();
    m_entriesOfLines.clear();
    m_linesKnown = false;
    m_lastContent.clear();
    m_lastModified = {};
    m_repeats = 0;
    m_unreadable = false;
    m_forgotten = false;
    m_isWritten = true;
    m_held.reset();
    m_refused.reset();
}

OrbSettings::FileState OrbSettings::fileState() const
{
    const QFileInfo file(m_path);
    return {file.size(), file.lastModified()};
}

bool OrbSettings::FileState::isOld() const
{
    constexpr qint64 CoarsestTick = 2000; // milliseconds
    return modified.msecsTo(QDateTime::currentDateTime()) > CoarsestTick;
}

void OrbSettings::forget()
{
    setPath(m_path);
    m_forgotten = true;
}

bool OrbSettings::read()
{
    releaseWideRegisters();
    m_forgotten = false;
    m_held.reset();
    m_unreadable = QFile::exists(m_path);
    QFile file(m_path);
    if (m_path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return false;
    if (file.size() > IniText::SizeLimit) {
        qCWarning(settingsLog) << m_path << "is too large for a configuration file";
        return false;
    }
    const FileState state = fileState();
    if (m_refused == state)
        return false;
    m_refused.reset();
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    if (!addContent(content)) {
        qCWarning(settingsLog) << "the names of" << m_path << "are too long for a configuration file";
        if (state.isOld())
            m_refused = state;
        return false;
    }
    m_unreadable = false;
    m_loaded = true;
    takeKeys();
    m_lastContent = m_entries.isEmpty() ? content : QByteArray();
    if (m_text.bytes().constData() == content.constData()) // shared, as no byte had to be changed
        m_held = state;
    const bool isKnownAgain = state.size >= LargeFile && m_entries.isEmpty() && state.isOld();
    m_lastModified = isKnownAgain ? state.modified : QDateTime();
    return true;
}

/// False when the keys of all lines cannot be kept, and then the lines are those that were held before.
bool OrbSettings::addContent(const QByteArray &content)
{
    if (m_entries.isEmpty() && !m_text.bytes().isEmpty() && content == m_lastContent) {
        ++m_repeats;
        return true;
    }
    appendRepeats();
    IniText before = m_text;
    m_text.append(content);
    if (m_text.hasKeepableKeys())
        return true;
    m_text = std::move(before);
    return false;
}

/// True when the file is as it was read last, which then counts as read once more. A recorder may send many
/// megabytes without a key, and a description may look into them for each of its controls.
bool OrbSettings::addUnchanged()
{
    if (!m_lastModified.isValid())
        return false;
    const QFileInfo file(m_path);
    if (file.size() != m_lastContent.size() || file.lastModified() != m_lastModified)
        return false;
    ++m_repeats;
    return true;
}

void OrbSettings::takeKeys()
{
    m_sectioned = false;
    m_linesKnown = true;
    m_entriesOfLines.assign(m_text.marks().size(), 0);
    // The name of a section may be long, and stand before many equal lines.
    if (m_entries.isEmpty())
        m_entries.reserve(qsizetype(m_text.marks().size()),
                          qsizetype(std::min<qint64>(m_text.keyBytes(), m_text.bytes().size())));
    for (IniEntries::Entry &entry : m_entries.all())
        entry.met = false;

    // Its section part stays, name by name is put behind.
    std::string key = DefaultSection.toString().toStdString() + '/';
    size_t sectionSize = key.size();
    for (size_t line = 0; line < m_text.marks().size(); ++line) {
        const IniText::Mark &mark = m_text.marks()[line];
        const QByteArrayView name = m_text.name(mark);
        key.resize(mark.isSection ? 0 : sectionSize);
        key.append(name.data(), size_t(name.size()));
        if (mark.isSection) {
            m_sectioned = true;
            key += '/';
            sectionSize = key.size();
            continue;
        }
        m_entriesOfLines[line] = m_entries.numberOf(QByteArrayView(key));
        IniEntries::Entry &entry = m_entries[m_entriesOfLines[line]];
        m_linesKnown &= !entry.met;
        entry.setMark(quint32(line));
        entry.inFile = true;
        entry.edited = false;
        entry.met = true;
        entry.withdrawn = false;
    }
    m_unedited.removeIf([this](auto unedited) { return !m_entries[unedited.key()].edited; });
}

void OrbSettings::appendRepeats()
{
    for (; m_repeats > 0; --m_repeats) {
        if (m_text.bytes().size() + m_lastContent.size() > RepeatLimit) {
            qCWarning(settingsLog) << m_path << "holds no keys; repeats of its lines are left out";
            m_repeats = 0;
            return;
        }
        m_text.append(m_lastContent);
    }
}

IniText OrbSettings::merged()
{
    releaseWideRegisters();
    std::vector<const IniEntries::Entry *> newEntries;
    qsizetype keysInFile = 0;
    for (const IniEntries::Entry &entry : m_entries.all()) {
        if (entry.inFile)
            ++keysInFile;
        else if (!entry.withdrawn)
            newEntries.push_back(&entry);
    }
    std::optional<OwnLines> own;
    if (m_linesKnown && everyKeyOwnsOneLine(m_text, keysInFile, m_sectioned) &&
        std::none_of(newEntries.cbegin(), newEntries.cend(),
                     [this](auto entry) { return mayDisturb(*entry, m_text); }))
        own = rewriteOwnLines(m_text, m_entriesOfLines, m_entries, !newEntries.empty());
    m_linesKnown = own && newEntries.empty() && own->spoiling.empty();
    if (!m_linesKnown) {
        // Their marks are about to change.
        for (const IniEntries::Entry &entry : m_entries.all())
            entry.value(m_text);
    }
    if (own && newEntries.empty())
        return std::move(own->text);

    IniMerge merge(own ? own->text : m_text, m_sectioned);
    std::vector<const IniEntries::Entry *> toPut = std::move(newEntries);
    if (own) {
        toPut.insert(toPut.end(), own->spoiling.cbegin(), own->spoiling.cend());
        IniEntries::sort(toPut);
    } else {
        toPut = m_entries.sorted();
    }
    for (const IniEntries::Entry *entry : toPut) {
        if (!entry->withdrawn)
            merge.put(entry->section(), entry->name(), entry->value(m_text), entry->inFile);
    }
    return merge.result();
}

bool OrbSettings::hasEdits() const
{
    return !m_unedited.isEmpty();
}

bool OrbSettings::write()
{
    return mayWrite() && (m_forgotten || writeText(merged()));
}

bool OrbSettings::mayWrite()
{
    if (m_path.isEmpty())
        return false; // a name that was used without a file
    if (m_forgotten)
        return true;
    // An object that has not seen its file must not replace it.
    if (!m_loaded && m_entries.isEmpty())
        read();
    m_isWritten = !hasEdits();
    if (m_unreadable && QFile::exists(m_path))
        return false;
    appendRepeats();
    return true;
}

bool OrbSettings::writeText(IniText text)
{
    QString error;
    if (!writeWholeFile(m_path, text.bytes(), &error)) {
        qCWarning(settingsLog) << "cannot write" << m_path << error;
        m_isWritten = !hasEdits() && holds(m_path, m_text.bytes());
        return false;
    }
    m_text = std::move(text);
    m_held.reset();
    m_isWritten = true;
    return true;
}

bool OrbSettings::flush()
{
    if (!mayWrite())
        return true;
    if (!m_forgotten) {
        const bool isHeld = !m_entries.isEmpty() && !hasEdits() && m_held && m_held == fileState();
        IniText text = merged();
        if (isHeld && text.bytes().constData() == m_text.bytes().constData())
            return true;
        if (!writeText(std::move(text)))
            return true;
        if (m_linesKnown && !m_entries.isEmpty()) {
            takeAsWritten();
            return true;
        }
    }
    IniText written = std::exchange(m_text, {});
    if (!read())
        m_text = std::move(written);
    return true;
}

/// What a read would do after every key was written into its own line.
void OrbSettings::takeAsWritten()
{
    for (auto unedited = m_unedited.cbegin(); unedited != m_unedited.cend(); ++unedited) {
        IniEntries::Entry &entry = m_entries[unedited.key()];
        if (!entry.inFile)
            continue;
        entry.setValue(QString::fromUtf8(entry.value(m_text).toUtf8())); // half of a surrogate pair is lost
        entry.edited = false;
    }
    m_unedited.removeIf([this](auto unedited) { return !m_entries[unedited.key()].edited; });
    m_held = fileState();
}

QVariant OrbSettings::value(const QString &key, const QVariant &defaultValue)
{
    const QString *found = find(key);
    return found ? QVariant(*found) : defaultValue;
}

void OrbSettings::setValue(const QString &key, const QVariant &value)
{
    readIfEmpty();
    const size_t known = m_entries.all().size();
    const quint32 number = m_entries.numberOf(key);
    IniEntries::Entry &entry = m_entries[number];
    const bool isNew = number == known || entry.withdrawn;
    if (!entry.edited)
        m_unedited.insert(number, isNew ? std::nullopt : std::optional(entry.value(m_text)));
    entry.setValue(value.toString());
    entry.edited = true;
    entry.withdrawn = false;
}

void OrbSettings::putBack(const QString &key, const std::optional<QString> &value)
{
    setValue(key, value.value_or(QString()));
    const quint32 number = m_entries.numberOf(key);
    const auto unedited = m_unedited.constFind(number);
    if (*unedited != value)
        return;
    IniEntries::Entry &entry = m_entries[number];
    entry.edited = false;
    entry.withdrawn = !value;
    m_unedited.erase(unedited);
}

QStringList OrbSettings::matching(const QString &pattern)
{
    readIfEmpty();
    const TextPattern keyPattern = TextPattern::ofRecorder(pattern);
    QStringList result;
    for (const IniEntries::Entry *entry : m_entries.sorted()) {
        const QString key = QString::fromUtf8(entry->key());
        if (!entry->withdrawn && keyPattern.matchesWhole(key))
            result << key + u'/' + entry->value(m_text);
    }
    return result;
}
