#include "ui/tasks/StreamDetails.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr int RefreshInterval = 1000; // milliseconds
constexpr int Columns = 56;
constexpr int Lines = 17;

QString sizeText(const QSize &size)
{
    return StreamDetails::tr("%1 × %2 pixels")
        .arg(QString::number(size.width()), QString::number(size.height()));
}

} // namespace

StreamDetails::StreamDetails(const Provider &details, QWidget *parent)
    : QWidget(parent, Qt::Window), m_details(details), m_text(new QPlainTextEdit(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Stream details"));
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setAccessibleName(windowTitle());
    m_text->installEventFilter(this);
    auto *copy = new QToolButton(this);
    copy->setText(tr("Copy all"));
    copy->setFocusPolicy(Qt::TabFocus);
    copy->installEventFilter(this);
    connect(copy, &QToolButton::clicked, this, &StreamDetails::copyAll);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    layout->addWidget(copy);
    m_text->setFocus();
    connect(&m_timer, &QTimer::timeout, this, &StreamDetails::refresh);
    m_timer.start(RefreshInterval);
    refresh();
    resize(Columns * fontMetrics().averageCharWidth(), (Lines + 4) * fontMetrics().lineSpacing());
}

bool StreamDetails::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        close();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

/// A selection stays as it is until it is copied or dropped, and what is read stays where it is.
void StreamDetails::refresh()
{
    const QString text = textOf(m_details());
    QTextCursor cursor = m_text->textCursor();
    if (cursor.hasSelection() || text == m_text->toPlainText())
        return;
    const int line = cursor.blockNumber();
    const int column = cursor.positionInBlock();
    const int scrolled = m_text->verticalScrollBar()->value();
    m_text->setPlainText(text);
    if (const QTextBlock block = m_text->document()->findBlockByNumber(line); block.isValid()) {
        cursor.setPosition(block.position() + std::min(column, block.length() - 1));
        m_text->setTextCursor(cursor);
    }
    m_text->verticalScrollBar()->setValue(scrolled);
}

void StreamDetails::copyAll()
{
    QGuiApplication::clipboard()->setText(text());
}

QString StreamDetails::textOf(const PictureDetails &details)
{
    QStringList lines;
    if (!details.name.isEmpty())
        lines << tr("Picture: %1").arg(details.name);
    lines << tr("State: %1").arg(details.state.isEmpty() ? tr("current") : details.state);
    if (!details.size.isEmpty())
        lines << tr("Shown: %1").arg(sizeText(details.size));
    if (details.kind == PictureKind::Still) {
        lines << tr("Kind: still pictures");
        if (!details.caption.isEmpty())
            lines << details.caption;
        return lines.join(u'\n');
    }
    lines << tr("Pictures shown: %1").arg(details.shown);
    if (details.figures)
        lines << linesOf(*details.figures);
    lines << tr("Reconnections: %1").arg(details.reconnections);
    lines << tr("Attempts without a picture: %1").arg(details.attempts);
    return lines.join(u'\n');
}

QStringList StreamDetails::linesOf(const StreamFigures &figures)
{
    QStringList lines;
    lines << tr("Codec: %1").arg(figures.codec.isEmpty() ? tr("not known yet") : figures.codec);
    if (!figures.size.isEmpty())
        lines << tr("Size: %1").arg(sizeText(figures.size));
    lines << tr("Pictures received: %1").arg(figures.frames);
    lines << tr("Pictures left out: %1").arg(figures.leftOut);
    const bool isContinued = m_clock.isValid() && figures.bytes >= m_bytes;
    const qint64 elapsed = isContinued ? m_clock.elapsed() : 0;
    if (elapsed > 0) {
        const double bits = double(figures.bytes - m_bytes) * 8;
        lines << tr("Bit rate: %1 kbit/s").arg(locale().toString(bits / double(elapsed), 'f', 0));
    }
    m_bytes = figures.bytes;
    m_clock.start();
    m_longestWait = std::max(m_longestWait, figures.wait);
    lines << tr("Lateness: %1 ms, at most %2 ms")
                 .arg(QString::number(figures.wait.count()), QString::number(m_longestWait.count()));
    lines << tr("Bytes received: %1").arg(locale().toString(figures.bytes));
    lines << tr("Lost bytes: %1 at %2 places")
                 .arg(QString::number(figures.losses.bytes), QString::number(figures.losses.gaps));
    lines << tr("Lost fragments: %1, lost frames: %2")
                 .arg(QString::number(figures.losses.fragments), QString::number(figures.losses.frames));
    return lines;
}

} // namespace paravue
