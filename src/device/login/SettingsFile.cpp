#include "device/login/SettingsFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLockFile>
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
/// Another program holds the lock while it reads and writes the file once.
constexpr int LockLimitMs = 3000;
constexpr int LockPauseMs = 5;

QString &pendingNotice()
{
    static QString notice;
    return notice;
}

bool isOpenToOthers(const QFile &file)
{
    return file.permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther);
}

/// QLockFile's own waiting sleeps longer after each attempt, so a file in heavy use might never be locked.
bool take(QLockFile &lock)
{
    const QDeadlineTimer limit(LockLimitMs);
    while (!lock.tryLock(0)) {
        if (lock.error() != QLockFile::LockFailedError || limit.hasExpired())
            return false;
        QThread::msleep(LockPauseMs);
    }
    return true;
}

std::optional<QByteArray> contentOf(QFile &file)
{
    const QByteArray bytes = file.read(MaxFileBytes + 1);
    return bytes.size() > MaxFileBytes ? std::nullopt : std::make_optional(bytes);
}

} // namespace

SettingsFile::Places SettingsFile::Places::standard()
{
    initDefaultSettings();
    // Local application data on Windows.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return {data + QStringLiteral("/Paravue"),
            QCoreApplication::instance()
                ? QCoreApplication::applicationDirPath() + QStringLiteral("/settings.ini")
                : QString(),
            QStringLiteral(":/paravue/settings.ini")};
}

std::shared_ptr<SettingsFile> SettingsFile::shared()
{
    static std::weak_ptr<SettingsFile> current;
    auto file = current.lock();
    if (!file)
        current = file = std::make_shared<SettingsFile>();
    return file;
}

SettingsFile::SettingsFile(const Places &places) : m_places(places)
{
    makeFolder();
    QLockFile lock(path() + QStringLiteral(".lock"));
    read(take(lock));
}

SettingsFile::~SettingsFile()
{
    sync();
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

void SettingsFile::sync()
{
    if (m_edits.empty())
        return;
    QLockFile lock(path() + QStringLiteral(".lock"));
    const bool isLocked = take(lock);
    if (isLocked)
        read(true);
    const auto edits = std::exchange(m_edits, {});
    for (const Edit &edit : edits)
        edit(m_settings);
    if (!isLocked || !m_canReplace || !write(settingsText(m_settings)))
        qCWarning(settingsFileLog).noquote() << path() << "cannot be written, nothing is remembered";
}

QString SettingsFile::takeNotice()
{
    return std::exchange(pendingNotice(), {});
}

QString SettingsFile::path() const
{
    return m_places.folder + QStringLiteral("/settings.ini");
}

void SettingsFile::makeFolder() const
{
    const QFileInfo folder(m_places.folder);
    if (folder.exists())
        return;
    QDir().mkpath(folder.path());
    QDir().mkdir(m_places.folder, OwnerOnly | QFile::ExeOwner);
}

/// Without the lock another program may be at work on the file, which is then only read.
void SettingsFile::read(bool isLocked)
{
    QFile file(path());
    m_canReplace = true;
    if (!file.exists()) {
        m_settings = begin(isLocked);
        return;
    }
    if (isOpenToOthers(file))
        file.setPermissions(OwnerOnly);
    if (file.open(QIODevice::ReadOnly)) {
        const auto text = contentOf(file);
        if (const auto settings = text ? parseSettings(*text) : std::nullopt) {
            m_settings = *settings;
            return;
        }
        file.close();
        m_canReplace = isLocked && setAside();
    } else {
        qCWarning(settingsFileLog).noquote() << path() << "cannot be read:" << file.errorString();
        m_canReplace = false;
    }
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
    QSaveFile file(path());
    // While the file is still empty, so that nobody else can read the password digests.
    return file.open(QIODevice::WriteOnly) && file.setPermissions(OwnerOnly) &&
           file.write(text) == text.size() && file.commit();
}

} // namespace paravue
