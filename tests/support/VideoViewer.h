#pragma once

#include "video/cFfmpegDecoder.h"
#include "video/cHvx3Demuxer.h"
#include "video/cHvx3Parser.h"

#include <QTcpSocket>

namespace paravue::test
{

/// Watches a recorder's video with the library's parser, demuxer and decoder, and keeps what comes.
class VideoViewer : public QObject
{
public:
    explicit VideoViewer(quint16 port, const QByteArray &name = "admin", const QByteArray &password = "admin")
    {
        m_demuxer.consumers()[0] = &m_decoder;
        connect(&m_parser, &cHvx3Parser::onHDR, this, [this](const HDR_T &header) { headers << header; });
        connect(&m_parser, &cHvx3Parser::onDATA, this, [this](const DATA_T &frame) { frames << frame; });
        connect(&m_parser, &cHvx3Parser::onHDR, &m_demuxer, &cHvx3Demuxer::hdr_slot);
        connect(&m_parser, &cHvx3Parser::onIDX, &m_demuxer, &cHvx3Demuxer::idx_slot);
        connect(&m_parser, &cHvx3Parser::onDATA, &m_demuxer, &cHvx3Demuxer::data_slot);
        connect(&m_demuxer, &cHvx3Demuxer::timer, this, [this](quint64 time) { times << time; });
        connect(&m_decoder, &cFfmpegDecoder::onFrame, this,
                [this](const QImage &image) { pictures << image.copy(); });
        connect(&m_socket, &QTcpSocket::readyRead, this, &VideoViewer::read);
        m_socket.connectToHost(QStringLiteral("127.0.0.1"), port);
        m_socket.write("\x01LOGIN=" + name + "\r\nPASS=" + password + "\r\n");
    }

    paravue::Hvx3Losses losses() const { return m_parser.losses(); }
    void send(const QByteArray &line) { m_socket.write(line); }

    QList<HDR_T> headers;
    QList<DATA_T> frames;   ///< of all streams
    QList<QImage> pictures; ///< of stream 0
    QList<quint64> times;   ///< of the stream, at index records and pictures

private:
    void read()
    {
        m_bytes += m_socket.readAll();
        const QByteArray accepted = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
        if (!m_isAccepted && m_bytes.size() >= accepted.size()) {
            m_isAccepted = m_bytes.startsWith(accepted);
            m_bytes.remove(0, m_isAccepted ? accepted.size() : 0);
        }
        if (m_isAccepted)
            m_parser.append(std::exchange(m_bytes, {}));
    }

    QTcpSocket m_socket;
    QByteArray m_bytes;
    bool m_isAccepted = false;
    cHvx3Parser m_parser;
    cHvx3Demuxer m_demuxer;
    cFfmpegDecoder m_decoder;
};

} // namespace paravue::test
