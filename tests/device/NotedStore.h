#pragma once

#include "device/OrbNetSetup.h"
#include "support/Waiting.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

namespace paravue::test
{

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

/// A store of a recorder that notes down what it says, and lets a test reach what derived classes may.
class NotedStore : public OrbNetSetup
{
public:
    explicit NotedStore(const QString &address) : OrbNetSetup(address)
    {
        connect(this, &OrbSetup::pseudothrow, this, [this](const QString &text) { errors << text; });
        connect(this, &OrbSetup::progress, this, [this](int percent) {
            percents << percent;
            activities << activity();
        });
        connect(this, &OrbSetup::loadDone, this, [this] { ++loads; });
        connect(this, &OrbSetup::storeDone, this, [this] { ++stores; });
    }

    /// Run one exchange to its end; false when it does not get there.
    bool fetch()
    {
        load();
        return awaitEnd(loads);
    }
    bool sendAll()
    {
        store();
        return awaitEnd(stores);
    }
    bool runCommand(const QByteArray &command, const QByteArray &body, bool sends)
    {
        _do_command(command, body, sends);
        return awaitEnd(sends ? stores : loads);
    }
    /// Waits for the next report and returns it.
    QString awaitError()
    {
        return paravue::test::waitUntil([this] { return !errors.isEmpty(); }) ? errors.takeFirst()
                                                                              : QString();
    }
    /// What went wrong, once \a recorder has nothing left to play: its problem and what the store reported.
    template <typename Recorder>
    QStringList faultsWith(const Recorder &recorder)
    {
        const bool done = paravue::test::waitUntil([&] { return recorder.problem().isEmpty(); });
        return done ? errors : errors + QStringList(recorder.problem());
    }
    QByteArray content(const QString &name) { return contentOf(filePath(name)); }

    using OrbNetSetup::_compile_state;
    using OrbNetSetup::_push_file;
    using OrbNetSetup::_push_gzfile;
    using OrbNetSetup::_push_statefile;
    using OrbNetSetup::_to_cmdstring;
    using OrbNetSetup::commandCount;
    using OrbNetSetup::error;
    using OrbNetSetup::m_buffer;
    using OrbNetSetup::m_operation;
    using OrbNetSetup::m_state;

    QStringList errors;
    QStringList activities;
    QList<int> percents;
    int loads = 0;
    int stores = 0;

private:
    /// The end is announced before the link is idle.
    bool awaitEnd(const int &count)
    {
        const int before = count;
        return paravue::test::waitUntil([&] { return count > before && m_state == Idle; });
    }
};

} // namespace paravue::test
