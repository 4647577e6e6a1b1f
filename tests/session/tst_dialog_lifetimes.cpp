#include "FaultTest.h"
#include "ModalWatcher.h"
#include "entry/SetupPage.h"
#include "snapshots/SnapshotArchive.h"
#include "support/Waiting.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <functional>

using namespace paravue;
using namespace paravue::test;

namespace
{

const char Page[] = R"(<pvsetup version="1.0">
  <di>
    <difile name="interface" get_command="GET SETUP"/>
    <difile name="net" get_command="GET NET CONFIG" put_command="PUT NET CONFIG" type="sectionless"/>
  </di>
  <window><self/></window>
  <tabwidget><tab><name>Page</name>
    <item type="gridlayout">
      <item type="setup"><device/></item>
      <item type="edit" row="1"><key>net/untitled/HOSTNAME</key></item>
      <item type="pushbutton" row="2"><text>Save</text>
        <action type="call" slot="callSetup" param="save_settings">device</action>
        <action type="call" slot="setValue" param="net/untitled/PLACE/saved">self</action></item>
      <item type="pushbutton" row="3"><text>Reboot</text>
        <action type="call" slot="callSetup" param="soft_reboot">device</action></item>
    </item>
  </tab></tabwidget>
</pvsetup>)";

const QByteArray Net = "HOSTNAME=old\nPLACE=Gate\n";

/// A dialog of the window.
struct Moment {
    QByteArray className;
    QString pressed = {};   ///< the button that leads to it
    QKeySequence keys = {}; ///< or the keys
    QString headline = {};  ///< that it shows then
    QString answer = {};    ///< the button of the dialog that leads to the box meant in its place
    std::function<void(WindowOptions &)> prepare = {};
    QStringList faults = {};    ///< of the recorder from the first edit on
    QByteArray othersFile = {}; ///< what somebody else has made of the file
};

/// What happens then.
enum class End { PageDeleted, PageThenStore, StoreDeleted, StoreThenPage, HostClosed, LinkLost };

} // namespace

Q_DECLARE_METATYPE(Moment)

/// Pages, stores, windows and links end while a dialog of the window waits for its user.
class TestDialogLifetimes : public FaultTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void endsUnderADialog_data();
    void endsUnderADialog();

private:
    QString snapshotWithEdits() const;
    void finish(End end);

    std::unique_ptr<OrbNetSetup> m_store;
    std::unique_ptr<QWidget> m_host;
    QPointer<SetupPage> m_page;
};

void TestDialogLifetimes::init()
{
    startRecorder();
    setFile("interface", Page);
    setFile("net", Net);
}

QString TestDialogLifetimes::snapshotWithEdits() const
{
    Snapshot snapshot;
    snapshot.info.recorder = "127.0.0.1";
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    snapshot.files["net"] = "[untitled]\nHOSTNAME=old\n";
    snapshot.edited["net"] = "[untitled]\nHOSTNAME=edited\n";
    const QString path = m_folder->filePath("edited.zip");
    return snapshotarchive::write(snapshot, path).isEmpty() ? path : QString();
}

void TestDialogLifetimes::endsUnderADialog_data()
{
    QTest::addColumn<Moment>("moment");
    QTest::addColumn<End>("end");
    const auto confirms = [](WindowOptions &options) { options.confirmsSaves = true; };
    const auto compares = [](WindowOptions &options) { options.comparesBeforeSending = true; };
    const QList<std::pair<QByteArray, Moment>> moments{
        {"review", {.className = "paravue::ReviewDialog", .keys = Qt::CTRL | Qt::Key_R}},
        {"review before sending",
         {.className = "paravue::ReviewDialog",
          .pressed = "Save",
          .prepare = [](WindowOptions &options) { options.reviewBeforeSending = true; }}},
        {"find", {.className = "paravue::FindDialog", .keys = QKeySequence::Find}},
        {"history", {.className = "paravue::HistoryDialog", .keys = Qt::CTRL | Qt::Key_H}},
        {"merge",
         {.className = "paravue::MergeDialog",
          .prepare = [this](WindowOptions &options) { options.offeredEdits = snapshotWithEdits(); }}},
        {"foreign changes",
         {.className = "paravue::ForeignChangesDialog",
          .pressed = "Save",
          .prepare = compares,
          .othersFile = QByteArray(Net).replace("Gate", "Yard").replace("old", "theirs")}},
        {"comparing",
         {.className = "paravue::SendingDialog",
          .pressed = "Save",
          .headline = "Fetching what",
          .prepare = compares,
          .faults = {"never@GET NET CONFIG"}}},
        {"sending",
         {.className = "paravue::SendingDialog",
          .pressed = "Save",
          .headline = "Sending \"net\"",
          .prepare = confirms,
          .faults = {"never@PUT NET CONFIG"}}},
        {"confirming",
         {.className = "paravue::SendingDialog",
          .pressed = "Save",
          .headline = "Fetching what",
          .prepare = confirms,
          .faults = {"never@GET NET CONFIG"}}},
        {"sent",
         {.className = "paravue::SendingDialog",
          .pressed = "Save",
          .headline = "Sent and confirmed",
          .prepare = confirms}},
        {"broken off",
         {.className = "paravue::SendingDialog",
          .pressed = "Save",
          .headline = "Device error",
          .prepare = confirms,
          .faults = {"error@PUT NET CONFIG"}}},
        {"stop",
         {.className = "QMessageBox",
          .pressed = "Save",
          .headline = "Sending \"net\"",
          .answer = "Stop",
          .prepare = confirms,
          .faults = {"never@PUT NET CONFIG"}}},
        {"dangerous function",
         {.className = "QMessageBox",
          .pressed = "Reboot",
          .prepare = [](WindowOptions &options) { options.confirmsDangerousFunctions = true; }}},
        {"closing",
         {.className = "QMessageBox",
          .pressed = "Cancel",
          .prepare = [](WindowOptions &options) { options.asksBeforeClosing = true; }}},
        {"refreshing",
         {.className = "QMessageBox",
          .keys = Qt::Key_F5,
          .prepare = [](WindowOptions &options) { options.offersRefresh = true; }}},
    };
    const QList<std::pair<QByteArray, End>> ends{
        {"page deleted", End::PageDeleted},   {"page and store deleted", End::PageThenStore},
        {"store deleted", End::StoreDeleted}, {"store and page deleted", End::StoreThenPage},
        {"host closed", End::HostClosed},     {"link lost", End::LinkLost}};
    for (const auto &[when, moment] : moments) {
        for (const auto &[how, end] : ends)
            QTest::newRow(when + ": " + how) << moment << end;
    }
}

void TestDialogLifetimes::finish(End end)
{
    switch (end) {
    case End::PageThenStore:
        delete m_page;
        m_store.reset();
        break;
    case End::PageDeleted:
        delete m_page;
        break;
    case End::StoreThenPage:
        m_store.reset();
        delete m_page;
        break;
    case End::StoreDeleted:
        m_store.reset();
        break;
    case End::HostClosed:
        m_host->close();
        break;
    case End::LinkLost:
        m_recorder.reset();
        break;
    }
}

void TestDialogLifetimes::endsUnderADialog()
{
    QFETCH(Moment, moment);
    QFETCH(End, end);
    const qsizetype widgets = QApplication::allWidgets().size();
    WindowOptions options;
    options.tracksChanges = true;
    options.snapshots = {.folder = m_folder->filePath("snapshots")};
    if (moment.prepare)
        moment.prepare(options);

    bool isReached = false;
    // A save that was stopped or broken off asks what to do next.
    const auto closeForGood = [](const QPointer<QWidget> &dialog) {
        waitUntil([&] { return !dialog || !dialog->isVisible() || (dialog->close() && false); });
    };
    const auto reach = [&](QWidget &dialog) {
        if (isReached)
            return;
        const QPointer<QWidget> open(&dialog);
        if (!moment.answer.isEmpty() && !qobject_cast<QMessageBox *>(&dialog)) {
            QTimer::singleShot(0, buttonWithText<QPushButton>(dialog, moment.answer), &QPushButton::click);
            waitUntil([&] { return isReached; });
            return closeForGood(open);
        }
        const bool isShown = moment.headline.isEmpty() || !moment.answer.isEmpty() || waitUntil([&] {
                                 const auto labels = dialog.findChildren<QLabel *>();
                                 return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
                                     return label->text().startsWith(moment.headline);
                                 });
                             });
        isReached = true;
        QVERIFY(isShown);
        finish(end);
        closeForGood(open);
    };
    ModalWatcher boxes(moment.className == "QMessageBox" ? reach : ModalWatcher::Action());
    const ModalWatcher dialogs(reach, moment.answer.isEmpty() ? moment.className : "paravue::SendingDialog");

    m_store = std::make_unique<OrbNetSetup>(address());
    m_host = std::make_unique<QWidget>();
    m_page = new SetupPage(m_store.get());
    m_page->setWindowOptions(options);
    (new QVBoxLayout(m_host.get()))->addWidget(m_page);
    m_host->show();
    m_host->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
    const auto field = [&] { return m_host->findChild<QLineEdit *>(); };
    if (!moment.pressed.isEmpty() || !moment.keys.isEmpty()) {
        AWAIT_VERIFY(field() && m_store->linkStatus().state == LinkStatus::State::Idle);
        replaceText(*field(), "new");
        setFaults(moment.faults);
        if (!moment.othersFile.isEmpty())
            setFile("net", moment.othersFile);
        // A deleted window must not be what the test sends the release of its keys to.
        if (!moment.keys.isEmpty())
            QTimer::singleShot(0, this, [&] { QTest::keySequence(field(), moment.keys); });
        else
            QTimer::singleShot(0, buttonWithText<QPushButton>(*m_host, moment.pressed), &QPushButton::click);
    }
    AWAIT_VERIFY(isReached);
    AWAIT_VERIFY(!QApplication::activeModalWidget());
    // Nothing follows that the description would do behind a save.
    if (m_store && moment.className != "paravue::SendingDialog")
        QVERIFY(m_store->value("net/untitled/PLACE") != "saved");
    if (end != End::HostClosed && end != End::LinkLost)
        AWAIT_VERIFY(m_host->findChildren<QDialog *>().isEmpty());
    m_host.reset();
    m_store.reset();
    AWAIT_COMPARE(QApplication::allWidgets().size(), widgets);
}

QTEST_MAIN(TestDialogLifetimes)
#include "tst_dialog_lifetimes.moc"
