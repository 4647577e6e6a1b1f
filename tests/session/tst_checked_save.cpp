#include "FaultTest.h"
#include "ModalWatcher.h"
#include "changes/FileValues.h"
#include "device/login/Credentials.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "store/ExchangeQueue.h"
#include "support/FullDisk.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/sending/SendingDialog.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>

#include <algorithm>

using namespace paravue;
using namespace paravue::test;

namespace
{

const char Page[] = R"(<pvsetup version="1.0">
  <di>
    <difile name="interface" get_command="GET SETUP"/>
    <difile name="streams" get_command="GET CONFIG" put_command="PUT CONFIG"/>
    <difile name="net" get_command="GET NET CONFIG" put_command="PUT NET CONFIG" type="sectionless"/>
    <difile name="soft" get_command="GET SOFT CONFIG" type="sectionless"/>
    <difile name="time" get_command="GET TIME CONFIG" put_command="PUT TIME CONFIG" type="sectionless"/>
  </di>
  <window><self/></window>
  <buttonOK>
    <action type="call" slot="callSetup" param="save_settings">device</action>
    <action type="call" slot="accept">self</action>
  </buttonOK>
  <tabwidget><tab><name>Page</name>
    <item type="gridlayout">
      <item type="setup"><device/></item>
      <item type="label" row="1"><text>Host</text></item>
      <item type="edit" row="1" column="1"><key>net/untitled/HOSTNAME</key></item>
      <item type="label" row="2"><text>Place</text></item>
      <item type="edit" row="2" column="1"><key>net/untitled/PLACE</key></item>
      <item type="label" row="3"><text>Key</text></item>
      <item type="edit" row="3" column="1"><key>net/untitled/WIFI_KEY</key></item>
      <item type="label" row="4"><text>Name</text></item>
      <item type="edit" row="4" column="1"><key>streams/common/name</key></item>
    </item>
  </tab></tabwidget>
</pvsetup>)";

const QString Name = "Warehouse recorder";
const QByteArray Net = "HOSTNAME=old\nPLACE=Gate\nWIFI_KEY=secret\nUPTIME=17\n";

/// Every row of \a list, its columns joined by "|".
QStringList rows(const QTreeWidget &list)
{
    QStringList texts;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        QStringList columns;
        for (int column = 0; column < list.columnCount(); ++column)
            columns << list.topLevelItem(i)->text(column);
        texts << columns.join('|');
    }
    return texts;
}

class KnownLogin : public CredentialsSource
{
public:
    explicit KnownLogin(const QByteArray &password) : m_password(password) {}
    bool ask(Credentials &record) override
    {
        record.login = "admin";
        record.password = m_password;
        return true;
    }
    void save(const Credentials &) override {}

private:
    QByteArray m_password;
};

/// A window whose saves are compared and confirmed.
struct Sending {
    explicit Sending(const QString &address, bool compares = true, bool isReviewed = false,
                     const QString &snapshots = {})
        : store(address)
    {
        QSignalSpy loaded(&store, &OrbSetup::loadDone);
        WindowOptions options;
        options.tracksChanges = true;
        options.comparesBeforeSending = compares;
        options.confirmsSaves = true;
        options.reviewBeforeSending = isReviewed;
        options.snapshots.folder = snapshots;
        window = std::make_unique<CWinMain>(&store, nullptr, CWinMain::Placement::Window, options);
        isLoaded = loaded.wait(20'000) && waitUntil([this] { return isIdle(); });
    }
    bool isIdle() const { return store.linkStatus().state == LinkStatus::State::Idle; }
    void type(const QString &old, const QString &text) const
    {
        for (QLineEdit *edit : window->findChildren<QLineEdit *>()) {
            if (edit->text() == old) {
                edit->setFocus();
                replaceText(*edit, text);
            }
        }
    }
    void pressOk() const { buttonWithText<QPushButton>(*window, "OK")->click(); }
    /// Empty without any.
    QString changes() const
    {
        const auto *button = window->findChild<QToolButton *>("changes");
        return button->isHidden() ? QString() : button->text();
    }

    OrbNetSetup store;
    std::unique_ptr<CWinMain> window;
    bool isLoaded = false;
};

/// Drives the dialog of a save: waits for each of the states that the script names, notes what it shows, and
/// presses the button that the script has for it.
class SavePilot
{
public:
    struct Step {
        QString headline; ///< its beginning
        QString button;
        std::function<void()> before = {};
    };
    explicit SavePilot(const QList<Step> &script)
        : m_script(script), m_watcher([this](QWidget &dialog) { drive(dialog); }, "paravue::SendingDialog")
    {
    }

    QStringList files;  ///< of the last step
    QStringList values; ///< that are kept otherwise
    QString headline;
    QString described; ///< what a screen reader hears of the widget with the focus
    bool isAtItsEnd() const { return m_next == m_script.size(); }

private:
    void drive(QWidget &dialog)
    {
        const auto lists = dialog.findChildren<QTreeWidget *>();
        // The one of comparing before a save goes by itself.
        while (m_next < m_script.size()) {
            const Step &step = m_script.at(m_next);
            const bool isReached = waitUntil(
                [&] { return !dialog.isVisible() || headlineOf(dialog).startsWith(step.headline); }, 10'000);
            headline = headlineOf(dialog);
            if (!isReached || !dialog.isVisible())
                return;
            files = rows(*lists.at(0));
            values = rows(*lists.at(1));
            described = dialog.focusWidget() ? dialog.focusWidget()->accessibleDescription() : QString();
            ++m_next;
            if (step.before)
                step.before();
            buttonWithText<QPushButton>(dialog, step.button)->click();
        }
        waitUntil([&] { return !dialog.isVisible(); });
    }
    static QString headlineOf(const QWidget &dialog)
    {
        QStringList lines;
        for (const QLabel *label : dialog.findChildren<QLabel *>()) {
            if (label->wordWrap())
                lines << label->text();
        }
        return lines.join(' ');
    }

    const QList<Step> m_script;
    qsizetype m_next = 0;
    ModalWatcher m_watcher;
};

using Steps = QList<SavePilot::Step>;

} // namespace

/// A save that is compared with the recorder before and afterwards.
class TestCheckedSave : public FaultTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void confirmsWhatWasSent();
    void showsWhatTheRecorderKeepsOtherwise_data();
    void showsWhatTheRecorderKeepsOtherwise();
    void keepsWhatWasSentOfAListAsAWhole();
    void findsWhatFollowsFromAnEdit();
    void findsALimitEachTime();
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
    void countsNoFilesThatAreNotSent();
    void asksAboutEditsOfEntriesThatMoved_data();
    void asksAboutEditsOfEntriesThatMoved();
    void keepsWhatSomebodyElseHasChanged_data();
    void keepsWhatSomebodyElseHasChanged();
    void comparesAgainBehindTheReview();
    void keepsWhatWasSentWithoutRoomForTheRecorders_data();
    void keepsWhatWasSentWithoutRoomForTheRecorders();
    void undoesWhatSomebodyElseHasNotTouched();
    void tellsOfASilentRecorder_data();
    void tellsOfASilentRecorder();
    void asksWithoutARecorder();
    void asksForANewLoginBeforeAnythingIsLost();

private:
    QByteArray net() const;
};

void TestCheckedSave::init()
{
    startRecorder();
    setFile("interface", Page);
    setFile("net", Net);
}

QByteArray TestCheckedSave::net() const
{
    QFile file(m_recorder->filePath("net"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().replace("\r\n", "\n") : QByteArray();
}

void TestCheckedSave::confirmsWhatWasSent()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    m_requests.clear();
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(pilot.described, pilot.headline);
    QCOMPARE(pilot.files, QStringList({"streams|Sent and confirmed", "net|Sent and confirmed",
                                       "time|Sent and confirmed"}));
    QCOMPARE(session.window->result(), int(QDialog::Accepted));
    QVERIFY(net().contains("HOSTNAME = 'new'"));
    // Each file is fetched once before and once afterwards; what is never sent is not fetched.
    m_requests.removeIf([](const QString &line) { return !line.contains(" CONFIG"); });
    QCOMPARE(m_requests,
             QStringList({"GET CONFIG", "GET NET CONFIG", "GET TIME CONFIG", "PUT CONFIG", "PUT NET CONFIG",
                          "PUT TIME CONFIG", "GET CONFIG", "GET NET CONFIG", "GET TIME CONFIG"}));
}

void TestCheckedSave::showsWhatTheRecorderKeepsOtherwise_data()
{
    const TestTable<QString, QString, QString, bool> row("button", "shown", "recorder", "isClosed");
    row("keep the recorder's", "Keep the recorder's", "limited", "HOSTNAME = 'limited'", true);
    row("send again", "Send again", "limited", "HOSTNAME = 'new'", true);
    row("go on editing", "Go on editing", "new", "HOSTNAME = 'limited'", false);
}

void TestCheckedSave::showsWhatTheRecorderKeepsOtherwise()
{
    QFETCH(QString, button);
    const QTemporaryDir kept;
    Sending session(address(), true, false, kept.path());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    session.type("secret", "other");
    // The recorder allows another name only, once, has a key of its own, and has counted on.
    const auto limit =
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
            if (name == "net")
                QTimer::singleShot(0, this, [this] {
                    setFile(
                        "net",
                        net().replace("'new'", "'limited'").replace("17", "18").replace("'other'", "'x'"));
                });
        });
    Steps script{{"Sent, but the recorder keeps 2", button, [&] { disconnect(limit); }}};
    if (button == "Send again")
        script += SavePilot::Step{"Sent and confirmed", "Close"};
    SavePilot pilot(script);
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(pilot.values, QStringList({"Page › Host|new|limited|net/untitled/HOSTNAME",
                                        "Page › Key|••••••••|••••••••|net/untitled/WIFI_KEY"}));
    QVERIFY(
        pilot.files.contains(button == "Send again" ? "net|Sent and confirmed" : "net|Sent, kept otherwise"));
    QFETCH(QString, recorder);
    QVERIFY2(net().contains(recorder.toUtf8()), net());
    // Each sending is preceded by a snapshot of what it overwrites.
    QStringList names;
    for (const KeptSnapshot &snapshot : SnapshotFolder(kept.path(), recorderOfAddress(address())).list())
        names << FileValues(snapshotarchive::read(snapshot.path).snapshot.files["net"])
                     .value("untitled/HOSTNAME")
                     .value_or("");
    QCOMPARE(names, button == "Send again" ? QStringList({"limited", "old"}) : QStringList("old"));
    QFETCH(bool, isClosed);
    QCOMPARE(session.window->isVisible(), !isClosed);
    if (button == "Keep the recorder's")
        QCOMPARE(session.store.value(HostName), QString("limited"));
}

void TestCheckedSave::keepsWhatWasSentOfAListAsAWhole()
{
    setFile("net", Net + "CNT=3\nNAME0=ann\nLEVEL0=2\nNAME1=bob\nLEVEL1=0\nNAME2=carol\nLEVEL2=0\n");
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.store.setValue("net/untitled/LEVEL1/1"); // of bob, whom the recorder drops then
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this, [this] {
                setFile("net", Net + "CNT=2\nNAME0=ann\nLEVEL0=2\nNAME1=carol\nLEVEL1=0\n");
            });
    });
    SavePilot pilot(Steps{{"Sent, but the recorder keeps one value otherwise", "Go on editing"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QStringList users;
    for (const QString number : {"0", "1", "2"})
        users << session.store.value("net/untitled/NAME" + number) + ' ' +
                     session.store.value("net/untitled/LEVEL" + number);
    QCOMPARE(users, QStringList({"ann 2", "bob 1", "carol 0"}));
    QCOMPARE(session.store.value("net/untitled/CNT"), "3");
}

void TestCheckedSave::findsWhatFollowsFromAnEdit()
{
    setFile("net", QByteArray(Net).replace("Gate", "8000"));
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "25");
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this,
                               [this] { setFile("net", net().replace("8000", "4000").replace("17", "18")); });
    });
    SavePilot pilot(Steps{{"Sent, but the recorder keeps one value otherwise", "Go on editing"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(pilot.values, QStringList("Page › Place|8000|4000|net/untitled/PLACE"));
}

void TestCheckedSave::findsALimitEachTime()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "30");
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this, [this] { setFile("net", net().replace("= 30", "= 25")); });
    });
    const QString limited = "Sent, but the recorder keeps one value otherwise";
    SavePilot again(Steps{{limited, "Send again"}, {limited, "Go on editing"}});
    session.pressOk();
    QVERIFY2(again.isAtItsEnd(), qPrintable(again.headline));
    QCOMPARE(again.values, QStringList({"Page › Host|30|25|net/untitled/HOSTNAME"}));
    // What was sent is an edit again.
    QCOMPARE(session.changes(), QString("1 change"));
    QCOMPARE(session.store.value(HostName), QString("30"));
}

void TestCheckedSave::sendsTheRestOfABrokenSave()
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

void TestCheckedSave::sendsTheRestOfAStoppedSave()
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

void TestCheckedSave::goesOnEditingAfterABrokenSave()
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

void TestCheckedSave::knowsWhatHasArrivedBeforeAStop()
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
void TestCheckedSave::sendsAListThatWasTakenBackBehindASilence()
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
    bool isAsked = false;
    const ModalWatcher foreign(
        [&isAsked](QWidget &dialog) {
            isAsked = true;
            static_cast<QDialog &>(dialog).accept();
        },
        "paravue::ForeignChangesDialog");
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QVERIFY(!isAsked);
    const FileValues saved(net());
    QCOMPARE(saved.value("untitled/CNT").value_or("") + saved.value("untitled/NAME0").value_or(""), "2ann");
}

void TestCheckedSave::triesAgainLikeANewSave()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"error@PUT NET CONFIG"});
    {
        SavePilot failing(Steps{{"Device error", "Go on editing"}});
        session.pressOk();
        QVERIFY2(failing.isAtItsEnd(), qPrintable(failing.headline));
    }
    setFaults({});
    setFile("net", QByteArray(Net).replace("Gate", "Yard"));
    bool isAsked = false;
    const ModalWatcher foreign(
        [&isAsked](QWidget &dialog) {
            isAsked = true;
            static_cast<QDialog &>(dialog).accept();
        },
        "paravue::ForeignChangesDialog");
    const auto limit =
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [this](const QString &name) {
            if (name == "net")
                QTimer::singleShot(0, this, [this] { setFile("net", net().replace("'new'", "'limited'")); });
        });
    SavePilot pilot(Steps{{"Sent, but the recorder keeps", "Send again", [&] { disconnect(limit); }},
                          {"Sent and confirmed", "Close"}});
    session.window->findChild<QToolButton *>("statusRetry")->click();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QVERIFY(isAsked);
    QVERIFY2(net().contains("'Yard'") && net().contains("'new'"), net());
}

void TestCheckedSave::sendsNothingThatWasTakenBack_data()
{
    const TestTable<bool> row("isFollowed");
    row("of a save in a dialog", true);
    row("of a save behind the window", false);
}

void TestCheckedSave::sendsNothingThatWasTakenBack()
{
    QFETCH(bool, isFollowed);
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"error@PUT NET CONFIG"});
    const ModalWatcher message([](QWidget &box) { static_cast<QMessageBox &>(box).accept(); });
    SavePilot pilot(isFollowed ? Steps{{"Device error", "Go on editing"}} : Steps());
    if (isFollowed)
        session.pressOk();
    else
        ExchangeQueue::of(session.store).call("save_settings", {}, ExchangeQueue::Caller::Task);
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    AWAIT_VERIFY(session.store.linkStatus().state == LinkStatus::State::Failed);
    session.type("new", "old");
    session.window->reject();
    QCOMPARE(session.store.saveStatus().missing, QStringList());
}

void TestCheckedSave::knowsWhatHasArrivedBeforeASecondFault()
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

void TestCheckedSave::knowsWhatHasArrivedOfOtherSaves_data()
{
    const TestTable<ExchangeQueue::Caller, bool, QString> row("caller", "isGivenUp", "left");
    row("given up in the status line", ExchangeQueue::Caller::User, true, "1 change");
    row("of a time task", ExchangeQueue::Caller::Task, false, "");
    row("of a time task, given up", ExchangeQueue::Caller::Task, true, "1 change");
}

void TestCheckedSave::knowsWhatHasArrivedOfOtherSaves()
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

void TestCheckedSave::countsNoFilesThatAreNotSent()
{
    Sending session(address());
    QVERIFY(session.isLoaded && session.store.fileExists("soft"));
    session.store.setValue("soft/untitled/SOFT_VERSION/9.9");
    QCOMPARE(session.changes(), QString());
    session.store.setValue("net/untitled/PLACE/Yard");
    QCOMPARE(session.changes(), QString("1 change"));
}

void TestCheckedSave::confirmsNoSaveThatWasDropped()
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

void TestCheckedSave::asksAboutEditsOfEntriesThatMoved_data()
{
    const TestTable<QString, QString> row("ticked", "users");
    row("theirs", "", "2: ann 2, carol 0,  ");
    row("mine", "net/untitled/LEVEL1", "3: ann 2, bob 1, carol 0");
    row("mine, by a value that was not edited", "net/untitled/NAME1", "3: ann 2, bob 1, carol 0");
}

void TestCheckedSave::asksAboutEditsOfEntriesThatMoved()
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

void TestCheckedSave::keepsWhatSomebodyElseHasChanged_data()
{
    const TestTable<QByteArray, QStringList, QString, QByteArray> row("theirs", "shown", "ticked", "saved");
    row("nothing", Net, {}, {}, "'new' 'Gate'");
    row("a counter", QByteArray(Net).replace("17", "99"), {}, {}, "'new' 'Gate'");
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

void TestCheckedSave::keepsWhatSomebodyElseHasChanged()
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

/// Somebody else saves while the list of changes is read.
void TestCheckedSave::comparesAgainBehindTheReview()
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

void TestCheckedSave::keepsWhatWasSentWithoutRoomForTheRecorders_data()
{
    const TestTable<QString, QString, QString, bool> row("choice", "then", "value", "isClosed");
    row("keep the recorder's", "Keep the recorder's", "Try again", "limited", true);
    row("keep the recorder's, leave", "Keep the recorder's", "Leave them", "new", true);
    row("go on editing", "Go on editing", "Try again", "new", false);
    row("go on editing, leave", "Go on editing", "Leave them", "new", false);
}

void TestCheckedSave::keepsWhatWasSentWithoutRoomForTheRecorders()
{
    SKIP_WITHOUT_FULL_DISK();
    QFETCH(QString, choice);
    QFETCH(QString, then);
    QFETCH(QString, value);
    QFETCH(bool, isClosed);
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this, [this] { setFile("net", net().replace("'new'", "'limited'")); });
    });
    std::unique_ptr<FullDisk> full;
    SavePilot pilot(
        Steps{{"Sent, but", choice, [&] { full = std::make_unique<FullDisk>(); }},
              {"The values of the recorder could not be taken into the window: Can't save a local", then,
               [&] { full.reset(); }}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(session.window->isVisible(), !isClosed);
    QCOMPARE(session.store.value(HostName), value);
    QCOMPARE(session.changes(), QString(choice == "Go on editing" && then == "Try again" ? "1 change" : ""));
}

void TestCheckedSave::undoesWhatSomebodyElseHasNotTouched()
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

void TestCheckedSave::tellsOfASilentRecorder_data()
{
    const TestTable<bool, QString, QString> row("compares", "headline", "stop");
    row("before sending", true, "Fetching what the recorder has now", "Go on editing");
    row("afterwards", false, "Fetching what the recorder has now, to compare it", "Do not compare");
}

void TestCheckedSave::tellsOfASilentRecorder()
{
    QFETCH(bool, compares);
    QFETCH(QString, headline);
    QFETCH(QString, stop);
    Sending session(address(), compares);
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    setFaults({"never@GET NET CONFIG"});
    const auto awaitSilence = [] {
        auto *dialog = qobject_cast<SendingDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->setReportedSilence(100);
        const auto saysSo = [](const QLabel *label) {
            return label->isVisible() && label->text().startsWith("No answer from the recorder for");
        };
        AWAIT_VERIFY(std::ranges::any_of(dialog->findChildren<QLabel *>(), saysSo));
    };
    Steps steps{{headline, stop, awaitSilence}};
    if (!compares)
        steps += SavePilot::Step{"Everything was sent, but could not be confirmed", "Close"};
    SavePilot pilot(steps);
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
}

void TestCheckedSave::asksWithoutARecorder()
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

void TestCheckedSave::asksForANewLoginBeforeAnythingIsLost()
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

QTEST_MAIN(TestCheckedSave)
#include "tst_checked_save.moc"
