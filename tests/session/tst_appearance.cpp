// The colours of paravue-setup follow the desktop. A settings portal of our own answers on a private session
// bus.

#include "setup/Appearance.h"
#include "setup/ProgramPalettes.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>
#include <QImage>
#include <QLocalServer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace paravue;

namespace
{

const QString Path = "/org/freedesktop/portal/desktop";
const QString Interface = "org.freedesktop.portal.Settings";
const QString Group = "org.freedesktop.appearance";
constexpr uint NoPreference = 0;
constexpr uint Dark = 1;
constexpr uint Light = 2;

/// Answers as portals do: the value in a variant in a variant.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(const QString &address) : m_bus(QDBusConnection::connectToBus(address, "portal"))
    {
        m_bus.registerObject(Path, this, QDBusConnection::ExportAllSlots);
        m_bus.registerService("org.freedesktop.portal.Desktop");
    }
    ~FakePortal() override { QDBusConnection::disconnectFromBus("portal"); }

    uint scheme = NoPreference;
    bool isAsked = false;

    void tellChange(const QString &key, uint value)
    {
        QDBusMessage change = QDBusMessage::createSignal(Path, Interface, "SettingChanged");
        change << Group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(change);
    }

public Q_SLOTS:
    QDBusVariant Read(const QString &group, const QString &key)
    {
        isAsked = group == Group && key == "color-scheme";
        return QDBusVariant(QVariant::fromValue(QDBusVariant(scheme)));
    }

private:
    QDBusConnection m_bus;
};

QColor ground()
{
    return QApplication::palette().color(QPalette::Window);
}

} // namespace

class TestAppearance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { QApplication::setPalette(QPalette()); }
    void cleanupTestCase();

    void followsTheDesktop();
    void keepsToWhatTheUserWants();
    void doesWithoutABus();
    void waitsForNoBus();
    void takesPicturesInAStyle_data();
    void takesPicturesInAStyle();

private:
    QString description()
    {
        QFile file(m_folder.filePath("interface"));
        if (file.open(QIODevice::WriteOnly))
            file.write("<pvsetup><tabwidget><tab><name>Page</name></tab></tabwidget></pvsetup>");
        return file.fileName();
    }

    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QColor m_desktop;
};

void TestAppearance::initTestCase()
{
    m_desktop = ground();
    QVERIFY(m_desktop != darkPalette().color(QPalette::Window));
    const QString daemon = QStandardPaths::findExecutable("dbus-daemon");
    if (daemon.isEmpty())
        return;
    m_daemon.start(daemon, {"--session", "--nofork", "--print-address"});
    QVERIFY(m_daemon.waitForStarted());
    AWAIT_VERIFY(m_daemon.canReadLine());
    m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
}

void TestAppearance::cleanupTestCase()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

void TestAppearance::followsTheDesktop()
{
    if (m_address.isEmpty())
        QSKIP("dbus-daemon is not installed");
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toLatin1());
    FakePortal portal(m_address);
    portal.scheme = Dark;
    const Appearance appearance(ColorScheme::Desktop);
    AWAIT_COMPARE(ground(), darkPalette().color(QPalette::Window));
    portal.tellChange("contrast", 0); // something else
    portal.tellChange("color-scheme", Light);
    AWAIT_COMPARE(ground(), m_desktop);
    portal.tellChange("color-scheme", Dark);
    AWAIT_COMPARE(ground(), darkPalette().color(QPalette::Window));
    portal.tellChange("color-scheme", NoPreference);
    AWAIT_COMPARE(ground(), m_desktop);
    QVERIFY(portal.isAsked);
}

void TestAppearance::keepsToWhatTheUserWants()
{
    const Appearance appearance(ColorScheme::Dark);
    QCOMPARE(ground(), darkPalette().color(QPalette::Window));
    // The desktop of a test is light already.
    const Appearance light(ColorScheme::Light);
    QCOMPARE(ground(), m_desktop);
}

void TestAppearance::doesWithoutABus()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    const Appearance appearance(ColorScheme::Desktop);
    QCOMPARE(ground(), m_desktop);
}

/// A bus that accepts connections and says nothing delays neither the window nor the end of the program.
void TestAppearance::waitsForNoBus()
{
#ifndef Q_OS_UNIX
    QSKIP("A process of another console cannot be signalled.");
#else
    QLocalServer bus;
    QVERIFY(bus.listen(m_folder.filePath("bus")));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bus.fullServerName());
    QProcess program;
    program.setProcessEnvironment(environment);
    QFile log(m_folder.filePath("log"));
    program.start(SETUP_PROGRAM, {"--preview", description(), "--log", log.fileName()});
    AWAIT_VERIFY_WITHIN(bus.hasPendingConnections(), 20'000);
    AWAIT_VERIFY_WITHIN(log.open(QIODevice::ReadOnly), 20'000);
    QByteArray text;
    AWAIT_VERIFY_WITHIN((text += log.readAll()).contains("description shown"), 20'000);
    program.terminate();
    AWAIT_COMPARE_WITHIN(program.state(), QProcess::NotRunning, 20'000);
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 8);
#endif
}

void TestAppearance::takesPicturesInAStyle_data()
{
    const test::TestTable<QString, QColor> row("style", "expected");
    row("light", "light", m_desktop);
    row("dark", "dark", darkPalette().color(QPalette::Window));
    row("desktop", "system", m_desktop);
}

void TestAppearance::takesPicturesInAStyle()
{
    QFETCH(QString, style);
    QFETCH(QColor, expected);
    const QString folder = m_folder.filePath(style);
    const QStringList arguments{"--style", style, "--preview", description(), "--screenshot", folder};
    QCOMPARE(QProcess::execute(SETUP_PROGRAM, arguments), 0);
    const QImage picture(folder + "/01-page.png");
    QCOMPARE(picture.pixelColor(10, picture.height() - 10), expected);
}

QTEST_MAIN(TestAppearance)

#include "tst_appearance.moc"
