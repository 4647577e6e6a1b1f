#include "controls/LiveView.h"
#include "controls/PictureView.h"
#include "support/EncodedClip.h"
#include "support/Hvx3Bytes.h"
#include "support/PictureCount.h"
#include "support/StoreFixture.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/CWinMain.h"
#include "ui/tasks/PictureAudience.h"
#include "ui/tasks/PictureChoice.h"
#include "ui/tasks/PictureSources.h"
#include "video/VideoHVX3Reciver.h"
#include "video/cFfmpegDecoder.h"

#include <QDomElement>
#include <QLabel>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <numeric>
#include <utility>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// A camera that sends its next picture when the last one is decoded.
class SteadyCamera : public QObject
{
public:
    explicit SteadyCamera(const QList<QByteArray> &pictures, const QByteArray &codec = "mjpeg")
        : m_pictures(pictures)
    {
        setCodec(codec);
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            m_socket = m_server.nextPendingConnection();
            m_socket->write("LENGTH=16\r\nVORN_ANSWER=OK\r\n");
        });
        connect(&m_timer, &QTimer::timeout, this, &SteadyCamera::send);
        m_timer.start(20);
    }

    /// Begins a new stream.
    void setCodec(const QByteArray &codec)
    {
        m_header = hvx3Header({{.label1 = codec}}) + hvx3Index(1000);
        m_sent = 0;
    }

    QByteArray address() const { return "127.0.0.1:" + QByteArray::number(m_server.serverPort()); }
    QDomElement task() const
    {
        QDomDocument document;
        QDomElement task = document.createElement("timetask");
        QDomElement url = document.createElement("url");
        url.setAttribute("parsed", QString::fromLatin1(address()));
        task.appendChild(url);
        return task;
    }

    int sent() const { return m_sent; }

    std::function<bool()> mayGoOn;

private:
    void send()
    {
        if (!m_socket || !mayGoOn())
            return;
        if (m_sent == 0)
            m_socket->write(m_header);
        m_socket->write(hvx3Frame(0, m_pictures[m_sent++ % m_pictures.size()], 60'000));
    }

    const QList<QByteArray> m_pictures;
    QByteArray m_header;
    QTcpServer m_server;
    QTcpSocket *m_socket = nullptr;
    QTimer m_timer;
    int m_sent = 0;
};

std::shared_ptr<PictureAudience> audienceOf(const QList<QPointer<QWidget>> &controls)
{
    auto audience = std::make_shared<PictureAudience>();
    audience->controls = controls;
    return audience;
}

/// A control with the pictures of a camera, in a window.
struct ShownCamera {
    ShownCamera(const SteadyCamera &camera, QSize size)
        : view(&window), source(pictureSources(window)(PictureKind::Live, camera.task()))
    {
        view.resize(size);
        window.show();
        source->setAudience(audienceOf({&view}));
        QObject::connect(source.get(), &PictureSource::pixmapReady, &view, &LiveView::setPixmap);
        QObject::connect(source.get(), &PictureSource::scaledReady, &view, &LiveView::setScaledPicture);
        QObject::connect(source.get(), &PictureSource::wholeReady, &view, &LiveView::setWholePicture);
        QObject::connect(&view, &LiveView::wholePictureNeeded, source.get(), &PictureSource::showWhole);
    }

    QWidget window;
    LiveView view;
    std::unique_ptr<PictureSource> source;
};

} // namespace

class TestLivePictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsEveryCamera_data();
    void showsEveryCamera();
    void showsPicturesOutOfTheirTurn();
    void namesAnUnknownCodec();
    void pausesWhileNobodyLooks();
    void knowsWhoLooks();
    void scalesWhatALiveViewShows();
    void knowsWhoNeedsWholePictures();
    void keepsFewPictures();
};

void TestLivePictures::showsEveryCamera_data()
{
    const TestTable<int, int, int> row("cameras", "swaps", "delay");
    for (const int cameras : {1, 2, 3, 4, 5, 7, 8, 9, 12, 15, 16}) {
        const QByteArray name = QByteArray::number(cameras) + " cameras";
        row(name, cameras, 0, 0);
        row(name + " whose pictures come in other orders", cameras, 2, 0);
        row(name + " whose pictures come a little late", cameras, 0, 10);
    }
}

void TestLivePictures::showsEveryCamera()
{
    QFETCH(int, cameras);
    QFETCH(int, swaps);
    QFETCH(int, delay);        // at most so many milliseconds
    constexpr int Period = 40; // milliseconds
    constexpr int Seconds = 60;
    constexpr int LongestGap = 600;
    std::vector<PictureChoice> choices(cameras);
    std::vector<QList<int>> shown(cameras); // when
    std::vector<int> order(cameras);
    std::iota(order.begin(), order.end(), 0);
    QRandomGenerator random(1);
    std::vector<std::pair<int, int>> pictures; // when each comes, and its camera
    for (int now = 0; now < Seconds * 1000; now += Period) {
        for (int swap = 0; swap < swaps; ++swap)
            std::swap(order[random.bounded(cameras)], order[random.bounded(cameras)]);
        for (int place = 0; place < cameras; ++place)
            pictures.emplace_back(now + Period * place / cameras + random.bounded(delay + 1), order[place]);
    }
    std::stable_sort(pictures.begin(), pictures.end(),
                     [](const auto &left, const auto &right) { return left.first < right.first; });
    unsigned count = 0;
    for (const auto &[now, camera] : pictures) {
        const bool isInTurn = ++count & 4;
        const bool isShown = choices[camera].takes(isInTurn, now);
        QVERIFY(isShown || !isInTurn);
        if (isShown)
            shown[camera] << now;
    }
    for (const QList<int> &times : shown) {
        int last = 0;
        for (const int time : times) {
            QVERIFY2(time - last <= LongestGap, qPrintable(QString::number(time - last)));
            last = time;
        }
        for (int begin = 0; begin < Seconds * 1000; begin += 10'000) {
            const auto within = std::count_if(
                times.begin(), times.end(), [&](int time) { return time >= begin && time < begin + 10'000; });
            QVERIFY2(within >= 100, qPrintable(QString::number(within))); // of 250
        }
    }
}

void TestLivePictures::showsPicturesOutOfTheirTurn()
{
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {64, 64}});
    SteadyCamera camera(clip.pictures);
    QObject window;
    const auto source = pictureSources(window)(PictureKind::Live, camera.task());
    auto *receiver = source->findChild<VideoHVX3Reciver *>();
    auto *decoder = receiver->findChild<cFfmpegDecoder *>();
    camera.mayGoOn = [&] {
        startCountingPictures();
        return receiver->isStreaming() && !decoder->isBusy();
    };
    QSignalSpy inTurn(receiver, &VideoHVX3Reciver::pixmapReady);
    QList<int> shown;
    connect(source.get(), &PictureSource::pixmapReady, this,
            [&](const QPixmap &pixmap) { shown << shownNumber(pixmap.toImage()); });
    AWAIT_VERIFY_WITHIN(shown.size() >= 4, 20'000);
    QCOMPARE(inTurn.size(), 0);
    // Every second one.
    for (qsizetype i = 1; i < shown.size(); ++i)
        QCOMPARE(shown[i], (shown[i - 1] + 2) % 6);
}

void TestLivePictures::namesAnUnknownCodec()
{
    SteadyCamera camera(encodeClip({.encoder = "mjpeg", .size = {64, 64}}).pictures,
                        "H265\x1b and 30 more characters than this");
    camera.mayGoOn = [] { return true; };
    StoreFixture fixture(
        {{"interface", "<pvsetup version='1.0'><window><timetask type='startVideoOnline' period='500'><url>" +
                           camera.address() +
                           "</url><login/><password/><target>yard</target></timetask></"
                           "window><tabwidget><tab><name>Yard</name>"
                           "<item type='gridlayout'><item type='online'><yard/></item></item></tab>"
                           "</tabwidget></pvsetup>"}});
    fixture.store().setProperty("offline", false); // else the window makes no connections
    CWinMain window(&fixture.store(), nullptr);
    window.show();
    const auto *view = window.findChild<LiveView *>();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a codec that is not known: \"H265\\?"));
    AWAIT_COMPARE(view->valueText(), "Video of the codec \"H265? and 30 more ch\" cannot be shown");
    QVERIFY(!view->hasPicture());
    camera.setCodec("mjpeg");
    AWAIT_COMPARE(view->valueText(), QString());
    QVERIFY(view->hasPicture());
    camera.setCodec("VP9"); // over the last picture
    AWAIT_COMPARE(view->valueText(), "Video of the codec \"VP9\" cannot be shown");
    window.endSession();
}

void TestLivePictures::pausesWhileNobodyLooks()
{
    const EncodedClip clip = encodeClip({.encoder = "mjpeg", .size = {64, 64}});
    SteadyCamera camera(clip.pictures);
    QObject window;
    const auto source = pictureSources(window)(PictureKind::Live, camera.task());
    QList<int> numbers;
    connect(source.get(), &PictureSource::pixmapReady, this,
            [&](const QPixmap &pixmap) { numbers << shownNumber(pixmap.toImage()); });
    QWidget shown;
    QWidget control(&shown);
    shown.show();
    control.hide();
    source->setAudience(audienceOf({&control}));
    camera.mayGoOn = [&] { return source->isAccepted(); };
    AWAIT_COMPARE(source->pictures(), 1U);
    QVERIFY(source->isPaused());
    const quint64 traffic = source->traffic();
    AWAIT_VERIFY(source->traffic() > traffic + 20);
    QCOMPARE(source->pictures(), 1U);
    // Nothing further comes.
    camera.mayGoOn = [] { return false; };
    AWAIT_COMPARE(source->figures()->frames, quint64(camera.sent()));
    const int last = (camera.sent() - 1) % int(clip.pictures.size());
    startCountingPictures(); // it is not in turn
    control.show();
    AWAIT_COMPARE(numbers.size(), 2);
    QCOMPARE(numbers.last(), last);
    camera.mayGoOn = [] { return true; };
    AWAIT_VERIFY(numbers.size() > 4);
}

void TestLivePictures::knowsWhoLooks()
{
    QTabWidget tabs;
    auto *page = new QWidget;
    QLabel first(page);
    first.resize(100, 100);
    tabs.addTab(page, "Cameras");
    tabs.addTab(new QWidget, "Other");
    PictureAudience audience;
    QVERIFY(!audience.isWatching());
    audience.controls = {nullptr, &first};
    QVERIFY(audience.isWatching()); // the window is not shown
    tabs.show();
    QVERIFY(audience.isWatching());
    tabs.setCurrentIndex(1);
    QVERIFY(!audience.isWatching());
    QLabel second(tabs.widget(1));
    second.show();
    audience.controls << &second;
    QVERIFY(audience.isWatching());
    tabs.setCurrentIndex(0);
    tabs.showMinimized();
    QVERIFY(!audience.isWatching());
    tabs.showNormal();
    QVERIFY(audience.isWatching());
    QWidget cover(page);
    cover.setAutoFillBackground(true);
    cover.resize(200, 200);
    cover.show();
    QVERIFY(!audience.isWatching());
}

void TestLivePictures::scalesWhatALiveViewShows()
{
    SteadyCamera camera(encodeClip({.encoder = "mjpeg", .size = {64, 64}}).pictures);
    ShownCamera shown(camera, {34, 34});
    int whole = 0;
    int scaled = 0;
    int last = -1;
    connect(shown.source.get(), &PictureSource::pixmapReady, this, [&] { ++whole; });
    QSignalSpy followed(shown.source.get(), &PictureSource::wholeReady);
    connect(shown.source.get(), &PictureSource::scaledReady, this, [&](const QPixmap &pixmap) {
        ++scaled;
        QCOMPARE(pixmap.size(), shown.view.contentsRect().size());
        last = shownNumber(pixmap.toImage().scaled(64, 64));
        QCOMPARE(static_cast<QLabel &>(shown.view).pixmap().size(), QSize(64, 64));
        if (scaled < 10) { // those who ask get the picture that is shown
            QCOMPARE(shownNumber(shown.view.pixmap().toImage()), last);
            QCOMPARE(shown.view.property("pixmap").value<QPixmap>().cacheKey(),
                     shown.view.QLabel::pixmap().cacheKey());
        }
    });
    camera.mayGoOn = [&] { return shown.source->isAccepted() && scaled < 50; };
    AWAIT_VERIFY_WITHIN(scaled == 50, 20'000);
    QCOMPARE(whole, 1);
    QVERIFY(!followed.isEmpty());
    QCOMPARE(shown.source->pictures(), quint64(whole + scaled));
    QCOMPARE(shownNumber(shown.view.grab(shown.view.contentsRect()).toImage().scaled(64, 64)), last);
    // When no further one comes the label has the picture that it shows.
    AWAIT_COMPARE(shownNumber(shown.view.QLabel::pixmap().toImage()), last);
    QCOMPARE(shown.source->pictures(), quint64(whole + scaled));
    // Somebody else asks for the pictures of the receiver.
    QSignalSpy inTurn(shown.source->findChild<VideoHVX3Reciver *>(), &VideoHVX3Reciver::pixmapReady);
    const int before = scaled;
    camera.mayGoOn = [&] { return scaled < before + 20; };
    AWAIT_VERIFY(inTurn.size() >= 4);
    for (const auto &emitted : inTurn)
        QCOMPARE(emitted.first().value<QPixmap>().size(), QSize(64, 64));
}

void TestLivePictures::knowsWhoNeedsWholePictures()
{
    QWidget window;
    LiveView view(&window);
    LiveView other(&window);
    PictureView large(&window);
    const QPixmap picture(64, 64);
    for (LiveView *each : {&view, &other}) {
        each->resize(34, 34);
        each->setPixmap(picture);
    }
    const QSize size = view.contentsRect().size();
    QVERIFY(audienceOf({})->scaledSize().isEmpty());
    QVERIFY(audienceOf({&view})->scaledSize().isEmpty()); // not visible
    window.show();
    QCOMPARE(audienceOf({&view})->scaledSize(), size);
    QCOMPARE(audienceOf({nullptr, &view, &other})->scaledSize(), size);
    QVERIFY(audienceOf({&view, &large})->scaledSize().isEmpty());
    other.resize(40, 40);
    QVERIFY(audienceOf({&view, &other})->scaledSize().isEmpty());
    view.setNotice("No picture for 6 s");
    QVERIFY(audienceOf({&view})->scaledSize().isEmpty());
}

/// For all controls together one more picture of each size than there are controls: the one that is made.
void TestLivePictures::keepsFewPictures()
{
    const QList<QByteArray> pictures = encodeClip({.encoder = "mjpeg", .size = {64, 64}}).pictures;
    constexpr int Cameras = 3;
    std::vector<std::unique_ptr<SteadyCamera>> cameras;
    std::vector<std::unique_ptr<ShownCamera>> shown;
    QSet<const uchar *> whole;
    QSet<const uchar *> scaled;
    for (int i = 0; i < Cameras; ++i) {
        cameras.push_back(std::make_unique<SteadyCamera>(pictures));
        shown.push_back(std::make_unique<ShownCamera>(*cameras.back(), QSize(34, 34)));
        PictureSource *source = shown.back()->source.get();
        const auto noteIn = [](QSet<const uchar *> &memory) {
            return [&memory](const QPixmap &pixmap) { memory << pixmap.toImage().constBits(); };
        };
        connect(source, &PictureSource::pixmapReady, this, noteIn(whole));
        connect(source, &PictureSource::wholeReady, this, noteIn(whole));
        connect(source, &PictureSource::scaledReady, this, noteIn(scaled));
        cameras.back()->mayGoOn = [source] { return source->isAccepted(); };
    }
    for (const auto &each : shown)
        AWAIT_VERIFY_WITHIN(each->source->pictures() > 60, 20'000);
    QVERIFY2(whole.size() <= Cameras + 1, qPrintable(QString::number(whole.size())));
    QVERIFY2(scaled.size() <= Cameras + 1, qPrintable(QString::number(scaled.size())));
    for (const auto &each : shown)
        QVERIFY(whole.contains(each->view.QLabel::pixmap().toImage().constBits())); // no copy
}

QTEST_MAIN(TestLivePictures)
#include "tst_live_pictures.moc"
