#include "PreviewFiles.h"

#include "check/DescriptionCheck.h"
#include "device/OrbNetSetup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <optional>

namespace paravue
{

namespace
{

class PreviewText
{
    Q_DECLARE_TR_FUNCTIONS(PreviewFiles)
};

const QString descriptionName = QStringLiteral("interface");

std::optional<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

} // namespace

QString PreviewFiles::copyTo(OrbSetup &store, const QString &description, const QString &folder)
{
    if (!m_copies.isValid())
        return PreviewText::tr("No temporary folder could be made: %1").arg(m_copies.errorString());
    const auto content = contentOf(description);
    if (!content)
        return PreviewText::tr("The file %1 cannot be read.").arg(description);
    const auto interface = unpackedDescription(*content);
    if (!interface)
        return PreviewText::tr("The file %1 is too large.").arg(description);
    if (!folder.isEmpty() && !QDir(folder).exists())
        return PreviewText::tr("%1 is no folder.").arg(folder);
    if (const QString problem = copy(store, descriptionName, *interface); !problem.isEmpty())
        return problem;

    // What the user enters and what functions answer is kept in files that no recorder sends.
    const QStringList names = QStringList{QStringLiteral("general"), QStringLiteral("tmp")} +
                              OrbNetSetup::fileNames() + OrbNetSetup::fileNames(*interface);
    for (const QString &name : names) {
        if (store.fileExists(name))
            continue;
        const QString path = QDir(folder).filePath(name);
        const bool isGiven = !folder.isEmpty() && QFileInfo(path).isFile();
        const auto values = isGiven ? contentOf(path) : std::optional(QByteArray());
        if (!values)
            return PreviewText::tr("The file %1 cannot be read.").arg(path);
        if (const QString problem = copy(store, name, *values); !problem.isEmpty())
            return problem;
    }
    return {};
}

bool PreviewFiles::replaceDescription(OrbSetup &store, const QByteArray &content)
{
    const auto interface = unpackedDescription(content);
    if (!interface)
        return false;
    QXmlStreamReader xml(*interface);
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError() && copy(store, descriptionName, *interface).isEmpty();
}

/// Like a store that fetches files, this keeps a second copy of each, as it came.
QString PreviewFiles::copy(OrbSetup &store, const QString &name, const QByteArray &content)
{
    for (const QString &copied : {name, name + QStringLiteral(".original")}) {
        QFile file(m_copies.path() + u'/' + copied);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
            return PreviewText::tr("A copy of the file %1 cannot be made.").arg(name);
        store.setFilePath(copied, file.fileName());
    }
    return {};
}

} // namespace paravue
