#include "controls/OrbDlgQuestion.h"

#include "controls/MessageText.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QPointer>

#include <memory>

namespace
{

// What fits into a box on a screen of 800 x 600, whatever the text is made of.
constexpr qsizetype MaxLines = 12;
constexpr qsizetype MaxCharacters = 800;
// A box is at least as wide as its longest word.
constexpr qsizetype MaxWordLength = 40;

const QChar Ellipsis(0x2026);

/// \a text with the middle of every overlong word left out.
QString withShortWords(const QString &text)
{
    QString result;
    qsizetype wordStart = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !text.at(i).isSpace()) {
            continue;
        }
        const QStringView word = QStringView(text).sliced(wordStart, i - wordStart);
        if (word.size() > MaxWordLength) {
            result += word.first(MaxWordLength / 2);
            result += Ellipsis;
            result += word.last(MaxWordLength / 2 - 1);
        } else {
            result += word;
        }
        if (i < text.size()) {
            result += text.at(i);
        }
        wordStart = i + 1;
    }
    return result;
}

QString shortened(const QString &text)
{
    qsizetype end = -1;
    for (qsizetype line = 0; line < MaxLines; ++line) {
        end = text.indexOf(QLatin1Char('\n'), end + 1);
        if (end < 0) {
            end = text.size();
            break;
        }
    }
    end = qMin(end, MaxCharacters);
    const QString head = withShortWords(text.first(end));
    return end < text.size() ? head + Ellipsis : head;
}

} // namespace

QMessageBox::StandardButton OrbDlgQuestion::Do(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                               const QString &text, QMessageBox::StandardButtons buttons,
                                               QMessageBox::StandardButton defaultButton, bool *doNotAskAgain)
{
    if (doNotAskAgain && *doNotAskAgain) {
        return defaultButton;
    }

    const QString message = paravue::plainMessage(text);
    const QString shown = shortened(message);

    auto box = std::make_unique<QMessageBox>(icon, title, shown, buttons, parent);
    box->setTextFormat(Qt::PlainText);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->setDefaultButton(defaultButton);
    if (shown != message) {
        box->setDetailedText(message);
    }
    if (doNotAskAgain) {
        auto *checkBox =
            new QCheckBox(QCoreApplication::translate("OrbDlgQuestion", "Do not ask again"), box.get());
        checkBox->setChecked(*doNotAskAgain);
        box->setCheckBox(checkBox);
    }

    // The nested event loop may destroy the parent, and the box with it.
    const QPointer<QMessageBox> alive(box.get());
    box->exec();
    if (!alive) {
        static_cast<void>(box.release());
        return QMessageBox::NoButton;
    }
    if (doNotAskAgain) {
        *doNotAskAgain = box->checkBox()->isChecked();
    }
    return box->standardButton(box->clickedButton());
}
