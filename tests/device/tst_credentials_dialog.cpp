#include "OwnUserFolders.h"
#include "device/OrbNetSetup.h"
#include "device/dialog/Authorization.h"
#include "device/dialog/cDlg.h"
#include "device/login/SavedCredentials.h"
#include "device/login/SettingsFile.h"
#include "device/login/cODAdaptor.h"
#include "recorder/Companion.h"
#include "recorder/RecorderServer.h"
#include "store/PasswordDigest.h"
#include "support/ModalWatcher.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QLocalServer>
#include <QPushButton>
#include <QScreen>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

using namespace paravue;
using namespace paravue::test;

class TestCredentialsDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void opensWhenALoginIsRefused();
    void isFilledInWithKeys_data();
    void isFilledInWithKeys();
    void refusesLettersThatCannotBeSent();
    void hasTheNamesOfItsParts();
    void standsInTheMiddleOfTheWindow();
    void showsThePasswordOnRequest();
    void forgetsTheRememberedLogin();
    void endsWithWhatEndsItsLoop_data();
    void endsWithWhatEndsItsLoop();
    void makesRoomForItsTexts();
    void showsWhatTheCompanionCallsTheRecorder();
    void doesWithoutABadCompanion_data();
    void doesWithoutABadCompanion();
    void waitsNoLongerThanItMay();

private:
    std::unique_ptr<OwnUserFolders> m_user;
};

void TestCredentialsDialog::init()
{
    m_user = std::make_unique<OwnUserFolders>();
}

void TestCredentialsDialog::opensWhenALoginIsRefused()
{
    const QTemporaryDir folder;
    recorder::RecorderServer recorder(folder.filePath("data"));
    QVERIFY2(recorder.listen(), qPrintable(recorder.errorString()));
    OrbNetSetup store("admin:wrong@127.0.0.1:" + QString::number(static_cast<qint16>(recorder.port())));
    ModalWatcher dialogs({}, "cDlg");
    QSignalSpy problems(&store, &OrbSetup::pseudothrow);
    store.load();
    QVERIFY(waitUntil([&] { return !problems.isEmpty(); }));
    QCOMPARE(problems.first().first().toString(), "Authorization failed");
    QCOMPARE(dialogs.count(), 1);
}

void TestCredentialsDialog::isFilledInWithKeys_data()
{
    // Key 0 types the password.
    const TestTable<QByteArray, QList<int>, QByteArray, QByteArray> row("login", "keys", "answer",
                                                                        "remember");
    const QByteArray digest = "4ac6430a17d0215b3052b15c879d48bc"; // of "pass word"
    row("login and password", "", {Qt::Key_I, Qt::Key_Tab, 0, Qt::Key_Return}, "i " + digest, "true");
    row("password for a known login", "иван", {0, Qt::Key_Enter}, "иван " + digest, "true");
    row("no password", "a", {Qt::Key_Return}, "a d41d8cd98f00b204e9800998ecf8427e", "true");
    row("not to be remembered", "a", {0, Qt::Key_Tab, Qt::Key_Space, Qt::Key_Tab, Qt::Key_Space},
        "a " + digest, "false");
    row("nothing without a login", "a",
        {0, Qt::Key_Backtab, Qt::Key_Delete, Qt::Key_Return, Qt::Key_B, Qt::Key_Return}, "b " + digest,
        "true");
    row("cancelled", "a", {0, Qt::Key_Tab, Qt::Key_Space, Qt::Key_Escape}, "", "false");
}

void TestCredentialsDialog::isFilledInWithKeys()
{
    QFETCH(QByteArray, login);
    QFETCH(QList<int>, keys);
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, remember);
    Credentials record{false, "host", "", 0, login, ""};
    {
        cDlg dialog(record, nullptr, nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        for (const int key : keys) {
            QVERIFY(dialog.isVisible());
            key ? QTest::keyClick(dialog.focusWidget(), Qt::Key(key))
                : QTest::keyClicks(dialog.focusWidget(), "pass word");
        }
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), answer.isEmpty() ? 0 : 1);
    }
    QCOMPARE(record.password.isEmpty() ? "" : record.login + ' ' + record.password, answer);
    QCOMPARE(record.remember, !answer.isEmpty() && remember == "true");
    QCOMPARE(SettingsFile::shared()->value("authorization/remember"), remember);
    cDlg next(record, nullptr, nullptr);
    QCOMPARE(next.findChild<QCheckBox *>("checkBoxRemember")->isChecked(), remember == "true");
}

/// Half of a surrogate pair stands for a letter that the local encoding lacks: here that is UTF-8.
void TestCredentialsDialog::refusesLettersThatCannotBeSent()
{
    Credentials record{false, "host", "", 0, "a", ""};
    cDlg dialog(record, nullptr, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *password = dialog.findChild<QLineEdit *>("lineEditPassword");
    const auto *refusal = dialog.findChild<QLabel *>("labelRefusal");
    password->setText(QString("pass") + QChar(0xd800));
    QTest::keyClick(password, Qt::Key_Return);
    QVERIFY(dialog.isVisible());
    QVERIFY(record.password.isEmpty());
    QVERIFY2(refusal->isVisible() && refusal->text().contains("password"), qPrintable(refusal->text()));
    auto *login = dialog.findChild<QLineEdit *>("lineEditLogin");
    login->setText(QChar(0xd800));
    QTest::keyClick(login, Qt::Key_Return);
    QVERIFY2(refusal->text().contains("login"), qPrintable(refusal->text()));
    login->setText("a");
    password->setText("pass");
    QTest::keyClick(password, Qt::Key_Return);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(record.password, "1a1dc91c907325c69271ddf0c944bc72"); // of "pass"
}

void TestCredentialsDialog::hasTheNamesOfItsParts()
{
    Credentials record{false, "host:1", "", 0, "", ""};
    cDlg dialog(record, nullptr, nullptr);
    QCOMPARE(dialog.windowTitle(), "Dialog");
    const auto labelText = [&](const char *name) { return dialog.findChild<QLabel *>(name)->text(); };
    QCOMPARE(labelText("labelTitle"), "Please enter authorization information for host:1");
    QCOMPARE(labelText("labelLogin") + ' ' + labelText("labelPassword"), "Login Password");
    QVERIFY(!dialog.findChild<QLabel *>("labelIcon")->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(dialog.findChild<QLineEdit *>("lineEditPassword")->echoMode(), QLineEdit::Password);
    QCOMPARE(dialog.findChild<QCheckBox *>("checkBoxRemember")->text(), "Remember password");
    QVERIFY(!dialog.findChild<QDialogButtonBox *>("buttonBox")->button(QDialogButtonBox::Ok)->isEnabled());
    for (const char *name :
         {"vboxLayout", "hboxLayout", "hboxLayout1", "hboxLayout2", "hboxLayout3", "hboxLayout4"})
        QVERIFY2(dialog.findChild<QLayout *>(name), name);
}

void TestCredentialsDialog::standsInTheMiddleOfTheWindow()
{
    Credentials record{false, "host", "", 0, "", ""};
    QWidget window;
    window.setGeometry(150, 120, 500, 400);
    window.show();
    cDlg dialog(record, nullptr, &window);
    dialog.tellRefusal();
    dialog.show();
    const QPoint distance = dialog.geometry().center() - window.geometry().center();
    QVERIFY2(distance.manhattanLength() <= 4, qPrintable(QString::number(distance.manhattanLength())));
}

void TestCredentialsDialog::showsThePasswordOnRequest()
{
    Credentials record{false, "host", "", 0, "a", ""};
    cDlg dialog(record, nullptr, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *password = dialog.findChild<QLineEdit *>("lineEditPassword");
    auto *action = dialog.findChild<QAction *>("actionShowPassword");
    QVERIFY(password->actions().contains(action));
    QTest::keyClicks(password, "secret");
    QCOMPARE(password->displayText().count("e"), 0);
    const QString toolTip = action->toolTip();
    QTest::keyClick(password, Qt::Key_F8, Qt::AltModifier);
    QCOMPARE(password->displayText(), "secret");
    QVERIFY(action->toolTip() != toolTip);
    action->trigger();
    QCOMPARE(password->echoMode(), QLineEdit::Password);
    QCOMPARE(dialog.focusWidget(), password);
}

void TestCredentialsDialog::forgetsTheRememberedLogin()
{
    Save({true, "other", "", 0, "b", "digest"});
    Save({true, "HOST", "", 0, "a", "digest"});
    Credentials record{false, "host:5049", "", 0, "a", ""};
    {
        cDlg dialog(record, nullptr, nullptr);
        dialog.show();
        auto *login = dialog.findChild<QLineEdit *>("lineEditLogin");
        auto *action = dialog.findChild<QAction *>("actionForgetLogin");
        QVERIFY(login->actions().contains(action) && action->isVisible());
        action->trigger();
        QCOMPARE(login->text(), "");
        QVERIFY(!action->isVisible());
        QVERIFY(dialog.findChild<QLabel *>("labelNotice")->isVisible());
    }
    const auto settings = SettingsFile::shared()->all();
    QVERIFY(!savedCredentials(settings, "host"));
    QVERIFY(savedCredentials(settings, "other"));
    cDlg next(record, nullptr, nullptr);
    QVERIFY(!next.findChild<QAction *>("actionForgetLogin")->isVisible());
}

void TestCredentialsDialog::endsWithWhatEndsItsLoop_data()
{
    QTest::addColumn<bool>("isThrown");
    QTest::newRow("a text is thrown through it") << true;
    QTest::newRow("its window is destroyed") << false;
}

void TestCredentialsDialog::endsWithWhatEndsItsLoop()
{
    QFETCH(bool, isThrown);
    auto window = std::make_unique<QWidget>();
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    bool wasOpen = false;
    QTimer::singleShot(0, this, [&] {
        wasOpen = QApplication::activeModalWidget() && QApplication::activeModalWidget()->inherits("cDlg");
        isThrown ? throw QString("thrown") : window.reset();
    });
    Credentials record{false, "host", "", 0, "", ""};
    QString caught;
    bool isAnswered = false;
    try {
        isAnswered = Authorize(record, true);
    } catch (const QString &text) {
        caught = text;
    }
    QVERIFY(wasOpen && !isAnswered);
    QCOMPARE(caught, isThrown ? "thrown" : "");
    QVERIFY(!QApplication::activeModalWidget());
}

void TestCredentialsDialog::makesRoomForItsTexts()
{
    // As much text as a small screen has at 200 %.
    Credentials record{false, "host", QByteArray("name ").repeated(300), 0, "", ""};
    cDlg dialog(record, nullptr, nullptr);
    dialog.tellRefusal();
    dialog.show();
    for (const char *name : {"labelTitle", "labelRefusal"}) {
        const auto *label = dialog.findChild<QLabel *>(name);
        QVERIFY2(label->height() >= label->heightForWidth(label->width()), name);
    }
    QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
}

void TestCredentialsDialog::showsWhatTheCompanionCallsTheRecorder()
{
    const QString name = "Ворота, <b>" + QString("long ").repeated(10);
    cODAdaptor adaptor;
    adaptor.setRetryInterval(std::chrono::milliseconds(20));
    Credentials record{false, "HOST:-25536", "", 0, "", ""};
    cDlg dialog(record, &adaptor, nullptr);
    dialog.tellRefusal();
    dialog.show();
    const auto *title = dialog.findChild<QLabel *>("labelTitle");
    QSignalSpy updates(&adaptor, &cODAdaptor::update);
    auto companion = std::make_unique<recorder::Companion>();
    QVERIFY2(companion->listen(), qPrintable(companion->errorString()));
    companion->setRecorders({{"host:40000", name + "\n"}, {"other", "b"}});
    AWAIT_VERIFY(title->text().endsWith(" for HOST:-25536 (" + name.trimmed() + ')'));
    QCOMPARE(QString::fromUtf8(record.name), name.trimmed());
    AWAIT_VERIFY(title->height() >= title->heightForWidth(title->width()));
    QCOMPARE(adaptor.name("OTHER:5049"), "b");

    companion->setRecorders({{"host:40000", "gate"}});
    AWAIT_VERIFY(title->text().endsWith(" (gate)"));
    QCOMPARE(adaptor.name("other"), "");
    // A socket file that is left behind does not keep the next companion from listening, a running one does.
    recorder::Companion second;
    QVERIFY(!second.listen());
    companion.reset();
    AWAIT_COMPARE(adaptor.name("host:40000"), "");
    QCOMPARE(updates.size(), 3);
    QVERIFY(second.listen());
    second.setRecorders({{"host:40000", "gate again"}});
    AWAIT_VERIFY(title->text().endsWith(" (gate again)"));
}

void TestCredentialsDialog::doesWithoutABadCompanion_data()
{
    QTest::addColumn<QByteArray>("says");
    QTest::newRow("endless line") << QByteArray(200'000, 'x');
    QTest::newRow("too many recorders") << QByteArray("a\tb\n").repeated(3) + [] {
        QByteArray lines;
        for (int i = 0; i < 10'001; ++i)
            lines += QByteArray::number(i) + "\tb\n";
        return lines;
    }();
}

void TestCredentialsDialog::doesWithoutABadCompanion()
{
    QFETCH(QByteArray, says);
    QLocalServer companion;
    QVERIFY(companion.listen(cODAdaptor::companionServer()));
    cODAdaptor adaptor;
    AWAIT_VERIFY(companion.hasPendingConnections());
    QLocalSocket *client = companion.nextPendingConnection();
    AWAIT_VERIFY(client->canReadLine());
    QCOMPARE(client->readAll(), "LIST\n");
    client->write("host\tgate\n\nrubbish\nhost\t \n" + says);
    AWAIT_COMPARE(client->state(), QLocalSocket::UnconnectedState);
    QCOMPARE(adaptor.name("host"), "");
}

void TestCredentialsDialog::waitsNoLongerThanItMay()
{
    QSemaphore isListening;
    const std::unique_ptr<QThread> companion(QThread::create([&isListening] {
        QLocalServer server;
        server.listen(cODAdaptor::companionServer());
        isListening.release();
        server.waitForNewConnection(5000);
        QLocalSocket *client = server.nextPendingConnection();
        // The list ends long after the wait for its end should be over.
        for (const QDeadlineTimer limit(2000); client && !limit.hasExpired();) {
            client->write(QByteArray("host\tgate\n").repeated(1000));
            if (!client->waitForBytesWritten(500))
                return;
        }
        if (client && client->write("\n") > 0)
            client->waitForBytesWritten();
    }));
    companion->start();
    isListening.acquire();
    {
        cODAdaptor adaptor;
        adaptor.waitForList(50);
        QCOMPARE(adaptor.name("host"), "");
    }
    QVERIFY(companion->wait(10'000));
}

QTEST_MAIN(TestCredentialsDialog)
#include "tst_credentials_dialog.moc"
