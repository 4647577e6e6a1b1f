#include "entry/SaveProgressDialog.h"

#include "controls/DialogFrame.h"
#include "controls/WindowLook.h"

#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace paravue
{
namespace
{

constexpr int Width = 420; // device-independent pixels

} // namespace

SaveProgressDialog::SaveProgressDialog() : m_activity(new QLabel(this)), m_bar(new QProgressBar(this))
{
    setWindowTitle(tr("Paravue Setup"));
    setModal(true);
    m_activity->setTextFormat(Qt::PlainText); // names of files come from the recorder
    m_activity->setWordWrap(true);
    auto *stop = new QPushButton(tr("Stop"), this);
    stop->setAutoDefault(false);
    stop->setFocusPolicy(Qt::TabFocus);
    connect(stop, &QPushButton::clicked, this, &SaveProgressDialog::stopRequested);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_activity);
    layout->addWidget(m_bar);
    layout->addWidget(stop, 0, Qt::AlignRight);
    setMinimumWidth(Width);
    m_bar->setFocusPolicy(Qt::StrongFocus);
    m_bar->setFocus();
    WindowLook::apply(*this);
    DialogFrame::give(*this, DialogFrame::Size::OfItsContent);
}

void SaveProgressDialog::setProgress(int percent, const QString &activity)
{
    m_bar->setValue(percent);
    if (m_activity->text() != activity)
        m_activity->setText(activity);
}

void SaveProgressDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->accept(); // presses nothing: it may be the second Enter of an impatient user
    else
        QDialog::keyPressEvent(event);
}

} // namespace paravue
