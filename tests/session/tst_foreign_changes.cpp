#include "CheckedSaveTest.h"

#include <QStyleHints>

using namespace paravue;
using namespace paravue::test;

/// What the recorder has is compared before a save, as somebody else may have changed it.
class TestForeignChanges : public CheckedSaveTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startSaving(); }
    void asksAboutEditsOfEntriesThatMoved_data();
    void asksAboutEditsOfEntriesThatMoved();
    void keepsWhatSomebodyElseHasChanged_data();
    void keepsWhatSomebodyElseHasChanged();
    void leavesDecisionsToASecondPress();
    void comparesAgainBehindTheReview();
    void undoesWhatSomebodyElseHasNotTouched();
    void asksWithoutARecorder();
    void asksForANewLoginBeforeAnythingIsLost();
};

void TestForeignChanges::asksAboutEditsOfEntriesThatMoved_data()
{
    const TestTable<QString, QString> row("ticked", "users");
    row("theirs", "", "2: ann 2, carol 0,  ");
    row("mine", "net/untitled/LEVEL1", "3: ann 2, bob 1, carol 0");
    row("mine, by a value that was not edited", "net/untitled/NAME1", "3: ann 2, bob 1, carol 0");
}

void TestForeignChanges::asksAboutEditsOfEntriesThatMoved()
{
    QFETCH(QString, ticked);
    setFile("net", Net + "CNT=3\nNAME0=ann\nLEVEL0=2\nNAME1=bob\nLEVEL1=0\nNAME2=carol\nLEVEL2=0\n");
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.store.setValue("net/untitled/LEVEL1/1"); // of bob, whom somebody else removes
    setFile("net", Net + "CNT=2\nNAME0=ann\nLEVEL0=2\nNAME1=carol\nLEVEL1=0\n");
    QStringList shown;
    QString text;
    const ModalWatcher question(
        [&](QWidget &dialog) {
            shown = rows(*dialog.findChild<QTreeWidget *>());
            text = dialog.findChild<QLabel *>()->text();
            auto *list = dialog.findChild<QTreeWidget *>();
            for (QTreeWidgetItem *row : list->findItems(ticked, Qt::MatchExactly, list->columnCount() - 1)) {
                list->setCurrentItem(row);
                QTest::keyClick(list, Qt::Key_Space);
            }
            for (int row = 1; row < list->topLevelItemCount(); ++row) // they are ticked together
                QCOMPARE(list->topLevelItem(row)->checkState(3), list->topLevelItem(0)->checkState(3));
            QTest::keyClick(list, Qt::Key_Return);
        },
        "paravue::ForeignChangesDialog");
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QVERIFY2(shown.contains("net/untitled/LEVEL1|0|0|1|net/untitled/LEVEL1"), qPrintable(shown.join('\n')));
    QVERIFY2(text.contains("another entry"), qPrintable(text));
    const FileValues saved(net());
    QStringList users;
    for (const QString number : {"0", "1", "2"})
        users << saved.value("untitled/NAME" + number).value_or("") + ' ' +
                     saved.value("untitled/LEVEL" + number).value_or("");
    QTEST(saved.value("untitled/CNT").value_or("") + ": " + users.join(", "), "users");
}

void TestForeignChanges::keepsWhatSomebodyElseHasChanged_data()
{
    const TestTable<QByteArray, QStringList, QString, QByteArray> row("theirs", "shown", "ticked", "saved");
    row("nothing", Net, {}, {}, "'new' 'Gate'");
    row("a counter", QByteArray(Net).replace("17", "99"), {}, {}, "'new' 'Gate'");
    row("an event", Net + "EVENTS=1\nEVENT0=motion\n", {}, {}, "'new' 'Gate'");
    const QByteArray place = QByteArray(Net).replace("Gate", "Yard");
    row("another value", place, {"Page › Place|Gate|Yard|Gate|net/untitled/PLACE"}, {}, "'new' 'Yard'");
    row("another value, back", place, {"Page › Place|Gate|Yard|Gate|net/untitled/PLACE"}, "Page › Place",
        "'new' 'Gate'");
    const QByteArray host = QByteArray(Net).replace("old", "theirs");
    row("the same value", host, {"Page › Host|old|theirs|new|net/untitled/HOSTNAME"}, {}, "'theirs' 'Gate'");
    row("the same value, mine", host, {"Page › Host|old|theirs|new|net/untitled/HOSTNAME"}, "Page › Host",
        "'new' 'Gate'");
    row("what I want too", QByteArray(Net).replace("old", "new"), {}, {}, "'new' 'Gate'");
    row("a secret", QByteArray(Net).replace("secret", "s3"),
        {"Page › Key|••••••••|••••••••|••••••••|net/untitled/WIFI_KEY"}, {}, "'new' 'Gate'");
    row("a removed key", QByteArray(Net).replace("PLACE=Gate\n", ""),
        {"Page › Place|Gate|–|Gate|net/untitled/PLACE"}, {}, "'new'");
    row("a key without a value", Net + "NOTE=\n", {}, {}, "'new' 'Gate'");
    row("a key that no address has", Net + "A/B=x\n", {}, {}, "'new' 'Gate'");
}

void TestForeignChanges::keepsWhatSomebodyElseHasChanged()
{
    QFETCH(QByteArray, theirs);
    QFETCH(QString, ticked);
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFile("net", theirs);
    QStringList shown;
    const ModalWatcher question(
        [&](QWidget &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>();
            shown = rows(*list);
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                if (list->topLevelItem(i)->text(0) != ticked)
                    continue;
                list->setCurrentItem(list->topLevelItem(i));
                QTest::keyClick(list, Qt::Key_Space);
            }
            QTest::keyClick(list, Qt::Key_Return);
        },
        "paravue::ForeignChangesDialog");
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QTEST(shown, "shown");
    QByteArray saved;
    for (const QByteArray &line : net().split('\n')) {
        if (line.startsWith("HOSTNAME") || line.startsWith("PLACE"))
            saved += (saved.isEmpty() ? "" : " ") + line.mid(line.indexOf('\''));
    }
    QTEST(saved, "saved");
    QVERIFY2(net().contains(theirs.contains("99") ? "99" : "17"), net());
    QCOMPARE(net().contains("A/B"), theirs.contains("A/B"));
}

/// The Enter that has begun the save may be held, or pressed twice.
void TestForeignChanges::leavesDecisionsToASecondPress()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFile("net", QByteArray(Net).replace("Gate", "Yard"));
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [this](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this, [this] { setFile("net", net().replace("'new'", "'limited'")); });
    });
    QStyleHints &hints = *QGuiApplication::styleHints();
    const ModalWatcher question(
        [&hints](QWidget &dialog) {
            for (QWidget *focus : {dialog.focusWidget(), dialog.findChild<QWidget *>("goOn")}) {
                focus->setFocus();
                holdEnter(dialog);
                hints.setMouseDoubleClickInterval(60'000);
                QTest::keyClick(focus, Qt::Key_Return);
                hints.setMouseDoubleClickInterval(0);
                QVERIFY(dialog.isVisible());
            }
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
            QVERIFY(!dialog.isVisible());
        },
        "paravue::ForeignChangesDialog");
    const auto hold = [&hints] {
        QWidget *dialog = QApplication::activeModalWidget();
        for (QWidget *focus :
             {dialog->focusWidget(), static_cast<QWidget *>(dialog->findChildren<QTreeWidget *>()[1])}) {
            focus->setFocus();
            holdEnter(*dialog);
            hints.setMouseDoubleClickInterval(60'000);
            QTest::keyClick(focus, Qt::Key_Return);
            hints.setMouseDoubleClickInterval(0);
            QVERIFY(dialog->isVisible());
        }
    };
    SavePilot pilot(Steps{{"Sent, but the recorder keeps one value otherwise", "Go on editing", hold}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(question.count(), 1);
    QCOMPARE(session.store.value(HostName), QString("new")); // an edit still
    QCOMPARE(session.changes(), QString("1 change"));
}

/// Somebody else saves while the list of changes is read.
void TestForeignChanges::comparesAgainBehindTheReview()
{
    Sending session(address(), true, true);
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    QStringList shown;
    const ModalWatcher review(
        [&](QWidget &dialog) {
            shown << "review";
            if (shown.size() == 1)
                setFile("net", QByteArray(Net).replace("Gate", "Yard"));
            QTest::keyClick(&dialog, Qt::Key_Return);
        },
        "paravue::ReviewDialog");
    const ModalWatcher question(
        [&](QWidget &dialog) {
            shown += rows(*dialog.findChild<QTreeWidget *>());
            QTest::keyClick(&dialog, Qt::Key_Return);
        },
        "paravue::ForeignChangesDialog");
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(shown, QStringList({"review", "Page › Place|Gate|Yard|Gate|net/untitled/PLACE", "review"}));
    QVERIFY2(net().contains("'new'") && net().contains("'Yard'"), net());
}

void TestForeignChanges::undoesWhatSomebodyElseHasNotTouched()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(session.window.get()));
    session.type("old", "new");
    session.type("Gate", "Mine");
    setFile("net", QByteArray(Net).replace("Gate", "Yard"));
    setFaults({"error@PUT NET CONFIG"});
    const ModalWatcher question(
        [](QWidget &dialog) { buttonWithText<QPushButton>(dialog, "Continue")->click(); },
        "paravue::ForeignChangesDialog");
    SavePilot pilot(Steps{{"Device error", "Go on editing"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(session.store.value(HostName), QString("new"));
    session.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(session.window.get()));
    for (int step = 0; step < 2; ++step) {
        QTest::keySequence(session.window.get(), QKeySequence::Undo);
        QCOMPARE(session.store.value(HostName), QString("old"));
        QCOMPARE(session.store.value("net/untitled/PLACE"), QString("Yard"));
    }
    QTest::keySequence(session.window.get(), QKeySequence::Redo);
    QCOMPARE(session.store.value(HostName), QString("new"));
}

void TestForeignChanges::asksWithoutARecorder()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    m_recorder->close();
    ModalWatcher question([](QWidget &box) { buttonWithText<QPushButton>(box, "Go on editing")->click(); });
    session.pressOk();
    QCOMPARE(question.count(), 1);
    QVERIFY2(question.texts().constFirst().contains("The recorder refuses the connection"),
             qPrintable(question.texts().constFirst()));
    QVERIFY(session.window->isVisible());
    QCOMPARE(session.changes(), QString("1 change"));
    QVERIFY(session.isIdle());
}

void TestForeignChanges::asksForANewLoginBeforeAnythingIsLost()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    session.store.setCredentialsSource(std::make_unique<KnownLogin>("admin"));
    setFaults({"refuse=1"});
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QVERIFY(net().contains("HOSTNAME = 'new'"));
}

QTEST_MAIN(TestForeignChanges)
#include "tst_foreign_changes.moc"
