#include "ModalWatcher.h"
#include "SetupRun.h"
#include "controls/AlarmZoneEditor.h"
#include "controls/K9mButton.h"
#include "controls/MaskEditor.h"
#include "controls/PtzCalibrator.h"
#include "controls/ScheduleGrid.h"
#include "recorder/RecorderServer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDomDocument>
#include <QFile>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>
#include <QTabWidget>
#include <QTemporaryDir>

#include <algorithm>

using namespace paravue::test;

namespace
{

const QSet<QString> ControlTypes{
    "label",    "edit",          "dropdown",     "checkbox",    "scroll",     "separator", "gridlayout",
    "online",   "spacer",        "tabwidget",    "datetime",    "pushbutton", "list",      "accesslist",
    "softlist", "vornschedule",  "orbpie",       "progressbar", "maskctrl",   "setup",     "PTZvideoin",
    "PTZAlarm", "PTZCalibrator", "PTZcrossView", "k9m_button",  "diskfitness"};

/// The widget number \a index of a class, on a page that is brought to the front.
template <class Widget>
Widget *shown(const CWinMain &window, int index = 0)
{
    auto *widget = window.findChildren<Widget *>().value(index);
    auto *tabs = window.findChild<QTabWidget *>("tabWidget");
    for (int page = 0; widget && page < tabs->count(); ++page) {
        if (tabs->widget(page)->isAncestorOf(widget))
            tabs->setCurrentIndex(page);
    }
    return widget;
}

/// The one for the brightness; those of the pages themselves have no name.
int horizontalControl(const CWinMain &window)
{
    const QList<QScrollBar *> bars = window.findChildren<QScrollBar *>();
    const auto found = std::find_if(bars.begin(), bars.end(), [](const QScrollBar *bar) {
        return bar->orientation() == Qt::Horizontal && bar->accessibleName().startsWith("link");
    });
    return int(found - bars.begin());
}

void press(const QWidget &window, const QString &caption)
{
    QTest::mouseClick(buttonWithText<QPushButton>(window, caption), Qt::LeftButton);
}

} // namespace

/// The model with every control, through whole sessions: built, edited as users do, saved, and shown again.
class TestEverything : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void usesEveryType();
    void keepsWhatIsEdited();
    void opensDialogsInDialogs();

private:
    QString address() const
    {
        return "admin:admin@127.0.0.1:" + QString::number(static_cast<qint16>(m_recorder->port()));
    }

    QTemporaryDir m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
};

void TestEverything::initTestCase()
{
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder.path(), "everything");
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
}

void TestEverything::usesEveryType()
{
    QFile file(m_recorder->filePath("interface"));
    QDomDocument document;
    QVERIFY(file.open(QIODevice::ReadOnly) && document.setContent(&file));
    QSet<QString> used;
    const QDomNodeList items = document.elementsByTagName("item");
    for (int i = 0; i < items.size(); ++i)
        used.insert(items.at(i).toElement().attribute("type"));
    QCOMPARE(used, ControlTypes);
}

void TestEverything::keepsWhatIsEdited()
{
    {
        const Session session(address());
        QVERIFY(session.isFine());
        CWinMain &window = *session.window;
        replaceText(*session.field("one text"), "two texts");
        QTest::keyClick(shown<QComboBox>(window, 1), Qt::Key_Up);
        QTest::keyClick(shown<QScrollBar>(window, horizontalControl(window)), Qt::Key_Right);
        QTest::mouseClick(shown<paravue::K9mButton>(window), Qt::LeftButton);
        QTest::keyClick(shown<paravue::ScheduleGrid>(window), Qt::Key_Delete);
        QTest::keyClick(shown<paravue::MaskEditor>(window), Qt::Key_Space);
        QTest::keyClick(shown<paravue::AlarmZoneEditor>(window), Qt::Key_Space);
        QTest::keyClick(shown<paravue::PtzCalibrator>(window), Qt::Key_Delete);
        QSignalSpy saved(&session.store, &OrbSetup::storeDone);
        press(window, "Save");
        QVERIFY(saved.wait(20'000));
        QVERIFY(session.isFine());
    }
    Session session(address());
    QVERIFY(session.isFine());
    const QHash<QString, QString> expected{{"streams/fields/first", "two texts"},
                                           {"streams/fields/second", "two texts"},
                                           {"streams/stream_0/quality", "low"},
                                           {"streams/fields/light", "off"},
                                           {"streams/stream_0/brightness", "51"},
                                           {"timers/week/DAY1", "000000221111111111222200"},
                                           {"streams/mask/MOTION0", "1000000000000000"},
                                           {"streams/mask/ZONE0", "1000000000000000"},
                                           {"streams/ptz/POINT1", ""},
                                           {"streams/ptz/POINT2", "0.7200,0.5500,0.6,-0.1,0.2"}};
    for (auto value = expected.cbegin(); value != expected.cend(); ++value)
        QCOMPARE(value.key() + " = " + session.store.value(value.key()), value.key() + " = " + *value);
    QVERIFY(session.field("two texts"));
}

void TestEverything::opensDialogsInDialogs()
{
    Session session(address());
    QVERIFY(session.isFine());
    for (int time = 0; time < 2; ++time) { // the second time as the first
        QString inner;
        const ModalWatcher outerDialog(
            [&](QWidget &outer) {
                const ModalWatcher innerDialog(
                    [&](QWidget &dialog) {
                        inner = dialog.findChild<QLineEdit *>()->text();
                        press(dialog, "Close");
                    },
                    "QDialog");
                press(outer, "Open another");
                press(outer, "Close");
            },
            "QDialog");
        press(*session.window, "Open a dialog");
        QVERIFY(outerDialog.texts().constFirst().startsWith("Opened just now"));
        QCOMPARE(inner, "Showroom");
    }
    QVERIFY(session.isFine());
}

QTEST_MAIN(TestEverything)
#include "tst_everything.moc"
