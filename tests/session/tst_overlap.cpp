#include "FakeRecorder.h"
#include "ModalWatcher.h"
#include "SetupRun.h"
#include "device/OrbNetSetup.h"
#include "recorder/RecorderServer.h"
#include "store/ExchangeQueue.h"
#include "support/Waiting.h"
#include "ui/window/StatusLine.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTime>
#include <QToolButton>

using namespace paravue;
using namespace paravue::test;

namespace
{

constexpr int ReplyDelay = 10;

// "general/remove_package/name" is what the function remove_package sends.
const char Description[] = R"(<pvsetup version="1.0">
  <window><self/></window>
  <buttonOK>
    <action type="call" slot="callSetup" param="save_settings">device</action>
    <action type="call" slot="accept">self</action>
  </buttonOK>
  <tabwidget><tab><name>Page</name>
    <item type="gridlayout">
      <item type="setup" row="0" column="0"><device/></item>
      <item type="edit" row="1" column="0"><key>net/untitled/HOSTNAME</key></item>
      <item type="edit" row="2" column="0"><key>general/remove_package/name/core</key></item>
      <item type="pushbutton" row="3" column="0"><text>Save</text>
        <action type="call" slot="callSetup" param="save_settings">device</action></item>
      <item type="pushbutton" row="4" column="0"><text>Report</text>
        <action type="call" slot="callSetup" param="get_report">device</action></item>
      <item type="pushbutton" row="5" column="0"><text>Reboot</text>
        <action type="call" slot="callSetup" param="soft_reboot">device</action></item>
      <item type="pushbutton" row="6" column="0"><text>Remove</text>
        <action type="call" slot="callSetup" param="remove_package">device</action></item>
    </item>
  </tab></tabwidget>
</pvsetup>)";

const QByteArray Task =
    R"(<timetask type="call" period="0" slot="callSetup" param="get_report">device</timetask>)";

} // namespace

/// Two exchanges at once in a window: the one does not disturb the other.
class TestOverlap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aReportWaitsForASave();
    void aSaveWaitsForAReport();
    void aSaveGoesOutBehindTheWindow();
    void aTaskDoesNotPileUp();
    void aTaskMeetsAFaultOnce();
    void whatWaitsSendsTheValuesOfItsCall();
    void aFaultGivesUpWhatWaits();
    void aSilentRecorderCanBeGivenUp();
    void aLaterEndOfTheConnectionIsNoSecondMessage();
    void showsWhatTheRecorderAdds();
    void triesTheFirstLoadAgain();
    void tellsWhatAFunctionHasDone();
    void refreshesWhenItIsAsked();
    void asksBeforeARefreshLosesChanges();

private:
    void writeDescription(const QByteArray &text);
    QString address() const;
    void press(const Session &session, const QString &text);
    QString status(const Session &session) const;
    bool isIdle(const Session &session) const;
    void edit(const Session &session, const QString &from, const QString &to);
    /// Another session shows this text in a field.
    bool recorderHas(const QString &text) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_received; ///< names of the files that were sent to the recorder
    QStringList m_log;
};

void TestOverlap::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    m_recorder->setReplyDelay(ReplyDelay);
    m_received.clear();
    m_log.clear();
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
            [this](const QString &name) { m_received << name; });
    connect(m_recorder.get(), &recorder::RecorderServer::logged, this,
            [this](const QString &line) { m_log << line; });
    writeDescription(Description);
}

void TestOverlap::cleanup()
{
    m_recorder.reset();
}

void TestOverlap::writeDescription(const QByteArray &text)
{
    QFile file(m_recorder->filePath("interface"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
}

bool TestOverlap::recorderHas(const QString &text) const
{
    return Session(address()).field(text);
}

QString TestOverlap::address() const
{
    return "admin:admin@127.0.0.1:" + QString::number(qint16(m_recorder->port()));
}

void TestOverlap::press(const Session &session, const QString &text)
{
    auto *button = buttonWithText<QPushButton>(*session.window, text);
    QVERIFY(button);
    QTest::mouseClick(button, Qt::LeftButton);
}

QString TestOverlap::status(const Session &session) const
{
    return session.window->findChild<QLabel *>("statusText")->text();
}

bool TestOverlap::isIdle(const Session &session) const
{
    return session.store.linkStatus().state == LinkStatus::State::Idle;
}

void TestOverlap::edit(const Session &session, const QString &from, const QString &to)
{
    auto *field = session.field(from);
    QVERIFY(field);
    replaceText(*field, to);
}

void TestOverlap::aReportWaitsForASave()
{
    Session session(address());
    QVERIFY(session.isFine());
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    QSignalSpy loaded(&session.store, &OrbSetup::loadDone);
    const QString old = session.store.value("net/untitled/HOSTNAME");
    edit(session, old, "renamed");
    press(session, "Save");
    AWAIT_VERIFY(m_received.size() == 1);
    press(session, "Report");
    press(session, "Report");
    QVERIFY2(status(session).contains("Waiting: Get the report, Get the report"),
             qPrintable(status(session)));
    AWAIT_COMPARE(loaded.size(), 2);
    AWAIT_VERIFY(isIdle(session));
    QCOMPARE(stored.size(), 1);
    QCOMPARE(m_received, QStringList({"streams", "net", "time", "timers", "disk", "users", "state"}));
    QVERIFY(session.field("renamed"));
    QCOMPARE(session.store.value("net/untitled/HOSTNAME"), "renamed");
    QVERIFY(QFileInfo(session.store.filePath("tmp")).size() > 100);
    AWAIT_COMPARE(status(session), QString());
    QVERIFY(session.errors.isEmpty());
    QVERIFY(recorderHas("renamed"));
}

void TestOverlap::aSaveWaitsForAReport()
{
    Session session(address());
    QVERIFY(session.isFine());
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    QSignalSpy loaded(&session.store, &OrbSetup::loadDone);
    edit(session, session.store.value("net/untitled/HOSTNAME"), "renamed");
    press(session, "Report");
    QTest::qWait(ReplyDelay / 2);
    press(session, "Save");
    AWAIT_COMPARE(stored.size(), 1);
    QCOMPARE(loaded.size(), 1);
    QCOMPARE(m_received.size(), 7);
    QVERIFY(session.errors.isEmpty());
    QVERIFY(session.field("renamed"));
    QVERIFY(recorderHas("renamed"));
}

void TestOverlap::aSaveGoesOutBehindTheWindow()
{
    Session session(address());
    QVERIFY(session.isFine());
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    edit(session, session.store.value("net/untitled/HOSTNAME"), "renamed");
    press(session, "Report");
    QTest::mouseClick(session.window->findChild<QPushButton *>("buttonOK"), Qt::LeftButton);
    QVERIFY(!session.window->isVisible());
    QCOMPARE(ExchangeQueue::of(session.store).waiting(), QStringList("save_settings"));
    session.window->endSession();
    session.window.reset();
    AWAIT_COMPARE(stored.size(), 1);
    QCOMPARE(m_received.size(), 7);
    QVERIFY(session.errors.isEmpty());
}

void TestOverlap::aTaskDoesNotPileUp()
{
    writeDescription(
        QByteArray(Description).replace("<window><self/></window>", "<window><self/>" + Task + "</window>"));
    m_recorder->setReplyDelay(50);
    Session session(address());
    QVERIFY(session.isFine());
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    quint32 now = 0;
    session.window->setTaskClock([&now] { return now; });
    edit(session, session.store.value("net/untitled/HOSTNAME"), "renamed");
    press(session, "Save");
    for (int tick = 0; tick < 20; ++tick) {
        now += 500;
        session.window->timeout();
        QVERIFY(ExchangeQueue::of(session.store).waiting().size() <= 1);
    }
    QSignalSpy loaded(&session.store, &OrbSetup::loadDone);
    AWAIT_COMPARE(stored.size(), 1);
    AWAIT_COMPARE(loaded.size(), 1);
    QCOMPARE(m_received.size(), 7);
    QVERIFY(session.errors.isEmpty());
}

void TestOverlap::aTaskMeetsAFaultOnce()
{
    writeDescription(
        QByteArray(Description).replace("<window><self/></window>", "<window><self/>" + Task + "</window>"));
    Session session(address());
    QVERIFY(session.isFine());
    quint32 now = 0;
    session.window->setTaskClock([&now] { return now; });
    const ModalWatcher messages;
    edit(session, "core", "none");
    press(session, "Remove"); // there is no such package
    AWAIT_COMPARE(messages.texts().size(), 1);
    AWAIT_COMPARE(QApplication::activeModalWidget(), session.window.get());
    QSignalSpy reported(&session.store, &OrbSetup::pseudothrow);
    for (int tick = 0; tick < 20; ++tick) {
        now += 500;
        session.window->timeout();
    }
    QCOMPARE(reported.size(), 1);
}

void TestOverlap::whatWaitsSendsTheValuesOfItsCall()
{
    Session session(address());
    QVERIFY(session.isFine());
    const ModalWatcher messages;
    edit(session, "core", "first");
    press(session, "Report");
    press(session, "Remove");
    edit(session, "first", "second");
    AWAIT_VERIFY(session.store.linkStatus().state == LinkStatus::State::Failed);
    QVERIFY2(session.store.linkStatus().problem.contains("first"),
             qPrintable(session.store.linkStatus().problem));
    QCOMPARE(session.store.value("general/remove_package/name"), "second");
}

void TestOverlap::aFaultGivesUpWhatWaits()
{
    Session session(address());
    QVERIFY(session.isFine());
    const ModalWatcher messages;
    auto *retry = session.window->findChild<QToolButton *>("statusRetry");
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    edit(session, "core", "none");
    edit(session, session.store.value("net/untitled/HOSTNAME"), "renamed");
    QVERIFY(!retry->isVisible());
    press(session, "Remove"); // there is no such package
    press(session, "Reboot");
    AWAIT_VERIFY(retry->isVisible());
    QVERIFY2(status(session).endsWith("Not done: Restart the recorder"), qPrintable(status(session)));
    QVERIFY2(status(session).contains("Device error"), qPrintable(status(session)));
    QVERIFY2(status(session).startsWith("Remove the package: refused at "), qPrintable(status(session)));
    QCOMPARE(messages.texts().size(), 1);
    AWAIT_COMPARE(QApplication::activeModalWidget(), session.window.get());
    QCoreApplication::processEvents(); // what an error brings about is not shown

    // The next function is called at once, and the store says that it cannot.
    press(session, "Reboot");
    AWAIT_COMPARE(messages.texts().size(), 2);
    QVERIFY2(messages.texts().last().contains("wrong state"), qPrintable(messages.texts().last()));
    // What could not begin is not what "Try again" repeats.
    QTest::mouseClick(retry, Qt::LeftButton);
    AWAIT_VERIFY(session.store.linkStatus().problem.startsWith("Device error"));
    AWAIT_COMPARE(messages.texts().size(), 3);
    QVERIFY(!m_log.join(u'\n').contains("REBOOT"));
}

void TestOverlap::aSilentRecorderCanBeGivenUp()
{
    Session session(address());
    QVERIFY(session.isFine());
    session.window->findChild<StatusLine *>()->setReportedSilence(300);
    auto *giveUp = session.window->findChild<QToolButton *>("statusGiveUp");
    edit(session, session.store.value("net/untitled/HOSTNAME"), "renamed");
    m_recorder->setReplyDelay(60'000);
    press(session, "Report");
    press(session, "Save");
    QVERIFY(!giveUp->isVisible());
    AWAIT_VERIFY(giveUp->isVisible());
    QVERIFY2(status(session).startsWith("No answer from the recorder for "), qPrintable(status(session)));
    QTest::mouseClick(giveUp, Qt::LeftButton);
    AWAIT_COMPARE(status(session), "Not done: Get the report, Save the settings");
    QVERIFY(!giveUp->isVisible());
    QVERIFY(isIdle(session));
    m_recorder->setReplyDelay(ReplyDelay);
    QSignalSpy stored(&session.store, &OrbSetup::storeDone);
    press(session, "Save");
    AWAIT_COMPARE(stored.size(), 1);
    AWAIT_VERIFY(status(session).startsWith("Save the settings: done at "));
    QVERIFY(session.errors.isEmpty());
    QVERIFY(recorderHas("renamed"));
}

void TestOverlap::aLaterEndOfTheConnectionIsNoSecondMessage()
{
    Session session(address());
    QVERIFY(session.isFine());
    const ModalWatcher messages;
    edit(session, "core", "none");
    press(session, "Remove"); // there is no such package
    AWAIT_COMPARE(messages.texts().size(), 1);
    AWAIT_COMPARE(QApplication::activeModalWidget(), session.window.get());
    QSignalSpy reported(&session.store, &OrbSetup::pseudothrow);
    const quint16 port = m_recorder->port();
    m_recorder->close();
    AWAIT_VERIFY(reported.size() >= 2); // the error, and the end
    QTest::qWait(100);
    QCOMPARE(messages.texts().size(), 1);
    // The next fault is told.
    QTest::mouseClick(session.window->findChild<QToolButton *>("statusRetry"), Qt::LeftButton);
    AWAIT_COMPARE(messages.texts().size(), 2);
    QVERIFY(m_recorder->listen(port));
}

void TestOverlap::showsWhatTheRecorderAdds()
{
    FakeRecorder recorder;
    recorder.login().expect("DO REBOOT\r\n");
    recorder.send(FakeRecorder::frame({}, "VORN_ANSWER=OK:back in 40 s\r\n"));
    recorder.startConnection().login().reply("GET REPORT\r\n");
    OrbNetSetup store(recorder.address());
    const StatusLine line(store, nullptr);
    ExchangeQueue &queue = ExchangeQueue::of(store);
    queue.call("soft_reboot", {}, ExchangeQueue::Caller::User);
    AWAIT_VERIFY(line.text().startsWith("Restart the recorder: done at "));
    QVERIFY2(line.text().endsWith(": back in 40 s"), qPrintable(line.text()));
    queue.call("get_report", {}, ExchangeQueue::Caller::User);
    AWAIT_VERIFY(line.text().startsWith("Get the report: done at "));
    QVERIFY2(!line.text().contains("back"), qPrintable(line.text()));
}

void TestOverlap::triesTheFirstLoadAgain()
{
    const quint16 port = m_recorder->port();
    const QString where = address();
    m_recorder->close();
    const ModalWatcher messages;
    OrbNetSetup store(where);
    CWinMain window(&store, nullptr);
    auto *retry = window.findChild<QToolButton *>("statusRetry");
    auto *text = window.findChild<QLabel *>("statusText");
    AWAIT_VERIFY(retry->isVisible());
    QCOMPARE(text->text(), "The recorder refuses the connection");
    QCOMPARE(messages.texts().size(), 1);
    QVERIFY(m_recorder->listen(port));
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    QTest::mouseClick(retry, Qt::LeftButton);
    AWAIT_COMPARE(loaded.size(), 1);
    AWAIT_VERIFY(window.findChild<QTabWidget *>("tabWidget")->isVisible());
    AWAIT_VERIFY(!retry->isVisible());
    QCOMPARE(text->text(), QString());
    QCOMPARE(messages.texts().size(), 1);
    window.endSession();
}

void TestOverlap::tellsWhatAFunctionHasDone()
{
    Session session(address());
    QVERIFY(session.isFine());
    QVERIFY(!session.window->findChild<QToolButton *>("statusRefresh"));
    AWAIT_COMPARE(status(session), QString()); // the first load is no function
    const auto tells = [&](const char *button, const char *answer) {
        press(session, button);
        AWAIT_VERIFY(status(session).startsWith(answer));
    };
    tells("Report", "Get the report: done at ");
    tells("Save", "Save the settings: done at ");
    const QString time = status(session).section(' ', -1);
    QVERIFY2(QTime::fromString(time, "HH:mm:ss").isValid(), qPrintable(time));
}

void TestOverlap::refreshesWhenItIsAsked()
{
    OrbNetSetup store(address());
    CWinMain window(&store, nullptr, CWinMain::Placement::Window, {.offersRefresh = true});
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    AWAIT_COMPARE(loaded.size(), 1);
    auto *refresh = window.findChild<QToolButton *>("statusRefresh");
    AWAIT_VERIFY(refresh && refresh->isVisible());
    const auto *text = window.findChild<QLabel *>("statusText");
    auto answer = QMessageBox::No;
    const ModalWatcher questions([&](QWidget &box) {
        QTest::mouseClick(static_cast<QMessageBox &>(box).button(answer), Qt::LeftButton);
    });
    const auto hostName = [&] { return window.findChild<QLineEdit *>()->text(); };
    const auto pressF5 = [&] {
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, Qt::Key_F5);
    };

    // Somebody else sets up the same recorder.
    const QString before = hostName();
    {
        Session other(address());
        QVERIFY(other.isFine());
        edit(other, before, "elsewhere");
        press(other, "Save");
        AWAIT_VERIFY(status(other).contains("done at"));
    }
    QCOMPARE(hostName(), before);
    QTest::mouseClick(refresh, Qt::LeftButton);
    QVERIFY(!refresh->isVisible() || store.linkStatus().state == LinkStatus::State::Running);
    pressF5(); // one at a time
    AWAIT_COMPARE(loaded.size(), 2);
    QCOMPARE(hostName(), "elsewhere");
    AWAIT_VERIFY(text->text().startsWith("Refreshed at "));
    QCOMPARE(questions.texts(), QStringList());

    replaceText(*window.findChild<QLineEdit *>(), "mine");
    QTest::mouseClick(buttonWithText<QPushButton>(window, "Report"), Qt::LeftButton);
    AWAIT_COMPARE(loaded.size(), 3); // edits are not lost by a report
    AWAIT_VERIFY(refresh->isVisible());
    pressF5();
    QCOMPARE(questions.count(), 1);
    QVERIFY(questions.texts().last().contains("not sent"));
    QCOMPARE(loaded.size(), 3);
    QCOMPARE(hostName(), "mine");

    answer = QMessageBox::Yes;
    pressF5();
    QCOMPARE(questions.count(), 2);
    AWAIT_COMPARE(loaded.size(), 4);
    QCOMPARE(hostName(), "elsewhere");

    replaceText(*window.findChild<QLineEdit *>(), "mine");
    QTest::mouseClick(buttonWithText<QPushButton>(window, "Save"), Qt::LeftButton);
    AWAIT_VERIFY(text->text().startsWith("Save the settings: done at "));
    pressF5();
    AWAIT_COMPARE(loaded.size(), 5);
    QCOMPARE(hostName(), "mine");
    QCOMPARE(questions.count(), 2);
    window.endSession();
}

void TestOverlap::asksBeforeARefreshLosesChanges()
{
    OrbNetSetup store(address());
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    CWinMain window(&store, nullptr, CWinMain::Placement::Window,
                    {.offersRefresh = true, .tracksChanges = true});
    AWAIT_COMPARE(loaded.size(), 1);
    const ModalWatcher questions;
    auto *refresh = window.findChild<QToolButton *>("statusRefresh");
    AWAIT_VERIFY(refresh && refresh->isVisible());
    const QString before = store.value("net/untitled/HOSTNAME");

    store.setValue("net/untitled/HOSTNAME/mine"); // not by a control
    QTest::mouseClick(refresh, Qt::LeftButton);
    QCOMPARE(questions.count(), 1);
    QCOMPARE(store.value("net/untitled/HOSTNAME"), "mine");

    replaceText(*window.findChild<QLineEdit *>(), "typed");
    replaceText(*window.findChild<QLineEdit *>(), before);
    QTest::mouseClick(refresh, Qt::LeftButton);
    AWAIT_COMPARE(loaded.size(), 2);
    QCOMPARE(questions.count(), 1);
    window.endSession();
}

QTEST_MAIN(TestOverlap)
#include "tst_overlap.moc"
