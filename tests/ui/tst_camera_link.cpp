#include "controls/PtzCalibrator.h"
#include "controls/PtzCrossView.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/tasks/CameraLink.h"
#include "ui/tasks/PictureSource.h"

#include <QElapsedTimer>

using namespace paravue;
using namespace paravue::test;

namespace
{

class FakeSource : public PictureSource
{
public:
    bool isActive() const override { return true; }
    quint64 traffic() const override { return heard; }
    QString cameraPosition() const override { return position; }
    void turnTo(const QString &) override { commands << "MOVE"; }
    void goTo(int point) override { commands << QString("GOTO %1").arg(point); }
    void setPoint(int point, const QString &text) override
    {
        commands << QString("POINT %1 %2").arg(QString::number(point), text);
    }
    void move(const QString &to)
    {
        position = to;
        ++heard;
        Q_EMIT cameraMoved(position);
    }

    quint64 heard = 0;
    QString position = "0,0,0";
    QStringList commands;
};

/// A cross hair and, unless it is left out, a calibration that belong to a camera.
struct Camera {
    explicit Camera(bool isCalibrated = true) : link(source)
    {
        // Remarks are about a picture.
        for (PictureView *view :
             {static_cast<PictureView *>(&cross), static_cast<PictureView *>(&calibrator)})
            view->setPixmap(QPixmap(64, 48));
        link.add({&cross});
        if (isCalibrated)
            link.add({&calibrator});
    }

    FakeSource source;
    PtzCrossView cross;
    PtzCalibrator calibrator{4};
    CameraLink link;
};

} // namespace

/// What the controls of a turning camera hear of its recorder, which answers no command.
class TestCameraLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsThatItDoesNotTurn_data();
    void tellsThatItDoesNotTurn();
    void tellsOfPoints_data();
    void tellsOfPoints();
    void doubtsPointsOnce();
    void trustsARecorderThatTurns();
    void sendsReplacedPoints();
};

void TestCameraLink::tellsThatItDoesNotTurn_data()
{
    const TestTable<int, int, int, int> row("silence", "interval", "earliest", "latest");
    row("pictures all the time", 0, 40, 2500, 5000);
    row("a silence at first", 4000, 40, 6000, 8500);
    row("a picture every two seconds", 0, 2000, 3500, 7500);
}

void TestCameraLink::tellsThatItDoesNotTurn()
{
    QFETCH(int, silence);
    QFETCH(int, interval);
    QFETCH(int, earliest);
    QFETCH(int, latest);
    Camera camera;
    QTimer pictures;
    connect(&pictures, &QTimer::timeout, this, [&] { ++camera.source.heard; });
    QTimer::singleShot(silence, &pictures, [&] { pictures.start(interval); });
    QElapsedTimer since;
    since.start();
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    QCOMPARE(camera.source.commands, QStringList("MOVE"));
    AWAIT_VERIFY_WITHIN(camera.link.remark().contains("does not turn"), latest + 2000);
    QVERIFY2(since.elapsed() >= earliest && since.elapsed() <= latest,
             qPrintable(QString::number(since.elapsed())));
    QVERIFY(camera.calibrator.valueText().contains("not allowed"));
    camera.source.move("0.1,0,0");
    QCOMPARE(camera.link.remark(), QString());
}

void TestCameraLink::tellsOfPoints_data()
{
    const TestTable<bool, QString, QList<int>, QStringList, QString> row("isCalibrated", "point", "keys",
                                                                         "commands", "remark");
    const QString unanswered = "does not say whether it takes a point";
    row("set", true, "", {Qt::Key_Space}, {"POINT 1 0.5000,0.5000,0,0,0"}, unanswered);
    row("removed", true, "0.5,0.5,0,0,0", {Qt::Key_Delete}, {"POINT 1 "}, unanswered);
    row("gone to, without a position", true, "0.5,0.5", {Qt::Key_Return}, {"POINT 1 0.5,0.5", "GOTO 1"},
        "Point 1 has no position");
    row("not set", true, "", {}, {}, "Point 1 is not set");
    row("of the recorder", false, "", {}, {"GOTO 1"}, "The camera has not turned");
}

/// Without keys the cross hair is asked for point 1.
void TestCameraLink::tellsOfPoints()
{
    QFETCH(bool, isCalibrated);
    QFETCH(QString, point);
    QFETCH(QList<int>, keys);
    QFETCH(QString, remark);
    Camera camera(isCalibrated);
    camera.calibrator.setPoints({point});
    camera.source.commands.clear();
    QTimer pictures;
    connect(&pictures, &QTimer::timeout, this, [&] { ++camera.source.heard; });
    pictures.start(40);
    for (const int key : keys)
        QTest::keyClick(&camera.calibrator, Qt::Key(key));
    if (keys.isEmpty())
        QTest::keyClick(&camera.cross, Qt::Key_1);
    QTEST(camera.source.commands, "commands");
    AWAIT_VERIFY(camera.link.remark().contains(remark));
    QVERIFY2(camera.cross.valueText().contains(remark), qPrintable(camera.cross.valueText()));
}

/// Each time only behind a turn that was ignored.
void TestCameraLink::doubtsPointsOnce()
{
    Camera camera;
    const auto setPoint = [&camera] {
        Q_EMIT camera.calibrator.signal_Point_calibrated(1);
        return camera.link.remark().contains("takes a point");
    };
    QVERIFY(setPoint());
    camera.link.setLive(false, true); // takes the remark back
    camera.link.setLive(true, true);
    QVERIFY(!setPoint());

    QTimer pictures;
    connect(&pictures, &QTimer::timeout, this, [&] { ++camera.source.heard; });
    pictures.start(40);
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    AWAIT_VERIFY(camera.link.remark().contains("does not turn the camera"));
    QVERIFY(setPoint());
}

void TestCameraLink::trustsARecorderThatTurns()
{
    Camera camera;
    QTest::keyClick(&camera.cross, Qt::Key_Right);
    camera.source.move("0.1,0,0");
    QTest::keyClick(&camera.calibrator, Qt::Key_Space);
    AWAIT_VERIFY(camera.source.commands.last().startsWith("POINT 1"));
    QCOMPARE(camera.link.remark(), QString());
}

/// Such as by an undo.
void TestCameraLink::sendsReplacedPoints()
{
    Camera camera;
    camera.calibrator.setPoints({"0.1,0.1", "0.2,0.2"});
    camera.source.commands.clear();
    camera.calibrator.setPoints({"0.1,0.1", "", "0.3,0.3"});
    QCOMPARE(camera.source.commands, QStringList({"POINT 2 ", "POINT 3 0.3,0.3"}));
}

QTEST_MAIN(TestCameraLink)
#include "tst_camera_link.moc"
