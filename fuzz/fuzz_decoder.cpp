// Whatever a codec is fed, what comes out are pictures that can be shown. What a receiver does with them
// (keeping one, feeding more, beginning another stream, ending the decoder) is survived.
//
// Input: a byte that chooses the codec, what the receiver does and whether the decoder works in turns, one
// that says at which picture, then what is appended, in pieces with a PieceBorder between them.

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

enum Deed { None, Keep, FeedMore, BeginAgain, BeginOther, End };

constexpr std::array<const char *, 4> Codecs = {"h264", "mpeg4", "mjpeg", ""};
constexpr int Deeds = End + 1;
constexpr quint8 InTurns = 0x80;

class Receiver
{
public:
    Receiver(quint8 choice, int picturesUntilDeed);
    void feed(const QList<QByteArray> &pieces);

private:
    void take(const QImage &image);
    void act(const QImage &image);
    void begin(int codec);

    std::unique_ptr<cFfmpegDecoder> m_decoder = std::make_unique<cFfmpegDecoder>();
    QByteArray m_lastPiece;
    QImage m_kept;
    int m_pictures = 0;
    int m_codec;
    Deed m_deed;
    int m_picturesUntilDeed;
};

Receiver::Receiver(quint8 choice, int picturesUntilDeed)
    : m_codec(choice % Codecs.size()), m_deed(Deed((choice & ~InTurns) / Codecs.size() % Deeds)),
      m_picturesUntilDeed(picturesUntilDeed)
{
    QObject::connect(m_decoder.get(), &cFfmpegDecoder::onFrame, m_decoder.get(),
                     [this](const QImage &image) { take(image); });
    if (choice & InTurns)
        m_decoder->workInTurns();
    begin(m_codec);
}

void Receiver::begin(int codec)
{
    const char *name = Codecs[codec % Codecs.size()];
    require(m_decoder->create(QString::fromLatin1(name)) == (*name != 0), "the codecs are there, others not");
}

void Receiver::feed(const QList<QByteArray> &pieces)
{
    for (const QByteArray &piece : pieces) {
        if (!m_decoder)
            break;
        m_lastPiece = piece;
        m_decoder->append(piece);
        // In turns, other pieces come while this one is not decoded yet.
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
    if (m_picturesUntilDeed-- == 0)
        act(image);
}

void Receiver::act(const QImage &image)
{
    switch (m_deed) {
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
    const int picturesUntilDeed = input.takeByte() % 8;
    Receiver receiver(choice, picturesUntilDeed);
    receiver.feed(input.pieces());
    return 0;
}
