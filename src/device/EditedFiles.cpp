#include "device/EditedFiles.h"

#include "device/protocol/DescriptionFileList.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"
#include "store/StateTemplate.h"

#include <QFile>

namespace paravue
{

namespace
{

QByteArray contentOf(OrbSetup &store, const QString &name)
{
    QFile file(store.fileExists(name) ? store.filePath(name) : QString());
    return !file.fileName().isEmpty() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool asksFor(const QByteArray &text, const QSet<QString> &paths)
{
    if (!text.contains("#!"))
        return false;
    bool isAsked = false;
    // Without a value the directives change nothing, so each of them is met as it was written.
    applyStateDirectives(QString::fromUtf8(text), [&](const QString &address) {
        isAsked = isAsked || paths.contains(OrbSetup::path(address));
        return std::optional<QString>();
    });
    return isAsked;
}

} // namespace

QSet<QString> stateFiles(OrbSetup &store)
{
    const auto listed = readDescriptionFileList(contentOf(store, QStringLiteral("interface")));
    if (!listed)
        return {QStringLiteral("state")};
    QSet<QString> names;
    for (const ListedFile &file : *listed) {
        if (file.kind == ListedFile::Kind::State)
            names.insert(file.name);
    }
    return names;
}

QStringList editedFiles(OrbSetup &store, const QSet<QString> &paths)
{
    QSet<QString> edited;
    for (const QString &path : paths)
        edited.insert(ConfigAddress(path).file().toString());
    const QSet<QString> states = stateFiles(store);
    const QStringList unsent = store.property("unsentFiles").toStringList();
    QStringList names = store.fetchedFiles();
    names.removeIf([&](const QString &name) {
        const bool isNeeded =
            edited.contains(name) || (states.contains(name) && asksFor(contentOf(store, name), paths));
        return !isNeeded || unsent.contains(name) || name == QLatin1StringView("general");
    });
    return names;
}

} // namespace paravue
