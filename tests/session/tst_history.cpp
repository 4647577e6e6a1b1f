#include "SetupRun.h"
#include "changes/FileValues.h"
#include "recorder/RecorderServer.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "store/ExchangeQueue.h"
#include "store/OrbSettings.h"
#include "support/ModalWatcher.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// A session with the simulator that keeps snapshots.
class KeptSession
{
public:
    KeptSession(const QString &address, const QString &folder, const QString &offeredEdits = {})
        : store(address), errors(&store, &OrbSetup::pseudothrow)
    {
        WindowOptions options;
        options.tracksChanges = true;
        options.snapshots = {.folder = folder};
        options.offeredEdits = offeredEdits;
        QSignalSpy loaded(&store, &OrbSetup::loadDone);
        window = std::make_unique<CWinMain>(&store, nullptr, CWinMain::Placement::Window, options);
        isLoaded = waitUntil([&] { return !loaded.isEmpty() && window->isBuilt(); }, 20'000);
    }

    QLineEdit *field(const QString &text) const
    {
        for (QLineEdit *edit : window->findChildren<QLineEdit *>()) {
            if (edit->text() == text)
                return edit;
        }
        return nullptr;
    }
    void rename(const QString &before, const QString &after) const
    {
        QLineEdit *name = field(before);
        QVERIFY(name);
        replaceText(*name, after);
    }
    /// Presses OK, and waits until the recorder has everything.
    void send()
    {
        QSignalSpy stored(&store, &OrbSetup::storeDone);
        QTest::mouseClick(buttonWithText<QPushButton>(*window, "Save"), Qt::LeftButton);
        AWAIT_VERIFY(!stored.isEmpty());
    }
    QString changes() const { return window->findChild<QToolButton *>("changes")->text(); }
    void press(const QKeySequence &keys) const
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTest::keySequence(window->focusWidget(), keys);
    }

    OrbNetSetup store;
    QSignalSpy errors;
    std::unique_ptr<CWinMain> window;
    bool isLoaded = false;
};

/// The texts of the rows, with " | " between their columns.
QStringList rowsOf(const QWidget &dialog, const char *list)
{
    QStringList rows;
    const auto *tree = dialog.findChild<QTreeWidget *>(list);
    for (int row = 0; row < tree->topLevelItemCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < tree->columnCount(); ++column)
            texts << tree->topLevelItem(row)->text(column);
        rows << texts.join(" | ");
    }
    return rows;
}

void click(const QWidget &dialog, const char *button)
{
    QTest::mouseClick(dialog.findChild<QToolButton *>(button), Qt::LeftButton);
}

/// Selects the row of the value at \a path, and no other.
void selectAddress(const QWidget &dialog, const QString &path)
{
    auto *values = dialog.findChild<QTreeWidget *>("values");
    const auto rows = values->findItems(path, Qt::MatchExactly, values->columnCount() - 1);
    QCOMPARE(rows.size(), 1);
    values->setCurrentItem(rows.constFirst());
}

const QString Name = "Warehouse recorder";
const QString NamePath = "streams/common/name";

} // namespace

/// The history of a recorder in its window.
class TestHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void restoresYesterdaysSnapshot();
    void keepsWhatTheLastSaveHasSent();
    void restoresChosenValues();
    void comparesAnyTwo();
    void showsASnapshotWithoutItsRecorder();
    void leavesPasswordsAsTheyAre();
    void restoresNoUserWithThePasswordOfAnother_data();
    void restoresNoUserWithThePasswordOfAnother();
    void explainsOnlyListsThatItShows();
    void hidesWhatAnOlderDescriptionMarked();
    void namesWhatCannotBeUsed();
    void asksWhenNothingCanBeKept_data();
    void asksWhenNothingCanBeKept();
    void tellsOfACopyThatCannotBeRead();
    void keepsWhatTasksReplace();
    void showsKeysThatNoAddressHas();
    void listsNoFilesThatAreNotSent();
    void takesOverEditsThatFit();
    void takesOverUsersWithTheirPasswordsOnly_data();
    void takesOverUsersWithTheirPasswordsOnly();
    void refusesOffersWithoutEdits();

private:
    std::unique_ptr<KeptSession> session(const QString &offeredEdits = {})
    {
        auto session = std::make_unique<KeptSession>(m_address, m_snapshots, offeredEdits);
        if (!session->isLoaded)
            qFatal("the session was not loaded");
        return session;
    }
    /// A session that sends another name, so that the one before is kept.
    void sendName(const QString &before, const QString &after)
    {
        const auto session = this->session();
        session->rename(before, after);
        session->send();
    }
    SnapshotFolder folder() const { return {m_snapshots, recorderOfAddress(m_address)}; }
    /// What the recorder has in its file "streams".
    QByteArray streams() const
    {
        QFile file(m_recorder->filePath("streams"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// A snapshot of the recorder with these edits, "path=value".
    QString editedSnapshot(const QStringList &edits);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QString m_snapshots;
    QString m_address;
};

void TestHistory::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_snapshots = m_folder->filePath("snapshots");
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    m_address = OrbNetSetup::deviceAddress("admin", "admin", "127.0.0.1", m_recorder->port());
}

void TestHistory::restoresYesterdaysSnapshot()
{
    sendName(Name, "Renamed");
    QVERIFY(streams().contains("Renamed"));
    QCOMPARE(folder().list().size(), 1);
    QCOMPARE(folder().list().constFirst().info.firmware, "4.2.1");

    const auto session = this->session();
    QStringList rows;
    const ModalWatcher inTheHistory(
        [&](QWidget &dialog) {
            AWAIT_VERIFY(!rowsOf(dialog, "snapshots").constLast().contains(" |  | "));
            rows = rowsOf(dialog, "snapshots") + rowsOf(dialog, "values");
            click(dialog, "restoreAll");
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QCOMPARE(rows.size(), 3);
    QVERIFY2(rows[1].contains("value"), qPrintable(rows[1]));
    QVERIFY2(rows[2].endsWith("| " + Name + " | Renamed | " + NamePath), qPrintable(rows[2]));

    // An edit like any other: seen, undone in one step, and sent only with OK.
    QVERIFY(session->field(Name));
    QCOMPARE(session->changes(), "1 change");
    QVERIFY(streams().contains("Renamed"));
    session->press(QKeySequence::Undo);
    QVERIFY(session->field("Renamed"));
    session->press(Qt::CTRL | Qt::Key_Y);
    session->send();
    QVERIFY(streams().contains(Name.toUtf8()) && !streams().contains("Renamed"));
    QCOMPARE(folder().list().size(), 2);
    QCOMPARE(session->errors.size(), 0);
}

void TestHistory::keepsWhatTheLastSaveHasSent()
{
    const auto session = this->session();
    session->rename(Name, "First");
    session->send();
    AWAIT_VERIFY(session->window->findChild<QToolButton *>("changes")->isHidden());
    session->store.setValue(NamePath + "/Second");
    QSignalSpy stored(&session->store, &OrbSetup::storeDone);
    ExchangeQueue::of(session->store).call("save_settings", {}, ExchangeQueue::Caller::User);
    AWAIT_VERIFY(!stored.isEmpty());
    QVERIFY(streams().contains("Second"));
    QStringList names;
    for (const KeptSnapshot &kept : folder().list()) {
        const FileValues values(snapshotarchive::read(kept.path).snapshot.files.value("streams"));
        names << values.value("common/name").value_or(QString());
    }
    QCOMPARE(names, QStringList({"First", Name}));
}

void TestHistory::restoresChosenValues()
{
    sendName(Name, "Renamed");
    const auto session = this->session();
    session->store.setValue("net/untitled/HTTP_PORT/81");
    const ModalWatcher inTheHistory(
        [](QWidget &dialog) {
            auto *values = dialog.findChild<QTreeWidget *>("values");
            QCOMPARE(values->topLevelItemCount(), 2);
            values->setCurrentItem(values->topLevelItem(1));
            QTest::keyClick(values, Qt::Key_Return);
        },
        "paravue::HistoryDialog");
    QTest::mouseClick(session->window->findChild<QToolButton *>("history"), Qt::LeftButton);
    QCOMPARE(session->store.value(NamePath), Name);
    QCOMPARE(session->store.value("net/untitled/HTTP_PORT"), "81"); // edited, and not selected
}

void TestHistory::comparesAnyTwo()
{
    sendName(Name, "Second");
    sendName("Second", "Third");
    sendName("Third", "Fourth");
    const auto session = this->session();
    QStringList rows;
    bool canRestore = true;
    const ModalWatcher inTheHistory(
        [&](QWidget &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>("snapshots");
            list->clearSelection();
            list->topLevelItem(1)->setSelected(true);
            list->topLevelItem(3)->setSelected(true);
            rows = rowsOf(dialog, "values");
            canRestore = dialog.findChild<QToolButton *>("restoreAll")->isEnabled();
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QCOMPARE(rows.size(), 1);
    QVERIFY2(rows[0].contains("| " + Name + " | Third | "), qPrintable(rows[0]));
    QVERIFY(!canRestore);
}

void TestHistory::showsASnapshotWithoutItsRecorder()
{
    sendName(Name, "Renamed");
    const auto session = this->session();
    bool isShown = false;
    const ModalWatcher inTheSnapshot(
        [&](QWidget &window) {
            if (&window == session->window.get())
                return;
            for (const QLineEdit *edit : window.findChildren<QLineEdit *>())
                isShown |= edit->text() == Name;
            window.close();
        },
        "CWinMain");
    const ModalWatcher inTheHistory(
        [](QWidget &dialog) {
            QTest::keyClick(dialog.findChild<QTreeWidget *>("snapshots"), Qt::Key_Return);
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QVERIFY(isShown);
    QCOMPARE(session->store.value(NamePath), "Renamed");
    QCOMPARE(session->errors.size(), 0);
}

void TestHistory::leavesPasswordsAsTheyAre()
{
    sendName(Name, "Renamed");
    const QString path = folder().list().constFirst().path;
    QCOMPARE(FileValues(snapshotarchive::read(path).snapshot.files["users"]).value("untitled/PASSWD0"), "");
    const auto session = this->session();
    session->store.setValue("users/untitled/PASSWD0/new");
    const ModalWatcher inTheHistory([](QWidget &dialog) { click(dialog, "restoreAll"); },
                                    "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QCOMPARE(session->store.value(NamePath), Name);
    QCOMPARE(session->store.value("users/untitled/PASSWD0"), "new");
    QCOMPARE(session->store.value("users/untitled/PASSWD1"), "4b583376b2767b923c3e1da60d10de59");
}

void TestHistory::restoresNoUserWithThePasswordOfAnother_data()
{
    const TestTable<bool, QString> row("areKept", "users");
    row("without passwords", false, "admin admin, guest ");
    // One value alone would be given to the user who has moved to its position.
    row("one value, with passwords", true, "admin admin, operator 4b583376b2767b923c3e1da60d10de59, guest ");
}

void TestHistory::restoresNoUserWithThePasswordOfAnother()
{
    QFETCH(bool, areKept);
    sendName(Name, "Renamed");
    const QString path = folder().list().constFirst().path;
    const auto session = this->session();
    if (areKept) {
        Snapshot snapshot = snapshotarchive::read(path).snapshot;
        QFile users(m_recorder->filePath("users"));
        QVERIFY(users.open(QIODevice::ReadOnly));
        snapshot.files["users"] = users.readAll();
        snapshot.info.leftOut.removeIf([](const QString &secret) { return secret.startsWith("users"); });
        QCOMPARE(snapshotarchive::write(snapshot, path), "");
    }
    // "operator" is removed, and those behind move.
    for (const QString key : {"NAME", "PASSWD", "LEVEL"}) {
        for (const int position : {1, 2}) {
            const QString number = QString::number(position + 1);
            session->store.setValue("users/untitled/" + key + QString::number(position) + '/' +
                                    session->store.value("users/untitled/" + key + number));
        }
    }
    session->store.setValue("users/untitled/CNT/3");
    const ModalWatcher inTheHistory(
        [&](QWidget &dialog) {
            dialog.findChild<QCheckBox *>()->setChecked(false);
            if (areKept)
                selectAddress(dialog, "users/untitled/PASSWD1");
            click(dialog, areKept ? "restore" : "restoreAll");
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QCOMPARE(session->store.value(NamePath), areKept ? "Renamed" : Name);
    QStringList users;
    const int count = session->store.value("users/untitled/CNT").toInt();
    for (int position = 0; position < count - 1; ++position)
        users << session->store.value("users/untitled/NAME" + QString::number(position)) + ' ' +
                     session->store.value("users/untitled/PASSWD" + QString::number(position));
    QTEST(users.join(", "), "users");
}

/// The recorder has logged something since.
void TestHistory::explainsOnlyListsThatItShows()
{
    sendName(Name, "Renamed");
    const QString path = folder().list().constFirst().path;
    Snapshot snapshot = snapshotarchive::read(path).snapshot;
    snapshot.files["state"].replace("COUNT = 6", "COUNT = 5");
    QCOMPARE(snapshotarchive::write(snapshot, path), "");
    const auto session = this->session();
    const auto explanation = [](const QWidget &dialog) {
        QStringList texts;
        for (const QLabel *label : dialog.findChildren<QLabel *>())
            texts << label->text();
        return texts.filter("of a list").join('\n');
    };
    QStringList shown;
    const ModalWatcher inTheHistory(
        [&](QWidget &dialog) {
            shown << explanation(dialog);
            dialog.findChild<QCheckBox *>()->setChecked(false);
            shown << explanation(dialog) << rowsOf(dialog, "values");
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QVERIFY2(shown.join('\n').contains("state/events/COUNT"), qPrintable(shown.join('\n')));
    QCOMPARE(shown.value(0), "");
    QVERIFY2(shown.value(1).contains("as a whole"), qPrintable(shown.value(1)));
}

void TestHistory::hidesWhatAnOlderDescriptionMarked()
{
    sendName(Name, "Renamed");
    const QString path = folder().list().constFirst().path;
    Snapshot snapshot = snapshotarchive::read(path).snapshot;
    snapshot.files["interface"] =
        "<pvsetup><item secret='yes'><key>" + NamePath.toUtf8() + "</key></item></pvsetup>";
    QCOMPARE(snapshotarchive::write(snapshot, path), "");
    const auto session = this->session();
    QStringList rows;
    const ModalWatcher inTheHistory([&](QWidget &dialog) { rows = rowsOf(dialog, "values"); },
                                    "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QVERIFY2(rows.value(0).contains(NamePath), qPrintable(rows.join('\n')));
    QVERIFY2(!rows[0].contains(Name) && !rows[0].contains("Renamed"), qPrintable(rows[0]));
}

void TestHistory::namesWhatCannotBeUsed()
{
    sendName(Name, "Second");
    sendName("Second", "Third");
    QFile file(folder().list().constFirst().path);
    QVERIFY(file.resize(file.size() / 2));
    Snapshot other = snapshotarchive::read(folder().list().constLast().path).snapshot;
    other.info.model = "Paravue P16";
    other.info.time = QDateTime::currentDateTimeUtc().addDays(-1);
    QCOMPARE(folder().keep(other).problem, "");
    const auto session = this->session();
    QStringList rows;
    QList<bool> canShow;
    const ModalWatcher inTheHistory(
        [&](QWidget &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>("snapshots");
            for (int row = 1; row <= 3; ++row) {
                list->clearSelection();
                list->topLevelItem(row)->setSelected(true);
                canShow << dialog.findChild<QToolButton *>("show")->isEnabled();
            }
            rows = rowsOf(dialog, "snapshots");
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QCOMPARE(rows.size(), 4);
    QVERIFY2(rows[1].contains("damaged"), qPrintable(rows[1]));
    QVERIFY2(rows[3].contains("Paravue P16"), qPrintable(rows[3]));
    QCOMPARE(canShow, QList<bool>({false, true, true}));
}

void TestHistory::asksWhenNothingCanBeKept_data()
{
    const TestTable<QMessageBox::StandardButton, bool> row("answer", "isSent");
    row("send", QMessageBox::Yes, true);
    row("do not send", QMessageBox::No, false);
    row("escape", QMessageBox::NoButton, false);
}

void TestHistory::asksWhenNothingCanBeKept()
{
    QFETCH(QMessageBox::StandardButton, answer);
    QFETCH(bool, isSent);
    const auto session = this->session();
    session->rename(Name, "Renamed");
    QFile blocking(m_snapshots); // where the folder should be
    QVERIFY(blocking.open(QIODevice::WriteOnly));
    QStringList received;
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
            [&](const QString &name) { received << name; });
    const ModalWatcher question([&](QWidget &box) {
        QVERIFY(received.isEmpty());
        if (QAbstractButton *button = qobject_cast<QMessageBox *>(&box)->button(answer))
            button->click();
        else
            QTest::keyClick(&box, Qt::Key_Escape);
    });
    QSignalSpy stored(&session->store, &OrbSetup::storeDone);
    QTest::mouseClick(buttonWithText<QPushButton>(*session->window, "Save"), Qt::LeftButton);
    QCOMPARE(question.count(), 1);
    QVERIFY2(question.texts().constFirst().contains("for snapshots cannot be made"),
             qPrintable(question.texts().constFirst()));
    QCOMPARE(session->window->isVisible(), !isSent);
    QCOMPARE(session->store.linkStatus().state == LinkStatus::State::Running, isSent);
    if (isSent)
        AWAIT_VERIFY(!stored.isEmpty());
    QCOMPARE(streams().contains("Renamed"), isSent);
}

/// Nobody is asked about a save that a time task has started.
void TestHistory::tellsOfACopyThatCannotBeRead()
{
    const QString unreadable = "/proc/self/mem"; // opens, and fails when it is read
    if (!QFile::exists(unreadable))
        QSKIP("there is no file that cannot be read");
    sendName(Name, "Renamed");
    const auto session = this->session();
    session->rename("Renamed", "Third");
    session->store.setFilePath("streams.original", unreadable);
    QStringList labels;
    const ModalWatcher inTheHistory(
        [&](QWidget &dialog) {
            for (const QLabel *label : dialog.findChildren<QLabel *>())
                labels << label->text();
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QVERIFY2(labels.join("").contains("\"streams\" cannot be read"), qPrintable(labels.join("")));

    const ModalWatcher question;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no snapshot before a save"));
    QTest::mouseClick(buttonWithText<QPushButton>(*session->window, "Save"), Qt::LeftButton);
    QVERIFY2(question.texts().value(0).contains("\"streams\" cannot be read"),
             qPrintable(question.texts().join("")));
    QCOMPARE(session->store.linkStatus().state, LinkStatus::State::Idle);
    QCOMPARE(folder().list().size(), 1);
}

void TestHistory::keepsWhatTasksReplace()
{
    const auto session = this->session();
    ExchangeQueue &queue = ExchangeQueue::of(session->store);
    QFile blocking(m_snapshots);
    QVERIFY(blocking.open(QIODevice::WriteOnly));
    const ModalWatcher question;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no snapshot before a save"));
    for (int tick = 0; tick < 2; ++tick) {
        queue.call("save_settings", {}, ExchangeQueue::Caller::Task);
        QCOMPARE(session->store.linkStatus().state, LinkStatus::State::Idle);
        QCOMPARE(queue.abandoned(), QStringList("save_settings"));
    }
    QVERIFY(!question.hasSeen() && blocking.remove());
    QSignalSpy stored(&session->store, &OrbSetup::storeDone);
    queue.call("save_settings", {}, ExchangeQueue::Caller::Task);
    AWAIT_VERIFY(!stored.isEmpty());
    QCOMPARE(folder().list().size(), 1);
    QCOMPARE(queue.abandoned(), QStringList());
}

/// No address names a key with a "/": setting it would set another one.
void TestHistory::showsKeysThatNoAddressHas()
{
    const QString path = m_recorder->filePath("net");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray net = file.readAll();
    file.close();
    const auto setNet = [&](const QByteArray &key) {
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(net + key) > 0);
        file.close();
    };
    setNet("A/B=1\n");
    session()->send();
    setNet("A/B=2\n");
    const auto session = this->session();
    QStringList rows;
    const ModalWatcher history(
        [&](QWidget &dialog) {
            dialog.findChild<QCheckBox *>()->setChecked(false);
            rows = rowsOf(dialog, "values");
            click(dialog, "restoreAll");
        },
        "paravue::HistoryDialog");
    session->press(QKeySequence("Ctrl+H"));
    QVERIFY(history.hasSeen());
    QVERIFY2(rows.contains("net/untitled/A/B | 1 | 2 | net/untitled/A/B"), qPrintable(rows.join('\n')));
    QCOMPARE(session->store.value("net/untitled/A/none"), "none");
}

void TestHistory::listsNoFilesThatAreNotSent()
{
    const QString path = editedSnapshot({"soft/untitled/FIRMWARE=edited", NamePath + "=Edited"});
    sendName(Name, "Renamed");
    QFile soft(m_recorder->filePath("soft"));
    QVERIFY(soft.open(QIODevice::ReadWrite));
    const QByteArray content = soft.readAll().replace("4.2.1", "4.3.0");
    QVERIFY(soft.resize(0) && soft.seek(0) && soft.write(content) == content.size());
    soft.close();
    const ModalWatcher offer(
        [&](QWidget &dialog) {
            const QStringList rows = rowsOf(dialog, "edits");
            QVERIFY2(rows.value(1).contains("takes no such file"), qPrintable(rows.join('\n')));
            dialog.close();
        },
        "paravue::MergeDialog");
    const auto session = this->session(path);
    AWAIT_VERIFY(offer.hasSeen());
    QCOMPARE(session->store.value("soft/untitled/FIRMWARE"), "4.3.0");
    QStringList values;
    QStringList counts;
    const ModalWatcher inTheHistory(
        [&](QWidget &dialog) {
            dialog.findChild<QCheckBox *>()->setChecked(false);
            AWAIT_VERIFY(rowsOf(dialog, "snapshots").constLast().contains("value"));
            counts = rowsOf(dialog, "snapshots");
            values = rowsOf(dialog, "values");
            click(dialog, "restoreAll");
        },
        "paravue::HistoryDialog");
    session->press(Qt::CTRL | Qt::Key_H);
    QVERIFY2(values.join('|').contains(NamePath) && !values.join('|').contains("soft/"),
             qPrintable(values.join('\n')));
    QVERIFY2(counts.value(1).contains("| 2 values |"), qPrintable(counts.join('\n')));
    QCOMPARE(session->store.value("soft/untitled/FIRMWARE"), "4.3.0");
    QCOMPARE(session->store.value(NamePath), Name);
}

QString TestHistory::editedSnapshot(const QStringList &edits)
{
    const auto session = this->session();
    session->send();
    Snapshot snapshot = snapshotarchive::read(folder().list().constFirst().path).snapshot;
    for (const QString &edit : edits) {
        const QString name = edit.section('/', 0, 0);
        const QString copy = m_folder->filePath("copy");
        QFile file(copy);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            qFatal("no copy");
        file.write(snapshot.edited.value(name, snapshot.files.value(name)));
        file.close();
        OrbSettings settings(copy);
        settings.setValue(edit.section('/', 1).section('=', 0, 0), edit.section('=', 1));
        settings.flush();
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no copy");
        snapshot.edited[name] = file.readAll();
    }
    const QString path = m_folder->filePath("edited.zip");
    if (!snapshotarchive::write(snapshot, path).isEmpty())
        qFatal("the snapshot was not written");
    return path;
}

void TestHistory::takesOverEditsThatFit()
{
    const QString path = editedSnapshot({NamePath + "=Edited", "net/untitled/HTTP_PORT=81",
                                         "net/untitled/MAIL_INTERVAL=20", "users/untitled/PASSWD0=digest"});
    sendName(Name, "Meanwhile");
    {
        const auto other = session();
        other->store.setValue("net/untitled/MAIL_INTERVAL/20");
        other->send();
    }
    QStringList rows;
    ModalWatcher offer(
        [&](QWidget &dialog) {
            rows = rowsOf(dialog, "edits");
            QTest::keyClick(&dialog, Qt::Key_Return);
        },
        "paravue::MergeDialog");
    auto session = this->session(path);
    AWAIT_VERIFY(offer.hasSeen());
    AWAIT_VERIFY(session->changes() == "1 change");
    QCOMPARE(rows.size(), 4);
    QVERIFY2(rows[0].contains(Name + " | Edited | Meanwhile | Changed on the recorder too |"),
             qPrintable(rows[0]));
    QVERIFY2(rows[1].contains(" | (left out) | •••••••• | •••••••• | May have changed there too |"),
             qPrintable(rows[1]));
    QVERIFY2(rows[2].contains("| 80 | 81 | 80 |  | net"), qPrintable(rows[2]));
    QVERIFY2(rows[3].contains("| 10 | 20 | 20 | The recorder has it already |"), qPrintable(rows[3]));
    QCOMPARE(session->store.value("net/untitled/HTTP_PORT"), "81");
    QCOMPARE(session->store.value(NamePath), "Meanwhile");
    session.reset();

    // What collides is taken over when the user says so.
    offer.setAction([](QWidget &dialog) {
        QTest::keyClick(dialog.findChild<QTreeWidget *>("edits"), Qt::Key_Space); // on the first row
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    session = this->session(path);
    AWAIT_VERIFY(session->changes() == "2 changes");
    QCOMPARE(session->store.value(NamePath), "Edited");
    session->send();
    QVERIFY(streams().contains("Edited"));
}

void TestHistory::takesOverUsersWithTheirPasswordsOnly_data()
{
    const TestTable<bool, QString, QString, QString> row("areKept", "text", "remark", "users");
    row("without passwords", false, "cannot be taken over", "The list lacks passwords",
        "4: admin admin, operator 4b583376b2767b923c3e1da60d10de59, guest ");
    row("with passwords", true, "as a whole", "Only with the whole list",
        "3: admin admin, guest , viewer 332056fe60b61612acd4d5de0bf01d54");
}

/// "operator" was removed without the recorder, and those behind have moved.
void TestHistory::takesOverUsersWithTheirPasswordsOnly()
{
    QFETCH(bool, areKept);
    QFETCH(QString, text);
    QFETCH(QString, remark);
    QStringList edits{"CNT=3", "NAME1=guest", "LEVEL1=0", "NAME2=viewer", "NAME3=", "LEVEL3="};
    if (areKept)
        edits += {"PASSWD0=admin", "PASSWD2=332056fe60b61612acd4d5de0bf01d54"};
    for (QString &edit : edits)
        edit.prepend("users/untitled/");
    const QString path = editedSnapshot(edits);
    if (areKept) {
        Snapshot snapshot = snapshotarchive::read(path).snapshot;
        QFile users(m_recorder->filePath("users"));
        QVERIFY(users.open(QIODevice::ReadOnly));
        snapshot.files["users"] = users.readAll();
        snapshot.info.leftOut.removeIf([](const QString &secret) { return secret.startsWith("users"); });
        QCOMPARE(snapshotarchive::write(snapshot, path), "");
    }
    QStringList rows;
    QStringList labels;
    const ModalWatcher offer(
        [&](QWidget &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>("edits");
            rows = rowsOf(dialog, "edits");
            for (const QLabel *label : dialog.findChildren<QLabel *>())
                labels << label->text();
            const QString chosen = areKept ? "users/untitled/LEVEL3" : "users/untitled/NAME1";
            list->setCurrentItem(list->findItems(chosen, Qt::MatchExactly, list->columnCount() - 1).value(0));
            QTest::keyClick(list, Qt::Key_Space);
            QTest::keyClick(&dialog, Qt::Key_Return);
        },
        "paravue::MergeDialog");
    const auto session = this->session(path);
    AWAIT_VERIFY(offer.hasSeen());
    QVERIFY2(labels.join(' ').contains(text), qPrintable(labels.join(' ')));
    for (const QString &row : std::as_const(rows))
        QVERIFY2(row.contains(remark), qPrintable(row));
    AWAIT_VERIFY(session->window->findChild<QToolButton *>("changes")->isVisible() == areKept);
    const auto value = [&](const QString &key) { return session->store.value("users/untitled/" + key); };
    QStringList users;
    for (const QString number : {"0", "1", "2"})
        users << value("NAME" + number) + ' ' + value("PASSWD" + number);
    QTEST(value("CNT") + ": " + users.join(", "), "users");
}

void TestHistory::refusesOffersWithoutEdits()
{
    const ModalWatcher messages;
    const auto one = session(editedSnapshot({}));
    AWAIT_VERIFY(messages.count() == 1);
    QVERIFY(messages.texts().constLast().contains("holds no edits"));
    const auto other = session(m_recorder->filePath("net"));
    AWAIT_VERIFY(messages.count() == 2);
    QVERIFY(messages.texts().constLast().contains("no snapshot"));
}

QTEST_MAIN(TestHistory)
#include "tst_history.moc"
