#include "SetupRun.h"
#include "controls/CalibrationPoint.h"
#include "controls/PtzCalibrator.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "recorder/RecorderServer.h"
#include "support/ModalWatcher.h"
#include "support/Waiting.h"

#include <QFile>
#include <QPushButton>
#include <QTabWidget>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <cmath>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QString Begin = "Pan 0.30, tilt -0.25, zoom 0.50";
const QString AtPoint2 = "Pan 0.60, tilt -0.10, zoom 0.20";
const QString NotKnown = "Camera position not known";
constexpr int Patience = 20'000; // milliseconds

/// How much two pictures of a view differ, 0 to 255: in their upper third, where nothing but the camera
/// moves.
double difference(const QImage &left, const QImage &right)
{
    const QSize size(left.width(), left.height() / 3);
    qint64 sum = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            sum += std::abs(qGray(left.pixel(x, y)) - qGray(right.pixel(x, y)));
    }
    return double(sum) / (size.width() * size.height());
}

QImage seen(PictureView &view)
{
    return view.grab(view.pictureRect()).toImage();
}

} // namespace

/// The turning camera of the model with every control, in the real window over the network.
class TestTurningCamera : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void turnsToAPoint();
    void isSteered();
    void tellsThoseWhoMayNotSteer();
    void tellsThemWhileOthersSteer();
    void sendsPointsAtOnce();
    void asksAboutAPointThatWaits();
    void asksBeforeClosingWithAPointThatWaits();
    void comesBackWithTheRecorder();

private:
    void open(const QString &login = "admin:admin");
    /// Turns the camera as another user.
    void turnBy(QTcpSocket &other);
    QPoint placeOf(int point) const;
    QString crossText() const { return m_cross->valueText(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    std::unique_ptr<Session> m_session;
    PtzVideoInput *m_picture = nullptr;
    PtzCalibrator *m_calibrator = nullptr;
    PtzCrossView *m_cross = nullptr;
};

void TestTurningCamera::init()
{
    open();
}

void TestTurningCamera::open(const QString &login)
{
    m_session.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->path(), "everything");
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    m_session = std::make_unique<Session>(
        login + "@127.0.0.1:" + QString::number(static_cast<qint16>(m_recorder->port())),
        WindowOptions{.tracksChanges = true, .asksBeforeClosing = true});
    QVERIFY(m_session->isFine());
    CWinMain &window = *m_session->window;
    m_picture = window.findChild<PtzVideoInput *>();
    m_calibrator = window.findChild<PtzCalibrator *>();
    m_cross = window.findChild<PtzCrossView *>();
    auto *tabs = window.findChild<QTabWidget *>("tabWidget");
    while (!m_cross->isVisible() && tabs->currentIndex() < tabs->count() - 1)
        tabs->setCurrentIndex(tabs->currentIndex() + 1);
    QVERIFY(crossText().contains(NotKnown));
    AWAIT_VERIFY_WITHIN(crossText().contains(Begin), Patience);
    AWAIT_VERIFY_WITHIN(!m_picture->pixmap().isNull(), Patience);
}

QPoint TestTurningCamera::placeOf(int point) const
{
    const QRectF picture = m_calibrator->pictureRect();
    const QPointF place = placeOfPoint(m_calibrator->points().value(point - 1)).value_or(QPointF());
    return (picture.topLeft() + QPointF(place.x() * picture.width(), place.y() * picture.height())).toPoint();
}

void TestTurningCamera::turnsToAPoint()
{
    const QImage before = seen(*m_picture);
    QSignalSpy pictures(m_picture, &PtzVideoInput::signal_Pixmap_ready);
    QVERIFY(pictures.wait());
    QVERIFY2(difference(before, seen(*m_picture)) < 3, "the picture changes by itself");
    const QImage crossBefore = seen(*m_cross);

    QStringList positions;
    connect(m_picture, &PtzVideoInput::signal_Pixmap_ready, this, [&] {
        if (!positions.contains(crossText()))
            positions << crossText();
    });
    QTest::mouseDClick(m_calibrator, Qt::LeftButton, {}, placeOf(2));
    AWAIT_VERIFY_WITHIN(crossText().contains(AtPoint2), Patience);
    QVERIFY(m_calibrator->valueText().contains(AtPoint2));
    QVERIFY2(positions.size() >= 3, qPrintable(positions.join(" | "))); // it turns, it does not jump
    QVERIFY(seen(*m_cross) != crossBefore);
    AWAIT_VERIFY_WITHIN(difference(before, seen(*m_picture)) > 10, Patience);
}

void TestTurningCamera::isSteered()
{
    const auto pan = [&] { return m_recorder->ptz().pose().pan; };
    const auto isCentred = [&] {
        return std::abs(pan()) < 0.02 && std::abs(m_recorder->ptz().pose().tilt) < 0.02;
    };
    m_picture->setFocus();
    const QPoint centre = m_picture->pictureRect().center();
    QTest::mousePress(m_picture, Qt::LeftButton, {}, centre);
    QTest::mouseMove(m_picture, centre + QPoint(m_picture->width() / 3, 0));
    AWAIT_VERIFY_WITHIN(pan() > 0.5, Patience);
    QTest::mouseRelease(m_picture, Qt::LeftButton, {}, centre);
    AWAIT_VERIFY_WITHIN(!m_recorder->ptz().isTurning(), Patience);
    QVERIFY2(pan() < 0.9, "the camera has not stopped"); // it would be at 1 within a second
    QTest::mouseDClick(m_cross, Qt::LeftButton, {}, m_cross->pictureRect().center());
    AWAIT_VERIFY_WITHIN(isCentred() && !m_recorder->ptz().isTurning(), Patience);
    QTest::keyClick(m_picture, Qt::Key_Plus);
    AWAIT_VERIFY_WITHIN(crossText().contains("zoom 0.55"), Patience);
    QTest::keyClick(m_cross, Qt::Key_2);
    AWAIT_VERIFY_WITHIN(crossText().contains(AtPoint2), Patience);
    QCOMPARE(m_calibrator->gotoPoint(), 2);
    QVERIFY(!m_picture->valueText().contains("not allowed"));
}

void TestTurningCamera::tellsThoseWhoMayNotSteer()
{
    open("guest:");
    QTest::keyClick(m_picture, Qt::Key_Right);
    AWAIT_VERIFY_WITHIN(m_picture->valueText().contains("The recorder does not turn the camera"), Patience);
    QVERIFY(crossText().contains(Begin));
}

void TestTurningCamera::tellsThemWhileOthersSteer()
{
    open("guest:");
    QTcpSocket other;
    turnBy(other);
    QTest::keyClick(m_picture, Qt::Key_Right);
    AWAIT_VERIFY_WITHIN(m_picture->valueText().contains("The recorder does not turn the camera"), Patience);
    QVERIFY2(!crossText().contains(Begin), qPrintable(crossText()));
}

void TestTurningCamera::turnBy(QTcpSocket &other)
{
    other.connectToHost("127.0.0.1", m_recorder->port());
    other.write("\x01LOGIN=admin\r\nPASS=admin\r\nPTZ MOVE -1,-0.25,0.5\r\n");
    AWAIT_VERIFY_WITHIN(m_recorder->ptz().isTurning(), Patience);
}

void TestTurningCamera::sendsPointsAtOnce()
{
    QFile streams(m_recorder->filePath("streams"));
    QVERIFY(streams.open(QIODevice::ReadOnly));
    const QByteArray kept = streams.readAll();

    QTest::keyClick(m_calibrator, Qt::Key_4);
    const QRect picture = m_calibrator->pictureRect();
    QTest::mouseClick(m_calibrator, Qt::LeftButton, {}, picture.topLeft() + QPoint(picture.width() / 10, 20));
    const QByteArray camera = ",0.3,-0.25,0.5";
    AWAIT_VERIFY_WITHIN(m_recorder->ptz().point(4).endsWith(camera), Patience);
    QCOMPARE(QString::fromUtf8(m_recorder->ptz().point(4)), m_calibrator->points().value(3));
    const QByteArray first = m_recorder->ptz().point(1);
    QVERIFY(!first.isEmpty());
    QTest::keyClick(m_calibrator, Qt::Key_1);
    QTest::keyClick(m_calibrator, Qt::Key_Delete);
    AWAIT_COMPARE_WITHIN(m_recorder->ptz().point(1), QByteArray(), Patience);
    QTest::keyClick(m_calibrator, Qt::Key_Z, Qt::ControlModifier);
    AWAIT_COMPARE_WITHIN(m_recorder->ptz().point(1), first, Patience);
    streams.seek(0);
    QCOMPARE(streams.readAll(), kept);
}

void TestTurningCamera::asksAboutAPointThatWaits()
{
    QTest::mouseDClick(m_calibrator, Qt::LeftButton, {}, placeOf(2));
    QTest::keyClick(m_calibrator, Qt::Key_4);
    QTest::keyClick(m_calibrator, Qt::Key_Space);
    QVERIFY(m_calibrator->points().value(3).isEmpty());
    ModalWatcher asked;
    m_session->window->findChild<QPushButton *>("buttonOK")->click();
    QCOMPARE(asked.count(), 1);
    QVERIFY2(asked.texts().value(0).contains("Point 4 is set as soon as"),
             qPrintable(asked.texts().join('|')));
    QVERIFY(m_session->window->isVisible()); // one goes on editing
    AWAIT_VERIFY_WITHIN(!m_recorder->ptz().point(4).isEmpty(), Patience);
}

/// There is no other change.
void TestTurningCamera::asksBeforeClosingWithAPointThatWaits()
{
    QTcpSocket other;
    turnBy(other);
    AWAIT_VERIFY_WITHIN(m_calibrator->isTurning(), Patience);
    QTest::keyClick(m_calibrator, Qt::Key_4);
    QTest::keyClick(m_calibrator, Qt::Key_Space);
    ModalWatcher asked;
    m_session->window->reject();
    QCOMPARE(asked.count(), 1);
    QVERIFY2(asked.texts().value(0).contains("Point 4 is set as soon as"),
             qPrintable(asked.texts().join('|')));
    QVERIFY(m_session->window->isVisible()); // one goes on editing
}

void TestTurningCamera::comesBackWithTheRecorder()
{
    QTest::mouseDClick(m_calibrator, Qt::LeftButton, {}, placeOf(2));
    AWAIT_VERIFY_WITHIN(crossText().contains(AtPoint2), Patience);
    // A point that only the window knows when the recorder is there again.
    QTest::keyClick(m_calibrator, Qt::Key_4);
    QTest::keyClick(m_calibrator, Qt::Key_Space);
    AWAIT_VERIFY_WITHIN(!m_recorder->ptz().point(4).isEmpty(), Patience);
    QTest::mouseDClick(m_calibrator, Qt::LeftButton, {}, placeOf(3));
    AWAIT_VERIFY_WITHIN(crossText().contains("Pan -0.40"), Patience);

    const quint16 port = m_recorder->port();
    m_recorder->close();
    AWAIT_VERIFY_WITHIN(crossText().contains(NotKnown), Patience);
    QTest::keyClick(m_calibrator, Qt::Key_Return); // leads nowhere
    QVERIFY2(m_recorder->listen(port), qPrintable(m_recorder->errorString()));
    QCOMPARE(m_recorder->ptz().point(4), QByteArray());
    AWAIT_VERIFY_WITHIN(crossText().contains("Pan -0.40"), Patience);
    QTest::keyClick(m_calibrator, Qt::Key_4);
    QTest::keyClick(m_calibrator, Qt::Key_Return);
    AWAIT_VERIFY_WITHIN(crossText().contains(AtPoint2), Patience);
    QVERIFY(m_session->isFine());
}

QTEST_MAIN(TestTurningCamera)
#include "tst_turning_camera.moc"
