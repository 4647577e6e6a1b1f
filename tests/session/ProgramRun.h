#pragma once

#include "recorder/RecorderServer.h"
#include "support/ProgramText.h"
#include "support/TemporaryPlace.h"

#include <QDir>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

namespace paravue::test
{

/// What a run of the program has come to.
struct Run {
    int exitCode = -1;
    QString out;
    QString err;
};

/// Ends without a result after a minute.
inline Run runProgram(const QStringList &arguments, const QString &platform = "offscreen",
                      const QString &temporaryFolder = QDir::tempPath(),
                      const QString &input = QProcess::nullDevice())
{
    QProcess process;
    process.setStandardInputFile(input);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", platform);
    setTemporaryPlace(environment, temporaryFolder);
    process.setProcessEnvironment(environment);
    QEventLoop loop; // keeps a recorder of this process answering
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    process.start(SETUP_PROGRAM, arguments);
    QTimer::singleShot(60'000, &loop, &QEventLoop::quit);
    loop.exec();
    if (process.state() != QProcess::NotRunning)
        return {};
    return {process.exitCode(), programText(process.readAllStandardOutput()),
            programText(process.readAllStandardError())};
}

inline QString addressOf(const recorder::RecorderServer &recorder, const QString &account)
{
    return account + "@127.0.0.1:" + QString::number(recorder.port());
}

/// Base of tests with a recorder of their own, whose files are in the folder "data".
class ProgramTest : public QObject
{
protected:
    void startRecorder()
    {
        m_received.clear();
        m_folder = std::make_unique<QTemporaryDir>();
        m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"));
        QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
                [this](const QString &name) { m_received += name; });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_received; ///< the files that the recorder has received
};

} // namespace paravue::test
