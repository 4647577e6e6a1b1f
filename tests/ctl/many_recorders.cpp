// Many simulated recorders in one process, each with a folder and a port of its own, for programs that talk
// to all of them at once. Ends with its standard input.
//
// Usage: many-recorders COUNT FOLDER [DELAY [FIRST]]   with DELAY milliseconds before each answer, and the
// number FIRST of the first one

#include "program/StopSignal.h"
#include "recorder/RecorderServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include <cstdlib>
#include <memory>
#include <vector>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace
{

/// Each recorder listens, and has a connection; it opens files one at a time.
constexpr int FilesOfRecorder = 3;
constexpr int FilesOfProgram = 64;

bool raiseOpenFiles(int count)
{
#ifndef Q_OS_WIN
    const rlim_t needed = rlim_t(count) * FilesOfRecorder + FilesOfProgram;
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0 || files.rlim_cur >= needed)
        return true;
    if (files.rlim_max < needed) {
        QTextStream(stderr) << "many-recorders: " << count << " recorders need " << qulonglong(needed)
                            << " open files, and the hard limit is " << qulonglong(files.rlim_max)
                            << Qt::endl;
        return false;
    }
    files.rlim_cur = needed;
    return ::setrlimit(RLIMIT_NOFILE, &files) == 0;
#else
    Q_UNUSED(count);
    return true;
#endif
}

} // namespace

int main(int argc, char **argv)
{
    paravue::keepInputOpen();
    const QCoreApplication application(argc, argv);
    const int count = argc > 2 ? std::atoi(argv[1]) : 0;
    if (count <= 0) {
        QTextStream(stderr) << "Usage: many-recorders COUNT FOLDER [DELAY [FIRST]]" << Qt::endl;
        return 2;
    }
    if (!raiseOpenFiles(count))
        return 6;
    paravue::quitOnStopSignal();
    paravue::quitAtEndOfInput();
    const QDir folder(QString::fromLocal8Bit(argv[2]));
    QTextStream out(stdout);
    std::vector<std::unique_ptr<recorder::RecorderServer>> recorders;
    const int first = argc > 4 ? std::atoi(argv[4]) : 1;
    for (int number = first; number < first + count; ++number) {
        const QString name = QStringLiteral("r%1").arg(number);
        auto server = std::make_unique<recorder::RecorderServer>(folder.filePath(name));
        server->setReplyDelay(argc > 3 ? std::atoi(argv[3]) : 0);
        if (!server->listen()) {
            QTextStream(stderr) << "many-recorders: " << name << ": " << server->errorString() << Qt::endl;
            return 3;
        }
        // A section of an inventory.
        out << '[' << name << "]\naddress = 127.0.0.1:" << server->port() << '\n';
        recorders.push_back(std::move(server));
    }
    out << "# listening" << Qt::endl;
    return QCoreApplication::exec();
}
