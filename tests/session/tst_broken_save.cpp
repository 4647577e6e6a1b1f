#include "CheckedSaveTest.h"
#include "ui/sending/SendingDialog.h"

#include <QDirIterator>
#include <QTemporaryDir>

using namespace paravue;
using namespace paravue::test;

/// A save breaks off, is stopped or meets a silent recorder: what was sent is known, and nothing else goes
/// out.
class TestBrokenSave : public CheckedSaveTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startSaving(); }
    void sendsTheRestOfABrokenSave();
    void sendsTheRestOfAStoppedSave();
    void goesOnEditingAfterABrokenSave();
    void knowsWhatHasArrivedBeforeAStop();
    void sendsAListThatWasTakenBackBehindASilence();
    void triesAgainLikeANewSave();
    void sendsNothingThatWasTakenBack_data();
    void sendsNothingThatWasTakenBack();
    void knowsWhatHasArrivedBeforeASecondFault();
    void knowsWhatHasArrivedOfOtherSaves_data();
    void knowsWhatHasArrivedOfOtherSaves();
    void confirmsNoSaveThatWasDropped();
    void tellsOfASilentRecorder_data();
    void tellsOfASilentRecorder();
};

void TestBrokenSave::sendsTheRestOfABrokenSave()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"error@PUT NET CONFIG"});
    SavePilot pilot(
        Steps{{"Device error", "Send the rest", [&] { setFaults({}); }}, {"Sent and confirmed", "Close"}});
    const ModalWatcher box; // a message in the way
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(box.texts(), QStringList());
    QVERIFY(net().contains("HOSTNAME = 'new'"));
    QVERIFY(!session.window->isVisible());
}

void TestBrokenSave::sendsTheRestOfAStoppedSave()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"never@PUT NET CONFIG"});
    const ModalWatcher question(
        [](QWidget &box) { static_cast<QMessageBox &>(box).button(QMessageBox::Yes)->click(); });
    SavePilot pilot(Steps{{"Sending \"net\"", "Stop"},
                          {"Sending was stopped", "Send the rest", [&] { setFaults({}); }},
                          {"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(question.count(), 1);
    QVERIFY2(question.texts().constFirst().contains("1 of 3 files"),
             qPrintable(question.texts().constFirst()));
    QVERIFY(session.window->findChild<QToolButton *>("changes")->isHidden());
    QVERIFY(!session.window->isVisible());
}

void TestBrokenSave::goesOnEditingAfterABrokenSave()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"error@PUT NET CONFIG"});
    {
        SavePilot pilot(Steps{{"Device error", "Go on editing"}});
        session.pressOk();
        QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
        QCOMPARE(pilot.files, QStringList({"streams|Sent", "net|Not sent", "time|Not sent"}));
    }
    QVERIFY(session.window->isVisible());
    QCOMPARE(session.changes(), QString("1 change"));
    setFaults({});
    SavePilot second(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(second.isAtItsEnd(), qPrintable(second.headline));
    QVERIFY(net().contains("HOSTNAME = 'new'"));
}

void TestBrokenSave::knowsWhatHasArrivedBeforeAStop()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type(Name, "renamed");
    session.type("old", "new");
    setFaults({"never@PUT NET CONFIG"});
    const ModalWatcher question(
        [](QWidget &box) { static_cast<QMessageBox &>(box).button(QMessageBox::Yes)->click(); });
    {
        SavePilot pilot(Steps{{"Sending \"net\"", "Stop"}, {"Sending was stopped", "Go on editing"}});
        session.pressOk();
        QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
        QCOMPARE(pilot.files, QStringList({"streams|Sent", "net|Sent, but not answered", "time|Not sent"}));
    }
    QCOMPARE(session.changes(), QString("1 change"));
    session.type("renamed", Name);
    QCOMPARE(session.changes(), QString("2 changes"));

    QVERIFY(net().contains("HOSTNAME = 'new'")); // the recorder has not said so
    session.type("new", "old");
    QCOMPARE(session.changes(), QString("2 changes"));
    setFaults({});
    SavePilot second(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(second.isAtItsEnd(), qPrintable(second.headline));
    QVERIFY2(net().contains("HOSTNAME = 'old'"), net());
    QCOMPARE(session.changes(), QString());
}

/// Nobody else has touched it.
void TestBrokenSave::sendsAListThatWasTakenBackBehindASilence()
{
    setFile("net", Net + "CNT=2\nNAME0=ann\nLEVEL0=2\nNAME1=bob\nLEVEL1=0\n");
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.store.setValue("net/untitled/CNT/1");
    session.store.setValue("net/untitled/NAME0/bob");
    setFaults({"never@PUT NET CONFIG"});
    const ModalWatcher question(
        [](QWidget &box) { static_cast<QMessageBox &>(box).button(QMessageBox::Yes)->click(); });
    {
        SavePilot pilot(Steps{{"Sending \"net\"", "Stop"}, {"Sending was stopped", "Go on editing"}});
        session.pressOk();
        QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    }
    session.store.setValue("net/untitled/CNT/2");
    session.store.setValue("net/untitled/NAME0/ann");
    QCOMPARE(session.changes(), QString("2 changes"));
    setFaults({});
    const ForeignChangesAccepted foreign;
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QVERIFY(!foreign.wereShown());
    const FileValues saved(net());
    QCOMPARE(saved.value("untitled/CNT").value_or("") + saved.value("untitled/NAME0").value_or(""), "2ann");
}

void TestBrokenSave::triesAgainLikeANewSave()
{
    const QTemporaryDir snapshots;
    Sending session(address(), true, true, snapshots.path());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"error@PUT NET CONFIG"});
    QStringList shown;
    const ModalWatcher review(
        [&shown](QWidget &dialog) {
            shown << "review";
            QTest::keyClick(&dialog, Qt::Key_Return);
        },
        "paravue::ReviewDialog");
    const ModalWatcher problems([&shown](QWidget &box) {
        shown << "problems";
        static_cast<QMessageBox &>(box).button(QMessageBox::Ignore)->click();
    });
    const auto kept = [&snapshots] {
        QDirIterator archives(snapshots.path(), {"*.zip"}, QDir::Files, QDirIterator::Subdirectories);
        int count = 0;
        for (; archives.hasNext(); archives.next())
            ++count;
        return count;
    };
    {
        SavePilot failing(Steps{{"Device error", "Go on editing"}});
        session.pressOk();
        QVERIFY2(failing.isAtItsEnd(), qPrintable(failing.headline));
    }
    QCOMPARE(shown, QStringList("review"));
    QCOMPARE(kept(), 1);
    shown.clear();
    session.type(Name, " "); // in a field that must not be empty
    setFaults({});
    setFile("net", QByteArray(Net).replace("Gate", "Yard"));
    const ForeignChangesAccepted foreign;
    const auto limit =
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [this](const QString &name) {
            if (name == "net")
                QTimer::singleShot(0, this, [this] { setFile("net", net().replace("'new'", "'limited'")); });
        });
    SavePilot pilot(Steps{{"Sent, but the recorder keeps", "Send again", [&] { disconnect(limit); }},
                          {"Sent and confirmed", "Close"}});
    session.window->findChild<QToolButton *>("statusRetry")->click();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QVERIFY(foreign.wereShown());
    QCOMPARE(shown.mid(0, 2), QStringList({"problems", "review"}));
    QVERIFY(kept() > 1);
    QVERIFY2(net().contains("'Yard'") && net().contains("'new'"), net());
}

void TestBrokenSave::sendsNothingThatWasTakenBack_data()
{
    const TestTable<bool, bool> row("isFollowed", "isTakenBack");
    row("of a save in a dialog", true, true);
    row("of a save behind the window", false, true);
    row("discarded after a save in a dialog", true, false);
    row("discarded after a save behind the window", false, false);
}

void TestBrokenSave::sendsNothingThatWasTakenBack()
{
    QFETCH(bool, isFollowed);
    QFETCH(bool, isTakenBack);
    Sending session(address(), true, false, {}, {.asksBeforeClosing = true});
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"error@PUT NET CONFIG"});
    int discarded = 0;
    const ModalWatcher message([&discarded](QWidget &box) {
        if (QAbstractButton *discard = static_cast<QMessageBox &>(box).button(QMessageBox::Discard)) {
            ++discarded;
            discard->click();
        }
    });
    SavePilot pilot(isFollowed ? Steps{{"Device error", "Go on editing"}} : Steps());
    if (isFollowed)
        session.pressOk();
    else
        ExchangeQueue::of(session.store).call("save_settings", {}, ExchangeQueue::Caller::Task);
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    AWAIT_VERIFY(session.store.linkStatus().state == LinkStatus::State::Failed);
    QVERIFY(isFollowed || !session.store.saveStatus().missing.isEmpty());
    if (isTakenBack)
        session.type("new", "old");
    session.window->reject();
    QCOMPARE(discarded, isTakenBack ? 0 : 1);
    QVERIFY(!session.window->isVisible());
    QCOMPARE(session.store.saveStatus().missing, QStringList());
}

void TestBrokenSave::knowsWhatHasArrivedBeforeASecondFault()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"error@PUT NET CONFIG"});
    SavePilot pilot(Steps{{"Device error", "Send the rest", [&] { setFaults({"error@PUT TIME CONFIG"}); }},
                          {"Device error", "Go on editing", [&] { QVERIFY(net().contains("'new'")); }}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(session.changes(), QString());
}

void TestBrokenSave::knowsWhatHasArrivedOfOtherSaves_data()
{
    const TestTable<ExchangeQueue::Caller, bool, QString> row("caller", "isGivenUp", "left");
    row("given up in the status line", ExchangeQueue::Caller::User, true, "1 change");
    row("of a time task", ExchangeQueue::Caller::Task, false, "");
    row("of a time task, given up", ExchangeQueue::Caller::Task, true, "1 change");
}

void TestBrokenSave::knowsWhatHasArrivedOfOtherSaves()
{
    QFETCH(ExchangeQueue::Caller, caller);
    QFETCH(bool, isGivenUp);
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type(Name, "renamed");
    session.type("old", "new");
    if (isGivenUp)
        setFaults({"never@PUT NET CONFIG"});
    ExchangeQueue &queue = ExchangeQueue::of(session.store);
    queue.call("save_settings", {}, caller);
    if (isGivenUp) {
        AWAIT_VERIFY(session.store.saveStatus().arrived.contains("streams"));
        queue.giveUpRunning();
    }
    AWAIT_VERIFY(session.isIdle());
    QFETCH(QString, left);
    AWAIT_COMPARE(session.changes(), left);
}

void TestBrokenSave::confirmsNoSaveThatWasDropped()
{
    Sending session(address(), false);
    QVERIFY(session.isLoaded);
    {
        SavePilot earlier(Steps{{"Sent and confirmed", "Close"}});
        session.pressOk();
        QVERIFY2(earlier.isAtItsEnd(), qPrintable(earlier.headline));
    }
    session.window->show();
    session.type("old", "new");
    session.store.setCredentialsSource(std::make_unique<KnownLogin>("admin"));
    m_recorder->setReplyDelay(50);
    setFaults({"refuse=1"});
    ExchangeQueue::of(session.store).call("get_report", {}, ExchangeQueue::Caller::User);
    SavePilot pilot(Steps{{"Nothing was sent, and the changes are lost", "Go on editing"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(pilot.files, QStringList());
    QVERIFY(net().contains("old"));
    QVERIFY(session.window->isVisible());
}

void TestBrokenSave::tellsOfASilentRecorder_data()
{
    const TestTable<QString, bool, QString, QString, Steps> row("command", "compares", "headline", "stop",
                                                                "rest");
    row("before sending", "GET", true, "Fetching what the recorder has now", "Go on editing", {});
    row("while sending", "PUT", false, "Sending \"net\"", "Stop", {{"Sending was stopped", "Go on editing"}});
    row("afterwards", "GET", false, "Fetching what the recorder has now, to compare it", "Do not compare",
        {{"Everything was sent, but could not be confirmed", "Close"}});
}

void TestBrokenSave::tellsOfASilentRecorder()
{
    QFETCH(QString, command);
    QFETCH(bool, compares);
    QFETCH(QString, headline);
    QFETCH(QString, stop);
    QFETCH(Steps, rest);
    Sending session(address(), compares);
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"never@" + command + " NET CONFIG"});
    const ModalWatcher question(
        [](QWidget &box) { static_cast<QMessageBox &>(box).button(QMessageBox::Yes)->click(); });
    const auto awaitSilence = [] {
        auto *dialog = qobject_cast<SendingDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->setReportedSilence(100);
        const auto saysSo = [](const QLabel *label) {
            return label->isVisible() && label->text().startsWith("No answer from the recorder for");
        };
        AWAIT_VERIFY(std::ranges::any_of(dialog->findChildren<QLabel *>(), saysSo));
    };
    SavePilot pilot(Steps{{headline, stop, awaitSilence}} + rest);
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
}

QTEST_MAIN(TestBrokenSave)
#include "tst_broken_save.moc"
