#include "ui/sending/SendingDialog.h"

#include "controls/WindowLook.h"
#include "ui/base/DialogParts.h"

#include <QAccessible>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <utility>

namespace paravue
{

using namespace dialogparts;

namespace
{

constexpr int StateColumn = 1;
constexpr QSize SendingSize(700, 440);
constexpr int FileWidth = 300;
const QList<int> KeptWidths{230, 120, 120};

/// Lets screen readers read \a label.
void announce(QLabel &label)
{
    QAccessibleEvent alert(&label, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace

SendingDialog::SendingDialog(const ValueTexts &texts, QWidget *parent)
    : QDialog(parent), m_texts(texts), m_headline(new QLabel(this)), m_silence(new QLabel(this)),
      m_bar(new QProgressBar(this)),
      m_files(makeList({tr("File"), tr("State")}, {FileWidth}, tr("Files"), this)),
      m_values(makeList({tr("Setting"), tr("Sent"), tr("Recorder"), tr("Address")}, KeptWidths,
                        tr("Kept otherwise by the recorder"), this)),
      m_buttons(new QDialogButtonBox(this))
{
    setWindowTitle(tr("Sending"));
    setModal(true);
    m_headline->setTextFormat(Qt::PlainText); // names and words come from the recorder
    m_headline->setWordWrap(true);
    m_silence->hide();
    m_values->hide();
    QVBoxLayout *layout = makeLayout(*this);
    layout->addWidget(m_headline);
    layout->addWidget(m_bar);
    layout->addWidget(m_silence);
    layout->addWidget(m_files, 1);
    layout->addWidget(m_values, 1);
    layout->addWidget(m_buttons);
    resize(SendingSize);
    finish(*this);
    connect(m_buttons, &QDialogButtonBox::clicked, this, [this](QAbstractButton *button) {
        Q_EMIT chosen(static_cast<Choice>(button->property("choice").toInt()));
    });
}

void SendingDialog::showState(const QString &headline, bool isBusy, const QList<Button> &buttons)
{
    const bool isNews = m_headline->text() != headline;
    m_headline->setText(headline);
    m_bar->setVisible(isBusy);
    m_isBusy = isBusy;
    m_onClosing = buttons.constLast().choice;
    QStringList captions;
    for (const Button &button : buttons)
        captions << button.caption;
    // This is called again and again while a save runs; a button must not go while it is pressed.
    const bool areOthers = std::exchange(m_captions, captions) != captions;
    if (areOthers)
        setButtons(buttons);
    // While a save runs Enter stops nothing: it may be the second one of an impatient user.
    QWidget *focused = isBusy ? static_cast<QWidget *>(m_files) : m_buttons->buttons().constFirst();
    focused->setAccessibleDescription(headline);
    if (areOthers)
        focused->setFocus();
    if (isNews)
        announce(*m_headline);
    if (!isBusy)
        showSilence(0);
}

void SendingDialog::showSilence(qint64 milliseconds)
{
    const bool isLong = m_isBusy && milliseconds >= m_reportedSilence;
    const QString text = isLong ? silenceText(milliseconds) : QString();
    if (m_silence->text() == text)
        return;
    m_silence->setText(text);
    m_silence->setVisible(isLong);
    if (isLong)
        announce(*m_silence);
}

void SendingDialog::setButtons(const QList<Button> &buttons)
{
    m_buttons->clear();
    m_offered.start();
    for (const Button &button : buttons) {
        QPushButton *shown = m_buttons->addButton(button.caption, QDialogButtonBox::ActionRole);
        shown->setProperty("choice", static_cast<int>(button.choice));
        shown->setAutoDefault(!m_isBusy);
        shown->installEventFilter(this);
        WindowLook::styleControls(*shown);
    }
    if (!m_isBusy)
        qobject_cast<QPushButton *>(m_buttons->buttons().constFirst())->setDefault(true);
}

void SendingDialog::setFiles(const QStringList &names, const QString &state)
{
    for (const QString &name : names) {
        QTreeWidgetItem *&row = m_rows[name];
        if (!row)
            row = new QTreeWidgetItem(m_files, {name});
        row->setText(StateColumn, state);
        row->setToolTip(StateColumn, rowToolTip(state));
    }
}

void SendingDialog::showBusy(const QString &text, const QString &stopCaption)
{
    m_files->hide();
    m_bar->setRange(0, 0);
    showState(text, true, {{stopCaption, Choice::Stop}});
}

void SendingDialog::showSending(const SaveStatus &save, const QString &activity)
{
    m_files->show();
    m_values->hide();
    setFiles(save.arrived, tr("Sent"));
    setFiles(save.missing.mid(0, 1), tr("Being sent"));
    setFiles(save.missing.mid(1), tr("Waiting"));
    m_bar->setRange(0, int(qMax(1, save.arrived.size() + save.missing.size())));
    m_bar->setValue(int(save.arrived.size()));
    showState(activity.isEmpty() ? tr("Saving the settings") : activity, true, {{tr("Stop"), Choice::Stop}});
}

void SendingDialog::showConfirming(const SaveStatus &save)
{
    m_values->hide();
    m_files->show();
    setFiles(save.arrived, tr("Sent, being compared"));
    m_bar->setRange(0, 0);
    showState(tr("Fetching what the recorder has now, to compare it"), true,
              {{tr("Do not compare"), Choice::Stop}});
}

void SendingDialog::showConfirmed(const SaveStatus &save)
{
    setFiles(save.arrived, tr("Sent and confirmed"));
    showState(tr("Sent and confirmed"), false, {{tr("Close"), Choice::Close}});
}

void SendingDialog::showKeptOtherwise(const QList<ValueDifference> &values)
{
    QStringList files;
    QList<QTreeWidgetItem *> rows;
    for (const ValueDifference &value : values) {
        rows << makeRow({m_texts.caption(value.path), m_texts.shown(value.path, value.before),
                         m_texts.shown(value.path, value.after), value.path});
        files << value.path.section(u'/', 0, 0);
    }
    setRows(*m_values, rows);
    for (auto row = m_rows.cbegin(); row != m_rows.cend(); ++row)
        setFiles({row.key()},
                 files.contains(row.key()) ? tr("Sent, kept otherwise") : tr("Sent and confirmed"));
    m_values->show();
    showState(values.size() == 1
                  ? tr("Sent, but the recorder keeps one value otherwise")
                  : tr("Sent, but the recorder keeps %n values otherwise", nullptr, int(values.size())),
              false,
              {{tr("Keep the recorder's"), Choice::KeepRecorders},
               {tr("Send again"), Choice::SendAgain},
               {tr("Go on editing"), Choice::GoOnEditing}});
}

void SendingDialog::showNotTaken(const QString &problem, Choice again)
{
    showState(tr("The values of the recorder could not be taken into the window: %1").arg(problem), false,
              {{tr("Try again"), again}, {tr("Leave them"), Choice::Leave}});
}

void SendingDialog::showUnconfirmed(const QString &problem)
{
    for (auto row = m_rows.cbegin(); row != m_rows.cend(); ++row)
        setFiles({row.key()}, tr("Sent, not confirmed"));
    showState(tr("Everything was sent, but could not be confirmed: %1").arg(problem), false,
              {{tr("Try again"), Choice::ConfirmAgain}, {tr("Close"), Choice::Close}});
}

void SendingDialog::showFailed(const SaveStatus &save, const QString &problem)
{
    setFiles(save.arrived, tr("Sent"));
    setFiles(save.missing, tr("Not sent"));
    if (!save.unanswered.isEmpty())
        setFiles({save.unanswered}, tr("Sent, but not answered"));
    setFiles(save.replaced, tr("Not sent, and replaced by what the recorder has"));
    m_files->show();
    const Button goOn{tr("Go on editing"), Choice::GoOnEditing};
    showState(problem, false,
              save.missing.isEmpty() ? QList<Button>{goOn}
                                     : QList<Button>{{tr("Send the rest"), Choice::SendMissing}, goOn});
}

void SendingDialog::reject()
{
    // The window was closed by the host, which waits for the end of the save itself.
    if (!parentWidget()->isVisible())
        return QDialog::reject();
    Q_EMIT chosen(m_onClosing);
}

/// What comes at the end of a save is decided neither by the key that has begun it nor by one that was
/// pressed before the choices could be read.
bool SendingDialog::eventFilter(QObject *watched, QEvent *event)
{
    return isSecondEnter(*event, m_offered) || QDialog::eventFilter(watched, event);
}

void SendingDialog::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && (m_isBusy || isSecondEnter(*event, m_offered)))
        event->accept();
    else
        QDialog::keyPressEvent(event);
}

} // namespace paravue
