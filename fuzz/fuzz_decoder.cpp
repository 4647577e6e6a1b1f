// Requires that all pictures that a decoder emits can be shown, whatever its bytes, and that the receiver may
// keep one, append more, begin another stream or destroy the decoder.
//
// Input: a byte that chooses the codec, the action of the receiver, whether the decoder scales pictures and
// whether it works in turns, a byte that chooses the picture at which the receiver acts, then the bytes to
// append, with a PieceBorder between pieces.

#include "Events.h"
#include "FuzzInput.h"
#include "ImageCheck.h"
#include "PictureCounters.h"
#include "Require.h"

#include "video/cFfmpegDecoder.h"

#include <QCoreApplication>

#include <array>
#include <memory>

using namespace paravue::fuzz;

namespace
{

enum Action { None, Keep, FeedMore, BeginAgain, BeginOther, End };

constexpr std::array<const char *, 4> Codecs = {"h264", "mpeg4", "mjpeg", ""};
constexpr int ActionCount = End + 1;
constexpr quint8 InTurns = 0x80;
constexpr quint8 Scaled = 0x40;

class Receiver
{
public:
    Receiver(quint8 choice, int picturesUntilAction);
    void feed(const QList<QByteArray> &pieces);

private:
    void take(const QImage &image);
    void act(const QImage &image);
    void begin(int codec);
    QSize wantedSize() const;

    std::unique_ptr<cFfmpegDecoder> m_decoder = std::make_unique<cFfmpegDecoder>();
    QByteArray m_lastPiece;
    QImage m_kept;
    int m_pictures = 0;
    int m_codec;
    Action m_action;
    int m_picturesUntilAction;
};

Receiver::Receiver(quint8 choice, int picturesUntilAction)
    : m_codec(choice % Codecs.size()),
      m_action(Action((choice & ~(InTurns | Scaled)) / Codecs.size() % ActionCount)),
      m_picturesUntilAction(picturesUntilAction)
{
    QObject::connect(m_decoder.get(), &cFfmpegDecoder::onFrame, m_decoder.get(),
                     [this](const QImage &image) { take(image); });
    QObject::connect(
        m_decoder.get(), &cFfmpegDecoder::onScaledFrame, m_decoder.get(), [this](const QImage &image) {
            require(image.size() == wantedSize(), "a picture is scaled to the size that was chosen");
            take(image);
        });
    if (choice & Scaled)
        m_decoder->setChoice([this] { return wantedSize(); });
    if (choice & InTurns)
        m_decoder->workInTurns();
    begin(m_codec);
}

void Receiver::begin(int codec)
{
    const char *name = Codecs[codec % Codecs.size()];
    require(m_decoder->create(QString::fromLatin1(name)) == (*name != 0), "the codecs are there, others not");
}

/// Large and small ones, and sometimes the picture's own.
QSize Receiver::wantedSize() const
{
    return m_pictures % 4 == 0 ? QSize() : QSize(1 + m_pictures * 37 % 300, 1 + m_pictures * 23 % 200);
}

void Receiver::feed(const QList<QByteArray> &pieces)
{
    for (const QByteArray &piece : pieces) {
        if (!m_decoder)
            break;
        m_lastPiece = piece;
        m_decoder->append(piece);
        // A decoder that works in turns also gets pieces before it has decoded those before them.
        if (piece.size() % 2 == 0)
            handleEvents();
    }
    // A decoder that works in turns pauses at times.
    handleEventsUntil([this] { return !m_decoder || !m_decoder->isBusy(); });
    m_decoder.reset();
    if (!m_kept.isNull())
        checkImage(m_kept);
}

void Receiver::take(const QImage &image)
{
    checkImage(image);
    countPicture(image, m_pictures++);
    if (const QImage whole = m_pictures % 3 == 0 ? m_decoder->wholePicture() : QImage(); !whole.isNull())
        checkImage(whole);
    if (m_picturesUntilAction-- == 0)
        act(image);
}

void Receiver::act(const QImage &image)
{
    switch (m_action) {
    case Keep:
        m_kept = image;
        break;
    case FeedMore:
        m_decoder->append(m_lastPiece);
        break;
    case BeginAgain:
        begin(m_codec);
        break;
    case BeginOther:
        begin(m_codec + 1);
        m_decoder->append(m_lastPiece);
        break;
    case End:
        m_decoder.reset();
        break;
    case None:
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const quint8 choice = input.takeByte();
    const int picturesUntilAction = input.takeByte() % 8;
    Receiver receiver(choice, picturesUntilAction);
    receiver.feed(input.pieces());
    return 0;
}
