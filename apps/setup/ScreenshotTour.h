#pragma once

#include "program/ExitCode.h"

#include <QDir>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>

class OrbSetup;
class QImage;
class QTabWidget;

namespace paravue
{

/// Takes the user's place in a setup session: once all is loaded it saves a picture of every tab of the
/// window and closes it. A session that fails, or that stands still for long, is closed as well. Pictures
/// from the recorder are waited for, but not for long.
class ScreenshotTour : public QObject
{
    Q_OBJECT

public:
    /// To be made before the session starts. \a store must outlive the tour.
    ScreenshotTour(OrbSetup &store, const QString &folder);

    /// What went wrong; empty when every picture was saved.
    QString problem() const;
    ExitCode exitCode() const { return m_exitCode; }

private:
    void takePictures();
    void visit(QTabWidget &tabs, const QString &namePrefix);
    void savePicture(const QString &name);
    void waitForLivePictures();
    QImage settledPicture() const;
    void showWholePage();
    void fail(const QString &problem, ExitCode exitCode);
    void failWith(const QString &message);
    void closeEverything();

    OrbSetup &m_store;
    QDir m_folder;
    QSize m_usualSize; ///< of the window
    QString m_problem;
    ExitCode m_exitCode = ExitCode::Done;
    QPointer<QWidget> m_window;
    bool m_isOver = false;
    bool m_hasLivePictures = false; ///< until a page has waited for one in vain
    QTimer m_standstill;
    QTimer m_closing;
};

} // namespace paravue
