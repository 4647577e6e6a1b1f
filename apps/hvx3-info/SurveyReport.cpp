#include "SurveyReport.h"

#include "video/cHvx3Demuxer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QTextStream>
#include <QTime>

#include <cmath>
#include <cstring>

namespace paravue
{

namespace
{

constexpr double MillisecondsPerSecond = 1000;
const QString Byte = QStringLiteral("byte");

QString typeName(quint8 type)
{
    switch (type) {
    case VideoStream:
        return QStringLiteral("video");
    case TextStream:
        return QStringLiteral("text");
    case PlainStream:
    case 8:
    case 16:
        return QStringLiteral("data");
    default:
        return QStringLiteral("unreadable");
    }
}

/// The rate of \a count things; 0 when no time has passed.
double perSecond(double count, const StreamClock &clock)
{
    return clock.elapsed() > 0 ? count * MillisecondsPerSecond / double(clock.elapsed()) : 0;
}

double bitRate(qint64 bytes, const StreamClock &clock)
{
    return perSecond(8.0 * double(bytes), clock);
}

/// Without the first frame, with which the time begins.
double frameRate(const StreamSurvey &stream)
{
    return stream.frames > 1 ? perSecond(double(stream.frames - 1), stream.clock) : 0;
}

QString sizeText(QSize size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

QString number(qint64 value)
{
    return QLocale(QLocale::English).toString(value);
}

QString durationText(const StreamClock &clock)
{
    const qint64 hours = clock.elapsed() / (60 * 60 * 1000);
    const QTime rest = QTime::fromMSecsSinceStartOfDay(static_cast<int>(clock.elapsed() % (60 * 60 * 1000)));
    QString text = QString::number(hours) + rest.toString(QStringLiteral(":mm:ss.zzz"));
    if (clock.timesSetBack() > 0)
        text += QStringLiteral(" (the clock was set back %1)")
                    .arg(counted(clock.timesSetBack(), QStringLiteral("time")));
    return text;
}

QString bitRateText(qint64 bytes, const StreamClock &clock)
{
    return clock.elapsed() > 0 ? QStringLiteral("%1 kbit/s").arg(bitRate(bytes, clock) / 1000, 0, 'f', 1)
                               : QStringLiteral("unknown");
}

/// Lines of a name and a value each.
class Lines
{
public:
    Lines(QString &text, const QString &indent) : m_out(&text), m_indent(indent) {}
    void add(const char *name, const QString &value)
    {
        constexpr int NameWidth = 16;
        m_out << m_indent << QString::fromLatin1(name).leftJustified(NameWidth) << value << '\n';
    }

private:
    QTextStream m_out;
    QString m_indent;
};

struct Totals {
    qint64 records = 0;
    qint64 frames = 0;
};

void addRecording(QString &text, const InfoReport &report)
{
    const RecordingSurvey &survey = report.survey;
    const Hvx3Losses losses = survey.losses();
    Lines lines(text, {});
    lines.add("recording", QStringLiteral("%1, %2").arg(report.recording, counted(survey.bytes(), Byte)));
    if (survey.hasAnswerToLogin())
        lines.add(
            "in front",
            QStringLiteral("answer to the login, %1").arg(counted(qint64(std::strlen(AnswerToLogin)), Byte)));
    if (survey.hasGivenHeader())
        lines.add("header", QStringLiteral("given on the command line"));
    lines.add("name", survey.name());
    for (qsizetype tag = 1; tag < survey.texts().size(); ++tag) {
        if (!survey.texts().at(tag).isEmpty())
            lines.add(qPrintable(QStringLiteral("text %1").arg(tag)), survey.texts().at(tag));
    }
    Totals totals;
    for (const auto &[id, stream] : survey.streams()) {
        totals.records += stream.counts.records;
        totals.frames += stream.frames;
    }
    lines.add("records", QStringLiteral("headers %1, index records %2, data records %3 with %4")
                             .arg(number(survey.headers()), number(survey.indexes()), number(totals.records),
                                  counted(totals.frames, QStringLiteral("frame"))));
    lines.add("duration", durationText(survey.clock()));
    lines.add("bit rate", bitRateText(survey.bytes(), survey.clock()));
    lines.add("lost", QStringLiteral("%1 in %2, fragments %3, unfinished frames %4")
                          .arg(counted(losses.bytes, Byte), counted(losses.gaps, QStringLiteral("gap")),
                               number(losses.fragments), number(losses.frames)));
    if (survey.unreadBytes() > 0)
        lines.add("cut at its end", counted(survey.unreadBytes(), Byte) + QStringLiteral(" of a record"));
}

bool isKnown(const QString &codec)
{
    return !cHvx3Demuxer::decoderOf(codec.toLatin1()).isEmpty();
}

QString streamTitle(const StreamSurvey &stream)
{
    QStringList parts(typeName(stream.type));
    QStringList codecs = stream.codecs;
    for (QString &codec : codecs) {
        if (!isKnown(codec))
            codec += QStringLiteral(" (codec not known)");
    }
    if (stream.type == VideoStream)
        parts += codecs.join(QStringLiteral(", then "));
    else if (!stream.charset.isEmpty())
        parts += stream.charset;
    if (!stream.title.isEmpty())
        parts += u'"' + stream.title + u'"';
    return parts.join(QStringLiteral(", "));
}

void addVideo(Lines &lines, const StreamSurvey &stream)
{
    QStringList sizes;
    for (const QSize size : stream.sizes)
        sizes += sizeText(size);
    lines.add("pictures",
              sizes.isEmpty() ? QStringLiteral("unknown") : sizes.join(QStringLiteral(", then ")));
    lines.add("key frames", number(stream.keyFrames));
    const double rate = frameRate(stream);
    lines.add("frame rate", rate > 0 ? QStringLiteral("%1 per second, largest gap %2 ms")
                                           .arg(rate, 0, 'f', 2)
                                           .arg(number(stream.clock.largestStep()))
                                     : QStringLiteral("unknown"));
}

void addStream(QString &text, quint8 id, const StreamSurvey &stream, const StreamClock &clock)
{
    text += QStringLiteral("\nstream %1: %2\n").arg(id).arg(streamTitle(stream));
    Lines lines(text, QStringLiteral("  "));
    lines.add("frames",
              QStringLiteral("%1 in %2")
                  .arg(number(stream.frames), counted(stream.counts.records, QStringLiteral("record"))));
    if (stream.type == VideoStream)
        addVideo(lines, stream);
    if (stream.frames > 0)
        lines.add("bytes",
                  QStringLiteral("%1; a frame %2 to %3, mean %4")
                      .arg(number(stream.bytes), number(stream.smallestFrame), number(stream.largestFrame),
                           number(std::llround(double(stream.bytes) / double(stream.frames)))));
    lines.add("bit rate", bitRateText(stream.bytes, clock));
    lines.add("lost", QStringLiteral("fragments %1, unfinished frames %2")
                          .arg(number(stream.counts.lostFragments), number(stream.counts.lostFrames)));
}

void addExport(QString &text, const ExportedFile &file)
{
    text += QStringLiteral("\nexported to %1\n").arg(file.name);
    Lines lines(text, QStringLiteral("  "));
    for (const auto &[id, facts] : file.content.tracks)
        lines.add(qPrintable(QStringLiteral("stream %1").arg(id)),
                  QStringLiteral("%1, %2").arg(QString::fromLatin1(avcodec_get_name(facts.codec)),
                                               sizeText(facts.size)));
    lines.add("pictures", number(file.content.pictures));
    lines.add("moved times", number(file.movedTimes));
    if (file.timesSetBack > 0)
        lines.add("clock set back", number(file.timesSetBack));
}

QJsonObject streamObject(quint8 id, const StreamSurvey &stream, const StreamClock &clock)
{
    QJsonObject object{{"id", id},
                       {"type", stream.type},
                       {"kind", typeName(stream.type)},
                       {"codecs", QJsonArray::fromStringList(stream.codecs)},
                       {"charset", stream.charset},
                       {"title", stream.title},
                       {"records", stream.counts.records},
                       {"frames", stream.frames},
                       {"bytes", stream.bytes},
                       {"lostFragments", stream.counts.lostFragments},
                       {"unfinishedFrames", stream.counts.lostFrames}};
    if (stream.frames > 0) {
        object.insert("smallestFrame", stream.smallestFrame);
        object.insert("largestFrame", stream.largestFrame);
        object.insert("meanFrame", double(stream.bytes) / double(stream.frames));
    }
    if (clock.elapsed() > 0)
        object.insert("bitRate", bitRate(stream.bytes, clock));
    if (stream.type != VideoStream)
        return object;
    QJsonArray sizes;
    for (const QSize size : stream.sizes)
        sizes.append(QJsonObject{{"width", size.width()}, {"height", size.height()}});
    object.insert("sizes", sizes);
    QStringList unknown = stream.codecs;
    unknown.removeIf(isKnown);
    if (!unknown.isEmpty())
        object.insert("unknownCodecs", QJsonArray::fromStringList(unknown));
    object.insert("keyFrames", stream.keyFrames);
    object.insert("duration", double(stream.clock.elapsed()) / MillisecondsPerSecond);
    object.insert("largestGap", double(stream.clock.largestStep()) / MillisecondsPerSecond);
    if (frameRate(stream) > 0)
        object.insert("frameRate", frameRate(stream));
    return object;
}

QJsonObject exportObject(const ExportedFile &file)
{
    QJsonArray streams;
    for (const auto &[id, facts] : file.content.tracks)
        streams.append(id);
    return {{"file", file.name},
            {"streams", streams},
            {"pictures", file.content.pictures},
            {"begin", double(file.content.begin) / MillisecondsPerSecond},
            {"movedTimes", file.movedTimes},
            {"timesSetBack", file.timesSetBack}};
}

} // namespace

QString counted(qint64 count, const QString &noun)
{
    return number(count) + u' ' + noun + (count == 1 ? QString() : QStringLiteral("s"));
}

QString textReport(const InfoReport &report)
{
    QString text;
    addRecording(text, report);
    for (const auto &[id, stream] : report.survey.streams())
        addStream(text, id, stream, report.survey.clock());
    for (const ExportedFile &file : report.exported)
        addExport(text, file);
    if (report.leftOut > 0)
        text += QStringLiteral("\nnot exported: %1 with no key picture before\n")
                    .arg(counted(report.leftOut, QStringLiteral("picture")));
    return text;
}

QByteArray jsonReport(const InfoReport &report)
{
    const RecordingSurvey &survey = report.survey;
    const Hvx3Losses losses = survey.losses();
    QJsonArray streams;
    for (const auto &[id, stream] : survey.streams())
        streams.append(streamObject(id, stream, survey.clock()));
    QJsonArray exported;
    for (const ExportedFile &file : report.exported)
        exported.append(exportObject(file));
    QJsonObject object{{"recording", report.recording},
                       {"bytes", survey.bytes()},
                       {"name", survey.name()},
                       {"texts", QJsonArray::fromStringList(survey.texts())},
                       {"headers", survey.headers()},
                       {"indexRecords", survey.indexes()},
                       {"duration", double(survey.clock().elapsed()) / MillisecondsPerSecond},
                       {"timesSetBack", survey.clock().timesSetBack()},
                       {"lostBytes", losses.bytes},
                       {"gaps", losses.gaps},
                       {"lostFragments", losses.fragments},
                       {"unfinishedFrames", losses.frames},
                       {"givenHeader", survey.hasGivenHeader()},
                       {"answerToLogin", survey.hasAnswerToLogin()},
                       {"unreadBytes", survey.unreadBytes()},
                       {"streams", streams}};
    if (survey.clock().elapsed() > 0)
        object.insert("bitRate", bitRate(survey.bytes(), survey.clock()));
    if (!report.exported.isEmpty()) {
        object.insert("exported", exported);
        object.insert("notExported", report.leftOut);
    }
    return QJsonDocument(object).toJson();
}

} // namespace paravue
