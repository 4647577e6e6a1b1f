#include "recorder/video/FileSource.h"

#include "recorder/files/RecorderText.h"
#include "recorder/video/SnapshotEncoder.h"

#include <QDir>

#include <algorithm>

namespace recorder
{

namespace
{

/// The limit of packets that are read for one picture: more would block the event loop.
constexpr int MaxPacketsPerPicture = 200;
constexpr double MaxIntervalMs = 10000;
/// The limit for one picture, so that a file without pictures is not read for ever.
constexpr int MaxRewindsPerPicture = 2;

std::optional<VideoCodec> passThroughCodec(AVCodecID id)
{
    switch (id) {
    case AV_CODEC_ID_H264:
        return VideoCodec::H264;
    case AV_CODEC_ID_MPEG4:
        return VideoCodec::Mpeg4;
    case AV_CODEC_ID_MJPEG:
        return VideoCodec::MotionJpeg;
    default:
        return std::nullopt;
    }
}

/// Files hold the decoder configuration in their header; in a stream it stands before each key picture.
const char *filterFor(VideoCodec codec)
{
    switch (codec) {
    case VideoCodec::H264:
        return "h264_mp4toannexb";
    case VideoCodec::Mpeg4:
        return "dump_extra";
    default:
        return "null";
    }
}

} // namespace

FileSource::FileSource() : m_packet(av_packet_alloc()) {}

FileSource::~FileSource() = default;

std::unique_ptr<VideoSource> FileSource::open(const QString &path, const VideoSettings &settings,
                                              QString &fault)
{
    std::unique_ptr<FileSource> source(new FileSource);
    source->m_path = path;
    fault = source->openFile();
    if (!fault.isEmpty())
        return nullptr;
    const AVStream *stream = source->m_input->streams[source->m_stream];
    source->m_fileCodec = stream->codecpar->codec_id;
    const std::optional<VideoCodec> codec = passThroughCodec(source->m_fileCodec);
    source->m_codec = codec.value_or(settings.codec);
    fault = codec ? source->openFilter() : source->openTranscoder(settings);
    if (!fault.isEmpty())
        return nullptr;
    return source;
}

QString FileSource::openFile()
{
    // A path that looks like a URL is still a file, and a play list may name files only.
    const QByteArray url = "file:" + QDir::toNativeSeparators(m_path).toUtf8();
    AVFormatContext *input = nullptr;
    AVDictionary *options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    int result = avformat_open_input(&input, url.constData(), nullptr, &options);
    av_dict_free(&options);
    m_input.reset(input);
    if (result >= 0)
        result = avformat_find_stream_info(input, nullptr);
    if (result < 0)
        return ffmpegError(result);
    m_stream = av_find_best_stream(input, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (m_stream < 0)
        return RecorderText::tr("there is no video in it");
    for (unsigned i = 0; i < input->nb_streams; ++i)
        input->streams[i]->discard = int(i) == m_stream ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    const AVRational rate = av_guess_frame_rate(input, input->streams[m_stream], nullptr);
    if (rate.num > 0 && rate.den > 0)
        m_interval = 1000 / av_q2d(rate);
    return m_packet ? QString() : RecorderText::tr("out of memory");
}

QString FileSource::openFilter()
{
    const AVBitStreamFilter *kind = av_bsf_get_by_name(filterFor(m_codec));
    if (!kind)
        return RecorderText::tr("FFmpeg on this computer lacks the filter %1")
            .arg(QLatin1StringView(filterFor(m_codec)));
    AVBSFContext *filter = nullptr;
    int result = av_bsf_alloc(kind, &filter);
    m_filter.reset(filter);
    if (result >= 0)
        result = avcodec_parameters_copy(filter->par_in, m_input->streams[m_stream]->codecpar);
    if (result >= 0) {
        filter->time_base_in = m_input->streams[m_stream]->time_base;
        result = av_bsf_init(filter);
    }
    return result < 0 ? ffmpegError(result) : QString();
}

QString FileSource::openTranscoder(const VideoSettings &settings)
{
    const AVCodecParameters &parameters = *m_input->streams[m_stream]->codecpar;
    const AVCodec *codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec)
        return RecorderText::tr("FFmpeg on this computer cannot decode its video");
    m_decoder.reset(avcodec_alloc_context3(codec));
    m_decoded.reset(av_frame_alloc());
    if (!m_decoder || !m_decoded)
        return RecorderText::tr("out of memory");
    m_decoder->thread_count = 1;
    int result = avcodec_parameters_to_context(m_decoder.get(), &parameters);
    if (result >= 0)
        result = avcodec_open2(m_decoder.get(), codec, nullptr);
    if (result < 0)
        return ffmpegError(result);
    VideoSettings own = settings;
    own.size = encodableSize({parameters.width, parameters.height});
    QString fault;
    m_encoder = PictureEncoder::open(own, fault);
    return fault;
}

CodedPicture FileSource::next(bool wantKey, const CameraPose &, qint64)
{
    m_rewinds = 0;
    const CodedPicture picture = m_encoder ? transcoded(wantKey) : copied();
    if (!picture.bytes.isEmpty())
        m_fault.clear();
    if (picture.isKey && !m_encoder)
        m_lastKey = picture.bytes;
    return picture;
}

/// The next packet of the video. At the end of the file it begins again; a decoder first gets an empty
/// packet, which flushes the pictures that it delays.
bool FileSource::readPacket()
{
    for (int tries = 0; tries < MaxPacketsPerPicture; ++tries) {
        av_packet_unref(m_packet.get());
        const int result = m_input ? av_read_frame(m_input.get(), m_packet.get()) : AVERROR_EOF;
        if (result < 0) {
            if (!rewind())
                return false;
            if (m_decoder)
                return true;
        }
        if (result < 0 || m_packet->stream_index != m_stream)
            continue;
        const AVRational base = m_input->streams[m_stream]->time_base;
        if (m_packet->duration > 0)
            m_interval = std::min(1000.0 * double(m_packet->duration) * av_q2d(base), MaxIntervalMs);
        return true;
    }
    return false;
}

bool FileSource::rewind()
{
    if (++m_rewinds > MaxRewindsPerPicture) {
        m_fault = RecorderText::tr("there is no picture in it any more");
        return false;
    }
    if (m_filter)
        av_bsf_flush(m_filter.get());
    const bool isSought = m_rewinds == 1 && m_input &&
                          (av_seek_frame(m_input.get(), m_stream, 0, AVSEEK_FLAG_BACKWARD) >= 0 ||
                           av_seek_frame(m_input.get(), -1, 0, AVSEEK_FLAG_BYTE) >= 0);
    return isSought || reopen();
}

/// For formats that cannot be sought, or that yield no packet after seeking.
bool FileSource::reopen()
{
    m_fault = openFile();
    if (m_fault.isEmpty() && m_input->streams[m_stream]->codecpar->codec_id != m_fileCodec)
        m_fault = RecorderText::tr("it has another codec than before");
    if (m_fault.isEmpty() && m_filter)
        m_fault = openFilter();
    if (!m_fault.isEmpty())
        m_input.reset();
    return m_fault.isEmpty();
}

CodedPicture FileSource::copied()
{
    CodedPicture picture;
    if (!readPacket() || av_bsf_send_packet(m_filter.get(), m_packet.get()) != 0)
        return picture;
    while (av_bsf_receive_packet(m_filter.get(), m_packet.get()) == 0) {
        picture.bytes.append(reinterpret_cast<const char *>(m_packet->data), m_packet->size);
        picture.isKey = picture.isKey || (m_packet->flags & AV_PKT_FLAG_KEY) != 0;
        av_packet_unref(m_packet.get());
    }
    return picture;
}

CodedPicture FileSource::transcoded(bool wantKey)
{
    return decode() && convert() ? m_encoder->encodeFrame(wantKey) : CodedPicture();
}

bool FileSource::decode()
{
    for (int tries = 0; tries < MaxPacketsPerPicture; ++tries) {
        const int result = avcodec_receive_frame(m_decoder.get(), m_decoded.get());
        if (result == 0)
            return true;
        if (result == AVERROR_EOF)
            avcodec_flush_buffers(m_decoder.get());
        if (!readPacket())
            return false;
        avcodec_send_packet(m_decoder.get(), m_packet.get()); // damaged pictures are left out
    }
    return false;
}

bool FileSource::convert()
{
    AVFrame *const target = m_encoder->frame();
    return target && m_scaler.scale(*m_decoded, *target);
}

QByteArray FileSource::snapshot() const
{
    if (m_encoder)
        return m_decoded->width > 0 ? encodeSnapshot(*m_decoded) : QByteArray();
    return m_lastKey.isEmpty() ? QByteArray() : encodeSnapshot(*m_filter->par_out, m_lastKey);
}

} // namespace recorder
