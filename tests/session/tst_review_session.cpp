#include "ModalWatcher.h"
#include "SetupRun.h"
#include "recorder/RecorderServer.h"
#include "support/Waiting.h"

#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>

using namespace paravue::test;

/// Mends what is wrong in the window of the shipped model before it is sent to the simulated recorder.
class TestReviewSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mendsBeforeItSends();
};

void TestReviewSession::mendsBeforeItSends()
{
    const QTemporaryDir folder;
    recorder::RecorderServer recorder(folder.path(), "standard");
    QVERIFY(recorder.listen());
    Session session("admin:admin@127.0.0.1:" + QString::number(qint16(recorder.port())),
                    {.tracksChanges = true, .reviewBeforeSending = true});
    QVERIFY(session.isFine());
    QWidget &window = *session.window;
    const auto press = [&window](const char *keys) {
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keySequence(window.focusWidget(), QKeySequence(keys));
    };
    QLineEdit *host = session.field("paravue-r4");
    QLineEdit *address = session.field("192.168.10.20");
    const auto *header = window.findChild<QToolButton *>("changes");
    auto *save = buttonWithText<QPushButton>(window, "Save");
    QVERIFY(host && address && save);

    host->setFocus();
    host->selectAll();
    QTest::keyClick(host, Qt::Key_Delete);
    replaceText(*address, "10.0.0.");
    QCOMPARE(header->text(), "2 changes, 2 problems");
    QString question;
    {
        const ModalWatcher asked([&question](QWidget &box) {
            question = static_cast<QMessageBox &>(box).informativeText();
            QTest::keyClick(&box, Qt::Key_Return);
        });
        QSignalSpy saved(&session.store, &OrbSetup::storeDone);
        save->click();
        QCOMPARE(question, "Network › Host name: A value is needed here\nand 1 more");
        QCOMPARE(saved.size(), 0);
    }
    press("F12"); // takes the focus back from the question
    QVERIFY(host->hasFocus() && host->isVisible());
    QTest::keyClicks(host, "gate");
    press("F8");
    QVERIFY(address->hasFocus());
    QTest::keyClicks(address, "9");
    QCOMPARE(header->text(), "2 changes");

    QString dialogTitle;
    {
        const ModalWatcher dialogs([&dialogTitle](QWidget &dialog) { dialogTitle = dialog.windowTitle(); },
                                   "QDialog");
        const ModalWatcher find(
            [](QWidget &dialog) {
                QTest::keyClicks(dialog.findChild<QLineEdit *>(), "about hardware");
                QTest::keyClick(dialog.findChild<QLineEdit *>(), Qt::Key_Return);
            },
            "paravue::FindDialog");
        press("Ctrl+F");
        QVERIFY(find.hasSeen());
    }
    QCOMPARE(dialogTitle, "About the recorder");

    const ModalWatcher questions;
    const ModalWatcher list([](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); },
                            "paravue::ReviewDialog");
    QSignalSpy saved(&session.store, &OrbSetup::storeDone);
    save->click();
    QVERIFY(!saved.isEmpty() || saved.wait(20'000));
    QVERIFY(session.isFine());
    QCOMPARE(questions.count(), 0);
    QFile net(recorder.filePath("net"));
    QVERIFY(net.open(QIODevice::ReadOnly));
    const QByteArray kept = net.readAll();
    QVERIFY2(kept.contains("HOSTNAME = 'gate'") && kept.contains("IP = '10.0.0.9'"), kept.constData());
}

QTEST_MAIN(TestReviewSession)
#include "tst_review_session.moc"
