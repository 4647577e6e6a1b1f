#pragma once

#include "ControlProgram.h"
#include "recorder/RecorderServer.h"
#include "support/OwnUserFolders.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace paravue::test
{

/// The paths of the rows of \a list in what was printed for programs.
inline QStringList pathsIn(const QString &json, const QString &list)
{
    QStringList paths;
    for (const auto &row : QJsonDocument::fromJson(json.toUtf8()).object()[list].toArray())
        paths += row.toObject()["path"].toString();
    return paths;
}

/// Base of tests that run the program with one recorder.
class ControlTest : public QObject
{
protected:
    using Run = ControlRun;

    /// A new one.
    void startRecorder()
    {
        m_received.clear();
        m_folder = std::make_unique<QTemporaryDir>();
        m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"));
        QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
                [this](const QString &name) { m_received += name; });
    }
    Run run(const QStringList &arguments, const QString &password = {})
    {
        return runControlProgram(arguments, password, &m_running);
    }
    QString host() const { return "127.0.0.1:" + QString::number(m_recorder->port()); }
    QString address() const { return "admin:admin@" + host(); }
    QByteArray fileOfRecorder(const QString &name) const
    {
        QFile file(m_recorder->filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The path of a new file that only its owner may read.
    QString ownFile(const QString &name, const QByteArray &content) const
    {
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return {};
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        return file.fileName();
    }

    OwnUserFolders m_user;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_received; ///< the files that the recorder has got
    QProcess *m_running = nullptr;
};

} // namespace paravue::test
