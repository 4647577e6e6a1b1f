// hvx3-info: lists the contents of a recorded video stream, and exports its pictures into a media file.

#include "GivenHeader.h"
#include "InfoCommandLine.h"
#include "InfoText.h"
#include "Recording.h"
#include "SurveyReport.h"
#include "program/ConsoleOutput.h"
#include "program/DesktopLanguage.h"
#include "program/TemporaryFolder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>

#include <optional>

extern "C" {
#include <libavutil/log.h>
}

using namespace paravue;

namespace
{

void printError(const QString &text)
{
    QTextStream(stderr) << "hvx3-info: " << text << Qt::endl;
}

void print(const InfoReport &report, bool json)
{
    QTextStream out(stdout);
    if (json)
        out << jsonReport(report);
    else
        out << textReport(report);
}

QString noStreamIn(const QString &file, const RecordingSurvey &survey)
{
    if (survey.bytes() == 0)
        return InfoText::tr("%1 is empty").arg(file);
    const QString problem = InfoText::tr("there is no stream in %1: ").arg(file);
    if (survey.hasGivenHeader())
        return problem + InfoText::tr("no index record begins in its %1").arg(countedBytes(survey.bytes()));
    // Without a header, unread bytes are the beginning of one.
    constexpr qint64 HeaderMagicSize = 4;
    if (survey.unreadBytes() >= HeaderMagicSize)
        return problem + InfoText::tr("a header begins in it but does not end");
    return problem + InfoText::tr("no header begins in its %1. If it begins behind its header, --codec or "
                                  "--header helps")
                         .arg(countedBytes(survey.bytes()));
}

QByteArray givenHeader(const InfoCommandLine &line)
{
    if (!line.headerFile.isEmpty())
        return headerOf(line.headerFile);
    return line.codec.isEmpty() ? QByteArray() : headerWithCodec(line.codec);
}

ExitCode list(const InfoCommandLine &line)
{
    const bool exports = !line.exportFile.isEmpty();
    if (exports && isPipe(line.file))
        throw MediaError(
            InfoText::tr("--export reads the recording twice, which %1 cannot be").arg(line.file));
    const QByteArray header = givenHeader(line);
    FrameReader reader(header);
    RecordingSurvey survey(reader);
    ExportRoute route;
    reader.onHeader = [&](const HDR_T &header) { survey.takeHeader(header); };
    reader.onIndex = [&](qint64 time) { survey.takeIndex(time); };
    reader.onFrame = [&](const RecordedFrame &frame) {
        survey.takeFrame(frame);
        if (exports)
            route.place(frame);
    };
    reader.read(line.file);
    if (survey.headers() == 0 && (header.isEmpty() || survey.indexes() == 0)) {
        printError(noStreamIn(line.file, survey));
        return ExitCode::BadData;
    }
    InfoReport report{line.file, survey, {}, 0};
    try {
        if (exports) {
            report.exported = exportVideo(line.file, header, route, line.exportFile, line.force);
            report.leftOut = route.leftOut();
        }
    } catch (const MediaError &) {
        // The list is useful without the export.
        print(report, line.json);
        throw;
    }
    print(report, line.json);
    return ExitCode::Done;
}

/// Makes the recording first.
ExitCode listLive(InfoCommandLine line)
{
    std::optional<TemporaryFolder> temporary;
    if (line.file.isEmpty()) {
        if (!temporary.emplace().isValid())
            throw MediaError(temporary->errorString());
        line.file = temporary->path() + QStringLiteral("/live.hvx3");
    } else if (!line.force && QFileInfo::exists(line.file)) {
        throw MediaError(InfoText::tr("%1 exists; --force overwrites it").arg(line.file));
    }
    const auto earlyEnd = recordLive(*line.address, line.times, line.file);
    if (!earlyEnd)
        return list(line);
    printError(earlyEnd->text());
    try {
        list(line);
    } catch (const MediaError &error) {
        // That a short recording holds no key picture follows from its early end.
        if (error.exitCode() != ExitCode::BadData)
            throw;
        printError(error.text());
    }
    return earlyEnd->exitCode();
}

} // namespace

int main(int argc, char **argv)
{
    const ConsoleOutput output;
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("hvx3-info");
    QCoreApplication::setApplicationVersion(PARAVUE_VERSION);
    useDesktopLanguage(application);
    // FFmpeg would print warnings about each damaged picture.
    av_log_set_level(AV_LOG_QUIET);

    const InfoCommandLine line = InfoCommandLine::parse(QCoreApplication::arguments());
    switch (line.task) {
    case InfoCommandLine::Task::ShowText:
        QTextStream(stdout) << line.text;
        return int(ExitCode::Done);
    case InfoCommandLine::Task::RefuseUsage:
        printError(line.text + u'\n' + InfoText::tr("Try hvx3-info --help."));
        return int(ExitCode::WrongUsage);
    case InfoCommandLine::Task::ListStreams:
        break;
    }
    try {
        return int(line.address ? listLive(line) : list(line));
    } catch (const MediaError &error) {
        printError(error.text());
        return int(error.exitCode());
    }
}
