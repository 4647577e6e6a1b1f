#include "ui/window/PathBox.h"

#include "controls/OrbDlgQuestion.h"
#include "ui/base/WindowText.h"

#include <QWidget>

namespace paravue
{
namespace
{

/// A path with marks in place of what could make it look like another one.
QString printable(QString path)
{
    for (QChar &c : path) {
        if (!c.isPrint() && !c.isSurrogate())
            c = QChar::ReplacementCharacter;
    }
    return path;
}

} // namespace

bool askAboutPath(QWidget *parent, const QString &path, PathUse use)
{
    const QString text =
        use == PathUse::Write
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
