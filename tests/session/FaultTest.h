#pragma once

#include "SetupRun.h"
#include "recorder/RecorderServer.h"

#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace paravue::test
{

// Of few files, so that each of the many sessions is short.
inline const char Description[] = R"(<pvsetup version="1.0">
  <di>
    <difile name="interface" get_command="GET SETUP"/>
    <difile name="streams" get_command="GET CONFIG" put_command="PUT CONFIG"/>
    <difile name="net" get_command="GET NET CONFIG" put_command="PUT NET CONFIG" type="sectionless"/>
    <difile name="state" get_command="GET STATE CONFIG" put_command="PUT STATE CONFIG" type="state"/>
  </di>
  <window><self/></window>
  <tabwidget><tab><name>Page</name>
    <item type="gridlayout">
      <item type="setup" row="0" column="0"><device/></item>
      <item type="edit" row="1" column="0"><key>net/untitled/HOSTNAME</key></item>
      <item type="pushbutton" row="2" column="0"><text>Save</text>
        <action type="call" slot="callSetup" param="save_settings">device</action></item>
      <item type="pushbutton" row="3" column="0"><text>Report</text>
        <action type="call" slot="callSetup" param="get_report">device</action></item>
    </item>
  </tab></tabwidget>
</pvsetup>)";

inline const QString HostName = "net/untitled/HOSTNAME";
inline const QString Closed = "The recorder has closed the connection";

/// Both sides handle what is under way.
inline void letEventsArrive()
{
    for (int pass = 0; pass < 20; ++pass)
        QCoreApplication::processEvents();
}

/// Base of tests with a recorder that answers wrongly, late or not at all.
class FaultTest : public QObject
{
protected:
    /// A new one, without faults.
    void startRecorder();
    QString address() const;
    /// What the recorder has of a file from now on.
    void setFile(const QString &name, const QByteArray &content);
    /// In the form of the option --fault of the simulator.
    void setFaults(const QStringList &texts);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QMap<QString, QByteArray> m_files; ///< that the recorder has received
    QStringList m_requests;            ///< the lines that it has received
    int m_faultCount = 0;              ///< answers that were wrong
};

inline void FaultTest::startRecorder()
{
    m_recorder.reset();
    m_files.clear();
    m_faultCount = 0;
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    setFile("interface", Description);
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
            [this](const QString &name, const QByteArray &body) { m_files.insert(name, body); });
    connect(m_recorder.get(), &recorder::RecorderServer::logged, this, [this](const QString &line) {
        const QString text = line.section(u' ', 1);
        if (text.startsWith("< "))
            m_requests << text.mid(2);
        m_faultCount += text.startsWith("fault: ") ? 1 : 0;
    });
}

inline QString FaultTest::address() const
{
    return "admin:admin@127.0.0.1:" + QString::number(qint16(m_recorder->port()));
}

inline void FaultTest::setFile(const QString &name, const QByteArray &content)
{
    QFile file(m_recorder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

inline void FaultTest::setFaults(const QStringList &texts)
{
    QList<recorder::AnswerFault> faults;
    for (const QString &text : texts) {
        QString reason;
        const auto fault = recorder::readAnswerFault(text, reason);
        QVERIFY2(fault, qPrintable(reason));
        faults << *fault;
    }
    m_recorder->setFaults(faults);
}

} // namespace paravue::test
