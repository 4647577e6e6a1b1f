#include "controls/OrbDlgQuestion.h"

#include "controls/DialogFrame.h"
#include "controls/DialogLoop.h"
#include "controls/MessageText.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include <memory>

namespace
{

// The layout of a longer text would delay the box, and this is more than anybody reads.
constexpr qsizetype MaxDetails = 64 * 1024;

/// Qt would detect markup in the explanation, and make its label as narrow as the text above it.
void adjustExplanation(QMessageBox &box)
{
    constexpr int MostLetters = 48; // of average width, in a line
    auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"));
    if (!label)
        return;
    label->setTextFormat(Qt::PlainText);
    const QFontMetrics metrics = label->fontMetrics();
    const int margin = 2 * metrics.averageCharWidth();
    label->setMinimumWidth(
        qMin(metrics.horizontalAdvance(label->text()) + margin, MostLetters * metrics.averageCharWidth()));
}

} // namespace

QMessageBox::StandardButton OrbDlgQuestion::Do(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                               const QString &text, QMessageBox::StandardButtons buttons,
                                               QMessageBox::StandardButton defaultButton, bool *doNotAskAgain)
{
    return DoExplained(parent, icon, title, text, QString(), buttons, defaultButton, doNotAskAgain);
}

QMessageBox::StandardButton OrbDlgQuestion::DoExplained(QWidget *parent, QMessageBox::Icon icon,
                                                        const QString &title, const QString &text,
                                                        const QString &explanation,
                                                        QMessageBox::StandardButtons buttons,
                                                        QMessageBox::StandardButton defaultButton,
                                                        bool *doNotAskAgain, const Captions &captions)
{
    if (doNotAskAgain && *doNotAskAgain) {
        return defaultButton;
    }

    const QString message = paravue::plainMessage(text);
    const QString shown = paravue::shortenedMessage(message);

    auto box = std::make_unique<QMessageBox>(icon, title, shown, buttons, parent);
    box->setTextFormat(Qt::PlainText);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    if (!explanation.isEmpty()) {
        box->setInformativeText(paravue::shortenedMessage(explanation));
        adjustExplanation(*box);
    }
    box->setDefaultButton(defaultButton);
    for (auto caption = captions.begin(); caption != captions.end(); ++caption) {
        box->button(caption.key())->setText(caption.value());
    }
    if (shown != message) {
        box->setDetailedText(message.left(MaxDetails));
    }
    if (doNotAskAgain) {
        auto *checkBox =
            new QCheckBox(QCoreApplication::translate("OrbDlgQuestion", "Do not ask again"), box.get());
        checkBox->setChecked(*doNotAskAgain);
        box->setCheckBox(checkBox);
    }

    paravue::DialogFrame::give(*box, paravue::DialogFrame::Size::OfItsContent);
    // The nested event loop may destroy the parent, and the box with it.
    const QPointer<QMessageBox> alive(box.get());
    paravue::DialogLoop::run(*box);
    if (!alive) {
        static_cast<void>(box.release());
        return QMessageBox::NoButton;
    }
    if (doNotAskAgain) {
        *doNotAskAgain = box->checkBox()->isChecked();
    }
    return box->standardButton(box->clickedButton());
}
