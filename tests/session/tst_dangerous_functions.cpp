#include "FaultTest.h"
#include "ModalWatcher.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// A button of the window that calls a function, and one in a dialog that does the same.
QByteArray pageWith(const QByteArray &function, const QByteArray &attributes)
{
    const QByteArray call =
        "<action type='call' slot='callSetup' param='" + function + "' " + attributes + ">device</action>";
    return "<pvsetup version='1.0'><di><difile name='interface' get_command='GET SETUP'/>"
           "<difile name='net' get_command='GET NET CONFIG' put_command='PUT NET CONFIG' "
           "type='sectionless'/></di>"
           "<window><title>Gate</title><self/></window>"
           "<tabwidget><tab><name>Page</name><item type='gridlayout'>"
           "<item type='setup'><device/></item>"
           "<item type='pushbutton' row='1'><text>Do it</text>" +
           call +
           "<action type='call' slot='setValue' param='tmp/untitled/AFTER/done'>self</action></item>"
           "<item type='pushbutton' row='2'><text>Ask</text>"
           "<action type='call' slot='showDialog' param='sure'>self</action></item>"
           "<item type='pushbutton' row='3'><text>Restart</text>"
           "<action type='call' slot='callSetup' param='soft_reboot'>device</action></item>"
           "<item type='pushbutton' row='4'><text>Report</text>"
           "<action type='call' slot='callSetup' param='get_report'>device</action></item>"
           "</item></tab></tabwidget>"
           "<dialog><sure/><item type='gridlayout'><item type='pushbutton'><text>Sure</text>" +
           call + "</item></item></dialog></pvsetup>";
}

} // namespace

/// Functions that lose something are called after a question.
class TestDangerousFunctions : public FaultTest
{
    Q_OBJECT

private Q_SLOTS:
    void asks_data();
    void asks();
    void asksAgainBeforeARepetition();
    void leavesOutWhatFollows();
    void asksNotFromADialog();
    void saysThatARestartIsDue();
    void knowsARecorderThatRestartsByItself();

private:
    void open(const QByteArray &page, bool confirms = true);
    void press(const QString &caption) const;
    QString statusText() const { return m_window->findChild<QLabel *>("statusText")->text(); }

    std::unique_ptr<OrbNetSetup> m_store;
    std::unique_ptr<CWinMain> m_window;
};

void TestDangerousFunctions::open(const QByteArray &page, bool confirms)
{
    m_window.reset();
    m_store.reset();
    startRecorder();
    m_recorder->setRebootTime(10);
    QFile file(m_recorder->filePath("interface"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(page) > 0);
    file.close();
    m_store = std::make_unique<OrbNetSetup>(address());
    QSignalSpy loaded(m_store.get(), &OrbSetup::loadDone);
    WindowOptions options;
    options.confirmsDangerousFunctions = confirms;
    m_window = std::make_unique<CWinMain>(m_store.get(), nullptr, CWinMain::Placement::Window, options);
    AWAIT_COMPARE(loaded.size(), 1);
    AWAIT_VERIFY(m_store->linkStatus().state == LinkStatus::State::Idle);
    m_requests.clear();
}

void TestDangerousFunctions::press(const QString &caption) const
{
    buttonWithText<QPushButton>(*m_window, caption)->click();
}

void TestDangerousFunctions::asks_data()
{
    const TestTable<QByteArray, QByteArray, QStringList> row("function", "attributes", "says");
    row("format", "format_disk1", "", {"Format disk 1?", "127.0.0.1", "All recordings on disk 1 are lost."});
    row("reset", "soft_reset", "", {"Reset the settings?", "All settings"});
    row("restart", "soft_reboot", "", {"Restart the recorder?", "records nothing"});
    row("clear e-mails", "clear_email_disk", "", {"All e-mails on disk 1 are lost."});
    row("remove a package", "remove_package", "", {"Remove the package?"});
    row("marked", "send_test_email", "danger='data'", {"Send a test e-mail?", "is lost"});
    row("marked restart", "send_test_email", "danger='restart'", {"While the recorder restarts"});
    row("harmless", "send_test_email", "", {});
    row("report", "get_report", "", {});
}

void TestDangerousFunctions::asks()
{
    QFETCH(QByteArray, function);
    QFETCH(QByteArray, attributes);
    QFETCH(QStringList, says);
    open(pageWith(function, attributes));
    QMessageBox::StandardButton answer = QMessageBox::Cancel;
    int questions = 0;
    ModalWatcher question([&](QWidget &box) {
        // The recorder's refusal is shown in a box too, which has no such answer.
        if (QAbstractButton *button = static_cast<QMessageBox &>(box).button(answer)) {
            ++questions;
            button->click();
        }
    });
    const int asked = says.isEmpty() ? 0 : 1;
    press("Do it");
    QCOMPARE(questions, asked);
    if (asked) {
        for (const QString &text : says)
            QVERIFY2(question.texts().constFirst().contains(text), qPrintable(question.texts().constFirst()));
        letEventsArrive();
        QCOMPARE(m_requests, QStringList());
        answer = QMessageBox::Yes;
        press("Do it");
    }
    AWAIT_VERIFY(!m_requests.isEmpty());
    QCOMPARE(questions, 2 * asked);

    open(pageWith(function, attributes), false);
    press("Do it");
    AWAIT_VERIFY(!m_requests.isEmpty());
    QCOMPARE(questions, 2 * asked);
}

void TestDangerousFunctions::asksAgainBeforeARepetition()
{
    open(pageWith("format_disk1", ""));
    auto answer = QMessageBox::Yes;
    int questions = 0;
    const ModalWatcher question([&](QWidget &box) {
        if (QAbstractButton *button = static_cast<QMessageBox &>(box).button(answer)) {
            ++questions;
            button->click();
        }
    });
    setFaults({"close-before@login"});
    press("Do it");
    auto *repeat = m_window->findChild<QToolButton *>("statusRetry");
    AWAIT_VERIFY(repeat->isVisible());
    QCOMPARE(questions, 1);
    setFaults({});
    answer = QMessageBox::Cancel;
    repeat->click();
    letEventsArrive();
    QCOMPARE(questions, 2);
    QVERIFY2(!m_requests.contains("DO FORMAT"), qPrintable(m_requests.join(", ")));
    answer = QMessageBox::Yes;
    repeat->click();
    QCOMPARE(questions, 3);
    AWAIT_VERIFY(m_requests.contains("DO FORMAT"));
}

void TestDangerousFunctions::leavesOutWhatFollows()
{
    open(pageWith("format_disk1", ""));
    m_store->setFilePath("tmp", m_folder->filePath("tmp"));
    QMessageBox::StandardButton answer = QMessageBox::Cancel;
    const ModalWatcher question(
        [&answer](QWidget &box) { static_cast<QMessageBox &>(box).button(answer)->click(); });
    press("Do it");
    QCOMPARE(m_store->value("tmp/untitled/AFTER/"), "");
    answer = QMessageBox::Yes;
    press("Do it");
    QCOMPARE(m_store->value("tmp/untitled/AFTER/"), "done");
    AWAIT_VERIFY(m_store->linkStatus().state == LinkStatus::State::Idle);
}

void TestDangerousFunctions::asksNotFromADialog()
{
    open(pageWith("format_disk1", ""));
    const ModalWatcher question;
    const ModalWatcher described(
        [](QWidget &dialog) {
            buttonWithText<QPushButton>(dialog, "Sure")->click();
            static_cast<QDialog &>(dialog).accept();
        },
        "QDialog");
    press("Ask");
    QVERIFY(described.hasSeen());
    AWAIT_VERIFY(m_requests.contains("DO FORMAT"));
    QVERIFY(!question.hasSeen());
}

void TestDangerousFunctions::saysThatARestartIsDue()
{
    open(pageWith("send_test_email", "danger='restart'"));
    const ModalWatcher question(
        [](QWidget &box) { static_cast<QMessageBox &>(box).button(QMessageBox::Yes)->click(); });
    const QString due = "Send a test e-mail: takes effect when the recorder is restarted";
    press("Do it");
    AWAIT_VERIFY(statusText().contains(due));
    press("Restart");
    AWAIT_VERIFY(statusText().contains("Restart the recorder: done"));
    QVERIFY2(!statusText().contains(due), qPrintable(statusText()));
}

void TestDangerousFunctions::knowsARecorderThatRestartsByItself()
{
    open(pageWith("send_test_email", "danger='restart'"));
    const ModalWatcher box([](QWidget &dialog) {
        auto &box = static_cast<QMessageBox &>(dialog);
        QAbstractButton *yes = box.button(QMessageBox::Yes);
        yes ? yes->click() : box.accept();
    });
    press("Do it");
    AWAIT_VERIFY(statusText().contains("takes effect"));
    press("Report");
    AWAIT_VERIFY(statusText().contains("Get the report: done"));
    QVERIFY2(statusText().contains("takes effect"), qPrintable(statusText()));
    setFaults({"reset@login"});
    press("Report");
    AWAIT_VERIFY(m_store->linkStatus().cause == LinkStatus::Cause::Network);
    AWAIT_VERIFY(m_window->findChild<QToolButton *>("statusRetry")->isVisible());
    QVERIFY2(statusText().contains("takes effect"), qPrintable(statusText()));
    setFaults({});
    m_window->findChild<QToolButton *>("statusRetry")->click();
    AWAIT_VERIFY(statusText().contains("Get the report: done"));
    QVERIFY2(!statusText().contains("takes effect"), qPrintable(statusText()));
}

QTEST_MAIN(TestDangerousFunctions)
#include "tst_dangerous_functions.moc"
