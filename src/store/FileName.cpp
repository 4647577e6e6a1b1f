#include "store/FileName.h"

#include <algorithm>

namespace paravue
{

namespace
{

bool isForbidden(QChar c)
{
    return c < u' ' || c == u'/' || c == u'\\' || c == u':';
}

/// "com1" and the like; Windows takes the superscript digits too.
bool isPort(QStringView stem)
{
    return stem.size() == 4 && (stem.startsWith(u"com") || stem.startsWith(u"lpt")) &&
           QStringView(u"0123456789\u00b9\u00b2\u00b3").contains(stem.back());
}

bool isDevice(const QString &name)
{
    const QString beforeDot = name.left(name.indexOf(u'.')).trimmed().toLower();
    static constexpr QStringView devices[] = {u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$"};
    return isPort(beforeDot) ||
           std::find(std::begin(devices), std::end(devices), beforeDot) != std::end(devices);
}

} // namespace

bool isPlainFileName(const QString &name)
{
    const bool isCut = name.endsWith(u'.') || name.endsWith(u' ');
    return !name.isEmpty() && !isCut && std::none_of(name.begin(), name.end(), isForbidden) &&
           !isDevice(name);
}

bool isPathOfOtherComputer(const QString &path)
{
    const auto isSeparator = [](QChar c) { return c == u'/' || c == u'\\'; };
    // "\??\UNC\host" is the kernel's own form.
    return path.size() > 1 && isSeparator(path[0]) && (isSeparator(path[1]) || path[1] == u'?');
}

} // namespace paravue
