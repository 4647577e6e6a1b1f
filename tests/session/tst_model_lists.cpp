#include "ModalWatcher.h"
#include "SetupRun.h"
#include "controls/PackageListView.h"
#include "controls/UserListView.h"
#include "recorder/RecorderServer.h"
#include "support/Waiting.h"

#include <QCryptographicHash>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace paravue::test;

namespace
{

class NobodyToAsk : public paravue::CredentialsSource
{
public:
    bool ask(paravue::Credentials &) override { return false; }
    void save(const paravue::Credentials &) override {}
};

void press(const QWidget &window, const QString &caption)
{
    QTest::mouseClick(buttonWithText<QPushButton>(window, caption), Qt::LeftButton);
}

/// The list, on the tab that is shown.
template <class List>
List *shown(const QWidget &window)
{
    auto *list = window.findChild<List *>();
    auto *tabs = window.findChild<QTabWidget *>("tabWidget");
    while (!list->isVisible() && tabs->currentIndex() < tabs->count() - 1)
        tabs->setCurrentIndex(tabs->currentIndex() + 1);
    return list;
}

void pressDelete(paravue::SortableListView &list, const QString &name)
{
    QTreeWidgetItem *row = list.findItems(name, Qt::MatchExactly).first();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(row).center());
    QTest::keyClick(&list, Qt::Key_Delete);
}

} // namespace

/// Edits the lists of the shipped model in its own window, then asks the simulated recorder what it knows.
class TestModelLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void letsInWhomItLists();
    void removesThePackageThatIsPicked();

private:
    /// What a session with this login ends with: nothing, or an error.
    QString sessionAs(const QString &login, const QString &password) const;
    QString address(const QString &account) const
    {
        return account + "@127.0.0.1:" + QString::number(static_cast<qint16>(m_recorder->port()));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
};

void TestModelLists::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
}

QString TestModelLists::sessionAs(const QString &login, const QString &password) const
{
    const QByteArray digest = QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Md5).toHex();
    OrbNetSetup store(address(login + ':' + digest));
    store.setCredentialsSource(std::make_unique<NobodyToAsk>());
    const QSignalSpy loaded(&store, &OrbSetup::loadDone);
    const QSignalSpy errors(&store, &OrbSetup::pseudothrow);
    store.load();
    if (!paravue::test::waitUntil([&] { return loaded.count() + errors.count() > 0; }, 20'000))
        return "no answer";
    return errors.isEmpty() ? QString() : errors.first().first().toString();
}

void TestModelLists::letsInWhomItLists()
{
    QCOMPARE(sessionAs("operator", "operator"), "");
    QCOMPARE(sessionAs("ann", "sesame"), "Authorization failed");
    {
        Session session(address("admin:admin"));
        QVERIFY(session.isFine());
        auto *users = shown<paravue::UserListView>(*session.window);
        const ModalWatcher dialogs(
            [&](QWidget &dialog) {
                const auto fields = dialog.findChildren<QLineEdit *>();
                if (fields.isEmpty()) {
                    press(dialog, "Remove");
                    return;
                }
                const bool isNew = fields[0]->text().isEmpty();
                QCOMPARE(buttonWithText<QPushButton>(dialog, "OK")->isEnabled(), !isNew);
                if (!isNew) {
                    QTest::keyClicks(fields[1], "x");
                    QTest::keyClick(fields[1], Qt::Key_Backspace);
                    press(dialog, "OK");
                    QVERIFY(!dialog.isVisible());
                    return;
                }
                for (int i = 0; i < 3; ++i)
                    QTest::keyClicks(fields[i], i == 0 ? "ann" : "sesame");
                press(dialog, "OK");
                QVERIFY(!dialog.isVisible());
            },
            "QDialog");
        press(*session.window, "Add…"); // the new one is selected then
        press(*session.window, "Edit…");
        pressDelete(*users, "operator");
        QCOMPARE(dialogs.count(), 3);
        QSignalSpy saved(&session.store, &OrbSetup::storeDone);
        press(*session.window, "Save");
        QVERIFY(saved.wait(20'000));
        QVERIFY(session.isFine());
    }
    QCOMPARE(sessionAs("ann", "sesame"), "");
    QCOMPARE(sessionAs("operator", "operator"), "Authorization failed");
    QCOMPARE(sessionAs("admin", "admin"), "");
    QFile file(m_recorder->filePath("users"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray users = file.readAll();
    QVERIFY2(!users.contains("operator") && !users.contains("sesame"), users.constData());
}

void TestModelLists::removesThePackageThatIsPicked()
{
    const auto packages = [](const Session &session) {
        QStringList names;
        for (const paravue::Package &package :
             session.window->findChild<paravue::PackageListView *>()->packages())
            names << package.name;
        return names;
    };
    QStringList expected;
    {
        Session session(address("admin:admin"));
        QVERIFY(session.isFine());
        expected = packages(session);
        QVERIFY(expected.removeOne("mail-notifier"));
        const ModalWatcher dialogs([](QWidget &dialog) { press(dialog, "Remove"); }, "QDialog");
        QSignalSpy done(&session.store, &OrbSetup::storeDone);
        pressDelete(*shown<paravue::PackageListView>(*session.window), "mail-notifier");
        QVERIFY(dialogs.texts().value(0).contains("mail-notifier"));
        QVERIFY(!done.isEmpty() || done.wait(20'000));
        QVERIFY(session.isFine());
    }
    const Session next(address("admin:admin"));
    QCOMPARE(packages(next), expected);
}

QTEST_MAIN(TestModelLists)
#include "tst_model_lists.moc"
