#include "device/SessionFolder.h"

#include "store/SystemPath.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSysInfo>

#include <utility>

#ifdef Q_OS_WIN
#include <windows.h>

#include <aclapi.h>
#include <sddl.h>
#else
#include <cerrno>
#include <cstdlib>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace paravue
{

namespace
{

constexpr int CleaningLimitMs = 250;
/// Another session may take a new folder for an abandoned one until it is locked.
constexpr int Attempts = 10;
const QString UnlockedPrefix = QStringLiteral("paravue-unlocked-");

/// What the names of locked folders begin with. It holds the computer, as the locks of a shared network
/// folder may be known on one computer only.
QString lockedPrefix()
{
    QByteArray computer = QSysInfo::machineUniqueId();
    if (computer.isEmpty())
        computer = QSysInfo::machineHostName().toUtf8();
    const QByteArray digest = QCryptographicHash::hash(computer, QCryptographicHash::Sha256).toHex();
    return QStringLiteral("paravue-session-%1-").arg(QLatin1StringView(digest.first(8)));
}

} // namespace

#ifndef Q_OS_WIN

namespace
{

/// A file descriptor that is closed with this object, which also ends the lock that it holds.
class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor &operator=(Descriptor &&) = delete;
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    int m_number;
};

enum class Lock { Taken, HeldElsewhere, Unavailable };

Descriptor openFolder(int parent, const char *name)
{
    return Descriptor(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// The lock belongs to the open folder and not to the process: a second session of the same process is held
/// off as well.
Lock takeLock(const Descriptor &folder)
{
    if (::flock(folder.number(), LOCK_EX | LOCK_NB) == 0)
        return Lock::Taken;
    return errno == EWOULDBLOCK ? Lock::HeldElsewhere : Lock::Unavailable;
}

/// False where a lock is granted but holds nobody off.
bool isEffective(const Descriptor &locked)
{
    const Descriptor again = openFolder(locked.number(), ".");
    return again.isOpen() && takeLock(again) == Lock::HeldElsewhere;
}

bool isOwnFolder(const Descriptor &folder)
{
    struct stat found {
    };
    return ::fstat(folder.number(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() &&
           (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// False when \a folder was removed, or replaced by another one, after it had been opened.
bool stillHasName(const Descriptor &folder, const QByteArray &path)
{
    struct stat opened {
    };
    struct stat named {
    };
    return ::fstat(folder.number(), &opened) == 0 && ::lstat(path.constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// Calls \a visit with each name in \a folder but "." and "..", until it returns false.
template <typename Visit>
void visitNames(const Descriptor &folder, Visit visit)
{
    const int own = ::openat(folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *entries = own >= 0 ? ::fdopendir(own) : nullptr; // closes the descriptor with itself
    if (!entries)
        return;
    while (const dirent *entry = ::readdir(entries)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != ".." && !visit(name))
            break;
    }
    ::closedir(entries);
}

/// Removes the files of \a folder and then the folder. The files are named relative to the open folder, so
/// one that took its place meanwhile loses nothing.
void removeFolder(const QByteArray &path, const Descriptor &folder, const QDeadlineTimer &limit)
{
    QList<QByteArray> files;
    visitNames(folder, [&](const QByteArray &file) {
        files << file;
        return true;
    });
    for (const QByteArray &file : std::as_const(files)) {
        if (limit.hasExpired())
            return;
        ::unlinkat(folder.number(), file.constData(), 0);
    }
    ::rmdir(path.constData());
}

} // namespace

struct SessionFolder::System {
    Descriptor folder;
};

std::unique_ptr<SessionFolder> SessionFolder::make(const QString &parent)
{
    QString prefix = lockedPrefix();
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        QByteArray path =
            QFile::encodeName(QDir(parent).absoluteFilePath(prefix + QLatin1StringView("XXXXXX")));
        if (!::mkdtemp(path.data()))
            return nullptr;
        Descriptor folder = openFolder(AT_FDCWD, path.constData());
        const Lock lock = folder.isOpen() ? takeLock(folder) : Lock::HeldElsewhere;
        const bool isUsable = prefix == UnlockedPrefix ? folder.isOpen() : lock == Lock::Taken;
        if (isUsable && stillHasName(folder, path)) {
            auto system = std::make_unique<System>(System{std::move(folder)});
            return std::unique_ptr<SessionFolder>(
                new SessionFolder(QFile::decodeName(path), std::move(system)));
        }
        ::rmdir(path.constData());
        if (lock == Lock::Unavailable)
            prefix = UnlockedPrefix;
    }
    return nullptr;
}

void SessionFolder::removeAbandoned(const QString &parent)
{
    const QDeadlineTimer limit(CleaningLimitMs);
    const QByteArray prefix = QFile::encodeName(lockedPrefix());
    const Descriptor folders(
        ::open(QFile::encodeName(parent).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folders.isOpen())
        return;
    visitNames(folders, [&](const QByteArray &name) {
        if (limit.hasExpired())
            return false;
        if (!name.startsWith(prefix))
            return true;
        const Descriptor folder = openFolder(folders.number(), name.constData());
        if (folder.isOpen() && isOwnFolder(folder) && takeLock(folder) == Lock::Taken && isEffective(folder))
            removeFolder(QFile::encodeName(parent) + '/' + name, folder, limit);
        return true;
    });
}

SessionFolder::~SessionFolder()
{
    removeFolder(QFile::encodeName(m_path), m_system->folder, QDeadlineTimer(QDeadlineTimer::Forever));
}

#else

namespace
{

const QString LockName = QStringLiteral("lock");

/// A handle that is closed with this object.
class Handle
{
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    Handle(Handle &&other) noexcept : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
    Handle &operator=(Handle &&) = delete;
    ~Handle()
    {
        if (isOpen())
            CloseHandle(m_handle);
    }

    bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE handle() const { return m_handle; }

private:
    HANDLE m_handle;
};

/// Memory that a function of Windows has allocated.
struct LocalFreeDeleter {
    void operator()(void *memory) const { LocalFree(memory); }
};

/// The TOKEN_USER of this process; empty when it cannot be read.
QByteArray tokenUser()
{
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
        return {};
    const Handle closing(token);
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    QByteArray user(qsizetype(size), 0);
    return size > 0 && GetTokenInformation(token, TokenUser, user.data(), size, &size) ? user : QByteArray();
}

PSID sidOf(const QByteArray &user)
{
    return reinterpret_cast<const TOKEN_USER *>(user.constData())->User.Sid;
}

/// Makes a folder that belongs to the user of this process, who alone has access to it and to what it holds.
bool makeOwnFolder(const QString &path)
{
    const QByteArray user = tokenUser();
    LPWSTR sidText = nullptr;
    if (user.isEmpty() || !ConvertSidToStringSidW(sidOf(user), &sidText))
        return false;
    const std::unique_ptr<void, LocalFreeDeleter> freeingText(sidText);
    const std::wstring sid(sidText);
    const std::wstring rights = L"O:" + sid + L"D:P(A;OICI;FA;;;" + sid + L")";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &descriptor,
                                                              nullptr))
        return false;
    const std::unique_ptr<void, LocalFreeDeleter> freeingDescriptor(descriptor);
    SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), descriptor, FALSE};
    return CreateDirectoryW(systemPath(path).c_str(), &attributes);
}

/// Opened so that nobody can rename or replace it meanwhile, and without following a link.
Handle openFolder(const QString &path)
{
    return Handle(CreateFileW(systemPath(path).c_str(), READ_CONTROL | FILE_READ_ATTRIBUTES,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

bool isOwnFolder(const Handle &folder)
{
    BY_HANDLE_FILE_INFORMATION found{};
    if (!GetFileInformationByHandle(folder.handle(), &found) ||
        !(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ||
        (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
        return false;
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(folder.handle(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr,
                        nullptr, &descriptor) != ERROR_SUCCESS)
        return false;
    const std::unique_ptr<void, LocalFreeDeleter> freeing(descriptor);
    const QByteArray user = tokenUser();
    return !user.isEmpty() && EqualSid(owner, sidOf(user));
}

/// The file is shared with nobody, so it cannot be opened a second time while its session lives.
Handle openLock(const QString &folder, DWORD disposition)
{
    return Handle(CreateFileW(systemPath(folder + u'/' + LockName).c_str(),
                              GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, disposition,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

/// Calls \a visit with the name and the attributes of each entry of \a folder that matches \a pattern, until
/// it returns false.
template <typename Visit>
void visitNames(const QString &folder, const QString &pattern, Visit visit)
{
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW(systemPath(folder + u'/' + pattern).c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return;
    while (visit(QString::fromWCharArray(entry.cFileName), entry.dwFileAttributes) &&
           FindNextFileW(search, &entry)) {
    }
    FindClose(search);
}

/// Removes the files of the folder whose \a lock is open; the lock goes last, and with it the folder.
void removeFolder(const QString &path, Handle lock, const QDeadlineTimer &limit)
{
    bool isEmpty = true;
    visitNames(path, QStringLiteral("*"), [&](const QString &name, DWORD attributes) {
        if (name == LockName || name == QLatin1StringView(".") || name == QLatin1StringView(".."))
            return true;
        isEmpty &= !limit.hasExpired() && !(attributes & FILE_ATTRIBUTE_DIRECTORY) &&
                   DeleteFileW(systemPath(path + u'/' + name).c_str());
        return !limit.hasExpired();
    });
    if (!isEmpty)
        return;
    FILE_DISPOSITION_INFO removal{TRUE};
    SetFileInformationByHandle(lock.handle(), FileDispositionInfo, &removal, sizeof removal);
    {
        const Handle closing = std::move(lock);
    }
    RemoveDirectoryW(systemPath(path).c_str());
}

} // namespace

struct SessionFolder::System {
    Handle lock;
};

std::unique_ptr<SessionFolder> SessionFolder::make(const QString &parent)
{
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        const QString random = QString::number(QRandomGenerator::global()->generate64(), 36);
        const QString path = QDir(parent).absoluteFilePath(lockedPrefix() + random);
        if (!makeOwnFolder(path))
            continue;
        // A folder without this file is never taken for an abandoned one.
        Handle lock = openLock(path, CREATE_NEW);
        if (lock.isOpen()) {
            auto system = std::make_unique<System>(System{std::move(lock)});
            return std::unique_ptr<SessionFolder>(new SessionFolder(path, std::move(system)));
        }
        RemoveDirectoryW(systemPath(path).c_str());
    }
    return nullptr;
}

void SessionFolder::removeAbandoned(const QString &parent)
{
    const QDeadlineTimer limit(CleaningLimitMs);
    visitNames(parent, lockedPrefix() + u'*', [&](const QString &name, DWORD) {
        const QString path = QDir(parent).absoluteFilePath(name);
        Handle folder = openFolder(path);
        if (folder.isOpen() && isOwnFolder(folder)) {
            Handle lock = openLock(path, OPEN_EXISTING);
            {
                // The folder cannot be removed while it is open.
                const Handle closing = std::move(folder);
            }
            if (lock.isOpen())
                removeFolder(path, std::move(lock), limit);
        }
        return !limit.hasExpired();
    });
}

SessionFolder::~SessionFolder()
{
    removeFolder(m_path, std::move(m_system->lock), QDeadlineTimer(QDeadlineTimer::Forever));
}

#endif

SessionFolder::SessionFolder(const QString &path, std::unique_ptr<System> system)
    : m_path(path), m_system(std::move(system))
{
}

} // namespace paravue
