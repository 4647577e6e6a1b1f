#include "recorder/protocol/FaultyContent.h"

#include "recorder/files/Gzip.h"

namespace recorder
{

namespace
{

constexpr qsizetype BombSize = 64 * 1024 * 1024;
constexpr int Levels = 100'000;
constexpr int ManyControls = 200'000;
constexpr int EntityLevels = 8; ///< ten times as much in each: 10 bytes become a gigabyte
constexpr int DirectiveCount = 40;

QByteArray deepDescription()
{
    return "<pvsetup><tabwidget><tab>" + QByteArray("<item>").repeated(Levels) +
           QByteArray("</item>").repeated(Levels) + "</tab></tabwidget></pvsetup>";
}

QByteArray descriptionOfEntities()
{
    QByteArray text = "<?xml version=\"1.0\"?>\n<!DOCTYPE pvsetup [\n<!ENTITY e0 \"0123456789\">\n";
    for (int level = 1; level <= EntityLevels; ++level) {
        const QByteArray before = "&e" + QByteArray::number(level - 1) + ';';
        text += "<!ENTITY e" + QByteArray::number(level) + " \"" + before.repeated(10) + "\">\n";
    }
    const QByteArray last = "&e" + QByteArray::number(EntityLevels) + ';';
    return text + "]>\n<pvsetup><window><title>" + last + "</title></window></pvsetup>";
}

QByteArray descriptionOfControls()
{
    const QByteArray control = "<item type=\"edit\"><key>net/untitled/HOSTNAME</key></item>\n";
    return "<pvsetup><tabwidget><tab><item type=\"gridlayout\">\n" + control.repeated(ManyControls) +
           "</item></tab></tabwidget></pvsetup>";
}

/// The pattern matches what stands in the other parts of every directive, its own included, so each one makes
/// the text three times as long.
QByteArray feedingDirectives()
{
    return "[ Device ]\n" +
           QByteArray("#! s/A[B]/ABAB{net/untitled/HOSTNAME}AB/\n").repeated(DirectiveCount) + "ID=AB\n";
}

} // namespace

QByteArray faultyContent(AnswerFault::Kind kind, const QByteArray &content)
{
    switch (kind) {
    case AnswerFault::Kind::Truncated:
        return content.first(content.size() / 2);
    case AnswerFault::Kind::NoXml:
        return gzip("The window of this recorder is described nowhere.\n");
    case AnswerFault::Kind::NoGzip:
        return "\x1f\x8b\x08 and no compressed text";
    case AnswerFault::Kind::Bomb:
        return gzip(QByteArray(BombSize, ' '));
    case AnswerFault::Kind::Deep:
        return gzip(deepDescription());
    case AnswerFault::Kind::Entities:
        return gzip(descriptionOfEntities());
    case AnswerFault::Kind::Controls:
        return gzip(descriptionOfControls());
    case AnswerFault::Kind::Directives:
        return feedingDirectives();
    default:
        return content;
    }
}

} // namespace recorder
