#include "program/ConsoleOutput.h"
#include "program/DesktopLanguage.h"
#include "program/ExitCode.h"
#include "program/HelpText.h"
#include "program/StopSignal.h"
#include "program/TemporaryFolder.h"
#include "recorder/Companion.h"
#include "recorder/RecorderServer.h"
#include "recorder/VideoOptions.h"
#include "recorder/files/IniValues.h"
#include "recorder/files/RecorderText.h"
#include "recorder/protocol/AnswerFault.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QTextStream>
#include <QTime>

#include <limits>
#include <optional>

extern "C" {
#include <libavutil/log.h>
}

namespace
{

struct Options {
    quint16 port = 0;
    int delay = 0;
    int rebootTime = 0;
    QHostAddress address = QHostAddress::LocalHost;
    QString dataDir;
    QString model;
    QList<recorder::AnswerFault> faults;
    recorder::VideoOptions video;
    bool companion = false;
    bool log = false;
    bool untilInputEnds = false;
};

void printError(const QString &text)
{
    QTextStream(stderr) << "paravue-recorder: " << text << Qt::endl;
}

std::optional<int> numberOption(const QCommandLineParser &parser, const QString &name, int most)
{
    bool isNumber = false;
    const int number = parser.value(name).toInt(&isNumber);
    if (isNumber && number >= 0 && number <= most)
        return number;
    printError(recorder::RecorderText::tr("--%1 takes a number from 0 to %2, not \"%3\"")
                   .arg(name, QString::number(most), parser.value(name)));
    return std::nullopt;
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        recorder::RecorderText::tr(
            "Behaves like a network video recorder: answers the configuration protocol, keeps its files "
            "in a folder and sends live video. %1 clients may be connected at a time.")
            .arg(recorder::RecorderServer::MaxClients));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("port"),
         recorder::RecorderText::tr("Listen on this TCP port; 0 picks a free one (default 5049)."),
         QStringLiteral("N"), QStringLiteral("5049")},
        {QStringLiteral("address"),
         recorder::RecorderText::tr(
             "Listen on this address of the computer (default 127.0.0.1: local clients only)."),
         QStringLiteral("IP"), QStringLiteral("127.0.0.1")},
        {QStringLiteral("data"),
         recorder::RecorderText::tr(
             "Folder of the configuration files, filled with the shipped model when it is missing or "
             "empty (default: a temporary folder, removed at the end)."),
         QStringLiteral("DIR")},
        {QStringLiteral("model"),
         recorder::RecorderText::tr("The model that fills an empty folder: %1 (default: the first).")
             .arg(recorder::RecorderServer::models().join(QStringLiteral(", "))),
         QStringLiteral("NAME"), recorder::RecorderServer::models().constFirst()},
        {QStringLiteral("delay"),
         recorder::RecorderText::tr("Send every answer this many milliseconds later (default 0)."),
         QStringLiteral("MS"), QStringLiteral("0")},
        {QStringLiteral("reboot-time"),
         recorder::RecorderText::tr(
             "Be gone for this long when a client restarts the recorder (default 3000)."),
         QStringLiteral("MS"), QStringLiteral("3000")},
        {QStringLiteral("fault"),
         recorder::RecorderText::tr(
             "Misbehave on the configuration protocol; may be given several times. FAULT is KIND or "
             "KIND@WHERE. KIND is one of %1. WHERE is login, a command such as \"GET NET CONFIG\", the "
             "number "
             "of an answer of each connection (1 is the one to the login), or all (the default).")
             .arg(recorder::answerFaultForms().join(QStringLiteral(", "))),
         QStringLiteral("FAULT")},
        {QStringLiteral("companion"),
         recorder::RecorderText::tr(
             "Tell setup programs of this user the recorder's name, which the file \"streams\" holds as "
             "common/name.")},
        {QStringLiteral("until-input-ends"),
         recorder::RecorderText::tr(
             "End when standard input ends, as it does with the program that has started this one.")},
        {QStringLiteral("log"),
         recorder::RecorderText::tr("Print every request and answer. Passwords are not shown.")},
    });
    recorder::addVideoOptions(parser);
}

std::optional<Options> readOptions(const QCommandLineParser &parser)
{
    Options options;
    if (!parser.positionalArguments().isEmpty()) {
        printError(recorder::RecorderText::tr("unexpected argument \"%1\"")
                       .arg(parser.positionalArguments().constFirst()));
        return std::nullopt;
    }
    const auto port = numberOption(parser, QStringLiteral("port"), std::numeric_limits<quint16>::max());
    const auto delay = numberOption(parser, QStringLiteral("delay"), 60 * 60 * 1000);
    const auto rebootTime = numberOption(parser, QStringLiteral("reboot-time"), 60 * 60 * 1000);
    if (!port || !delay || !rebootTime)
        return std::nullopt;
    if (!options.address.setAddress(parser.value(QStringLiteral("address")))) {
        printError(recorder::RecorderText::tr("--address takes an IP address, not \"%1\"")
                       .arg(parser.value(QStringLiteral("address"))));
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("data")) && parser.value(QStringLiteral("data")).isEmpty()) {
        printError(recorder::RecorderText::tr("--data takes a folder"));
        return std::nullopt;
    }
    options.port = quint16(*port);
    options.delay = *delay;
    options.rebootTime = *rebootTime;
    options.model = parser.value(QStringLiteral("model"));
    if (!recorder::RecorderServer::models().contains(options.model)) {
        printError(recorder::RecorderText::tr("there is no model \"%1\", only: %2")
                       .arg(options.model, recorder::RecorderServer::models().join(QStringLiteral(", "))));
        return std::nullopt;
    }
    QString fault;
    for (const QString &text : parser.values(QStringLiteral("fault"))) {
        const auto answerFault = recorder::readAnswerFault(text, fault);
        if (!answerFault) {
            printError(QStringLiteral("--fault: ") + fault);
            return std::nullopt;
        }
        options.faults += *answerFault;
    }
    const std::optional<recorder::VideoOptions> video = recorder::readVideoOptions(parser, fault);
    if (!video) {
        printError(fault);
        return std::nullopt;
    }
    options.video = *video;
    options.dataDir = parser.value(QStringLiteral("data"));
    options.companion = parser.isSet(QStringLiteral("companion"));
    options.log = parser.isSet(QStringLiteral("log"));
    options.untilInputEnds = parser.isSet(QStringLiteral("until-input-ends"));
    return options;
}

/// Gives the name of the recorder to setup programs, again whenever a client changes it.
class Announcement
{
public:
    explicit Announcement(recorder::RecorderServer &server) : m_server(server)
    {
        QObject::connect(&server, &recorder::RecorderServer::fileReceived, &m_companion,
                         [this] { announce(); });
    }

    void start()
    {
        if (!m_companion.listen())
            printError(
                recorder::RecorderText::tr("the name is not announced: %1").arg(m_companion.errorString()));
        announce();
    }

private:
    void announce()
    {
        QFile file(m_server.filePath(QStringLiteral("streams")));
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const QString name = QString::fromUtf8(recorder::iniValues(text).value("common/name"));
        const bool isEverywhere = m_server.address() == QHostAddress::Any;
        const QHostAddress host = isEverywhere ? QHostAddress(QHostAddress::LocalHost) : m_server.address();
        m_companion.setRecorders({{host.toString() + u':' + QString::number(m_server.port()), name}});
    }

    recorder::RecorderServer &m_server;
    recorder::Companion m_companion;
};

int endedWith(paravue::ExitCode exitCode)
{
    return int(exitCode);
}

int run(const Options &options)
{
    // Before there are files to be removed. Who started the program may end it as soon as it listens.
    paravue::quitOnStopSignal();
    if (options.untilInputEnds) {
        paravue::quitAtEndOfInput();
        paravue::ConsoleOutput::restoreConsole(); // that of the program at the other end
    }
    std::optional<paravue::TemporaryFolder> temporary;
    if (options.dataDir.isEmpty() && !temporary.emplace().isValid()) {
        printError(temporary->errorString());
        return endedWith(paravue::ExitCode::LocalFile);
    }
    const QString dataDir = temporary ? temporary->path() : options.dataDir;
    recorder::RecorderServer server(dataDir, options.model);
    server.setReplyDelay(options.delay);
    server.setRebootTime(options.rebootTime);
    server.setFaults(options.faults);
    QTextStream out(stdout);
    if (options.log) {
        QObject::connect(&server, &recorder::RecorderServer::logged, &server, [&out](const QString &line) {
            out << QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz ")) << line << Qt::endl;
        });
    }
    QObject::connect(&server, &recorder::RecorderServer::failed, &server, printError);
    if (!server.errorString().isEmpty()) {
        printError(server.errorString());
        return endedWith(paravue::ExitCode::LocalFile);
    }
    if (const QString fault = recorder::applyVideoOptions(options.video, server); !fault.isEmpty()) {
        printError(fault);
        return endedWith(paravue::ExitCode::LocalFile);
    }
    if (!server.listen(options.address, options.port)) {
        const QString port = QString::number(options.port);
        printError(
            recorder::RecorderText::tr("cannot listen on port %1: %2").arg(port, server.errorString()));
        return endedWith(paravue::ExitCode::Network);
    }
    if (const QString fault = recorder::startRecording(options.video, server); !fault.isEmpty()) {
        printError(fault);
        return endedWith(paravue::ExitCode::LocalFile);
    }
    Announcement announcement(server);
    if (options.companion)
        announcement.start();
    // Programs that start this one read the port from this line.
    out << "Listening on " << server.address().toString() << ':' << server.port() << Qt::endl;
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    paravue::keepInputOpen();
    const paravue::ConsoleOutput output;
    av_log_set_level(AV_LOG_QUIET); // errors of FFmpeg are reported in messages of the simulator
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("paravue-recorder"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PARAVUE_VERSION));
    paravue::useDesktopLanguage(application);
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments())) {
        printError(parser.errorText());
        return endedWith(paravue::ExitCode::WrongUsage);
    }
    if (parser.isSet(QStringLiteral("help"))) {
        QTextStream(stdout) << paravue::helpText(parser);
        return endedWith(paravue::ExitCode::Done);
    }
    if (parser.isSet(QStringLiteral("version"))) {
        // Without a console Qt's own way would show a message box.
        QTextStream(stdout) << QCoreApplication::applicationName() << u' '
                            << QCoreApplication::applicationVersion() << Qt::endl;
        return endedWith(paravue::ExitCode::Done);
    }
    const std::optional<Options> options = readOptions(parser);
    return options ? run(*options) : endedWith(paravue::ExitCode::WrongUsage);
}
