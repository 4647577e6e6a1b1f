#include "ModalWatcher.h"
#include "SetupRun.h"
#include "controls/AccessList.h"
#include "recorder/RecorderServer.h"

#include <QCryptographicHash>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>

using namespace paravue::test;

namespace
{

class NobodyToAsk : public CredentialsSource
{
public:
    bool ask(Credentials &) override { return false; }
    void save(const Credentials &) override {}
};

void press(const QWidget &window, const QString &caption)
{
    QTest::mouseClick(buttonWithText<QPushButton>(window, caption), Qt::LeftButton);
}

} // namespace

/// Edits the users of the simulated recorder in its own window, then logs in as each of them.
class TestUsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void letsInWhomItLists();

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

void TestUsers::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path());
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
}

QString TestUsers::sessionAs(const QString &login, const QString &password) const
{
    const QByteArray digest = QCryptographicHash::hash(password.toUtf8(), QCryptographicHash::Md5).toHex();
    OrbNetSetup store(address(login + ':' + digest));
    store.setCredentialsSource(std::make_unique<NobodyToAsk>());
    const QSignalSpy loaded(&store, &OrbSetup::loadDone);
    const QSignalSpy errors(&store, &OrbSetup::pseudothrow);
    store.load();
    if (!QTest::qWaitFor([&] { return loaded.count() + errors.count() > 0; }, 20'000))
        return "no answer";
    return errors.isEmpty() ? QString() : errors.first().first().toString();
}

void TestUsers::letsInWhomItLists()
{
    QCOMPARE(sessionAs("operator", "operator"), "");
    QCOMPARE(sessionAs("ann", "sesame"), "Authorization failed");
    {
        Session session(address("admin:admin"));
        QVERIFY(session.isFine());
        auto *users = session.window->findChild<AccessList *>();
        auto *tabs = session.window->findChild<QTabWidget *>("tabWidget");
        while (!users->isVisible() && tabs->currentIndex() < tabs->count() - 1)
            tabs->setCurrentIndex(tabs->currentIndex() + 1);
        const ModalWatcher dialogs(
            [&](QWidget &dialog) {
                const auto fields = dialog.findChildren<QLineEdit *>();
                if (fields.isEmpty()) {
                    press(dialog, "Remove");
                    return;
                }
                QVERIFY(!buttonWithText<QPushButton>(dialog, "OK")->isEnabled());
                for (int i = 0; i < 3; ++i)
                    QTest::keyClicks(fields[i], i == 0 ? "ann" : "sesame");
                press(dialog, "OK");
                QVERIFY(!dialog.isVisible());
            },
            "QDialog");
        press(*session.window, "Add…");
        QTreeWidgetItem *gone = users->findItems("operator", Qt::MatchExactly).first();
        QTest::mouseClick(users->viewport(), Qt::LeftButton, {}, users->visualItemRect(gone).center());
        QTest::keyClick(users, Qt::Key_Delete);
        QCOMPARE(dialogs.count(), 2);
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

QTEST_MAIN(TestUsers)
#include "tst_users.moc"
