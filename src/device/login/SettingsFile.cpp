#include "device/login/SettingsFile.h"

#include "device/login/FileLock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QStandardPaths>
#include <QThread>

// Must stand outside of every namespace.
static void initDefaultSettings()
{
    Q_INIT_RESOURCE(default_settings);
}

namespace paravue
{

namespace
{

Q_LOGGING_CATEGORY(settingsFileLog, "paravue.settingsfile")

constexpr QFile::Permissions OwnerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr qint64 MaxFileBytes = 4 * 1024 * 1024;
/// Another program holds the lock while it reads and writes the file once. The window waits for the lock.
constexpr int LockLimitMs = 100;
/// At the end of the program nobody waits for it, and it is the last chance.
constexpr int LastLockLimitMs = 3000;

/// Windows refuses to replace a file that another program has open, and to open one that is being replaced.
/// Both take a moment.
#ifdef Q_OS_WIN
constexpr int SharingLimitMs = 500;
#else
constexpr int SharingLimitMs = 0;
#endif

template <typename Work>
bool tryFor(int milliseconds, Work work)
{
    constexpr int PauseMs = 5;
    const QDeadlineTimer limit(milliseconds);
    while (!work()) {
        if (limit.hasExpired())
            return false;
        QThread::msleep(PauseMs);
    }
    return true;
}

/// What could not be written yet.
std::vector<SettingsFile::Edit> &unwrittenEdits()
{
    static std::vector<SettingsFile::Edit> edits;
    return edits;
}

QString &pendingNotice()
{
    static QString notice;
    return notice;
}

bool isOpenToOthers(const QFile &file)
{
    return file.permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther);
}

std::optional<QByteArray> contentOf(QFile &file)
{
    const QByteArray bytes = file.read(MaxFileBytes + 1);
    return bytes.size() > MaxFileBytes ? std::nullopt : std::make_optional(bytes);
}

/// Local application data on Windows. It cannot be moved there by a variable of the system, and programs that
/// are tried out must not touch it.
QString userData()
{
    const QString given = qEnvironmentVariable("PARAVUE_DATA_HOME");
    return given.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) : given;
}

} // namespace

SettingsFile::Places SettingsFile::Places::standard()
{
    initDefaultSettings();
    return {userData() + QStringLiteral("/Paravue"),
            QCoreApplication::instance()
                ? QCoreApplication::applicationDirPath() + QStringLiteral("/settings.ini")
                : QString(),
            QStringLiteral(":/paravue/settings.ini")};
}

std::shared_ptr<SettingsFile> SettingsFile::shared()
{
    static std::weak_ptr<SettingsFile> current;
    auto file = current.lock();
    if (!file) {
        current = file = std::shared_ptr<SettingsFile>(new SettingsFile, &SettingsFile::letGo);
        for (const Edit &edit : std::exchange(unwrittenEdits(), {}))
            file->change(edit);
    }
    return file;
}

/// Deletes the shared \a file, whose edits are written now or later.
void SettingsFile::letGo(SettingsFile *file)
{
    if (!file->sync()) {
        qCInfo(settingsFileLog).noquote()
            << file->path() << "is used by another program, it is written later";
        unwrittenEdits() = std::exchange(file->m_edits, {});
        qRemovePostRoutine(&SettingsFile::writeRest);
        qAddPostRoutine(&SettingsFile::writeRest);
    }
    delete file;
}

void SettingsFile::writeRest()
{
    SettingsFile file;
    for (const Edit &edit : std::exchange(unwrittenEdits(), {}))
        file.change(edit);
    file.syncWithin(LastLockLimitMs);
}

SettingsFile::SettingsFile(const Places &places) : m_places(places)
{
    makeFolder();
    // A file is replaced as a whole: it can be read without the lock.
    if (read())
        return;
    const FileLock lock(lockPath(), LockLimitMs);
    if (lock.state() != FileLock::State::HeldElsewhere)
        readLocked();
}

SettingsFile::~SettingsFile()
{
    if (!sync())
        qCWarning(settingsFileLog).noquote() << path() << "is used by another program, nothing is remembered";
}

QByteArray SettingsFile::value(const QString &key, const QByteArray &otherwise) const
{
    const auto found = m_settings.constFind(key);
    return found != m_settings.cend() ? *found
                                      : m_settings.value(QStringLiteral("default/") + key, otherwise);
}

void SettingsFile::setValue(const QString &key, const QByteArray &value)
{
    change([key, value](SettingsMap &settings) { settings[key] = value; });
}

void SettingsFile::change(const Edit &edit)
{
    edit(m_settings);
    m_edits.push_back(edit);
}

bool SettingsFile::sync()
{
    return syncWithin(LockLimitMs);
}

bool SettingsFile::syncWithin(int milliseconds)
{
    if (m_edits.empty())
        return true;
    const FileLock lock(lockPath(), milliseconds);
    if (lock.state() == FileLock::State::HeldElsewhere)
        return false;
    readLocked();
    const auto edits = std::exchange(m_edits, {});
    for (const Edit &edit : edits)
        edit(m_settings);
    if (!m_canReplace || !write(settingsText(m_settings)))
        qCWarning(settingsFileLog).noquote() << path() << "cannot be written, nothing is remembered";
    return true;
}

QString SettingsFile::takeNotice()
{
    return std::exchange(pendingNotice(), {});
}

QString SettingsFile::path() const
{
    return m_places.folder + QStringLiteral("/settings.ini");
}

QString SettingsFile::lockPath() const
{
    return path() + QStringLiteral(".lock");
}

void SettingsFile::makeFolder() const
{
    const QFileInfo folder(m_places.folder);
    if (folder.exists())
        return;
    QDir().mkpath(folder.path());
    QDir().mkdir(m_places.folder, OwnerOnly | QFile::ExeOwner);
}

/// Takes what the file holds. False when there is none, or a damaged one; the settings are then the default.
bool SettingsFile::read()
{
    QFile file(path());
    if (isOpenToOthers(file))
        file.setPermissions(OwnerOnly);
    m_canReplace = true;
    if (tryFor(file.exists() ? SharingLimitMs : 0, [&file] { return file.open(QIODevice::ReadOnly); })) {
        const auto text = contentOf(file);
        if (const auto settings = text ? parseSettings(*text) : std::nullopt) {
            m_settings = *settings;
            return true;
        }
    } else if (file.exists()) {
        qCWarning(settingsFileLog).noquote() << path() << "cannot be read:" << file.errorString();
        m_canReplace = false;
    }
    m_settings = parseSettings(defaultText()).value_or(SettingsMap());
    return !m_canReplace;
}

/// Reads the file, and begins a new one in place of one that is missing or damaged.
void SettingsFile::readLocked()
{
    if (read())
        return;
    m_canReplace = !QFile::exists(path()) || setAside();
    m_settings = begin(m_canReplace);
}

SettingsMap SettingsFile::begin(bool mayWrite)
{
    const QByteArray text = defaultText();
    if (!mayWrite || !write(text)) {
        qCWarning(settingsFileLog).noquote() << path() << "cannot be written, nothing will be remembered";
    }
    return parseSettings(text).value_or(SettingsMap());
}

QByteArray SettingsFile::defaultText() const
{
    for (const QString &path : {m_places.shippedFile, m_places.builtInFile}) {
        QFile file(path);
        const bool isOpen = !path.isEmpty() && file.open(QIODevice::ReadOnly);
        const auto text = isOpen ? contentOf(file) : std::nullopt;
        if (text && parseSettings(*text))
            return *text;
    }
    qFatal("File %s not found. Please reinstall the application.", qPrintable(m_places.shippedFile));
}

bool SettingsFile::setAside() const
{
    const QString stem =
        path() + QStringLiteral(".damaged-") + QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss");
    QString name = stem;
    for (int number = 2; QFile::exists(name); ++number)
        name = stem + u'-' + QString::number(number);
    if (!QFile::rename(path(), name)) {
        qCWarning(settingsFileLog).noquote() << path() << "is damaged and cannot be renamed";
        return false;
    }
    qCWarning(settingsFileLog).noquote() << path() << "was damaged; it is kept as" << name;
    pendingNotice() =
        QCoreApplication::translate("cDlg", "The remembered logins could not be read. Their damaged "
                                            "file was kept as %1.")
            .arg(QDir::toNativeSeparators(name));
    return true;
}

bool SettingsFile::write(const QByteArray &text) const
{
    return tryFor(SharingLimitMs, [this, &text] {
        QSaveFile file(path());
        // While the file is still empty, so that nobody else can read the password digests. commit() does not
        // heed that the last bytes cannot be written (Qt 6.4).
        return file.open(QIODevice::WriteOnly) && file.setPermissions(OwnerOnly) &&
               file.write(text) == text.size() && file.flush() && file.commit();
    });
}

} // namespace paravue
