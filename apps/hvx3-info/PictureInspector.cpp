#include "PictureInspector.h"

#include "video/VideoLimits.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <cstring>
#include <new>

namespace paravue
{

namespace
{

/// Usual ones have some hundred bytes. They are kept for every file of an export.
constexpr size_t MaxParameterSets = 64 * 1024;

AVCodecID codecFor(const QByteArray &label)
{
    if (label == "H264")
        return AV_CODEC_ID_H264;
    if (label == "mp4v")
        return AV_CODEC_ID_MPEG4;
    if (label == "mjpeg")
        return AV_CODEC_ID_MJPEG;
    return AV_CODEC_ID_NONE;
}

bool isSensible(QSize size)
{
    return !size.isEmpty() && qint64(size.width()) * size.height() <= MaxPicturePixels;
}

} // namespace

void describe(AVCodecParameters &parameters, const PictureFacts &facts)
{
    parameters.codec_type = AVMEDIA_TYPE_VIDEO;
    parameters.codec_id = facts.codec;
    parameters.width = facts.size.width();
    parameters.height = facts.size.height();
    const auto size = static_cast<size_t>(facts.parameterSets.size());
    if (size == 0)
        return;
    parameters.extradata = static_cast<uint8_t *>(av_mallocz(size + AV_INPUT_BUFFER_PADDING_SIZE));
    if (!parameters.extradata)
        throw std::bad_alloc();
    std::memcpy(parameters.extradata, facts.parameterSets.constData(), size);
    parameters.extradata_size = static_cast<int>(size);
}

std::unique_ptr<PictureInspector> PictureInspector::create(const QByteArray &label)
{
    const AVCodecID codec = codecFor(label);
    if (codec == AV_CODEC_ID_NONE)
        return {};
    std::unique_ptr<PictureInspector> inspector(new PictureInspector(codec));
    return inspector->open() ? std::move(inspector) : nullptr;
}

PictureInspector::PictureInspector(AVCodecID codec)
    : m_packet(av_packet_alloc()), m_filtered(av_packet_alloc())
{
    m_facts.codec = codec;
}

bool PictureInspector::open()
{
    const AVCodec *decoder = avcodec_find_decoder(m_facts.codec);
    m_context.reset(avcodec_alloc_context3(decoder));
    m_parser.reset(av_parser_init(m_facts.codec));
    if (!decoder || !m_context || !m_parser || !m_packet || !m_filtered)
        return false;
    m_context->thread_count = 1;
    m_context->max_pixels = MaxPicturePixels;
    m_parser->flags |= PARSER_FLAG_COMPLETE_FRAMES;
    if (m_facts.codec == AV_CODEC_ID_MJPEG) {
        // The parser does not read the size. The decoder does even if it discards all pictures.
        m_context->skip_frame = AVDISCARD_ALL;
        return avcodec_open2(m_context.get(), decoder, nullptr) == 0;
    }
    const AVBitStreamFilter *kind = av_bsf_get_by_name("extract_extradata");
    AVBSFContext *filter = nullptr;
    if (!kind || av_bsf_alloc(kind, &filter) < 0)
        return false;
    m_filter.reset(filter);
    filter->par_in->codec_id = m_facts.codec;
    filter->par_in->codec_type = AVMEDIA_TYPE_VIDEO;
    return av_bsf_init(filter) == 0;
}

PictureFacts PictureInspector::inspect(const QByteArray &picture)
{
    m_facts.isKey = false;
    m_facts.isBPicture = false;
    // A packet has the padding that parsers and codecs read beyond the end.
    if (picture.isEmpty() || av_new_packet(m_packet.get(), static_cast<int>(picture.size())) != 0)
        return m_facts;
    std::memcpy(m_packet->data, picture.constData(), static_cast<size_t>(picture.size()));
    if (m_filter) {
        extractParameterSets(*m_packet);
        parse(*m_packet);
    } else {
        readSizeOfJpeg(*m_packet);
    }
    av_packet_unref(m_packet.get());
    return m_facts;
}

void PictureInspector::parse(const AVPacket &packet)
{
    uint8_t *data = nullptr;
    int size = 0;
    m_parser->key_frame = -1;
    m_parser->pict_type = AV_PICTURE_TYPE_NONE;
    // The parser sets a size only where there is none.
    m_context->width = m_context->height = 0;
    av_parser_parse2(m_parser.get(), m_context.get(), &data, &size, packet.data, packet.size, AV_NOPTS_VALUE,
                     AV_NOPTS_VALUE, 0);
    m_facts.isKey =
        m_parser->key_frame == 1 || (m_parser->key_frame < 0 && m_parser->pict_type == AV_PICTURE_TYPE_I);
    m_facts.isBPicture = m_parser->pict_type == AV_PICTURE_TYPE_B;
    const QSize parserSize(m_parser->width, m_parser->height);
    const QSize contextSize(m_context->width, m_context->height);
    if (isSensible(parserSize))
        m_facts.size = parserSize;
    else if (isSensible(contextSize))
        m_facts.size = contextSize;
}

void PictureInspector::readSizeOfJpeg(const AVPacket &packet)
{
    const FrameHandle none(av_frame_alloc());
    const bool isTaken = avcodec_send_packet(m_context.get(), &packet) == 0 &&
                         avcodec_receive_frame(m_context.get(), none.get()) == AVERROR(EAGAIN);
    const QSize size(m_context->width, m_context->height);
    m_facts.isKey = isTaken && isSensible(size);
    if (m_facts.isKey)
        m_facts.size = size;
}

void PictureInspector::extractParameterSets(const AVPacket &packet)
{
    if (av_packet_ref(m_filtered.get(), &packet) != 0)
        return;
    if (av_bsf_send_packet(m_filter.get(), m_filtered.get()) != 0) {
        av_packet_unref(m_filtered.get());
        return;
    }
    while (av_bsf_receive_packet(m_filter.get(), m_filtered.get()) == 0) {
        size_t size = 0;
        const uint8_t *sets = av_packet_get_side_data(m_filtered.get(), AV_PKT_DATA_NEW_EXTRADATA, &size);
        if (sets && size <= MaxParameterSets)
            m_facts.parameterSets =
                QByteArray(reinterpret_cast<const char *>(sets), static_cast<qsizetype>(size));
        av_packet_unref(m_filtered.get());
    }
}

} // namespace paravue
