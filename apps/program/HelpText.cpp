#include "program/HelpText.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace paravue
{

QString helpText(const QCommandLineParser &parser)
{
    QString text = parser.helpText();
    const QString path = QCoreApplication::arguments().constFirst();
    const qsizetype at = text.indexOf(path);
    if (at >= 0)
        text.replace(at, path.size(), QCoreApplication::applicationName());
    return text;
}

} // namespace paravue
