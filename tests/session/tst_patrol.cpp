#include "ModalWatcher.h"
#include "SetupRun.h"
#include "controls/AlarmZoneEditor.h"
#include "recorder/RecorderServer.h"

#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace paravue::test;

/// The window of a recorder of another kind: more channels, turning cameras, and a list of files of its own,
/// without a schedule.
class TestPatrol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void fetchesTheFilesOfItsList();
    void setsAllChannels();
    void asksBeforeItFormats();

private:
    QString address() const { return "admin:admin@127.0.0.1:" + QString::number(qint16(m_recorder->port())); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
};

void TestPatrol::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path(), "patrol");
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
}

void TestPatrol::fetchesTheFilesOfItsList()
{
    Session session(address());
    QVERIFY(session.isFine());
    QVERIFY(session.store.fileExists("disk"));
    QVERIFY(!session.store.fileExists("timers"));
    QVERIFY(session.field("North mast") && session.field("Spare"));
    QVERIFY(session.field("North mast")->isEnabled());
    QVERIFY(!session.field("Spare")->isEnabled());
}

void TestPatrol::setsAllChannels()
{
    {
        Session session(address());
        QVERIFY(session.isFine());
        buttonWithText<QPushButton>(*session.window, "Record all on motion")->click();
        replaceText(*session.field("Roof"), "Antenna");
        QTest::keyClick(session.window->findChild<paravue::AlarmZoneEditor *>(), Qt::Key_Space);
        QSignalSpy saved(&session.store, &OrbSetup::storeDone);
        buttonWithText<QPushButton>(*session.window, "Save")->click();
        QVERIFY(saved.wait(20'000));
        QVERIFY(session.isFine());
    }
    Session session(address());
    QVERIFY(session.isFine());
    for (int channel = 0; channel < 16; ++channel)
        QCOMPARE(session.store.value(QString("streams/stream_%1/record").arg(channel)), "motion");
    QCOMPARE(session.store.value("streams/stream_14/name"), "Antenna");
    QCOMPARE(session.store.value("streams/zones/ROW0"), "1000000000000000");
}

void TestPatrol::asksBeforeItFormats()
{
    Session session(address());
    QSignalSpy done(&session.store, &OrbSetup::storeDone);
    QString answer = "Cancel";
    const ModalWatcher dialogs([&](QWidget &dialog) { buttonWithText<QPushButton>(dialog, answer)->click(); },
                               "QDialog");
    auto *format = buttonWithText<QPushButton>(*session.window, "Format");
    format->click();
    QVERIFY(dialogs.texts().value(0).contains("Format disk 1?"));
    QVERIFY(done.isEmpty());
    answer = "Format";
    format->click();
    QVERIFY(!done.isEmpty() || done.wait(20'000));
    QVERIFY(session.isFine());
    QFile disk(m_recorder->filePath("disk"));
    QVERIFY(disk.open(QIODevice::ReadOnly));
    QVERIFY(disk.readAll().contains("DISC1_USED='0G'"));
}

QTEST_MAIN(TestPatrol)
#include "tst_patrol.moc"
