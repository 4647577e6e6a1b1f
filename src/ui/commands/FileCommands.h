#pragma once

#include <QPointer>
#include <QString>

class QFileDialog;
class QPixmap;
class QWidget;

namespace paravue
{

class Bindings;
class ControlContext;
class FileAccessGuard;
struct WindowServices;

/// The slots of the window that have to do with files of this computer. Each takes one text with fields
/// separated by ",".
class FileCommands
{
public:
    /// All must outlive the object. \a window owns the file dialogs.
    FileCommands(QWidget &window, ControlContext &context, Bindings &bindings, FileAccessGuard &paths,
                 const WindowServices &services);

    /// "open" or "save", title, filter, address: lets the user choose a file and writes its path to the
    /// address. The filter may hold commas.
    void chooseFile(const QString &param);
    /// "write" or "read", address of a path, tag of an element that lists addresses: writes their values to
    /// the file, or takes them from there.
    void transferSettings(const QString &param);
    /// Name of a configuration file, address of a path: copies the store's local file there.
    void copyConfigurationFile(const QString &param);

    /// Lets the user choose a file and saves \a picture there, as PNG or JPEG by its suffix. \a name is the
    /// proposed one, without a suffix. The dialog stands over the window of \a control.
    void savePicture(const QPixmap &picture, const QString &name, const QWidget &control);

    /// Closes the file dialog, if one is open.
    void closeDialog();

private:
    /// The path that the user has chosen; empty without one.
    /// Runs \a dialog, which may end with its parent.
    QString chosenPath(QFileDialog &dialog);
    QString chosenPath(bool isSave, const QString &title, const QString &filter, const QString &address);
    void writeSettings(const QString &pathAddress, const QString &tag);
    void readSettings(const QString &pathAddress, const QString &tag);
    QString startFolder(const QString &address) const;

    QWidget &m_window;
    ControlContext &m_context;
    Bindings &m_bindings;
    FileAccessGuard &m_fileAccess;
    const WindowServices &m_services;
    QPointer<QFileDialog> m_dialog;
};

/// The first extension in the filter of a file dialog ("Text (*.txt);;All (*)" gives "txt"); may be empty.
QString defaultSuffix(const QString &filter);

} // namespace paravue
