#include "recorder/files/DebPackage.h"

#include "recorder/files/Gzip.h"

#include <QMap>
#include <QRegularExpression>

#include <optional>

namespace recorder
{

namespace
{

constexpr char ArMagic[] = "!<arch>\n";
constexpr qsizetype ArHeader = 60;
constexpr qsizetype TarBlock = 512;
constexpr qsizetype MaxControlData = 1024 * 1024;

struct Member {
    QByteArray name;
    QByteArray content;
};

/// A number in a field that is filled up with blanks or zero bytes.
std::optional<qsizetype> number(QByteArrayView field, int base)
{
    qsizetype size = 0;
    while (size < field.size() && field[size] >= '0' && field[size] <= '9')
        ++size;
    bool isNumber = false;
    const qlonglong value = field.first(size).toByteArray().toLongLong(&isNumber, base);
    return isNumber ? std::optional<qsizetype>(value) : std::nullopt;
}

/// The member at the position, which moves behind it; nothing at the end or when there is no member.
std::optional<Member> nextArMember(const QByteArray &archive, qsizetype &position)
{
    if (position < 0 || archive.size() - position < ArHeader)
        return std::nullopt;
    const QByteArrayView header = QByteArrayView(archive).sliced(position, ArHeader);
    const std::optional<qsizetype> size = number(header.sliced(48, 10), 10);
    if (!size || !header.endsWith("`\n"))
        return std::nullopt;
    QByteArray name = header.first(16).trimmed().toByteArray();
    if (name.endsWith('/'))
        name.chop(1);
    const Member member{name, archive.mid(position + ArHeader, *size)};
    position += ArHeader + *size + *size % 2;
    return member;
}

/// The file "control" of a tar archive.
std::optional<QByteArray> controlFile(const QByteArray &tar)
{
    for (qsizetype position = 0; tar.size() - position >= TarBlock;) {
        const QByteArrayView header = QByteArrayView(tar).sliced(position, TarBlock);
        const QByteArray name(header.data(), qstrnlen(header.data(), 100));
        const std::optional<qsizetype> size = number(header.sliced(124, 11), 8);
        if (name.isEmpty() || !size)
            return std::nullopt;
        if (name == "./control" || name == "control")
            return tar.mid(position + TarBlock, *size);
        position += TarBlock + (*size + TarBlock - 1) / TarBlock * TarBlock;
    }
    return std::nullopt;
}

/// "Name: value" lines; the lines that continue a value, which begin with a blank, are left out.
QMap<QByteArray, QByteArray> fields(const QByteArray &control)
{
    QMap<QByteArray, QByteArray> found;
    for (const QByteArray &line : control.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && !line.startsWith(' ') && !line.startsWith('\t'))
            found.insert(line.first(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    return found;
}

DebPackage faulty(const QString &fault)
{
    DebPackage package;
    package.fault = fault;
    return package;
}

/// What would break the list of packages, which is quoted text.
QByteArray listText(QByteArray text)
{
    return text.replace('\'', "").replace('"', "").left(120);
}

DebPackage described(const QByteArray &control)
{
    const QMap<QByteArray, QByteArray> field = fields(control);
    static const QRegularExpression name(QStringLiteral("^[a-z0-9][a-z0-9+.-]{1,63}$"));
    static const QRegularExpression version(QStringLiteral("^[A-Za-z0-9.+:~-]{1,64}$"));
    const auto fits = [&](const QRegularExpression &pattern, const char *key) {
        return pattern.match(QString::fromUtf8(field.value(key))).hasMatch();
    };
    if (!fits(name, "package"))
        return faulty(QStringLiteral("the package has no proper name"));
    if (!fits(version, "version"))
        return faulty(QStringLiteral("the package has no proper version"));
    const QByteArray priority = listText(field.value("priority", "optional"));
    return {field.value("package"), field.value("version"), listText(field.value("description")), priority,
            QString()};
}

} // namespace

DebPackage readDebPackage(const QByteArray &file)
{
    qsizetype position = qsizetype(sizeof ArMagic) - 1;
    const std::optional<Member> format =
        file.startsWith(ArMagic) ? nextArMember(file, position) : std::nullopt;
    if (!format || format->name != "debian-binary")
        return faulty(QStringLiteral("this is no package"));
    if (!format->content.startsWith("2."))
        return faulty(QStringLiteral("the format of the package is unknown"));
    const std::optional<Member> control = nextArMember(file, position);
    if (!control || !control->name.startsWith("control.tar"))
        return faulty(QStringLiteral("the package has no control data"));
    const std::optional<Member> data = nextArMember(file, position);
    if (!data || !data->name.startsWith("data.tar"))
        return faulty(QStringLiteral("the package is incomplete"));
    if (control->name != "control.tar" && control->name != "control.tar.gz")
        return faulty(QStringLiteral("the control data of the package is not packed with gzip"));
    const QByteArray tar =
        isGzip(control->content) ? gunzip(control->content, MaxControlData) : control->content;
    const std::optional<QByteArray> text = controlFile(tar);
    return text ? described(*text) : faulty(QStringLiteral("the control data of the package is damaged"));
}

} // namespace recorder
