#include "store/OrbSetup.h"

#include "store/ConfigAddress.h"
#include "store/ExchangeQueue.h"
#include "store/IniMapCodec.h"
#include "store/OrbSettings.h"
#include "store/StoreObserver.h"
#include "store/TextPattern.h"

#include <utility>

using paravue::ConfigAddress;
using paravue::ExchangeQueue;
using paravue::LinkStatus;
using paravue::PatternBudget;
using paravue::StoreObserver;

OrbSetup::OrbSetup() : OrbSetup(QString()) {}

OrbSetup::OrbSetup(const QString &address) : m_address(address) {}

OrbSetup::~OrbSetup() = default;

void OrbSetup::load()
{
    Q_EMIT progress(100);
    Q_EMIT loadDone();
}

void OrbSetup::store()
{
    Q_EMIT progress(100);
    Q_EMIT storeDone();
}

void OrbSetup::function(const QString &name, const QString &)
{
    if (name == u"save_settings")
        store();
    else
        Q_EMIT progress(100);
}

void OrbSetup::setAddress(const QString &address)
{
    m_address = address;
}

QString OrbSetup::address() const
{
    return m_address;
}

void OrbSetup::setFilePath(const QString &name, const QString &path)
{
    m_filePaths[name] = path;
    // A name that was used before it had a path starts over with the file.
    OrbSettings *settings = m_settings.find(name);
    if (settings && settings->path().isEmpty())
        settings->setPath(path);
    for (StoreObserver *observer : m_observers)
        observer->fileReplaced(name);
}

QString OrbSetup::filePath(const QString &name)
{
    const QString path = m_filePaths[name];
    if (path.isEmpty()) {
        Q_EMIT pseudothrow(tr("File \"%1\" does not exist").arg(name));
        return QLatin1String("");
    }
    return path;
}

bool OrbSetup::fileExists(const QString &name)
{
    return !m_filePaths[name].isEmpty();
}

QStringList OrbSetup::fetchedFiles() const
{
    const QLatin1StringView suffix(".original");
    QStringList names;
    for (auto file = m_filePaths.cbegin(); file != m_filePaths.cend(); ++file) {
        if (!file.key().endsWith(suffix) || file->isEmpty())
            continue;
        const QString name = file.key().chopped(suffix.size());
        if (name != QLatin1StringView("tmp") && !m_filePaths.value(name).isEmpty())
            names << name;
    }
    return names;
}

QStringList OrbSetup::usedFiles() const
{
    return m_settings.names();
}

QString OrbSetup::path(const QString &address)
{
    return ConfigAddress(address).path().toString();
}

QString OrbSetup::defValue(const QString &address)
{
    const ConfigAddress parts(address);
    return parts.hasRest() ? parts.rest().toString() : QString();
}

QString OrbSetup::value(const QString &address)
{
    const ConfigAddress parts(address);
    if (!parts.hasKey()) {
        Q_EMIT pseudothrow(tr("Wrong key \"%1\"").arg(address));
        return QLatin1String("");
    }
    const QString *found = settingsOf(parts.file()).find(parts.entry());
    return found ? *found : parts.rest().toString();
}

void OrbSetup::setValue(const QString &address)
{
    const ConfigAddress parts(address);
    if (!parts.hasRest()) {
        Q_EMIT pseudothrow(tr("Wrong value \"%1\"").arg(address));
        return;
    }
    const QString value = parts.rest().toString();
    settingsOf(parts.file()).setValue(parts.entry().toString(), value);
    tellValueSet(parts.path(), value);
}

std::optional<QString> OrbSetup::storedValue(const QString &path)
{
    const ConfigAddress parts(path);
    if (!parts.hasKey()) {
        Q_EMIT pseudothrow(tr("Wrong key \"%1\"").arg(path));
        return {};
    }
    const QString *found = settingsOf(parts.file()).find(parts.entry());
    return found ? std::optional(*found) : std::nullopt;
}

void OrbSetup::putBack(const QString &path, const std::optional<QString> &value)
{
    const ConfigAddress parts(path);
    OrbSettings &settings = settingsOf(parts.file());
    settings.putBack(parts.entry().toString(), value);
    const QString *present = settings.find(parts.entry()); // a key of the file is emptied
    tellValueSet(parts.path(), present ? std::optional(*present) : std::nullopt);
}

void OrbSetup::addObserver(StoreObserver &observer)
{
    m_observers.push_back(&observer);
}

void OrbSetup::removeObserver(StoreObserver &observer)
{
    std::erase(m_observers, &observer);
}

void OrbSetup::tellValueSet(QStringView path, const std::optional<QString> &value) const
{
    if (m_observers.empty())
        return;
    const QString text = path.toString();
    for (StoreObserver *observer : m_observers)
        observer->valueSet(text, value);
}

QStringList OrbSetup::regexp_values(const QString &address)
{
    const ConfigAddress parts(address);
    if (!parts.hasKey()) {
        Q_EMIT pseudothrow(tr("Wrong regexp_key \"%1\"").arg(address));
        return {};
    }
    const QString file = parts.file().toString();
    const PatternBudget budget;
    const bool wasExhausted = budget.isExhausted();
    QStringList values = settings(file).matching(parts.entry().toString());
    if (budget.isExhausted()) {
        if (!wasExhausted)
            Q_EMIT pseudothrow(tr("The patterns of \"%1\" take too long").arg(address));
        return {};
    }
    for (QString &value : values)
        value.prepend(file + u'/');
    return values;
}

void OrbSetup::flush()
{
    m_settings.flush();
}

QString OrbSetup::activity() const
{
    return m_activity;
}

void OrbSetup::abandonSave()
{
    if (m_linkStatus.state == LinkStatus::State::Running)
        return;
    m_saveStatus.missing.clear();
    m_saveStatus.unanswered.clear();
}

void OrbSetup::sendMissing()
{
    if (m_sendMissing)
        m_sendMissing();
}

std::unique_ptr<OrbSetup> OrbSetup::reader(const std::optional<QStringList> &only) const
{
    return m_makeReader ? m_makeReader(only) : nullptr;
}

bool OrbSetup::takeAsFetched(const QString &name, const QByteArray &content)
{
    return m_takeFile && m_takeFile(name, content);
}

void OrbSetup::setReading(const ReaderFactory &makeReader, const FileTaker &take)
{
    m_makeReader = makeReader;
    m_takeFile = take;
}

OrbSetup::FunctionUse OrbSetup::functionUse(const QString &name, const QString &arg) const
{
    return m_functionUse ? m_functionUse(name, arg) : FunctionUse();
}

void OrbSetup::resetLink()
{
    if (!m_linkReset)
        return;
    m_linkReset();
    giveUpWaiting();
}

void OrbSetup::giveUpWaiting()
{
    if (ExchangeQueue *queue = ExchangeQueue::find(*this))
        queue->giveUpAll();
}

void OrbSetup::setLinkStatus(const LinkStatus &status)
{
    const bool wasRunning = m_linkStatus.state == LinkStatus::State::Running;
    m_linkStatus = status;
    if (!wasRunning || status.state == LinkStatus::State::Running)
        return;
    // Not by a signal: an exchange may end without one.
    if (ExchangeQueue *queue = ExchangeQueue::find(*this))
        queue->linkHasEnded();
}

void OrbSetup::setActivity(const QString &text)
{
    m_activity = text;
}

void OrbSetup::setExplanation(const QString &message, const QString &words)
{
    // A message may quote the recorder, which could choose another text each time.
    constexpr qsizetype MaxExplanations = 100;
    if (m_explanations.size() >= MaxExplanations)
        m_explanations.clear();
    if (words.isEmpty())
        m_explanations.remove(message);
    else
        m_explanations.insert(message, words);
}

OrbSettings &OrbSetup::settings(const QString &name)
{
    return settingsOf(name);
}

OrbSettings &OrbSetup::settingsOf(QStringView name)
{
    if (OrbSettings *used = m_settings.find(name))
        return *used;
    const QString file = name.toString();
    const QString path = filePath(file);
    // Whoever was told that the file does not exist may have used it already.
    OrbSettings *used = m_settings.find(file);
    return used ? *used : m_settings.add(file, std::make_unique<OrbSettings>(path));
}

OrbSetup::UsedFiles::UsedFiles() = default;
OrbSetup::UsedFiles::~UsedFiles() = default;

OrbSettings *OrbSetup::UsedFiles::find(QStringView name)
{
    if (m_last && m_last->first == name)
        return m_last->second.get();
    const auto found = m_files.find(name);
    if (found == m_files.end())
        return nullptr;
    m_last = &*found;
    return found->second.get();
}

OrbSettings &OrbSetup::UsedFiles::add(const QString &name, std::unique_ptr<OrbSettings> settings)
{
    return *m_files.try_emplace(name, std::move(settings)).first->second;
}

QStringList OrbSetup::UsedFiles::names() const
{
    QStringList names;
    for (const auto &[name, settings] : m_files)
        names << name;
    return names;
}

void OrbSetup::UsedFiles::flush()
{
    for (const auto &[name, settings] : m_files)
        settings->flush();
}

void OrbSetup::UsedFiles::forget(const std::function<bool(const QString &path)> &isTemporary)
{
    for (const auto &[name, settings] : m_files) {
        if (isTemporary(settings->path()))
            settings->forget();
    }
}

void OrbSetup::UsedFiles::clear()
{
    m_last = nullptr;
    m_files.clear();
}

bool OrbSetup::myReadFunc(QIODevice &device, QMap<QString, QVariant> &map)
{
    return paravue::readIniMap(device, map);
}

bool OrbSetup::myWriteFunc(QIODevice &device, const QMap<QString, QVariant> &map)
{
    return paravue::writeIniMap(device, map);
}
