#include "ScreenshotTour.h"

#include "LinkExitCode.h"

#include "program/ConsoleOutput.h"
#include "store/OrbSetup.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QImage>
#include <QMessageBox>
#include <QPixmap>
#include <QScrollArea>
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

ScreenshotTour::ScreenshotTour(OrbSetup &store, const QString &folder) : m_store(store), m_folder(folder)
{
    m_standstill.setSingleShot(true);
    m_standstill.start(StandstillLimitMs);
    connect(&m_standstill, &QTimer::timeout, this,
            [this] { fail(tr("The recorder does not answer."), ExitCode::Network); });
    connect(&m_closing, &QTimer::timeout, this, [this] { closeEverything(); });

    m_hasLivePictures = !store.property("offline").toBool();
    connect(&store, &OrbSetup::progress, this, [this] { m_standstill.start(); });
    connect(&store, &OrbSetup::pseudothrow, this, [this](const QString &message) { failWith(message); });
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
        return failWith(message->text());
    auto *tabs = m_window ? m_window->findChild<QTabWidget *>() : nullptr;
    if (!tabs || tabs->count() == 0)
        return fail(tr("The window has no tabs."), ExitCode::BadData);
    m_standstill.stop();
    m_usualSize = m_window->size();
    if (!m_folder.mkpath("."))
        return fail(tr("The folder %1 cannot be made.").arg(m_folder.path()), ExitCode::LocalFile);
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
    showWholePage();
    waitForLivePictures();
    const QString path = m_folder.filePath(name + ".png");
    if (!settledPicture().save(path))
        return fail(tr("The picture %1 cannot be written.").arg(path), ExitCode::LocalFile);
    const ConsoleWrite write;
    QTextStream(stdout) << path << Qt::endl;
}

/// Makes the window so large that nothing on the present page has to be scrolled to.
void ScreenshotTour::showWholePage()
{
    constexpr int MostPixels = 8'000; // of height or width, whatever a description asks for
    constexpr int Attempts = 3;       // texts in lines need less height in a wider window
    if (m_window)
        m_window->resize(m_usualSize);
    for (int attempt = 0; attempt < Attempts && m_window; ++attempt) {
        letEventsPass();
        QSize missing(0, 0);
        for (const QScrollArea *area : m_window->findChildren<QScrollArea *>()) {
            if (!area->isVisible() || !area->widget())
                continue;
            const QSize hidden = area->widget()->size() - area->viewport()->size();
            missing = missing.expandedTo(hidden);
        }
        if (missing.isNull())
            return;
        m_window->resize((m_window->size() + missing).boundedTo(QSize(MostPixels, MostPixels)));
    }
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

/// With what the store or the window has reported.
void ScreenshotTour::failWith(const QString &message)
{
    const QString explanation = m_store.explanation(message);
    fail(explanation.isEmpty() ? message : message + QStringLiteral(": ") + explanation,
         exitCodeOf(m_store.linkStatus().cause, ExitCode::BadData));
}

void ScreenshotTour::fail(const QString &problem, ExitCode exitCode)
{
    if (m_isOver)
        return;
    m_isOver = true;
    m_problem = problem;
    m_exitCode = exitCode;
    m_closing.start(ClosingPeriodMs);
}

void ScreenshotTour::closeEverything()
{
    // One after the other: a message lies above the window, and closing that lets the window go on first.
    if (QWidget *top = QApplication::activeModalWidget())
        top->close();
}

} // namespace paravue
