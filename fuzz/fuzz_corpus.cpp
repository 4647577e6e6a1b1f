// Writes the first inputs of the fuzz targets, each into the folder of its target: streams of the simulator,
// without and with each of its faults, the pictures in them, and its configuration files and descriptions.
//
// Usage: fuzz_corpus DIR

#include "ConfigurationSeeds.h"
#include "Corpus.h"
#include "FuzzInput.h"

#include "recorder/video/VideoService.h"
#include "video/cHvx3Parser.h"

#include <QCoreApplication>

#include <cstdio>

using namespace paravue::fuzz;
using recorder::VideoCodec;
using recorder::VideoFaults;
using recorder::VideoService;

namespace
{

constexpr int Pictures = 4;

class Recording : public recorder::VideoSink
{
public:
    bool isReady() const override { return true; }
    void write(const QByteArray &bytes) override { m_stream += bytes; }
    void end() override {}
    const QByteArray &stream() const { return m_stream; }

private:
    QByteArray m_stream;
};

void prepare(VideoService &service, VideoCodec codec)
{
    recorder::VideoSettings settings;
    settings.codec = codec;
    settings.size = recorder::VideoSettings::MinSize;
    settings.rate = recorder::VideoSettings::MaxRate;
    settings.fragmentSize = 300;
    QString fault;
    if (!service.setSettings(settings, &fault))
        qFatal("cannot encode %s: %s", qPrintable(nameOf(codec)), qPrintable(fault));
}

/// \a fault is a name of videoFaultNames(), or empty.
QByteArray streamOf(VideoCodec codec, const QString &fault = QString())
{
    VideoService service;
    prepare(service, codec);
    VideoFaults faults;
    faults.kinds = fault.isEmpty() ? 0 : 1u << recorder::videoFaultNames().indexOf(fault);
    faults.stall = 1;
    faults.every = Pictures;
    service.setFaults(faults);
    const auto recording = std::make_shared<Recording>();
    service.watch(recording);
    while (service.encodedPictures() < Pictures) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        service.setPose({.pan = double(service.encodedPictures()) / Pictures});
    }
    return recording->stream();
}

QByteArray still()
{
    VideoService service;
    prepare(service, VideoCodec::MotionJpeg);
    return service.snapshot();
}

QList<QByteArray> picturesIn(const QByteArray &stream)
{
    QList<QByteArray> pictures;
    cHvx3Parser parser;
    QObject::connect(&parser, &cHvx3Parser::onDATA, &parser, [&](const DATA_T &frame) {
        if (frame.streamId == VideoService::PictureStream)
            pictures << frame.payload;
    });
    parser.append(stream);
    return pictures;
}

void addStream(Corpus &corpus, const QString &name, const QByteArray &stream)
{
    corpus.add("parser", name, QByteArray(2, '\0'), stream);
    corpus.add("demuxer", name, QByteArray("\xff\0\0", 3), stream);
    corpus.add("receiver", name, QByteArray("\x06\0", 2), stream); // acknowledged, in pieces
    corpus.add("receiver", name + "-ptz", QByteArray("\x07\0", 2), stream);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("Usage: fuzz_corpus DIR\n", stderr);
        return 2;
    }
    Corpus corpus(QString::fromLocal8Bit(argv[1]));
    char codecOfDecoder = 0;
    for (const VideoCodec codec : {VideoCodec::H264, VideoCodec::Mpeg4, VideoCodec::MotionJpeg}) {
        const QString name = nameOf(codec);
        const QByteArray stream = streamOf(codec);
        addStream(corpus, name, stream);
        const QByteArray pictures = picturesIn(stream).join(PieceBorder);
        corpus.add("decoder", name, QByteArray(1, codecOfDecoder) + '\0', pictures);
        corpus.add("decoder", name + "-turns", QByteArray(1, codecOfDecoder | '\x80') + '\0', pictures);
        ++codecOfDecoder;
        for (const QString &fault : recorder::videoFaultNames())
            addStream(corpus, name + '-' + fault, streamOf(codec, fault));
    }
    corpus.add("still", "still", {}, still());
    addConfiguration(corpus);
    return corpus.isWritten() ? 0 : 1;
}
