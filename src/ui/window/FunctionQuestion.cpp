#include "ui/window/FunctionQuestion.h"

#include "controls/OrbDlgQuestion.h"
#include "ui/base/FunctionTitle.h"
#include "ui/base/WindowText.h"

#include <QWidget>

namespace paravue
{

OrbSetup::FunctionDanger dangerOf(const QDomElement &action, OrbSetup::FunctionDanger known)
{
    const QString word = action.attribute(QStringLiteral("danger"));
    if (word == QLatin1String("data"))
        return OrbSetup::FunctionDanger::Data;
    return word == QLatin1String("restart") ? OrbSetup::FunctionDanger::Restart : known;
}

bool askForFunction(QWidget *parent, const QString &recorder, const QString &name,
                    OrbSetup::FunctionDanger danger)
{
    const QString title = functionTitle(name);
    QString loss = functionLoss(name);
    if (danger == OrbSetup::FunctionDanger::Restart)
        loss = WindowText::tr("While the recorder restarts it records nothing and shows no pictures.");
    else if (loss.isEmpty())
        loss = WindowText::tr("What it removes from the recorder is lost.");
    const QString text = WindowText::tr("%1?<br>Recorder: %2").arg(title, recorder);
    return OrbDlgQuestion::DoExplained(parent, QMessageBox::Warning, WindowText::tr("Paravue Setup"), text,
                                       loss, QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel,
                                       nullptr, {{QMessageBox::Yes, title}}) == QMessageBox::Yes;
}

} // namespace paravue
