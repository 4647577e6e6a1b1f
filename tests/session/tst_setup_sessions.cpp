#include "OwnUserFolders.h"
#include "ProgramRun.h"
#include "SetupRun.h"
#include "setup/CommandLine.h"
#include "setup/RecorderAddress.h"
#include "setup/SetupProgram.h"
#include "snapshots/SnapshotStore.h"
#include "support/TestTable.h"

#include <QAccessible>
#include <QApplication>
#include <QCryptographicHash>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QPushButton>
#include <QStyleHints>
#include <QTimer>

#include <functional>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// Acts as the user of a session: does \a act to the topmost window whenever there is one.
class User
{
public:
    explicit User(const std::function<void(QWidget &)> &act)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [act] {
            QWidget *top = QApplication::activeModalWidget();
            if (!top)
                return;
            // Not from here: a timer whose receiver waits in a dialog is not called again. It may have been
            // called twice before this comes, and a window that was accepted is still there then.
            QTimer::singleShot(0, top, [act, top] {
                if (top == QApplication::activeModalWidget())
                    act(*top);
            });
        });
        m_timer.start(20);
    }

private:
    QTimer m_timer;
};

} // namespace

class TestSetupSessions : public ProgramTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void init() { startRecorder(); }
    void previewsOnCopies();
    void sendsWhatWasEditedWithoutTheRecorder();
    void triesAgainToSaveASnapshot();
    void refusesALanguageThatTheDescriptionLacks_data();
    void refusesALanguageThatTheDescriptionLacks();
    void endsLikeTheSessionThatShowsNothing_data();
    void endsLikeTheSessionThatShowsNothing();
    void confirmsTheSaveOfAnAcceptedWindow();
    void endsWithOneWhenCancelled();
    void forgetsASaveThatHasFailedInTheWindow();
    void endsWhenASignalStopsTheSave_data();
    void endsWhenASignalStopsTheSave();
    void asksForALoginOnce();

private:
    CommandLine sessionWithTheRecorder(const QString &account = "admin:admin@") const;
    ExitCode runSessionAs(const CommandLine &commandLine, const std::function<void(QWidget &)> &user);
    ExitCode runSessionAs(const std::function<void(QWidget &)> &user);

    OwnUserFolders m_user;
};

CommandLine TestSetupSessions::sessionWithTheRecorder(const QString &account) const
{
    CommandLine commandLine;
    const QString url = addressOf(*m_recorder, {}).mid(1);
    commandLine.address = RecorderAddress::fromText(account + url, RecorderAddress::Password::AsSent).address;
    commandLine.language = "en";
    return commandLine;
}

ExitCode TestSetupSessions::runSessionAs(const std::function<void(QWidget &)> &user)
{
    return runSessionAs(sessionWithTheRecorder(), user);
}

ExitCode TestSetupSessions::runSessionAs(const CommandLine &commandLine,
                                         const std::function<void(QWidget &)> &user)
{
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(0); // Enter may come at once
    const User acting(user);
    return runSession(commandLine);
}

void TestSetupSessions::previewsOnCopies()
{
    // The simulator has just put its files there: the description and all the others.
    const QDir folder(m_folder->filePath("data"));
    const auto contents = [&folder] {
        QMap<QString, QByteArray> contents;
        for (const QFileInfo &info : folder.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            QFile file(info.filePath());
            if (file.open(QIODevice::ReadOnly))
                contents.insert(info.fileName(), file.readAll() + info.lastModified().toString().toUtf8());
        }
        return contents;
    };
    const auto before = contents();
    QVERIFY(before.size() >= 9);

    CommandLine commandLine;
    commandLine.description = m_recorder->filePath("interface");
    commandLine.filesFolder = folder.path();
    commandLine.language = "en";
    QString shown;
    QString picture;
    const auto proxy = [] { return QNetworkProxy::applicationProxy(); };
    const QNetworkProxy usual = proxy();
    QNetworkProxy meanwhile;
    const ExitCode code = runSessionAs(commandLine, [&](QWidget &top) {
        meanwhile = proxy();
        for (QWidget *child : top.findChildren<QWidget *>()) {
            if (child->inherits("paravue::LiveView"))
                picture = QAccessible::queryAccessibleInterface(child)->text(QAccessible::Value);
        }
        for (QLineEdit *name : top.findChildren<QLineEdit *>()) {
            if (name->text() != "Warehouse recorder")
                continue;
            shown = name->text();
            name->setText("changed");
        }
        if (top.inherits("paravue::ReviewDialog"))
            QTest::keyClick(&top, Qt::Key_Return);
        else if (QPushButton *save = buttonWithText<QPushButton>(top, "Save"))
            save->click();
    });
    QCOMPARE(code, ExitCode::Done);
    QCOMPARE(picture, "No video in a preview");
    QVERIFY(meanwhile.type() == QNetworkProxy::HttpProxy && meanwhile.port() == 0); // leads nowhere
    QCOMPARE(proxy(), usual);
    QVERIFY2(!shown.isEmpty() && before.value("streams").contains(shown.toUtf8()), qPrintable(shown));
    QCOMPARE(contents(), before);
    QCOMPARE(m_received, QStringList());
}

/// A snapshot is kept by a save, edited without the recorder, and its edits are sent.
void TestSetupSessions::sendsWhatWasEditedWithoutTheRecorder()
{
    const auto press = [](QWidget &top, const QString &caption) {
        if (auto *button = buttonWithText<QPushButton>(top, caption))
            button->click();
    };
    const auto rename = [](QWidget &top, const QString &before, const QString &after) {
        for (QLineEdit *name : top.findChildren<QLineEdit *>()) {
            if (name->text() == before)
                name->setText(after);
        }
    };
    const auto send = [&](QWidget &top) {
        press(top, "Save");
        press(top, "Close"); // that the save is confirmed
    };
    QCOMPARE(runSessionAs(send), ExitCode::Done);
    const QString path = m_folder->filePath("kept.zip");
    QDirIterator archives(snapshotsFolder(), {"*.zip"}, QDir::Files, QDirIterator::Subdirectories);
    QVERIFY(archives.hasNext());
    QVERIFY(QFile::copy(archives.next(), path));
    m_received.clear();

    CommandLine open;
    open.snapshot = path;
    QStringList questions; // "Refresh" would ask about the edits
    QCOMPARE(runSessionAs(open,
                          [&](QWidget &top) {
                              if (auto *box = qobject_cast<QMessageBox *>(&top)) {
                                  questions << box->text();
                                  box->reject();
                                  return;
                              }
                              rename(top, "Warehouse recorder", "Edited");
                              top.activateWindow();
                              QVERIFY(QTest::qWaitForWindowActive(&top));
                              QTest::keyClick(&top, Qt::Key_F5);
                              press(top, "Save");
                          }),
             ExitCode::Done);
    QCOMPARE(m_received, QStringList());
    QCOMPARE(questions, QStringList());

    CommandLine merge = sessionWithTheRecorder();
    merge.snapshot = path;
    merge.sendsEdits = true;
    QStringList asked;
    QCOMPARE(runSessionAs(merge,
                          [&](QWidget &top) {
                              if (top.inherits("paravue::MergeDialog")) {
                                  asked << "edits";
                                  QTest::keyClick(&top, Qt::Key_Return);
                              } else if (top.inherits("paravue::ReviewDialog")) {
                                  asked << "changes";
                                  QTest::keyClick(&top, Qt::Key_Return);
                              } else if (!asked.isEmpty()) {
                                  send(top);
                              }
                          }),
             ExitCode::Done);
    QCOMPARE(asked, QStringList({"edits", "changes"}));
    QFile streams(m_recorder->filePath("streams"));
    QVERIFY(streams.open(QIODevice::ReadOnly));
    QVERIFY(streams.readAll().contains("Edited"));
}

void TestSetupSessions::triesAgainToSaveASnapshot()
{
    QCOMPARE(runSessionAs([&](QWidget &top) {
                 for (const QString &caption : {"Save", "Close"}) {
                     if (auto *button = buttonWithText<QPushButton>(top, caption))
                         button->click();
                 }
             }),
             ExitCode::Done);
    QDirIterator archives(snapshotsFolder(), {"*.zip"}, QDir::Files, QDirIterator::Subdirectories);
    QVERIFY(archives.hasNext());
    const QString folder = m_folder->filePath("archives");
    QVERIFY(QDir().mkpath(folder));
    CommandLine open;
    open.snapshot = folder + "/kept.zip";
    QVERIFY(QFile::copy(archives.next(), open.snapshot));
    const QString away = m_folder->filePath("away");
    QStringList messages;
    QCOMPARE(runSessionAs(open,
                          [&](QWidget &top) {
                              if (auto *box = qobject_cast<QMessageBox *>(&top)) {
                                  messages << box->text();
                                  if (QAbstractButton *retry = box->button(QMessageBox::Retry)) {
                                      QDir().rename(away, folder);
                                      retry->click();
                                  } else {
                                      box->accept();
                                  }
                              } else if (auto *save = buttonWithText<QPushButton>(top, "Save")) {
                                  top.findChild<QLineEdit *>()->setText("x");
                                  QDir().rename(folder, away);
                                  save->click();
                              }
                          }),
             ExitCode::Done);
    QCOMPARE(messages.size(), 2); // of the window, and when that was closed
    QVERIFY2(messages.constFirst().contains("cannot be written"), qPrintable(messages.constFirst()));
    SnapshotStore store(open.snapshot);
    store.load();
    QVERIFY(QFile(open.snapshot).size() > 0 && store.problem().isEmpty());
}

void TestSetupSessions::refusesALanguageThatTheDescriptionLacks_data()
{
    const TestTable<QByteArray, QString> row("description", "reason");
    row("others", {}, "no texts in the language \"de\", only in: en, ru");
    row("none", "<pvsetup version='1.0'><tabwidget><tab/></tabwidget></pvsetup>", "has no translations");
}

void TestSetupSessions::refusesALanguageThatTheDescriptionLacks()
{
    QFETCH(QByteArray, description);
    QFETCH(QString, reason);
    if (!description.isEmpty()) {
        QFile file(m_recorder->filePath("interface"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(description) > 0);
    }
    CommandLine commandLine = sessionWithTheRecorder();
    commandLine.language = "de";
    QString message;
    QCOMPARE(runSessionAs(commandLine,
                          [&](QWidget &top) {
                              if (auto *box = qobject_cast<QMessageBox *>(&top)) {
                                  message = box->text();
                                  box->close();
                              }
                          }),
             ExitCode::WrongUsage);
    QVERIFY2(message.contains(reason), qPrintable(message));
    const Run run = runProgram({addressOf(*m_recorder, "admin:admin"), "--language", "de", "--screenshot",
                                m_folder->filePath("pictures")});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
    QCOMPARE(run.out, "");
}

/// The user closes the message, and then the window.
void TestSetupSessions::endsLikeTheSessionThatShowsNothing_data()
{
    const TestTable<QString, QByteArray, ExitCode> row("account", "description", "exitCode");
    row("login given up", "admin:wrong@", "", ExitCode::Login);
    row("nobody listens", "", "", ExitCode::Network);
    row("description is no XML", "admin:admin@", "<pvsetup>", ExitCode::BadData);
}

void TestSetupSessions::endsLikeTheSessionThatShowsNothing()
{
    QFETCH(QString, account);
    QFETCH(QByteArray, description);
    QFETCH(ExitCode, exitCode);
    const CommandLine commandLine = sessionWithTheRecorder(account.isEmpty() ? "a:b@" : account);
    if (account.isEmpty())
        m_recorder->close();
    QFile file(m_recorder->filePath("interface"));
    if (!description.isEmpty())
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(description) > 0);
    file.close();
    bool hasSeenMessage = false;
    const ExitCode code = runSessionAs(commandLine, [&](QWidget &top) {
        const bool isMessage = qobject_cast<QMessageBox *>(&top);
        hasSeenMessage = hasSeenMessage || isMessage;
        if (isMessage || hasSeenMessage || top.inherits("cDlg"))
            top.close();
    });
    QCOMPARE(code, exitCode);
    QVERIFY(hasSeenMessage);
}

void TestSetupSessions::confirmsTheSaveOfAnAcceptedWindow()
{
    QStringList shown;
    const ExitCode code = runSessionAs([&shown](QWidget &top) {
        if (QPushButton *save = buttonWithText<QPushButton>(top, "Save"))
            save->click();
        QPushButton *close = buttonWithText<QPushButton>(top, "Close");
        if (!close || !top.inherits("paravue::SendingDialog"))
            return;
        for (const QLabel *label : top.findChildren<QLabel *>())
            shown << label->text();
        close->click();
    });
    QCOMPARE(code, ExitCode::Done);
    QVERIFY2(shown.contains("Sent and confirmed"), qPrintable(shown.join('|')));
    QCOMPARE(m_received, QStringList({"streams", "net", "time", "timers", "disk", "users", "state"}));
}

void TestSetupSessions::endsWithOneWhenCancelled()
{
    const ExitCode code = runSessionAs([](QWidget &top) { QTest::keyClick(&top, Qt::Key_Escape); });
    QCOMPARE(code, ExitCode::Rejected);
    QCOMPARE(m_received, QStringList());
}

void TestSetupSessions::forgetsASaveThatHasFailedInTheWindow()
{
    const auto failing = connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
                                 [this] { m_recorder->close(); });
    bool hasFailed = false;
    QString message;
    const ExitCode code = runSessionAs([&](QWidget &top) {
        if (auto *box = qobject_cast<QMessageBox *>(&top)) {
            message = box->text();
            box->accept();
        } else if (QPushButton *goOn = buttonWithText<QPushButton>(top, "Go on editing")) {
            if (!buttonWithText<QPushButton>(top, "Send the rest"))
                return; // still compares
            hasFailed = true;
            goOn->click();
        } else if (QPushButton *save = buttonWithText<QPushButton>(top, "Save")) {
            if (hasFailed)
                top.close();
            else
                save->click();
        }
    });
    disconnect(failing);
    QCOMPARE(code, ExitCode::Rejected);
    QCOMPARE(message, QString());
    QVERIFY(hasFailed);
    QVERIFY(m_received.size() < 7);
}

void TestSetupSessions::endsWhenASignalStopsTheSave_data()
{
    const TestTable<bool, ExitCode> row("hasBegun", "exitCode");
    row("while the recorder is asked", false, ExitCode::Rejected);
    row("when a file has arrived", true, ExitCode::Cancelled);
}

void TestSetupSessions::endsWhenASignalStopsTheSave()
{
    QFETCH(bool, hasBegun);
    const auto quit = [] { QCoreApplication::exit(); }; // as the program does on a signal
    if (hasBegun)
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, quit);
    else
        m_recorder->setReplyDelay(100);
    ExitCode code = ExitCode::Done;
    QTimer::singleShot(0, this, [&] {
        code = runSessionAs([&](QWidget &top) {
            if (QPushButton *save = buttonWithText<QPushButton>(top, "Save"))
                save->click();
            else if (!hasBegun && top.inherits("paravue::SendingDialog"))
                quit();
        });
    });
    QCoreApplication::exec();
    QCOMPARE(m_received.size(), hasBegun ? 1 : 0);
    QTEST(code, "exitCode");
}

void TestSetupSessions::asksForALoginOnce()
{
    QFile accounts(m_recorder->filePath("users"));
    QVERIFY(accounts.open(QIODevice::WriteOnly));
    accounts.write("CNT=1\nNAME0=admin\nPASSWD0=s3cret\nLEVEL0=2\n");
    accounts.close();
    QStringList passwords{"s3cre", "s3cret"};
    QStringList events;
    const auto user = [&](QWidget &top) {
        if (auto *box = qobject_cast<QMessageBox *>(&top)) {
            events += box->text();
            box->accept();
        } else if (auto *password = top.findChild<QLineEdit *>("lineEditPassword")) {
            events += top.findChild<QLabel *>("labelRefusal")->text();
            // The login is typed once.
            if (passwords.size() == 2)
                QTest::keyClicks(top.focusWidget(), "admin");
            QTest::keyClicks(password, passwords.takeFirst());
            QTest::keyClick(password, Qt::Key_Return);
        } else if (buttonWithText<QPushButton>(top, "Save")) {
            events += "loaded";
            QTest::keyClick(&top, Qt::Key_Escape);
        }
    };
    const QString refused = "The recorder has refused the login.";
    QCOMPARE(runSessionAs(sessionWithTheRecorder("admin:wrong@"), user), ExitCode::Rejected);
    QCOMPARE(events, QStringList({refused, refused, "loaded"}));
    QCOMPARE(runSessionAs(sessionWithTheRecorder(""), user), ExitCode::Rejected);
    QCOMPARE(events, QStringList({refused, refused, "loaded", "loaded"}));

    QFile settings(m_user.settingsPath());
    QVERIFY(settings.open(QIODevice::ReadOnly));
    const QByteArray text = settings.readAll();
    const QByteArray digest = QCryptographicHash::hash("s3cret", QCryptographicHash::Md5).toHex();
    QVERIFY(text.contains("password0=" + digest.toHex()));
    QVERIFY(!text.contains(QByteArray("s3cret").toHex()) && !text.contains("password1="));
}

QTEST_MAIN(TestSetupSessions)
#include "tst_setup_sessions.moc"
