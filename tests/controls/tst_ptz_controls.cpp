#include "Gestures.h"
#include "controls/CalibrationPoint.h"
#include "controls/NameEdit.h"
#include "controls/PtzCalibrator.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "support/Waiting.h"
#include "ui/DescribedWindow.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QSignalSpy>

#include <cmath>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Calibrator = "<item type='PTZCalibrator' row='1' width='320' height='240'>"
                              "<key>ptz/cam0/POINT</key><key>ptz/cam0/GOTO</key></item>";

/// The file of a recorder with five points, of which the window shows four; points are joined by "/".
QByteArray storedPoints(const QByteArray &points, const QByteArray &gone)
{
    QByteArray file = "[ cam0 ]\r\nPOINT0 = 'a b'\r\n";
    const QList<QByteArray> each = points.split('/');
    for (qsizetype point = 0; point < each.size(); ++point)
        file += "POINT" + QByteArray::number(point + 1) + (each[point].isEmpty() ? " = " : " = '") +
                each[point] + (each[point].isEmpty() ? "\r\n" : "'\r\n");
    return file + "POINT5 = '0.5,0.5'\r\nGOTO = " + gone + "\r\n; end\r\n";
}

QPoint placeIn(const PictureView &view, const QPointF &fraction)
{
    const QRect picture = view.pictureRect();
    return picture.topLeft() +
           QPoint(qRound(fraction.x() * picture.width()), qRound(fraction.y() * picture.height()));
}

} // namespace

class TestPtzControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Lists of points are joined as the language does it.
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void calibrates_data();
    void calibrates();
    void hasAMenu();
    void choosesPointsInTheStrip();
    void setsPointsWhenTheCameraStandsStill();
    void saysWhichPointsAreNotSet();
    void showsRemarksOneBelowTheOther();
    void namesPoints_data();
    void namesPoints();
    void movesPointsWithoutQuotes();
    void pointsTheCross_data();
    void pointsTheCross();
    void passesPicturesOn();
    void knowsWhatTheCameraSees_data();
    void knowsWhatTheCameraSees();
    void boundsItsSizes();
};

void TestPtzControls::calibrates_data()
{
    QTest::addColumn<QByteArray>("points");
    QTest::addColumn<QString>("camera");
    QTest::addColumn<QString>("gestures");
    QTest::addColumn<QByteArray>("calibrated");
    QTest::addColumn<QString>("reported"); // "c" and a number: calibrated; "g" and a number: gone to

    const auto row = [](const char *name, const QByteArray &points, const QString &camera,
                        const QString &gestures, const QByteArray &calibrated, const QString &reported) {
        QTest::newRow(name) << points << camera << gestures << calibrated << reported;
    };
    const QByteArray none = "///";
    row("nothing", "0.1,.2, 3/off/nan,1/1e999,0", "", "Return", "0.1,.2, 3/off/nan,1/1e999,0", "g1");
    row("click", none, "", "L.25,.5 U", "0.2500,0.5000///", "c1");
    row("clicks that set one after the other", "/0.1,0.1//", "", "L.25,.5 U L.75,.5 U L.5,.5 U",
        "0.2500,0.5000/0.1,0.1/0.7500,0.5000/0.5000,0.5000", "c1 c3 c4");
    row("click with a known camera", none, "0.3, -0.25, 0.5", "L.25,.5 U", "0.2500,0.5000,0.3,-0.25,0.5///",
        "c1");
    row("click with a camera without zoom", none, "-2,0.125", "L.25,.5 U", "0.2500,0.5000,-1,0.125,0///",
        "c1");
    row("press that is dragged", none, "", "L.25,.5 M.5,.25 M.75,.75 U", "0.7500,0.7500///", "c1");
    row("drag of a point", "0.25,0.5,1,2,3,mine/0.75,0.75//", "", "L.25,.5 M.5,.25 U",
        "0.5000,0.2500,1,2,3,mine/0.75,0.75//", "c1");
    row("drag of another point", "0.25,0.5/0.75,0.75//", "", "L.75,.75 M.5,.5 U", "0.25,0.5/0.5000,0.5000//",
        "c2");
    row("drag by the number", "0.25,0.5///", "", "L.2875,.45 M.5375,.45 U", "0.5000,0.5000///", "c1");
    row("drag over the edge", "0.25,0.5///", "", "L.25,.5 M5,-5 U", "1.0000,0.0000///", "c1");
    row("press on a point", "0.25,0.5///", "0,0", "L.25,.5 U", "0.25,0.5///", "");
    row("escape in a drag", "0.25,0.5///", "", "L.25,.5 M.5,.5 Esc M.75,.5 U", "0.25,0.5///", "");
    row("drag that loses the focus", "0.25,0.5///", "", "L.25,.5 M.5,.5 F M.75,.5 U", "0.25,0.5///", "");
    row("right button on a point", "0.25,0.5/0.75,0.75//", "", "R.75,.75 U R.5,.5 U", "0.25,0.5/0.75,0.75//",
        "");
    row("double click on a number", "0.25,0.5/0.75,0.75//", "", "D.7875,.7", "0.25,0.5/0.75,0.75//", "g2");
    row("double click, then enter", "0.25,0.5/0.75,0.75//", "", "L.7875,.7 U Return", "0.25,0.5/0.75,0.75//",
        "g2"); // a press makes it the current one
    row("every point by its key", none, "", "4 Space 3 Space 2 Space 1 Space",
        "0.5000,0.5000/0.5000,0.5000/0.5000,0.5000/0.5000,0.5000", "c4 c3 c2 c1");
    row("arrows, finely, in every direction", "0.5,0.5///", "", "Down Left Shift+Up Shift+Right",
        "0.4910,0.5090///", "c1 c1 c1 c1");
    row("double click on a point", "0.25,0.5/0.75,0.75//", "", "D.75,.75", "0.25,0.5/0.75,0.75//", "g2");
    row("double click beside the points", none, "", "D.25,.5", "0.2500,0.5000///", "c1 g1");
    row("space", none, "", "Space PgDown PgDown Space PgUp Space",
        "0.5000,0.5000/0.5000,0.5000/0.5000,0.5000/", "c1 c3 c2");
    row("space on a set point", "0.25,0.5,0.9,0.9,0.9,x///", "0.1,0.2", "Space",
        "0.2500,0.5000,0.1,0.2,0.9,x///", "c1");
    row("space on what is no point", "off///", "", "Space", "0.5000,0.5000///", "c1");
    row("arrows", "0.5,0.5///0.1,0.1", "", "Right Right Up Shift+Down Shift+Left 4 Left Down",
        "0.5190,0.4910///0.0900,0.1100", "c1 c1 c1 c1 c1 c4 c4");
    row("arrows at the edge", "3,-1///", "", "Up", "1.0000,0.0000///", "c1");
    row("arrows without a point", none, "", "Right 9", none, "");
    row("enter", "/0.1,0.1//", "", "Return 2 Enter", "/0.1,0.1//", "g2");
    row("remove", "0.25,0.5/0.1,0.1/0.2,0.2/", "", "Del 2 Backspace 4 Del", "//0.2,0.2/", "c1 c2");
}

void TestPtzControls::calibrates()
{
    QFETCH(QByteArray, points);
    QFETCH(QString, camera);
    QFETCH(QString, gestures);
    QFETCH(QByteArray, calibrated);
    QFETCH(QString, reported);
    DescribedWindow window(describePage(Calibrator), {{"ptz", storedPoints(points, "99")}});
    window.window->resize(500, 500);
    auto *calibrator = window.widget<PtzCalibrator>();
    AWAIT_COMPARE(calibrator->pictureRect().size(), QSize(320, 240));
    QStringList heard;
    connect(calibrator, &PtzCalibrator::signal_Point_calibrated, this,
            [&](int number) { heard << QString("c%1").arg(number); });
    connect(calibrator, &PtzCalibrator::signal_Goto_point_selected, this,
            [&](int number) { heard << QString("g%1").arg(number); });

    calibrator->setFocus();
    calibrator->slot_Set_PTZ_pos("1,1,1"); // a second one shows sooner that the camera stands still
    QVERIFY(QMetaObject::invokeMethod(calibrator, "slot_Set_PTZ_pos", Q_ARG(QString, camera)));
    AWAIT_VERIFY(!calibrator->isTurning());
    perform(*calibrator, gestures, [&](const QPointF &place) { return placeIn(*calibrator, place); });
    QCOMPARE(heard.join(u' '), reported);
    window.fixture.store().flush();
    const QString gone = heard.isEmpty() ? QString() : heard.constLast();
    QCOMPARE(window.fixture.content("ptz"),
             storedPoints(calibrated, gone.startsWith('g') ? gone.mid(1).toUtf8() : QByteArray("99")));
    QVERIFY(window.window->isVisible()); // neither Enter nor Escape reaches the window
}

void TestPtzControls::hasAMenu()
{
    DescribedWindow window(describePage(Calibrator),
                           {{"ptz", storedPoints("0.1,0.1,0,0,0/0.75,0.75,0,0,0//", "99")}});
    window.window->resize(500, 500);
    auto *calibrator = window.widget<PtzCalibrator>();
    AWAIT_COMPARE(calibrator->pictureRect().size(), QSize(320, 240));
    QSignalSpy gone(calibrator, &PtzCalibrator::signal_Goto_point_selected);
    const auto choose = [&](const QString &text) {
        const auto *menu = calibrator->findChild<QMenu *>();
        QVERIFY(menu);
        for (QAction *action : menu->actions()) {
            if (action->text() == text && action->isEnabled())
                action->trigger();
        }
        delete menu;
    };
    const auto openMenuAt = [&](const QPoint &place) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, calibrator->mapToGlobal(place));
        QCoreApplication::sendEvent(calibrator, &event);
    };
    openMenuAt(placeIn(*calibrator, {0.75, 0.75}));
    QCOMPARE(calibrator->currentPoint(), 2);
    choose("Go to point 2");
    QCOMPARE(gone.size(), 1);
    openMenuByKey(*calibrator);
    choose("Name point 2…");
    QVERIFY(calibrator->findChild<NameEdit *>());
    QTest::keyClick(calibrator->findChild<NameEdit *>(), Qt::Key_Escape);
    AWAIT_VERIFY(!calibrator->findChild<NameEdit *>());
    openMenuAt(placeIn(*calibrator, {0.5, 0.5})); // beside the points
    choose("Remove point 2");
    QCOMPARE(calibrator->points(), QStringList({"0.1,0.1,0,0,0", "", "", ""}));
    openMenuByKey(*calibrator);
    choose("Go to point 2"); // is not set any more
    QCOMPARE(gone.size(), 1);
}

void TestPtzControls::choosesPointsInTheStrip()
{
    DescribedWindow window(describePage("<item type='label'><text>Points</text></item>" + Calibrator),
                           {{"ptz", storedPoints("0.1,0.1/0.2,0.25//", "2")}});
    auto *calibrator = window.widget<PtzCalibrator>();
    QSignalSpy gone(calibrator, &PtzCalibrator::signal_Goto_point_selected);
    QList<int> chosen;
    for (int x = 0; x < calibrator->width(); x += 8) {
        const QPoint chip(x, calibrator->height() - 12);
        QTest::mouseClick(calibrator, Qt::LeftButton, {}, chip);
        if (chosen.value(chosen.size() - 1) != calibrator->currentPoint()) {
            chosen.append(calibrator->currentPoint());
            QTest::mouseDClick(calibrator, Qt::LeftButton, {}, chip);
        }
    }
    QCOMPARE(chosen, QList<int>({1, 2, 3, 4}));
    QCOMPARE(gone.size(), 1); // point 1 was current before its first press, 3 and 4 are not set
    QCOMPARE(gone[0][0].toInt(), 2);

    QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(calibrator);
    QCOMPARE(heard->role(), QAccessible::Graphic);
    QCOMPARE(heard->text(QAccessible::Name), "Points");
    QCOMPARE(heard->text(QAccessible::Value),
             "Point 4 of 4: not set. Camera position not known. Gone to point 2");
    QTest::keyClick(calibrator, Qt::Key_2);
    calibrator->slot_Set_PTZ_pos(0.5, 0, 0);
    QCOMPARE(heard->text(QAccessible::Value), "Point 2 of 4: 20.0% from the left, 25.0% from the top. "
                                              "Pan 0.50, tilt 0.00, zoom 0.00. Gone to point 2");
}

void TestPtzControls::setsPointsWhenTheCameraStandsStill()
{
    DescribedWindow window(describePage(Calibrator), {{"ptz", storedPoints("0.1,0.1,0,0,0///", "99")}});
    auto *calibrator = window.widget<PtzCalibrator>();
    QSignalSpy calibrated(calibrator, &PtzCalibrator::signal_Point_calibrated);
    calibrator->slot_Set_PTZ_pos("0,0,0"); // perhaps it turns
    QTest::keyClick(calibrator, Qt::Key_Space);
    QVERIFY2(!waitUntil([&] { return !calibrated.isEmpty(); }, 1000), "a second position may come");
    calibrator->slot_Set_PTZ_pos("0.05,0,0"); // two at once, as the rest is measured by their distance
    calibrator->slot_Set_PTZ_pos("0.1,0,0");
    QTest::keyClick(calibrator, Qt::Key_2);
    QTest::keyClick(calibrator, Qt::Key_Space);
    QTest::keyClick(calibrator, Qt::Key_Return); // it has no position yet
    QVERIFY(calibrator->valueText().contains("as soon as the camera stands still"));
    calibrator->slot_Set_PTZ_pos("0.5,0.25,0");
    QCOMPARE(calibrator->points(), QStringList({"0.1,0.1,0,0,0", "", "", ""}));
    AWAIT_COMPARE(calibrated.size(), 2);
    QCOMPARE(calibrator->points(),
             QStringList({"0.1000,0.1000,0.5,0.25,0", "0.5000,0.5000,0.5,0.25,0", "", ""}));
    QCOMPARE(calibrator->gotoPoint(), 0);
    QVERIFY(!calibrator->valueText().contains("stands still"));

    // It was told to turn, and positions come one a second.
    QElapsedTimer since;
    since.start();
    calibrator->expectTurn();
    QVERIFY(calibrator->isTurning());
    AWAIT_VERIFY(since.elapsed() >= 1000);
    calibrator->slot_Set_PTZ_pos("0.5,0.3,0");
    const qint64 last = since.restart();
    AWAIT_VERIFY(!calibrator->isTurning());
    QVERIFY2(since.elapsed() >= last, qPrintable(QString::number(since.elapsed())));

    calibrator->setCertain(false);
    QTest::keyClick(calibrator, Qt::Key_Space);
    QVERIFY2(!waitUntil([&] { return calibrated.size() > 2; }, 700), "it may have turned unheard");
    calibrator->slot_Set_PTZ_pos("0.55,0,0");
    calibrator->slot_Set_PTZ_pos("0.6,0,0");
    calibrator->setCertain(true);
    AWAIT_COMPARE(calibrated.size(), 3);
    QCOMPARE(calibrator->points().at(1), "0.5000,0.5000,0.6,0,0");

    // A command that was given in a silence reaches the camera behind it.
    calibrator->setCertain(false);
    calibrator->expectTurn();
    since.restart();
    AWAIT_VERIFY(since.elapsed() >= 3100);
    calibrator->setCertain(true);
    QTest::keyClick(calibrator, Qt::Key_3);
    QTest::keyClick(calibrator, Qt::Key_Space);
    QVERIFY2(!waitUntil([&] { return calibrated.size() > 3; }, 1000), "it has not turned yet");
    calibrator->slot_Set_PTZ_pos("0.62,0,0");
    calibrator->slot_Set_PTZ_pos("0.65,0,0");
    AWAIT_COMPARE(calibrated.size(), 4);
    QCOMPARE(calibrator->points().at(2), "0.5000,0.5000,0.65,0,0");
    QTest::keyClick(calibrator, Qt::Key_2);

    calibrator->slot_Set_PTZ_pos("0.7,0,0");
    QTest::keyClick(calibrator, Qt::Key_Space);
    QStringList others = calibrator->points();
    others[3] = "0.1,0.1,0,0,0";
    calibrator->setPoints(others); // another point is replaced meanwhile
    QVERIFY(calibrator->valueText().contains("Point 2 is set as soon as"));
    calibrator->slot_Set_PTZ_pos(""); // lost on the way
    QCOMPARE(calibrator->points().at(1), "0.5000,0.5000,0.6,0,0");
    QVERIFY(calibrator->valueText().contains("Point 2 was not set"));
    QVERIFY(!calibrator->valueText().contains("stands still"));
}

void TestPtzControls::saysWhichPointsAreNotSet()
{
    PtzCalibrator calibrator(4);
    const auto defer = [&](const QList<int> &points) {
        calibrator.slot_Set_PTZ_pos("0.1,0,0");
        calibrator.slot_Set_PTZ_pos("0.2,0,0");
        for (const int point : points) {
            QTest::keyClick(&calibrator, Qt::Key(Qt::Key_0 + point));
            QTest::keyClick(&calibrator, Qt::Key_Space);
        }
    };
    defer({1, 3, 4});
    QCOMPARE(calibrator.deferral(), "Points 1, 3, 4 are set as soon as the camera stands still.");
    calibrator.setPoints({"0.1,0.1", "0.2,0.2"});
    QVERIFY(calibrator.valueText().contains("Points 3, 4 are set as soon as"));
    calibrator.slot_Set_PTZ_pos("");
    QVERIFY(calibrator.valueText().contains("Points 3, 4 were not set, as the camera position"));
    defer({2});
    calibrator.setPoints({"0.1,0.1", "0.3,0.3"});
    QVERIFY(calibrator.valueText().contains("Point 2 was not set, as it has got another value"));
    QCOMPARE(calibrator.deferral(), QString());
    defer({1, 2});
    calibrator.setPoints({});
    QVERIFY(calibrator.valueText().contains("Points 1, 2 were not set, as they have got other values"));
}

void TestPtzControls::showsRemarksOneBelowTheOther()
{
    PtzCalibrator calibrator(4);
    QPixmap picture(320, 240);
    picture.fill(Qt::red);
    calibrator.setPixmap(picture);
    calibrator.resize(calibrator.sizeHint());
    // How many lines of the picture a text covers.
    const auto covered = [&] {
        const QImage seen = calibrator.grab(calibrator.pictureRect()).toImage();
        int lines = 0;
        for (int y = 0; y < seen.height(); ++y)
            lines += seen.pixelColor(seen.width() / 2, y) != QColor(Qt::red);
        return lines;
    };
    QCOMPARE(covered(), 0);
    calibrator.setRemark("The login may not turn it");
    const int one = covered();
    QVERIFY(one > 0);
    calibrator.slot_Set_PTZ_pos("0.1,0,0");
    calibrator.slot_Set_PTZ_pos("0.2,0,0");
    QTest::mouseClick(&calibrator, Qt::LeftButton, {}, placeIn(calibrator, {0.1, 0.1}));
    QVERIFY(!calibrator.deferral().isEmpty());
    const int both = covered();
    calibrator.setRemark({});
    const int other = covered();
    QVERIFY2(both > one && both > other,
             qPrintable(QString("%1, %2, both %3").arg(one).arg(other).arg(both)));
}

void TestPtzControls::namesPoints_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Qt::Key>("last");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, const QString &typed, Qt::Key last,
                        const QByteArray &after) { QTest::newRow(name) << before << typed << last << after; };
    row("first name", "0.1,0.1,0,0,0", "Main gate", Qt::Key_Return, "0.1,0.1,0,0,0,Main gate");
    row("another name, with a comma", "0.1,0.1,0,0,0,x, y", " Gate, left ", Qt::Key_Enter,
        "0.1,0.1,0,0,0,Gate, left");
    row("none any more", "0.1,0.1,0,0,0,x", " ", Qt::Key_Return, "0.1,0.1,0,0,0");
    row("escape", "0.1,0.1,0,0,0,x", "y", Qt::Key_Escape, "0.1,0.1,0,0,0,x");
    row("tab", "0.1,0.1,0,0,0,x", "y", Qt::Key_Tab, "0.1,0.1,0,0,0,y");
    row("long", "0.1,0.1,0,0,0", QString(60, 'n'), Qt::Key_Return, "0.1,0.1,0,0,0," + QByteArray(40, 'n'));
    row("without a position", "0.1,0.1", "y", Qt::Key_Return, "0.1,0.1");
    row("quote", "0.1,0.1,0,0,0", "Bob's", Qt::Key_Return, "0.1,0.1,0,0,0,Bob’s");
}

void TestPtzControls::namesPoints()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, typed);
    QFETCH(Qt::Key, last);
    QFETCH(QByteArray, after);
    DescribedWindow window(describePage(Calibrator), {{"ptz", storedPoints(before + "///", "99")}});
    auto *calibrator = window.widget<PtzCalibrator>();
    calibrator->setFocus();
    QTest::keyClick(calibrator, Qt::Key_F2);
    if (auto *edit = calibrator->findChild<NameEdit *>()) {
        QCOMPARE(edit->accessibleName(), "Name of point 1");
        QTest::keyClicks(edit, typed);
        QTest::keyClick(edit, last);
    }
    AWAIT_VERIFY(!calibrator->findChild<NameEdit *>());
    QCOMPARE(calibrator->points().at(0).toUtf8(), after);
    const QString name = QString::fromUtf8(after).section(',', 5);
    QVERIFY(
        calibrator->valueText().startsWith(name.isEmpty() ? "Point 1 of 4" : "Point 1 " + name + " of 4"));
    window.fixture.store().flush();
    QCOMPARE(window.fixture.content("ptz"), storedPoints(after + "///", "99"));
    QVERIFY(window.window->isVisible());
}

/// Lines of a file that hold a single quote within one are not read again.
void TestPtzControls::movesPointsWithoutQuotes()
{
    for (const auto &camera : {std::optional<PtzPosition>(), std::optional(PtzPosition())})
        QVERIFY(placedPoint("0.1,0.1,0,0,0,Bob's", {0.5, 0.5}, camera).endsWith(",Bob’s"));
}

void TestPtzControls::pointsTheCross_data()
{
    QTest::addColumn<QString>("position");
    QTest::addColumn<QPointF>("cross");
    QTest::addColumn<QString>("value");
    QTest::newRow("position") << "0.5,-0.5,0.25" << QPointF(0.75, 0.75) << "Pan 0.50, tilt -0.50, zoom 0.25";
    QTest::newRow("no zoom") << " -0.5 , 0.5" << QPointF(0.25, 0.25) << "Pan -0.50, tilt 0.50";
    QTest::newRow("beyond the ranges") << "-7,7,7,x" << QPointF(0, 0) << "Pan -1.00, tilt 1.00, zoom 1.00";
    for (const char *text : {"", ",", "0.5", "nan,0", "0.5;0.5", "inf,inf,inf"})
        QTest::addRow("not known: \"%s\"", text) << text << QPointF(0.5, 0.5) << "Camera position not known";
}

void TestPtzControls::pointsTheCross()
{
    QFETCH(QString, position);
    QFETCH(QPointF, cross);
    QFETCH(QString, value);
    DescribedWindow window(
        describePage("<item type='PTZcrossView' width='200' height='100'><cross/></item>"
                     "<item row='1' type='pushbutton'><text>Go</text><action type='call' "
                     "slot='slot_Set_PTZ_pos' param='{ptz/cam0/POS}'>cross</action></item>"),
        {{"ptz", "[ cam0 ]\r\nPOS = 'x'\r\n"}});
    window.window->setValue("ptz/cam0/POS/" + position);
    QTest::mouseClick(window.button<QPushButton>("Go"), Qt::LeftButton);
    auto *view = window.widget<PtzCrossView>();
    view->setText("Off");
    const QPoint beside =
        view->pictureRect().center() - QPoint(view->fontMetrics().horizontalAdvance("Off") / 2 + 3, 0);
    // No hair runs through the text, nor through the background around it.
    for (int y = -3; y <= 3; ++y)
        QCOMPARE(view->grab().toImage().pixelColor(beside + QPoint(0, y)),
                 view->palette().color(QPalette::Window));
    QPixmap picture(200, 100);
    picture.fill(Qt::red);
    view->setPixmap(picture);
    QCOMPARE(view->valueText(), value);
    // The hairs run from edge to edge; they are looked for far from where they meet.
    const QImage seen = view->grab().toImage();
    const auto distance = [&](const QPointF &along, const QPointF &step, double expected) {
        for (int i = 0; i < 100; ++i) {
            if (seen.pixelColor(placeIn(*view, along + step * i)) != QColor(Qt::red))
                return std::abs(i / 100.0 - expected);
        }
        return 1.0;
    };
    QVERIFY(distance({0, cross.y() < 0.4 ? 0.9 : 0.1}, {0.01, 0}, cross.x()) < 0.03);
    QVERIFY(distance({cross.x() < 0.4 ? 0.9 : 0.1, 0}, {0, 0.01}, cross.y()) < 0.03);
}

void TestPtzControls::passesPicturesOn()
{
    const QByteArray before =
        "; set\r\n[ cam0 ]\r\nSIZE0 = 'a b'\r\nSIZE = '704x576'\r\nodd line\r\n# SIZE\r\n";
    DescribedWindow window(describePage("<item type='PTZvideoin'><key>ptz/cam0/SIZE</key></item>"
                                        "<item type='PTZvideoin' row='2'/>"
                                        "<item row='1' type='label'><text>{ptz/cam0/SIZE}</text></item>"),
                           {{"ptz", before}});
    auto *input = window.widget<PtzVideoInput>();
    QSignalSpy ready(input, &PtzVideoInput::signal_Pixmap_ready);
    const QString waiting = input->valueText();
    for (const QSize &size : {QSize(), QSize(704, 576), QSize(64, 48)}) {
        QVERIFY(QMetaObject::invokeMethod(input, "setPixmap", Q_ARG(QPixmap, QPixmap(size))));
        const QString text =
            size.isEmpty() ? "704x576" : QString("%1x%2").arg(size.width()).arg(size.height());
        QCOMPARE(window.widget<QLabel>()->text(), text);
    }
    QCOMPARE(ready.size(), 2);
    window.fixture.store().flush();
    QCOMPARE(window.fixture.content("ptz"), QByteArray(before).replace("704x576", "64x48"));
    QCOMPARE(input->valueText(), "64 × 48 pixels");
    QVERIFY(QMetaObject::invokeMethod(input, "setText", Q_ARG(QString, "Connection lost")));
    QCOMPARE(input->valueText(), "64 × 48 pixels");
    input->setPixmap(QPixmap());
    QCOMPARE(input->valueText(), "Connection lost");
    input->setText(QString());
    QCOMPARE(input->valueText(), waiting);
}

void TestPtzControls::knowsWhatTheCameraSees_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QSizeF>("shares");
    QTest::newRow("none") << QByteArray() << QSizeF(0.5, 0.5);
    QTest::newRow("both") << QByteArray("seenPan='17' seenTilt='40'") << QSizeF(0.17, 0.4);
    QTest::newRow("odd") << QByteArray("seenPan='-3' seenTilt='1000'") << QSizeF(0.5, 1);
}

void TestPtzControls::knowsWhatTheCameraSees()
{
    QFETCH(QByteArray, attributes);
    DescribedWindow window(describePage("<item type='PTZvideoin' " + attributes + "/>"), {});
    auto *view = window.widget<PtzVideoInput>();
    QTEST(view->steering().seenShares(), "shares");
    PtzPosition goal;
    connect(&view->steering(), &PtzSteering::turnRequested, this,
            [&](const PtzPosition &asked) { goal = asked; });
    view->steering().setPosition(PtzPosition{0, 0, 1});
    QTest::mouseDClick(view, Qt::LeftButton, {}, placeIn(*view, {0.75, 0.75}));
    const QSizeF shares = view->steering().seenShares() / 8; // a quarter of the picture, at full zoom
    QVERIFY(std::abs(goal.pan - shares.width()) < 0.01 && std::abs(goal.tilt + shares.height()) < 0.01);
}

void TestPtzControls::boundsItsSizes()
{
    // A footer does not shrink a picture of the least size.
    DescribedWindow full(
        describe("<tabwidget><tab><item type='gridlayout'>"
                 "<item type='PTZCalibrator' points='40' width='200' height='150' valign='top'/>"
                 "<item type='PTZcrossView' row='1' width='200' height='500' valign='top'/>"
                 "</item></tab></tabwidget>"));
    AWAIT_COMPARE(full.widget<PtzCalibrator>()->pictureRect().size(), QSize(200, 150));
    QCOMPARE(full.widget<PtzCalibrator>()->pictureRect().left(), 1);
    DescribedWindow window(
        describePage("<item type='PTZCalibrator' points='2000000000' width='2000000000' height='-1'/>"
                     "<item type='PTZCalibrator' points='-3' row='1'/>"));
    QCOMPARE(window.widget<PtzCalibrator>(0)->points().size(), 64);
    QCOMPARE(window.widget<PtzCalibrator>(1)->points().size(), 4);
    QVERIFY(window.widget<PtzCalibrator>(0)->sizeHint().width() < 20'000);
    PictureView view;
    view.setText(QString(500'000, u'x'));
    QVERIFY(view.valueText().size() < 5000);
}

QTEST_MAIN(TestPtzControls)
#include "tst_ptz_controls.moc"
