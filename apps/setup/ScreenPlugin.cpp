#include "ScreenPlugin.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace paravue
{
namespace
{

class ScreenText
{
    Q_DECLARE_TR_FUNCTIONS(SetupProgram)
};

} // namespace

#ifdef Q_OS_WIN

namespace
{

/// The platforms that Qt tries one after the other, "windows:fontengine=freetype;offscreen" for example.
QString platformList(const QStringList &words)
{
    QString platforms = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (platforms.isEmpty())
        platforms = QStringLiteral("windows");
    for (qsizetype i = 1; i + 1 < words.size(); ++i) {
        if (words[i] == QLatin1StringView("-platform") || words[i] == QLatin1StringView("--platform"))
            platforms = words[i + 1];
    }
    return platforms;
}

} // namespace

bool hasScreenPlugin(const QStringList &words)
{
    QStringList folders;
    for (const QString &folder : QCoreApplication::libraryPaths())
        folders += folder + QStringLiteral("/platforms");
    const QString given = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
    if (!given.isEmpty())
        folders << given << given + QStringLiteral("/platforms");
    const QStringList platforms = platformList(words).split(u';');
    return std::any_of(platforms.begin(), platforms.end(), [&folders](const QString &platform) {
        const QString file = QStringLiteral("/q%1.dll").arg(platform.section(u':', 0, 0));
        return std::any_of(folders.begin(), folders.end(),
                           [&file](const QString &folder) { return QFileInfo::exists(folder + file); });
    });
}

QString missingScreenText()
{
    return ScreenText::tr(
        "there is no screen to show the window on: Qt's plug-in for it was not found, which "
        "is qwindows.dll in the folder \"platforms\" beside the program. Install the program "
        "again, or name the folder with QT_QPA_PLATFORM_PLUGIN_PATH.");
}

#else

bool hasScreenPlugin(const QStringList &)
{
    return true;
}

QString missingScreenText()
{
    return ScreenText::tr("there is no screen to show the window on. Set DISPLAY or WAYLAND_DISPLAY; "
                          "with QT_QPA_PLATFORM=offscreen, --screenshot needs none.");
}

#endif

} // namespace paravue
