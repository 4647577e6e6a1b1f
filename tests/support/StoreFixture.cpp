#include "StoreFixture.h"

#include <QFile>

namespace paravue::test
{

StoreFixture::StoreFixture(const QMap<QString, QByteArray> &files)
{
    m_store.setProperty("offline", true);
    QObject::connect(&m_store, &OrbSetup::pseudothrow, &m_store,
                     [this](const QString &text) { m_errors << text; });
    for (auto file = files.cbegin(); file != files.cend(); ++file)
        setFile(file.key(), file.value());
}

void StoreFixture::setFile(const QString &name, const QByteArray &content)
{
    const QString path = m_folder.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(path));
    m_store.setFilePath(name, path);
}

QByteArray StoreFixture::content(const QString &name)
{
    QFile file(m_store.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

} // namespace paravue::test
