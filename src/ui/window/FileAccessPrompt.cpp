#include "ui/window/FileAccessPrompt.h"

#include "controls/OrbDlgQuestion.h"
#include "ui/base/WindowText.h"

#include <QWidget>

namespace paravue
{
namespace
{

/// The path with visible marks in place of characters that could disguise it, such as line ends.
QString printable(QString path)
{
    for (QChar &c : path) {
        if (!c.isPrint() && !c.isSurrogate())
            c = QChar::ReplacementCharacter;
    }
    return path;
}

} // namespace

bool askForFileAccess(QWidget *parent, const QString &path, FileUse use)
{
    const QString text =
        use == FileUse::Write
            ? WindowText::tr(
                  "The recorder wants to write this file of your computer:\n\n%1\n\nAllow it? A file that is "
                  "there already will be replaced.")
            : WindowText::tr(
                  "The recorder wants to read this file of your computer:\n\n%1\n\nAllow it? Its content may "
                  "be sent to the recorder.");
    return OrbDlgQuestion::Do(parent, QMessageBox::Warning, WindowText::tr("Paravue Setup"),
                              text.arg(printable(path)), QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No) == QMessageBox::Yes;
}

} // namespace paravue
