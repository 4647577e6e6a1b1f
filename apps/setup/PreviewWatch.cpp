#include "PreviewWatch.h"

#include "FindingsView.h"
#include "PreviewFiles.h"

#include "store/OrbSetup.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>

namespace paravue
{

namespace
{

constexpr int SettlingMs = 150;

/// The setup window; null before it is shown. A message may be open over it.
QWidget *setupWindow()
{
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (top->inherits("CWinMain") && top->isVisible())
            return top;
    }
    return nullptr;
}

QByteArray watchedContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

PreviewWatch::PreviewWatch(OrbSetup &store, PreviewFiles &files, const QString &description,
                           const QString &folder)
    : m_store(store), m_files(files), m_description(description), m_folder(folder),
      m_content(watchedContent(description))
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(SettlingMs);
    connect(&m_settled, &QTimer::timeout, this, &PreviewWatch::update);
    const auto changed = [this] { m_settled.start(); };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, changed);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, changed);
    watch();
    // Queued, so that the window has built itself.
    connect(&store, &OrbSetup::loadDone, this, &PreviewWatch::listFindings, Qt::QueuedConnection);
}

void PreviewWatch::watch()
{
    // A file that an editor has replaced by another is watched no more, but its folder is.
    m_watcher.addPath(m_description);
    m_watcher.addPath(QFileInfo(m_description).absolutePath());
}

void PreviewWatch::listFindings()
{
    if (!m_findings) {
        QWidget *window = setupWindow();
        if (!window)
            return;
        m_findings = new FindingsView(window);
    }
    m_findings->show(checkDescription(m_description, m_folder), QFileInfo(m_description).fileName());
}

void PreviewWatch::update()
{
    watch();
    const QByteArray content = watchedContent(m_description);
    if (content == m_content || content.isEmpty())
        return;
    m_content = content;
    if (m_files.replaceDescription(m_store, content))
        Q_EMIT m_store.loadDone(); // which lists the findings too
    else
        listFindings();
}

} // namespace paravue
