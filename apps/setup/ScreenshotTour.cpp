#include "ScreenshotTour.h"

#include "store/OrbSetup.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QImage>
#include <QMessageBox>
#include <QPixmap>
#include <QTabWidget>
#include <QTextStream>

#include <algorithm>

namespace paravue
{

namespace
{

constexpr int StandstillLimitMs = 30'000;
constexpr int ClosingPeriodMs = 50;
constexpr int SettlingPeriodMs = 40;
constexpr int SettlingLimitMs = 2'000;
constexpr int LivePictureLimitMs = 5'000;

/// A file name made of a tab's caption: letters and digits in lower case, anything else as a "-".
QString fileNameOf(const QString &caption)
{
    QString name;
    for (const QChar c : caption.toLower()) {
        if (c.isLetterOrNumber())
            name += c;
        else if (c != '&' && !name.isEmpty() && !name.endsWith('-'))
            name += '-';
    }
    while (name.endsWith('-'))
        name.chop(1);
    return name.isEmpty() ? QString("tab") : name;
}

/// The tab widgets on \a page that do not stand on a page of another one of them.
QList<QTabWidget *> nestedTabWidgets(const QWidget &page)
{
    QList<QTabWidget *> nested;
    for (QTabWidget *tabs : page.findChildren<QTabWidget *>()) {
        const QWidget *ancestor = tabs->parentWidget();
        while (ancestor != &page && !qobject_cast<const QTabWidget *>(ancestor))
            ancestor = ancestor->parentWidget();
        if (ancestor == &page && tabs->isVisibleTo(&page))
            nested += tabs;
    }
    return nested;
}

/// Whether the recorder has sent no picture yet for one of the views that \a window shows now.
bool awaitsPicture(const QWidget &window)
{
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    return std::any_of(widgets.begin(), widgets.end(), [](const QWidget *widget) {
        const QVariant hasPicture = widget->property("hasPicture");
        return hasPicture.isValid() && !hasPicture.toBool() && widget->isVisible();
    });
}

void letEventsPass()
{
    QEventLoop pause;
    QTimer::singleShot(SettlingPeriodMs, &pause, &QEventLoop::quit);
    pause.exec(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

ScreenshotTour::ScreenshotTour(OrbSetup &store, const QString &folder) : m_folder(folder)
{
    m_standstill.setSingleShot(true);
    m_standstill.start(StandstillLimitMs);
    connect(&m_standstill, &QTimer::timeout, this, [this] { fail(tr("The recorder does not answer.")); });
    connect(&m_closing, &QTimer::timeout, this, [this] { closeEverything(); });

    m_hasLivePictures = !store.property("offline").toBool();
    connect(&store, &OrbSetup::progress, this, [this] { m_standstill.start(); });
    connect(&store, &OrbSetup::pseudothrow, this, [this](const QString &message) { fail(message); });
    // Queued, so that the window has built itself when its pictures are taken.
    connect(&store, &OrbSetup::loadDone, this, &ScreenshotTour::takePictures, Qt::QueuedConnection);
}

QString ScreenshotTour::problem() const
{
    return m_problem;
}

void ScreenshotTour::takePictures()
{
    if (m_isOver)
        return;
    m_window = QApplication::activeModalWidget();
    if (const auto *message = qobject_cast<QMessageBox *>(m_window))
        return fail(message->text());
    auto *tabs = m_window ? m_window->findChild<QTabWidget *>() : nullptr;
    if (!tabs || tabs->count() == 0)
        return fail(tr("The window has no tabs."));
    m_standstill.stop();
    if (!m_folder.mkpath("."))
        return fail(tr("The folder %1 cannot be made.").arg(m_folder.path()));
    visit(*tabs, {});
    m_isOver = true;
    m_closing.start(ClosingPeriodMs);
}

void ScreenshotTour::visit(QTabWidget &tabs, const QString &namePrefix)
{
    for (int i = 0; i < tabs.count() && m_problem.isEmpty(); ++i) {
        if (!tabs.isTabVisible(i))
            continue;
        tabs.setCurrentIndex(i);
        const QString name =
            namePrefix + QString("%1-%2").arg(i + 1, 2, 10, QChar('0')).arg(fileNameOf(tabs.tabText(i)));
        const QList<QTabWidget *> nested = nestedTabWidgets(*tabs.widget(i));
        if (nested.isEmpty())
            savePicture(name);
        for (QTabWidget *inner : nested)
            visit(*inner, name + '-');
    }
}

void ScreenshotTour::savePicture(const QString &name)
{
    waitForLivePictures();
    const QString path = m_folder.filePath(name + ".png");
    if (!settledPicture().save(path))
        return fail(tr("The picture %1 cannot be written.").arg(path));
    QTextStream(stdout) << path << Qt::endl;
}

void ScreenshotTour::waitForLivePictures()
{
    const QDeadlineTimer limit(LivePictureLimitMs);
    while (m_hasLivePictures && m_window && awaitsPicture(*m_window)) {
        letEventsPass();
        m_hasLivePictures = !limit.hasExpired();
    }
}

QImage ScreenshotTour::settledPicture() const
{
    // The first layout of a page takes several turns of the event loop and answers of the window system.
    QImage picture;
    QImage before;
    const QDeadlineTimer limit(SettlingLimitMs);
    do {
        letEventsPass();
        before = picture;
        picture = m_window ? m_window->grab().toImage() : QImage();
    } while (!picture.isNull() && picture != before && !limit.hasExpired());
    return picture;
}

void ScreenshotTour::fail(const QString &problem)
{
    if (m_isOver)
        return;
    m_isOver = true;
    m_problem = problem;
    m_closing.start(ClosingPeriodMs);
}

void ScreenshotTour::closeEverything()
{
    // One after the other: a message lies above the window, and closing that lets the window go on first.
    if (QWidget *top = QApplication::activeModalWidget())
        top->close();
}

} // namespace paravue
