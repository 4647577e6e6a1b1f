#pragma once

#include <QAbstractSocket>
#include <QDomElement>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QString>

#include <memory>
#include <optional>

namespace paravue
{
class EventLoopBudget;
class PictureViewer;
struct StreamFigures;
} // namespace paravue
class QTcpSocket;
class cFfmpegDecoder;
class cHvx3Demuxer;
class cHvx3Parser;

/// Shows the live video of one recorder, from its construction until it is destroyed.
///
/// It connects to the video service, logs in, and decodes stream 0 of what then comes
/// (docs/stream-format.md). It reports no state and does not reconnect. The state of the connection is that
/// of its QTcpSocket, which is a child, as the parser, the demuxer and the decoder are.
///
/// All pictures are decoded. Those that nobody gets, by pixmapReady() or by the decoder's onFrame(), are not
/// converted.
class VideoHVX3Reciver : public QObject
{
    Q_OBJECT

public:
    /// The child "url" of \a element has the attributes "parsed", which is host[:port], "login" and
    /// "password"; the port is 5049 unless it is given. Missing attributes count as empty.
    explicit VideoHVX3Reciver(QObject *parent, const QDomElement &element);
    ~VideoHVX3Reciver() override;

    /// From now on only the pictures that \a viewer wants are converted and shown. It has to outlive the
    /// receiver.
    void setViewer(paravue::PictureViewer *viewer);
    /// The last picture in its own size when the viewer got it scaled, or else a null pixmap.
    QPixmap wholePicture();
    /// True once the recorder has acknowledged the login.
    bool isStreaming() const { return m_state == Streaming; }
    /// The recorder's name for the codec of the pictures, when there is no decoder for it.
    const std::optional<QString> &unknownCodec() const { return m_unknownCodec; }
    paravue::StreamFigures figures() const;
    /// How many frames were left out because they could not be decoded in time.
    quint64 leftOut() const;

Q_SIGNALS:
    /// A picture to show, which shares no memory with later ones.
    void pixmapReady(const QPixmap &pixmap);

public Q_SLOTS:
    void connected();
    void error(QAbstractSocket::SocketError error);
    void readyRead();
    void disconnected();
    void imageReady(const QImage &image);

protected:
    QTcpSocket &socket() { return *m_socket; }
    /// For consumers of further streams.
    cHvx3Demuxer &demuxer() { return *m_demuxer; }

private:
    enum State { Connecting = 0, LoggingIn = 1, Streaming = 2 };

    void connectToRecorder();
    QString urlAttribute(const QString &name) const;
    void checkAcknowledgement();
    void read();
    void parse();
    void parseDeferred();
    void checkCodec();
    bool isEmitted(unsigned int number) const;
    bool isWanted(unsigned int number) const;
    std::optional<QSize> chooseSize();
    void scaledImageReady(const QImage &image);
    QPixmap pixmapOf(const QImage &image);

    QDomElement m_element;
    QByteArray m_received;
    quint64 m_parsedBytes = 0;
    quint64 m_frames = 0; ///< of pictures
    QString m_codec;      ///< the recorder's name for it
    std::optional<QString> m_unknownCodec;
    bool m_hasWarned = false; ///< of an unknown codec
    State m_state = Connecting;
    paravue::PictureViewer *m_viewer = nullptr;
    bool m_isDeferred = false; ///< the socket holds bytes to parse, and the decoder has too many
    bool m_isQueued = false;   ///< bytes in the socket are parsed when there is time
    bool m_reading = false;    ///< within readyRead()
    const std::shared_ptr<paravue::EventLoopBudget> m_budget;
    QTcpSocket *const m_socket; // these four are children
    cHvx3Parser *const m_parser;
    cHvx3Demuxer *const m_demuxer;
    cFfmpegDecoder *const m_decoder;
};
