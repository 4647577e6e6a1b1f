#include "RunJournal.h"

#include "ControlCommandLine.h"
#include "ControlText.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

namespace paravue
{

namespace
{

/// Its words may be passwords. Where the recorders are from does not count.
QString digestOf(const ControlCommandLine &line)
{
    const QStringList words = QStringList{line.command, line.file, line.wanted} + line.arguments;
    const QByteArray text = words.join(QChar(0)).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex());
}

QByteArray lineOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

Outcome RunJournal::open(const QString &path, const ControlCommandLine &line)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadWrite, QFile::ReadOwner | QFile::WriteOwner))
        return {ExitCode::LocalFile, ControlText::tr("cannot write %1: %2").arg(path, m_file.errorString())};
    const QByteArray content = m_file.readAll();
    const QString digest = digestOf(line);
    if (content.isEmpty()) {
        const QByteArray first = lineOf({{"format", "paravue-run"}, {"version", 1}, {"command", digest}});
        if (m_file.write(first) == first.size() && m_file.flush())
            return {};
        return {ExitCode::LocalFile, ControlText::tr("cannot write %1: %2").arg(path, m_file.errorString())};
    }
    // What follows the last line end was cut off.
    const qsizetype end = content.lastIndexOf('\n') + 1;
    const QList<QByteArray> lines = content.first(end).split('\n');
    const QJsonObject head = QJsonDocument::fromJson(lines.constFirst()).object();
    if (head[QStringLiteral("format")].toString() != u"paravue-run" ||
        head[QStringLiteral("version")].toInt() != 1 || head[QStringLiteral("command")].toString() != digest)
        return {ExitCode::BadData, ControlText::tr("%1 is of no run of this command").arg(path)};
    for (const QByteArray &done : lines.mid(1))
        m_done.insert(QJsonDocument::fromJson(done).object()[QStringLiteral("done")].toString());
    m_file.resize(end);
    m_file.seek(end);
    return {};
}

bool RunJournal::note(const QString &recorder)
{
    if (!m_file.isOpen())
        return true;
    const QByteArray text = lineOf({{"done", recorder}});
    return m_file.write(text) == text.size() && m_file.flush();
}

} // namespace paravue
