#include "FaultTest.h"
#include "ModalWatcher.h"
#include "support/Waiting.h"

#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QString NamePath = "streams/common/name";

QTreeWidgetItem *rowWith(const QTreeWidget &list, const QString &text)
{
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        for (int column = 0; column < list.columnCount(); ++column) {
            if (list.topLevelItem(i)->text(column).contains(text))
                return list.topLevelItem(i);
        }
    }
    return nullptr;
}

/// Enter in the button, behind which a window may be closed.
void press(const QWidget &dialog, const char *name)
{
    auto *button = dialog.findChild<QToolButton *>(name);
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
}

} // namespace

/// What a user of the shipped model does in one session: edits, second thoughts, a save that breaks off and
/// is not kept as it was sent, and the settings of before.
class TestDayOfChanges : public FaultTest
{
    Q_OBJECT

private Q_SLOTS:
    void endsWithTheSettingsOfTheMorning();

private:
    void start();
    void activate() const;
    void keys(const char *sequence) const;
    /// Types \a text into the field with the text \a old, which is found by that or by \a query.
    void edit(const QString &old, const QString &text, const QString &query = {}) const;
    void save() const { buttonWithText<QPushButton>(*m_session->window, "Save")->click(); }
    QString changes() const { return m_session->window->findChild<QToolButton *>("changes")->text(); }
    QByteArray file(const QString &name) const;

    QTemporaryDir m_snapshots;
    std::unique_ptr<Session> m_session;
};

void TestDayOfChanges::start()
{
    m_session.reset();
    WindowOptions options;
    options.tracksChanges = true;
    options.reviewBeforeSending = true;
    options.comparesBeforeSending = true;
    options.confirmsSaves = true;
    options.snapshots = {.folder = m_snapshots.path()};
    m_session = std::make_unique<Session>(address(), options);
    QVERIFY(m_session->isFine());
    AWAIT_VERIFY(m_session->store.linkStatus().state == LinkStatus::State::Idle);
}

/// There is no window manager that does it when a dialog was closed.
void TestDayOfChanges::activate() const
{
    m_session->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_session->window.get()));
}

void TestDayOfChanges::keys(const char *sequence) const
{
    activate();
    QTest::keySequence(m_session->window->focusWidget(), QKeySequence(sequence));
}

void TestDayOfChanges::edit(const QString &old, const QString &text, const QString &query) const
{
    constexpr int MostRows = 8; // the field may come behind labels that show the same value
    QLineEdit *field = nullptr;
    for (int row = 0; row < MostRows && !field; ++row) {
        const ModalWatcher find(
            [&](QWidget &dialog) {
                auto *words = dialog.findChild<QLineEdit *>();
                QTest::keyClicks(words, query.isEmpty() ? old : query);
                for (int i = 0; i < row; ++i)
                    QTest::keyClick(words, Qt::Key_Down);
                QTest::keyClick(words, Qt::Key_Return);
            },
            "paravue::FindDialog");
        keys("Ctrl+F");
        activate();
        auto *shown = qobject_cast<QLineEdit *>(m_session->window->focusWidget());
        if (shown && shown->text() == old && shown->isVisible())
            field = shown;
    }
    QVERIFY2(field, qPrintable(old));
    replaceText(*field, text);
}

QByteArray TestDayOfChanges::file(const QString &name) const
{
    QFile content(m_recorder->filePath(name));
    return content.open(QIODevice::ReadOnly) ? content.readAll() : QByteArray();
}

void TestDayOfChanges::endsWithTheSettingsOfTheMorning()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    QVERIFY(m_recorder->listen());
    start();
    const QByteArray morning = file("net");

    // Five tabs, each field found by its value.
    edit("paravue-r4", "gate");
    edit("mail.example.net", "mail.example.org");
    edit("pool.example.net", "time.example.org");
    edit("Warehouse recorder", "Gate recorder", NamePath);
    edit("255.255.255.0", "255.255.0.0");
    edit("Front gate", "Door", "streams/stream_0/name");
    edit("30", "9", "disk/untitled/KEEP_DAYS");
    QCOMPARE(changes(), "7 changes");
    for (int i = 0; i < 3; ++i) {
        m_session->window->findChild<QTabWidget *>()->setFocus(); // a field would undo its own typing first
        keys("Ctrl+Z");
    }
    QCOMPARE(changes(), "4 changes");
    QCOMPARE(m_session->store.value("net/untitled/HOSTNAME"), "gate");
    QCOMPARE(m_session->store.value("net/untitled/MASK"), "255.255.255.0");

    // One is taken back in the list, by the keyboard; the rest is sent.
    bool isTakenBack = false;
    const ModalWatcher review(
        [&isTakenBack](QWidget &dialog) {
            auto *list = dialog.findChildren<QTreeWidget *>().constFirst();
            if (QTreeWidgetItem *row = rowWith(*list, "time/untitled/TIME_SERVER"); row && !isTakenBack) {
                while (list->currentItem() != row)
                    QTest::keyClick(list, Qt::Key_Down);
                press(dialog, "takeBack");
                isTakenBack = true;
            }
            list->setFocus();
            QTest::keyClick(list, Qt::Key_Return);
        },
        "paravue::ReviewDialog");
    // The recorder refuses one file at first, and shortens a name.
    setFaults({"error@PUT NET CONFIG"});
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [this](const QString &name) {
        if (name != "streams")
            return;
        QTimer::singleShot(0, this, [this] {
            const QByteArray text = file("streams").replace("'Gate recorder'", "'Gate'");
            QFile content(m_recorder->filePath("streams"));
            QVERIFY(content.open(QIODevice::WriteOnly) && content.write(text) == text.size());
        });
    });
    QStringList states;
    {
        const ModalWatcher sending(
            [&](QWidget &dialog) {
                const auto click = [&](const char *caption) {
                    QPushButton *button = nullptr;
                    static_cast<void>(waitUntil(
                        [&] { return (button = buttonWithText<QPushButton>(dialog, caption)); }, 20'000));
                    QVERIFY2(button, caption);
                    states << caption;
                    button->click();
                };
                // What is compared before a save ends by itself.
                static_cast<void>(waitUntil([&] {
                    return !dialog.isVisible() || buttonWithText<QPushButton>(dialog, "Send the rest");
                }));
                if (!dialog.isVisible())
                    return;
                setFaults({});
                click("Send the rest");
                click("Keep the recorder's");
            },
            "paravue::SendingDialog");
        save();
    }
    QCOMPARE(states, QStringList({"Send the rest", "Keep the recorder's"}));
    QVERIFY(isTakenBack && !m_session->window->isVisible());
    QVERIFY2(file("net").contains("HOSTNAME = 'gate'"), file("net"));
    QVERIFY(file("net").contains("'mail.example.org'"));
    QVERIFY(file("net").contains("MASK = '255.255.255.0'") && file("time").contains("pool.example.net"));
    QCOMPARE(m_session->store.value(NamePath), "Gate");

    // The next session restores what the first one has found.
    m_recorder->disconnect(this);
    start();
    const ModalWatcher history(
        [](QWidget &dialog) {
            dialog.findChildren<QTreeWidget *>().constFirst()->setFocus();
            QTest::keyClick(dialog.findChildren<QTreeWidget *>().constFirst(), Qt::Key_Down);
            press(dialog, "restoreAll");
            static_cast<QDialog &>(dialog).reject();
        },
        "paravue::HistoryDialog");
    keys("Ctrl+H");
    QVERIFY(history.hasSeen());
    QCOMPARE(m_session->store.value("net/untitled/HOSTNAME"), "paravue-r4");
    {
        const ModalWatcher sending(
            [](QWidget &dialog) {
                static_cast<void>(waitUntil([&dialog] {
                    auto *close = buttonWithText<QPushButton>(dialog, "Close");
                    if (close)
                        close->click();
                    return close || !dialog.isVisible();
                }));
            },
            "paravue::SendingDialog");
        save();
    }
    QVERIFY(!m_session->window->isVisible());
    for (const char *line : {"HOSTNAME", "SMTP_SERVER", "MASK"}) {
        const auto valueOf = [line](const QByteArray &text) {
            const qsizetype at = text.indexOf('\n' + QByteArray(line));
            const QByteArray value = text.mid(at, text.indexOf('\n', at + 1) - at).split('=').value(1);
            return QByteArray(value).replace('\'', "").trimmed();
        };
        QCOMPARE(valueOf(file("net")), valueOf(morning));
    }
    QCOMPARE(m_session->store.value(NamePath), "Warehouse recorder");
}

QTEST_MAIN(TestDayOfChanges)
#include "tst_day_of_changes.moc"
