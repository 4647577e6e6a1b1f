// Requires that an exchange with a recorder ends in an announced way whatever the recorder sends, that files
// are kept and sent back as they are, and that the next exchange works.
//
// Input: a byte of choices, a byte that chooses how the bytes are cut, then pieces: what the recorder sends
// for one request after the other.

#include "Events.h"
#include "FuzzInput.h"
#include "InputTime.h"
#include "LoopbackPeer.h"
#include "Require.h"

#include "device/OrbNetSetup.h"
#include "device/protocol/DescriptionFileList.h"
#include "device/protocol/GzText.h"
#include "device/protocol/Limits.h"
#include "device/protocol/ReplyFrame.h"
#include "device/protocol/WireBody.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>

using namespace paravue;
using namespace paravue::fuzz;
using State = LinkStatus::State;
using Progress = ReplyFrame::Progress;

namespace
{

enum Choice : quint8 {
    LoggedIn = 0x01, ///< the login is accepted, otherwise the first piece answers it
    Framed = 0x02,   ///< every piece is the body of a reply, otherwise it is the reply
    TakenApart = 0x04,
    ClosedByPeer = 0x08,
    Saved = 0x10, ///< a fetch that succeeded is followed by a save
};

const QByteArray Login = QByteArrayLiteral("\x04LOGIN=user\r\nPASS=word\r\n");
const QByteArray Answer = QByteArrayLiteral("VORN_ANSWER=OK\r\n");
/// The files that a recorder answers for beyond its pieces: more than there are in the built-in list.
constexpr int MoreFiles = 24;

QByteArray framed(const QByteArray &body)
{
    return "LENGTH=" + QByteArray::number(body.size() + Answer.size()) + "\r\n" + body + Answer;
}

class Exchanges
{
public:
    Exchanges(LoopbackPeer &peer, quint8 choice, quint8 seed);

    void fetch(QList<QByteArray> pieces);
    void save();
    /// Requires that a fetch without a fault succeeds, whatever came before.
    void startOver();
    bool isDone() const { return m_done > 0; }

private:
    bool isRunning() const { return m_store.linkStatus().state == State::Running; }
    void begin();
    void send(const QByteArray &bytes);
    void answerMore(int files);
    QByteArray expectedSave();

    LoopbackPeer &m_peer;
    const quint8 m_choice;
    const quint8 m_seed;
    OrbNetSetup m_store;
    int m_done = 0;   ///< exchanges of this kind that were announced as done
    int m_errors = 0; ///< messages
};

Exchanges::Exchanges(LoopbackPeer &peer, quint8 choice, quint8 seed)
    : m_peer(peer), m_choice(choice), m_seed(seed),
      m_store("user:word@127.0.0.1:" + QString::number(static_cast<qint16>(peer.port())))
{
    m_store.setCredentialsSource(nullptr);
    QObject::connect(&m_store, &OrbSetup::loadDone, &m_store, [this] { ++m_done; });
    QObject::connect(&m_store, &OrbSetup::storeDone, &m_store, [this] { ++m_done; });
    QObject::connect(&m_store, &OrbSetup::pseudothrow, &m_store, [this] { ++m_errors; });
}

void Exchanges::begin()
{
    m_done = 0;
    m_errors = 0;
}

void Exchanges::send(const QByteArray &bytes)
{
    if (!(m_choice & TakenApart)) {
        m_peer.send(bytes);
        return;
    }
    for (const QByteArray &piece : cutAtRandom(bytes, m_seed))
        m_peer.send(piece);
}

/// What else is asked for is empty.
void Exchanges::answerMore(int files)
{
    for (; files > 0 && isRunning(); --files)
        m_peer.send(framed({}));
}

void Exchanges::fetch(QList<QByteArray> pieces)
{
    begin();
    m_store.load();
    require(m_peer.accept() == Login, "a store logs in");
    if (m_choice & LoggedIn)
        m_peer.send(framed({}));
    else if (!pieces.isEmpty())
        send(pieces.takeFirst());
    for (const QByteArray &piece : pieces) {
        if (isRunning())
            send(m_choice & Framed ? framed(piece) : piece);
    }
    answerMore(MoreFiles);
    if (m_choice & ClosedByPeer)
        m_peer.close();
    handleEvents();
    const State state = m_store.linkStatus().state;
    // Behind such an answer to the login an exchange waits for ever, and only the status tells why.
    const bool isSilent =
        !(m_choice & LoggedIn) && m_store.linkStatus().cause == paravue::LinkStatus::Cause::BadAnswer;
    require(m_done <= 1, "an exchange is done once");
    require(state != State::Idle || m_done + m_errors > 0, "an exchange that ended is announced");
    require(state != State::Failed || m_errors > 0 || isSilent, "a failure has a message");
    require(!isRunning() || !(m_choice & ClosedByPeer), "a closed connection ends the exchange");
    m_peer.close();
    handleEvents();
}

/// What a save has to send: the files of the list as they are kept. The time is not sent back.
QByteArray Exchanges::expectedSave()
{
    const auto kept = [this](const QString &name) {
        QFile file(m_store.fileExists(name) ? m_store.filePath(name) : QString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QByteArray sent = Login;
    if (const auto files = readDescriptionFileList(kept("interface"))) {
        for (const ListedFile &file : *files) {
            if (!file.putCommand.isEmpty())
                sent += file.putCommand.toLocal8Bit() + "\r\n" + wireBody(kept(file.name));
        }
        return sent;
    }
    for (const auto &[request, name] : {std::pair("", "streams"),
                                        {"NET ", "net"},
                                        {"TIME ", "time"},
                                        {"TIMER ", "timers"},
                                        {"DISK ", "disk"},
                                        {"USER ", "users"},
                                        {"STATE ", "state"}})
        sent += QByteArray("PUT ") + request + "CONFIG\r\n" + wireBody(kept(name));
    return sent;
}

void Exchanges::save()
{
    begin();
    m_store.store();
    QByteArray sent = m_peer.accept();
    m_peer.send(framed({}));
    answerMore(static_cast<int>(MaxListedFiles));
    sent += m_peer.received();
    require(m_done + m_errors > 0, "a save that ended is announced");
    if (m_errors == 0)
        require(sent == expectedSave(), "exactly the files are sent");
    m_peer.close();
    handleEvents();
}

void Exchanges::startOver()
{
    m_store.resetLink();
    require(m_store.linkStatus().state == State::Idle, "an exchange can be given up");
    begin();
    m_store.load();
    require(m_peer.accept() == Login, "a store logs in again");
    m_peer.send(framed({}));
    answerMore(MoreFiles);
    require(m_done == 1 && m_errors == 0, "the next fetch works");
    m_peer.close();
    handleEvents();
}

/// Requires that a reply is found however it is cut.
void checkFrame(const QByteArray &bytes, quint8 seed)
{
    ReplyFrame whole;
    const Progress progress = whole.read(bytes);
    ReplyFrame piecewise;
    QByteArray buffer;
    Progress last = Progress::Incomplete;
    for (const QByteArray &piece : cutAtRandom(bytes, seed)) {
        buffer += piece;
        last = piecewise.read(buffer);
        if (last != Progress::Incomplete)
            break;
    }
    require(last == progress, "a reply ends where it ends");
    if (progress != Progress::Complete)
        return;
    require(whole.headerSize() == piecewise.headerSize(), "a reply has one header");
    QByteArray body = bytes.sliced(whole.headerSize());
    const QByteArray before = body;
    const ReplyContent content = takeAnswer(body);
    require(before.startsWith(body), "the body is the beginning of a reply");
    require(body.size() < before.size() || content.answer == ReplyContent::Answer::Missing,
            "an answer is taken out of a reply");
    require(content.text.size() <= MaxQuotedAnswer + 1, "a long answer is cut");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    QLoggingCategory::setFilterRules("paravue.*=false");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static LoopbackPeer peer;
    const InputTime time;
    FuzzInput input(data, size);
    const quint8 choice = input.takeByte();
    const quint8 seed = input.takeByte();
    checkFrame(input.rest(), seed);
    Exchanges exchanges(peer, choice, seed);
    exchanges.fetch(input.pieces());
    if (exchanges.isDone() && choice & Saved)
        exchanges.save();
    exchanges.startOver();
    return 0;
}
