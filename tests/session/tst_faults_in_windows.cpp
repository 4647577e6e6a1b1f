#include "FaultTest.h"
#include "ModalWatcher.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>

using namespace paravue;
using namespace paravue::test;

/// What a window shows of a recorder that answers wrongly, late or not at all, and how its user goes on.
class TestFaultsInWindows : public FaultTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { startRecorder(); }
    void cleanup() { m_recorder.reset(); }
    void descriptions_data();
    void descriptions();
    void cancelClosesTheWindow_data();
    void cancelClosesTheWindow();
    void triesAgain();
    void aWaitingSaveFollowsALostConnection_data();
    void aWaitingSaveFollowsALostConnection();
    void savesAgain_data();
    void savesAgain();

private:
    QMap<QString, QByteArray> m_saved; ///< what a save sends without a fault
};

void TestFaultsInWindows::initTestCase()
{
    startRecorder();
    Session session(address());
    QVERIFY(session.isFine());
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    replaceText(*session.field("paravue-r4"), "renamed");
    QTest::mouseClick(buttonWithText<QPushButton>(*session.window, "Save"), Qt::LeftButton);
    AWAIT_COMPARE(stored.size(), 1);
    m_saved = m_files;
    QCOMPARE(m_saved.size(), 3);
    QVERIFY(m_saved["net"].contains("HOSTNAME = 'renamed'"));
}

void TestFaultsInWindows::descriptions_data()
{
    const TestTable<QString> row("message");
    row("truncated", "\nPremature end of document.");
    row("no-xml", "\nStart tag expected.");
    row("no-gzip", "\nPremature end of document.");
    row("bomb", "File \"interface\" is too large");
    row("deep", ": its elements are nested more than 64 levels deep");
    row("entities", ": it declares entities");
    row("controls", ": it has too many elements with attributes");
}

void TestFaultsInWindows::descriptions()
{
    QFETCH(QString, message);
    const ModalWatcher messages;
    // The load may end long after the user has closed the first message.
    setFaults({QTest::currentDataTag(), "late=50@GET STATE CONFIG"});
    OrbNetSetup store(address());
    CWinMain window(&store, nullptr);
    AWAIT_VERIFY_WITHIN(messages.count() == 1, 20'000);
    AWAIT_COMPARE(store.linkStatus().state, LinkStatus::State::Idle);
    letEventsArrive();
    const QString texts = messages.texts().join(u'|');
    QVERIFY2(texts.contains(message), qPrintable(texts));
    QVERIFY2(messages.count() == 1, qPrintable(texts));
    QVERIFY(!window.findChild<QTabWidget *>("tabWidget")->isVisible());
    QTest::mouseClick(window.findChild<QPushButton *>("buttonCancel"), Qt::LeftButton);
    QVERIFY(!window.isVisible());
    window.endSession();
}

void TestFaultsInWindows::cancelClosesTheWindow_data()
{
    QTest::addColumn<bool>("isBuilt");
    for (const char *fault : {"never@login", "never@GET SETUP", "late=60000@login", "length=more@GET SETUP"})
        QTest::newRow(fault) << false;
    for (const char *fault : {"never@GET REPORT", "late=60000@GET REPORT"})
        QTest::newRow(fault) << true;
}

void TestFaultsInWindows::cancelClosesTheWindow()
{
    QFETCH(bool, isBuilt);
    const ModalWatcher messages;
    if (!isBuilt)
        setFaults({QTest::currentDataTag()});
    OrbNetSetup store(address());
    CWinMain window(&store, nullptr);
    if (isBuilt) {
        AWAIT_VERIFY(window.findChild<QTabWidget *>("tabWidget")->isVisible());
        AWAIT_VERIFY(store.linkStatus().state == LinkStatus::State::Idle);
        setFaults({QTest::currentDataTag()});
        store.function("get_report", QString());
    }
    AWAIT_VERIFY(m_faultCount > 0);
    letEventsArrive();
    QVERIFY(window.isVisible());
    QTest::mouseClick(window.findChild<QPushButton *>("buttonCancel"), Qt::LeftButton);
    QVERIFY(!window.isVisible());
    window.endSession();
    QCOMPARE(store.linkStatus().state, LinkStatus::State::Running);
    store.resetLink();
    m_recorder->setFaults({});
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    store.load();
    AWAIT_COMPARE(loaded.size(), 1);
    QCOMPARE(messages.count(), 0);
}

void TestFaultsInWindows::triesAgain()
{
    const ModalWatcher messages;
    setFaults({"close-within@GET NET CONFIG"});
    OrbNetSetup store(address());
    CWinMain window(&store, nullptr);
    auto *retry = window.findChild<QToolButton *>("statusRetry");
    auto *text = window.findChild<QLabel *>("statusText");
    AWAIT_VERIFY(retry->isVisible());
    AWAIT_COMPARE(messages.count(), 1);
    letEventsArrive();
    QCOMPARE(messages.texts(), QStringList("Network error 1\n" + Closed));
    QCOMPARE(text->text(), Closed);
    setFaults({"bytewise"});
    QTest::mouseClick(retry, Qt::LeftButton);
    AWAIT_VERIFY(window.findChild<QTabWidget *>("tabWidget")->isVisible());
    AWAIT_COMPARE(text->text(), QString());
    QCOMPARE(messages.count(), 1);
    window.endSession();
}

void TestFaultsInWindows::aWaitingSaveFollowsALostConnection_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("error") << "Device error \"\"";
    for (const char *fault : {"close-before", "close-within", "reset"})
        QTest::newRow(fault) << "Network error 1";
}

void TestFaultsInWindows::aWaitingSaveFollowsALostConnection()
{
    QFETCH(QString, message);
    const ModalWatcher messages;
    Session session(address());
    QVERIFY(session.isFine());
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    m_files.clear();
    setFaults({QTest::currentDataTag() + QStringLiteral("@GET REPORT"), "late=20@GET REPORT"});
    replaceText(*session.field("paravue-r4"), "renamed");
    QTest::mouseClick(buttonWithText<QPushButton>(*session.window, "Report"), Qt::LeftButton);
    QTest::mouseClick(buttonWithText<QPushButton>(*session.window, "Save"), Qt::LeftButton);
    AWAIT_COMPARE(stored.size(), 1);
    QCOMPARE(m_files, m_saved);
    QCOMPARE(messages.count(), 1);
    QVERIFY2(messages.texts().first().contains(message), qPrintable(messages.texts().first()));
    AWAIT_COMPARE(session.store.linkStatus().state, LinkStatus::State::Idle);
}

void TestFaultsInWindows::savesAgain_data()
{
    const TestTable<QString> row("problem");
    row("error=disk busy@PUT NET CONFIG", "Device error \"disk busy\"");
    row("no-answer-line@PUT NET CONFIG", "Wrong device answer");
    row("close-before@PUT NET CONFIG", Closed);
    row("reset@login", Closed);
}

void TestFaultsInWindows::savesAgain()
{
    QFETCH(QString, problem);
    const ModalWatcher messages;
    Session session(address());
    QVERIFY(session.isFine());
    setFaults({QTest::currentDataTag()});
    replaceText(*session.field("paravue-r4"), "renamed");
    QTest::mouseClick(buttonWithText<QPushButton>(*session.window, "Save"), Qt::LeftButton);
    auto *retry = session.window->findChild<QToolButton *>("statusRetry");
    AWAIT_VERIFY(retry->isVisible());
    AWAIT_COMPARE(messages.count(), 1);
    letEventsArrive();
    QCOMPARE(messages.count(), 1);
    QVERIFY(session.window->findChild<QLabel *>("statusText")->text().endsWith(problem));
    QVERIFY(session.field("renamed"));
    m_recorder->setFaults({});
    m_files.clear();
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    QTest::mouseClick(retry, Qt::LeftButton);
    AWAIT_COMPARE(stored.size(), 1);
    QCOMPARE(m_files, m_saved);
    AWAIT_VERIFY(!retry->isVisible());
    QCOMPARE(messages.count(), 1);
}

QTEST_MAIN(TestFaultsInWindows)
#include "tst_faults_in_windows.moc"
