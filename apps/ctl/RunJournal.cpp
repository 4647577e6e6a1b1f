#include "RunJournal.h"

#include "ControlCommandLine.h"
#include "ControlText.h"
#include "snapshots/RecorderLock.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>

namespace paravue
{

namespace
{

constexpr int Version = 2;

/// Words may be passwords.
QString digestOf(const QStringList &words)
{
    const QByteArray text = words.join(QChar(0)).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
}

/// Where the recorders are from does not count.
QString digestOf(const ControlCommandLine &line)
{
    return digestOf(QStringList{line.command, line.file, line.wanted} + line.arguments);
}

QByteArray lineOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

/// The files whose contents \a line is about: of values, a snapshot, a package.
QStringList filesOf(const ControlCommandLine &line)
{
    QStringList files{line.file, line.wanted};
    if (line.command == u"restore")
        files << line.arguments.value(0);
    else if (line.command == u"run")
        files << line.arguments.value(1);
    return files;
}

} // namespace

RunJournal::RunJournal() = default;

RunJournal::~RunJournal() = default;

Outcome RunJournal::open(const QString &path, const ControlCommandLine &line)
{
    if (const Outcome locked = lock(path); !locked.isDone())
        return locked;
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadWrite, QFile::ReadOwner | QFile::WriteOwner))
        return cannotWrite();
    const QByteArray content = m_file.readAll();
    const QString digest = digestOf(line);
    if (content.isEmpty()) {
        const QByteArray first =
            lineOf({{"format", "paravue-run"}, {"version", Version}, {"command", digest}});
        return m_file.write(first) == first.size() && m_file.flush() ? Outcome() : cannotWrite();
    }
    // What follows the last line end was cut off.
    const qsizetype end = content.lastIndexOf('\n') + 1;
    const QList<QByteArray> lines = content.first(end).split('\n');
    const QJsonObject head = QJsonDocument::fromJson(lines.constFirst()).object();
    if (head[QStringLiteral("format")].toString() != u"paravue-run" ||
        head[QStringLiteral("version")].toInt() != Version ||
        head[QStringLiteral("command")].toString() != digest)
        return {ExitCode::BadData, ControlText::tr("%1 is of no run of this command").arg(path)};
    for (const QByteArray &text : lines.mid(1)) {
        const QJsonObject done = QJsonDocument::fromJson(text).object();
        m_done.insert(done[QStringLiteral("done")].toString(), done[QStringLiteral("work")].toString());
    }
    m_file.resize(end);
    m_file.seek(end);
    return {};
}

/// A lock of a run that was killed does not count.
Outcome RunJournal::lock(const QString &path)
{
    const QString lockPath = path + QStringLiteral(".lock");
    removeUnnamedLock(lockPath);
    m_lock = std::make_unique<QLockFile>(lockPath);
    m_lock->setStaleLockTime(0); // only the end of its run makes a lock stale, however long that has run
    if (m_lock->tryLock())
        return {};
    return {ExitCode::LocalFile,
            m_lock->error() == QLockFile::LockFailedError
                ? ControlText::tr("another run uses %1; its lock is %2").arg(path, lockPath)
                : ControlText::tr("the file %1 cannot be made").arg(lockPath)};
}

Outcome RunJournal::cannotWrite() const
{
    return {ExitCode::LocalFile,
            ControlText::tr("cannot write %1: %2").arg(m_file.fileName(), m_file.errorString())};
}

QString RunJournal::workOf(const ControlCommandLine &line)
{
    if (!m_file.isOpen())
        return {};
    QStringList words{digestOf(line), line.host(), line.output,
                      line.secrets ? QStringLiteral("secrets") : QString()};
    for (const QString &path : filesOf(line))
        words << digestOfFile(path);
    for (auto value = line.values.cbegin(); value != line.values.cend(); ++value)
        words << value.key() << *value;
    return digestOf(words);
}

/// Empty when there is no such file. What can be read only once is left to the command.
QString RunJournal::digestOfFile(const QString &path)
{
    const auto known = m_contents.constFind(path);
    if (known != m_contents.constEnd())
        return *known;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QFile file(path);
    const bool isRead = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && hash.addData(&file);
    return *m_contents.insert(path, isRead ? QString::fromLatin1(hash.result().toHex()) : QString());
}

bool RunJournal::contains(const QString &recorder, const QString &work) const
{
    const auto done = m_done.constFind(recorder);
    return done != m_done.constEnd() && *done == work;
}

Outcome RunJournal::note(const QString &recorder, const QString &work)
{
    if (!m_file.isOpen())
        return {};
    const QByteArray text = lineOf({{"done", recorder}, {"work", work}});
    return m_file.write(text) == text.size() && m_file.flush() ? Outcome() : cannotWrite();
}

} // namespace paravue
