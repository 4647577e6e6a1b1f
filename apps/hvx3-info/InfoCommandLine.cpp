#include "InfoCommandLine.h"

#include "InfoText.h"
#include "MediaFile.h"
#include "program/HelpText.h"
#include "program/TypedPassword.h"
#include "video/cHvx3Demuxer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

namespace paravue
{

namespace
{

QString notes()
{
    return InfoText::tr(
        "\nA recording is what a recorder sent on a connection to its video service. It may\n"
        "begin and end anywhere. With ADDRESS, login:password@host[:port], one is made first\n"
        "and kept if --record names a file for it.\n"
        "\n"
        "An export has every video stream that begins with a key picture. Its times are\n"
        "those of the stream, counted from the first picture. A time that is not behind\n"
        "the one before is moved, and such times are counted. Where the codec or the size\n"
        "of a picture changes, the next file begins: FILE.mkv, FILE-2.mkv, FILE-3.mkv.\n"
        "The files get their names when all of them are complete.\n"
        "\nExit code:\n"
        "  0  the streams were listed, and exported if that was asked for\n"
        "  2  the command line was wrong\n"
        "  3  no connection to the recorder, or no answer in time\n"
        "  4  the recorder has refused the login\n"
        "  6  a file could not be read or written\n"
        "  7  there is no stream in the file, or no video to export\n");
}

constexpr uint MaxSeconds = 24 * 60 * 60;

InfoCommandLine ended(InfoCommandLine::Task task, const QString &text)
{
    InfoCommandLine line;
    line.task = task;
    line.text = text;
    return line;
}

/// What is wrong with the options; empty when nothing is.
QString problemOf(const InfoCommandLine &line, bool exports)
{
    if (!line.codec.isEmpty() && cHvx3Demuxer::decoderOf(line.codec).isEmpty())
        return InfoText::tr("unknown codec \"%1\": it is H264, mp4v or mjpeg")
            .arg(QString::fromUtf8(line.codec));
    if (!line.codec.isEmpty() && !line.headerFile.isEmpty())
        return InfoText::tr("a header is given by --codec or by --header");
    if (!exports)
        return line.force && !line.address ? InfoText::tr("--force needs --export or --record") : QString();
    if (line.exportFile.isEmpty())
        return InfoText::tr("--export needs a value");
    if (line.file == u'-')
        return InfoText::tr("--export reads the recording twice, which standard input cannot be");
    if (!MediaFile::isKnownName(line.exportFile))
        return InfoText::tr("cannot export to \"%1\": the name has to end in .mkv or .mp4")
            .arg(line.exportFile);
    return {};
}

/// False when the value of \a option, if it is there, is no number of seconds.
bool readSeconds(const QCommandLineParser &parser, const QString &option, std::chrono::seconds &seconds)
{
    if (!parser.isSet(option))
        return true;
    const uint number = parser.value(option).toUInt(); // 0 for other texts
    seconds = std::chrono::seconds(number);
    return number >= 1 && number <= MaxSeconds;
}

/// What follows from an address in place of a recording, or a problem.
QString readLive(InfoCommandLine &line, const QCommandLineParser &parser)
{
    const bool isFile = line.file == u'-' || QFileInfo::exists(line.file);
    line.address = isFile ? std::nullopt : VideoAddress::fromText(line.file);
    // The text holds a password.
    if (!isFile && !line.address && line.file.contains(u'@'))
        return InfoText::tr("there is no such file, and an address has the form login:password@host[:port]");
    if (!line.address) {
        for (const char *option : {"record", "seconds", "timeout", "digest"}) {
            if (parser.isSet(option))
                return InfoText::tr("--%1 needs an ADDRESS, login:password@host[:port]").arg(option);
        }
        return {};
    }
    if (parser.isSet("record") && parser.value("record").isEmpty())
        return InfoText::tr("--record needs a value");
    if (!readSeconds(parser, "seconds", line.times.duration))
        return InfoText::tr("--%1 takes a number from 1 to %2").arg("seconds").arg(MaxSeconds);
    if (!readSeconds(parser, "timeout", line.times.silence))
        return InfoText::tr("--%1 takes a number from 1 to %2").arg("timeout").arg(MaxSeconds);
    if (parser.isSet("digest")) {
        if (!isInLocalEncoding(line.address->password))
            return InfoText::tr("the password has letters that this computer's encoding lacks, so its "
                                "digest would fit other passwords too");
        line.address->password = digestOfTyped(line.address->password);
    }
    line.file = parser.value("record");
    return {};
}

} // namespace

InfoCommandLine InfoCommandLine::parse(const QStringList &words)
{
    using Task = InfoCommandLine::Task;
    const QCommandLineOption help({"h", "help"}, InfoText::tr("Show this help."));
    const QCommandLineOption version({"v", "version"}, InfoText::tr("Show the version."));
    const QCommandLineOption json("json", InfoText::tr("Print the list for other programs."));
    const QCommandLineOption exportTo(
        "export",
        InfoText::tr(
            "Write the video streams to FILE, which ends in .mkv or .mp4, without encoding them again."),
        "FILE");
    const QCommandLineOption codec(
        "codec",
        InfoText::tr("Of a recording that begins behind its header: its stream 0 is video of "
                     "CODEC, which is H264, mp4v or mjpeg. Other streams are lost."),
        "CODEC");
    const QCommandLineOption header(
        "header",
        InfoText::tr("Of a recording that begins behind its header: use the one of the recording OTHER."),
        "OTHER");

    const QCommandLineOption force(
        "force", InfoText::tr("Overwrite FILE when it exists (with --export and --record)."));
    const QCommandLineOption recordTo("record", InfoText::tr("Keep the recording of ADDRESS in FILE."),
                                      "FILE");
    const QCommandLineOption seconds("seconds", InfoText::tr("Record for so long (without it 10)."),
                                     "SECONDS");
    const QCommandLineOption timeout(
        "timeout",
        InfoText::tr("Give up when nothing has come from ADDRESS for so long (without it 12). Some cameras "
                     "send a picture once in a minute."),
        "SECONDS");
    const QCommandLineOption digest(
        "digest", InfoText::tr("The password in ADDRESS is the one that a user types: send its "
                               "digest. Otherwise it is sent as it stands."));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        InfoText::tr("Lists the streams of a recorded HVX3 byte stream, or of a recorder."));
    parser.addOptions(
        {help, version, json, codec, header, exportTo, force, recordTo, seconds, timeout, digest});
    parser.addPositionalArgument("RECORDING",
                                 InfoText::tr("The recorded bytes; - reads them from standard input."),
                                 "RECORDING|ADDRESS");

    const bool isParsed = parser.parse(words);
    if (parser.isSet(help))
        return ended(Task::ShowText, helpText(parser) + notes());
    if (parser.isSet(version))
        return ended(Task::ShowText, QCoreApplication::applicationName() + ' ' +
                                         QCoreApplication::applicationVersion() + '\n');
    if (!isParsed)
        return ended(Task::RefuseUsage, parser.errorText());
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1 || files.first().isEmpty())
        return ended(Task::RefuseUsage, files.size() > 1 ? InfoText::tr("more than one file was given")
                                                         : InfoText::tr("no file was given, and no address"));
    InfoCommandLine line;
    line.file = files.first();
    line.exportFile = parser.value(exportTo);
    line.codec = parser.value(codec).toUtf8();
    line.headerFile = parser.value(header);
    line.force = parser.isSet(force);
    line.json = parser.isSet(json);
    if (const QString problem = readLive(line, parser); !problem.isEmpty())
        return ended(Task::RefuseUsage, problem);
    if (const QString problem = problemOf(line, parser.isSet(exportTo)); !problem.isEmpty())
        return ended(Task::RefuseUsage, problem);
    return line;
}

} // namespace paravue
