#include "recorder/VideoOptions.h"

#include "recorder/RecorderServer.h"
#include "recorder/clients/HttpAccess.h"
#include "recorder/files/RecorderText.h"
#include "recorder/video/VideoService.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <limits>

namespace recorder
{

namespace
{

const QString FileOption = QStringLiteral("video");
const QString CodecOption = QStringLiteral("video-codec");
const QString SizeOption = QStringLiteral("video-size");
const QString RateOption = QStringLiteral("video-rate");
const QString FragmentOption = QStringLiteral("video-fragment");
const QString FaultOption = QStringLiteral("video-fault");
const QString EveryOption = QStringLiteral("video-fault-every");
const QString SeedOption = QStringLiteral("video-fault-seed");
const QString RecordOption = QStringLiteral("record");
const QString LoginOption = QStringLiteral("snapshot-login");

QStringList loginNames()
{
    return {QStringLiteral("basic"), QStringLiteral("digest"), QStringLiteral("both")};
}

/// Reads the options of one command line and keeps the error of the first invalid one.
class OptionReader
{
public:
    OptionReader(const QCommandLineParser &parser, QString &fault) : m_parser(parser), m_fault(fault) {}

    /// Does not change the number when the option is not given.
    template <typename Number>
    void number(const QString &name, Number &number, qint64 least, qint64 most)
    {
        if (!m_parser.isSet(name))
            return;
        bool isNumber = false;
        const qint64 value = m_parser.value(name).toLongLong(&isNumber);
        if (isNumber && value >= least && value <= most)
            number = Number(value);
        else
            wrong(name, RecorderText::tr("a number from %1 to %2").arg(least).arg(most));
    }

    void codec(VideoCodec &codec)
    {
        if (!m_parser.isSet(CodecOption))
            return;
        if (const std::optional<VideoCodec> named = videoCodecNamed(m_parser.value(CodecOption)))
            codec = *named;
        else
            wrong(CodecOption, videoCodecNames().join(QStringLiteral(", ")));
    }

    void size(QSize &size)
    {
        if (!m_parser.isSet(SizeOption))
            return;
        static const QRegularExpression pattern(QStringLiteral("^([0-9]{1,5})x([0-9]{1,5})$"));
        const QRegularExpressionMatch match = pattern.match(m_parser.value(SizeOption));
        if (match.hasMatch())
            size = {match.captured(1).toInt(), match.captured(2).toInt()};
        else
            wrong(SizeOption, RecorderText::tr("a size such as 640x360"));
    }

    void logins(unsigned &schemes)
    {
        const qsizetype choice = loginNames().indexOf(m_parser.value(LoginOption));
        if (choice >= 0)
            schemes = unsigned(choice) + 1;
        else
            wrong(LoginOption, loginNames().join(QStringLiteral(", ")));
    }

    void path(const QString &name, QString &path)
    {
        path = m_parser.value(name);
        if (m_parser.isSet(name) && path.isEmpty())
            wrong(name, RecorderText::tr("a file"));
    }

private:
    void wrong(const QString &name, const QString &wanted)
    {
        if (m_fault.isEmpty())
            m_fault = RecorderText::tr("--%1 takes %2, not \"%3\"").arg(name, wanted, m_parser.value(name));
    }

    const QCommandLineParser &m_parser;
    QString &m_fault;
};

QString realPath(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() ? file.canonicalFilePath() : file.absoluteFilePath();
}

QString settingsConflict(const QCommandLineParser &parser, const VideoOptions &options)
{
    if (const QString fault = settingsFault(options.settings); !fault.isEmpty())
        return QStringLiteral("--%1: %2").arg(SizeOption, fault);
    for (const QString &option : {EveryOption, SeedOption}) {
        if (parser.isSet(option) && !parser.isSet(FaultOption))
            return RecorderText::tr("--%1 says nothing without --%2").arg(option, FaultOption);
    }
    const quint32 changes = VideoFaults::SizeChange | VideoFaults::CodecChange;
    if (!options.file.isEmpty() && (options.faults.kinds & changes))
        return RecorderText::tr("--%1: size and codec change with the test picture only, not with --%2")
            .arg(FaultOption, FileOption);
    if (!options.file.isEmpty() && !options.recordFile.isEmpty() &&
        realPath(options.file) == realPath(options.recordFile))
        return RecorderText::tr("--%1: that is the file that --%2 shows").arg(RecordOption, FileOption);
    if (!options.file.isEmpty() && (parser.isSet(SizeOption) || parser.isSet(RateOption)))
        return RecorderText::tr("--%1: the file has its own size and rate").arg(FileOption);
    return {};
}

} // namespace

void addVideoOptions(QCommandLineParser &parser)
{
    const VideoSettings settings = VideoService::defaultSettings();
    const VideoFaults faults;
    parser.addOptions({
        {FileOption, RecorderText::tr("Show this video file, again and again, instead of the test picture."),
         QStringLiteral("FILE")},
        {CodecOption,
         RecorderText::tr("Encode the test picture, and files with other codecs, as %1 (default %2).")
             .arg(videoCodecNames().join(QStringLiteral(", ")), nameOf(settings.codec)),
         QStringLiteral("NAME")},
        {SizeOption,
         RecorderText::tr("Size of the test picture (default %1x%2).")
             .arg(settings.size.width())
             .arg(settings.size.height()),
         QStringLiteral("WxH")},
        {RateOption, RecorderText::tr("Test pictures a second (default %1).").arg(settings.rate),
         QStringLiteral("N")},
        {FragmentOption,
         RecorderText::tr("Cut frames into fragments of this many bytes (default %1).")
             .arg(settings.fragmentSize),
         QStringLiteral("N")},
        {FaultOption,
         RecorderText::tr(
             "Damage the video; LIST has one or more of %1 with commas between them. A stall lasts "
             "%2 ms, or as long as stall=MS says.")
             .arg(videoFaultNames().join(QStringLiteral(", ")))
             .arg(faults.stall),
         QStringLiteral("LIST")},
        {EveryOption,
         RecorderText::tr("Each fault comes once in so many pictures (default %1).").arg(faults.every),
         QStringLiteral("N")},
        {SeedOption, RecorderText::tr("Another seed makes other damage (default %1).").arg(faults.seed),
         QStringLiteral("N")},
        {RecordOption,
         RecorderText::tr(
             "Keep the video in this file as a client gets it, whether one watches or not. The file must "
             "not exist yet."),
         QStringLiteral("FILE")},
        {LoginOption,
         RecorderText::tr("How /snapshot.jpg is logged in to over HTTP: %1 (default both).")
             .arg(loginNames().join(QStringLiteral(", "))),
         QStringLiteral("NAME"), QStringLiteral("both")},
    });
}

std::optional<VideoOptions> readVideoOptions(const QCommandLineParser &parser, QString &fault)
{
    VideoOptions options;
    options.settings = VideoService::defaultSettings();
    OptionReader reader(parser, fault);
    reader.codec(options.settings.codec);
    reader.size(options.settings.size);
    reader.number(RateOption, options.settings.rate, 1, VideoSettings::MaxRate);
    reader.number(FragmentOption, options.settings.fragmentSize, 1, VideoSettings::MaxFragment);
    if (parser.isSet(FaultOption) && fault.isEmpty()) {
        if (const auto faults = readVideoFaults(parser.values(FaultOption).join(u','), fault))
            options.faults = *faults;
        else
            fault.prepend(QStringLiteral("--%1: ").arg(FaultOption));
    }
    reader.number(EveryOption, options.faults.every, 1, VideoFaults::MaxEvery);
    reader.number(SeedOption, options.faults.seed, 0, std::numeric_limits<quint32>::max());
    reader.path(FileOption, options.file);
    reader.path(RecordOption, options.recordFile);
    reader.logins(options.snapshotLogins);
    if (fault.isEmpty())
        fault = settingsConflict(parser, options);
    return fault.isEmpty() ? std::optional(options) : std::nullopt;
}

QString applyVideoOptions(const VideoOptions &options, RecorderServer &server)
{
    VideoService &video = server.video();
    server.setSnapshotLogins(options.snapshotLogins);
    QString fault;
    if (!video.setSettings(options.settings, &fault))
        return fault;
    if (!options.file.isEmpty() && !video.setFile(options.file, &fault))
        return RecorderText::tr("cannot show %1: %2").arg(options.file, fault);
    video.setFaults(options.faults);
    return {};
}

QString startRecording(const VideoOptions &options, RecorderServer &server)
{
    QString fault;
    if (options.recordFile.isEmpty() || server.video().record(options.recordFile, &fault))
        return {};
    return RecorderText::tr("cannot record to %1: %2").arg(options.recordFile, fault);
}

} // namespace recorder
