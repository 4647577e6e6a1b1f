#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

class OrbSetup;

namespace paravue
{

class FindingsView;
class PreviewFiles;

/// Keeps the window of a preview like its description: rebuilds it whenever the file changes, and lists what
/// a check finds in it. While the file is no well-formed document, as in the middle of an edit, the window
/// shows the last one that was.
class PreviewWatch : public QObject
{
    Q_OBJECT

public:
    /// \a files hold the copies of \a description and of the files in \a folder. To be made before the
    /// session starts, which shows \a store in a window of its own; both must outlive the watch.
    PreviewWatch(OrbSetup &store, PreviewFiles &files, const QString &description, const QString &folder);

private:
    void watch();
    void listFindings();
    void update();

    OrbSetup &m_store;
    PreviewFiles &m_files;
    const QString m_description;
    const QString m_folder;
    QByteArray m_content;
    QFileSystemWatcher m_watcher;
    QTimer m_settled; ///< editors write a file in several steps
    QPointer<FindingsView> m_findings;
};

} // namespace paravue
