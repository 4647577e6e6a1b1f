#include "SurveyReport.h"

#include "InfoText.h"
#include "video/cHvx3Demuxer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QTime>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace paravue
{

namespace
{

constexpr double MillisecondsPerSecond = 1000;

struct TypeName {
    const char *json;
    QString shown;
};

TypeName nameOf(quint8 type)
{
    switch (type) {
    case VideoStream:
        return {"video", InfoText::tr("video")};
    case TextStream:
        return {"text", InfoText::tr("text")};
    case PlainStream:
    case 8:
    case 16:
        return {"data", InfoText::tr("data")};
    default:
        return {"unreadable", InfoText::tr("unreadable")};
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
    return InfoText::tr("%1 x %2").arg(size.width()).arg(size.height());
}

QString number(qint64 value)
{
    return QLocale().toString(value);
}

/// A number with the plural form of \a count in every language.
int pluralNumber(qint64 count)
{
    constexpr qint64 Period = 1'000'000;
    return int(count < Period ? count : Period + count % Period);
}

QString countedTimes(qint64 count)
{
    return count == 1 ? InfoText::tr("1 time")
                      : InfoText::tr("%1 times", nullptr, pluralNumber(count)).arg(number(count));
}

QString countedFrames(qint64 count)
{
    return count == 1 ? InfoText::tr("1 frame")
                      : InfoText::tr("%1 frames", nullptr, pluralNumber(count)).arg(number(count));
}

QString countedGaps(qint64 count)
{
    return count == 1 ? InfoText::tr("1 gap")
                      : InfoText::tr("%1 gaps", nullptr, pluralNumber(count)).arg(number(count));
}

QString countedRecords(qint64 count)
{
    return count == 1 ? InfoText::tr("1 record")
                      : InfoText::tr("%1 records", nullptr, pluralNumber(count)).arg(number(count));
}

QString countedPictures(qint64 count)
{
    return count == 1 ? InfoText::tr("1 picture")
                      : InfoText::tr("%1 pictures", nullptr, pluralNumber(count)).arg(number(count));
}

QString decimal(double value, int decimals)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'f', decimals);
}

QString durationText(const StreamClock &clock)
{
    const qint64 hours = clock.elapsed() / (60 * 60 * 1000);
    const QTime rest = QTime::fromMSecsSinceStartOfDay(static_cast<int>(clock.elapsed() % (60 * 60 * 1000)));
    QString text = QString::number(hours) + rest.toString(QStringLiteral(":mm:ss.zzz"));
    if (clock.timesSetBack() > 0)
        text += InfoText::tr(" (the clock was set back %1)").arg(countedTimes(clock.timesSetBack()));
    return text;
}

QString bitRateText(qint64 bytes, const StreamClock &clock)
{
    return clock.elapsed() > 0 ? InfoText::tr("%1 kbit/s").arg(decimal(bitRate(bytes, clock) / 1000, 1))
                               : InfoText::tr("unknown");
}

/// Lines of a name and a value each, the values in one column.
class Lines
{
public:
    Lines(QString &text, const QString &indent) : m_text(text), m_indent(indent) {}
    ~Lines()
    {
        constexpr qsizetype LeastWidth = 16;
        qsizetype width = LeastWidth;
        for (const auto &[name, value] : m_lines)
            width = std::max(width, name.size() + 2);
        for (const auto &[name, value] : m_lines)
            m_text += m_indent + name.leftJustified(width) + value + u'\n';
    }
    Q_DISABLE_COPY_MOVE(Lines)
    void add(const QString &name, const QString &value) { m_lines.append({name, value}); }

private:
    QString &m_text;
    QString m_indent;
    QList<std::pair<QString, QString>> m_lines;
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
    lines.add(InfoText::tr("recording"),
              QStringLiteral("%1, %2").arg(report.recording, countedBytes(survey.bytes())));
    if (survey.hasAnswerToLogin())
        lines.add(
            InfoText::tr("in front"),
            InfoText::tr("answer to the login, %1").arg(countedBytes(qint64(std::strlen(AnswerToLogin)))));
    if (survey.hasGivenHeader())
        lines.add(InfoText::tr("header"), InfoText::tr("given on the command line"));
    lines.add(InfoText::tr("name"), survey.name());
    for (qsizetype tag = 1; tag < survey.texts().size(); ++tag) {
        if (!survey.texts().at(tag).isEmpty())
            lines.add(InfoText::tr("text %1").arg(tag), survey.texts().at(tag));
    }
    Totals totals;
    for (const auto &[id, stream] : survey.streams()) {
        totals.records += stream.counts.records;
        totals.frames += stream.frames;
    }
    lines.add(InfoText::tr("records"), InfoText::tr("headers %1, index records %2, data records %3 with %4")
                                           .arg(number(survey.headers()), number(survey.indexes()),
                                                number(totals.records), countedFrames(totals.frames)));
    lines.add(InfoText::tr("duration"), durationText(survey.clock()));
    lines.add(InfoText::tr("bit rate"), bitRateText(survey.bytes(), survey.clock()));
    lines.add(InfoText::tr("lost"), InfoText::tr("%1 in %2, fragments %3, unfinished frames %4")
                                        .arg(countedBytes(losses.bytes), countedGaps(losses.gaps),
                                             number(losses.fragments), number(losses.frames)));
    if (survey.unreadBytes() > 0)
        lines.add(InfoText::tr("cut at its end"),
                  InfoText::tr("%1 of a record").arg(countedBytes(survey.unreadBytes())));
}

bool isKnown(const QString &codec)
{
    return !cHvx3Demuxer::decoderOf(codec.toLatin1()).isEmpty();
}

QString streamTitle(const StreamSurvey &stream)
{
    QStringList parts(nameOf(stream.type).shown);
    QStringList codecs = stream.codecs;
    for (QString &codec : codecs) {
        if (!isKnown(codec))
            codec += InfoText::tr(" (codec not known)");
    }
    if (stream.type == VideoStream)
        parts += codecs.join(InfoText::tr(", then "));
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
    lines.add(InfoText::tr("pictures"),
              sizes.isEmpty() ? InfoText::tr("unknown") : sizes.join(InfoText::tr(", then ")));
    lines.add(InfoText::tr("key frames"), number(stream.keyFrames));
    const double rate = frameRate(stream);
    lines.add(InfoText::tr("frame rate"), rate > 0 ? InfoText::tr("%1 per second, largest gap %2 ms")
                                                         .arg(decimal(rate, 2))
                                                         .arg(number(stream.clock.largestStep()))
                                                   : InfoText::tr("unknown"));
}

void addStream(QString &text, quint8 id, const StreamSurvey &stream, const StreamClock &clock)
{
    text += InfoText::tr("\nstream %1: %2\n").arg(id).arg(streamTitle(stream));
    Lines lines(text, QStringLiteral("  "));
    lines.add(InfoText::tr("frames"),
              InfoText::tr("%1 in %2").arg(number(stream.frames), countedRecords(stream.counts.records)));
    if (stream.type == VideoStream)
        addVideo(lines, stream);
    if (stream.frames > 0)
        lines.add(InfoText::tr("bytes"),
                  InfoText::tr("%1; a frame %2 to %3, mean %4")
                      .arg(number(stream.bytes), number(stream.smallestFrame), number(stream.largestFrame),
                           number(std::llround(double(stream.bytes) / double(stream.frames)))));
    lines.add(InfoText::tr("bit rate"), bitRateText(stream.bytes, clock));
    lines.add(InfoText::tr("lost"),
              InfoText::tr("fragments %1, unfinished frames %2")
                  .arg(number(stream.counts.lostFragments), number(stream.counts.lostFrames)));
}

void addExport(QString &text, const ExportedFile &file)
{
    text += InfoText::tr("\nexported to %1\n").arg(file.name);
    Lines lines(text, QStringLiteral("  "));
    for (const auto &[id, facts] : file.content.tracks)
        lines.add(InfoText::tr("stream %1").arg(id),
                  QStringLiteral("%1, %2").arg(QString::fromLatin1(avcodec_get_name(facts.codec)),
                                               sizeText(facts.size)));
    lines.add(InfoText::tr("pictures"), number(file.content.pictures));
    lines.add(InfoText::tr("moved times"), number(file.movedTimes));
    if (file.timesSetBack > 0)
        lines.add(InfoText::tr("clock set back"), number(file.timesSetBack));
}

QJsonObject streamObject(quint8 id, const StreamSurvey &stream, const StreamClock &clock)
{
    QJsonObject object{{"id", id},
                       {"type", stream.type},
                       {"kind", nameOf(stream.type).json},
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

QString countedBytes(qint64 count)
{
    return count == 1 ? InfoText::tr("1 byte")
                      : InfoText::tr("%1 bytes", nullptr, pluralNumber(count)).arg(number(count));
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
        text += InfoText::tr("\nnot exported: %1 with no key picture before\n")
                    .arg(countedPictures(report.leftOut));
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
