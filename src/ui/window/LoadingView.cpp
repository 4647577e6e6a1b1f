#include "ui/window/LoadingView.h"

#include "controls/MessageText.h"
#include "controls/OwnTexts.h"
#include "ui/base/WindowStyle.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include <algorithm>

namespace paravue
{

namespace
{

// Room for the longest word that a message keeps whole.
constexpr int ColumnWidth = 640;

QLabel *addText(QVBoxLayout &column)
{
    auto *label = new QLabel;
    // Names and messages may come from the recorder.
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    label->setWordWrap(true);
    column.addWidget(label);
    return label;
}

} // namespace

LoadingView::LoadingView(QWidget *parent) : QWidget(parent), m_bar(new QProgressBar)
{
    auto *page = new QHBoxLayout(this);
    page->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    auto *texts = new QWidget;
    texts->setMaximumWidth(ColumnWidth);
    page->addStretch(1);
    page->addWidget(texts, 8);
    page->addStretch(1);

    auto *column = new QVBoxLayout(texts);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(GridSpacing);
    column->addStretch(2);
    m_headline = addText(*column);
    column->addWidget(m_bar);
    m_detail = addText(*column);
    m_advice = addText(*column);
    column->addStretch(3);

    m_detail->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_advice->hide();
    m_bar->setRange(0, 100);
    m_bar->setMinimumWidth(ColumnWidth / 2);
    applyFont();
    keepTranslated(*this, [this] {
        m_advice->setText(tr("You can close this window and try again."));
        showHeadline();
    });
}

void LoadingView::setRecorder(const QString &name)
{
    m_recorder = shortenedMessage(name.simplified());
    showHeadline();
}

void LoadingView::setProgress(int percent, const QString &activity)
{
    m_failed = false;
    m_bar->setValue(std::clamp(percent, 0, 100));
    m_bar->show();
    m_advice->hide();
    m_detail->setText(shortenedMessage(activity));
    showHeadline();
}

void LoadingView::showFailure(const QString &message, const QString &explanation)
{
    m_failed = true;
    m_bar->hide();
    m_advice->show();
    const QString plain = plainMessage(message);
    m_detail->setText(
        shortenedMessage(explanation.isEmpty() ? plain : explanation + QStringLiteral("\n(%1)").arg(plain)));
    showHeadline();
}

void LoadingView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        applyFont();
    }
    QWidget::changeEvent(event);
}

void LoadingView::applyFont()
{
    m_headline->setFont(headerFont(font()));
}

void LoadingView::showHeadline()
{
    if (m_failed) {
        m_headline->setText(m_recorder.isEmpty()
                                ? tr("The settings could not be loaded")
                                : tr("The settings of %1 could not be loaded").arg(m_recorder));
    } else {
        m_headline->setText(m_recorder.isEmpty() ? tr("Connecting to the recorder")
                                                 : tr("Connecting to %1").arg(m_recorder));
    }
}

} // namespace paravue
