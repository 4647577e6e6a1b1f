#pragma once

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

private:
    void takePictures();
    void visit(QTabWidget &tabs, const QString &namePrefix);
    void savePicture(const QString &name);
    void waitForLivePictures();
    QImage settledPicture() const;
    void fail(const QString &problem);
    void closeEverything();

    QDir m_folder;
    QString m_problem;
    QPointer<QWidget> m_window;
    bool m_isOver = false;
    bool m_hasLivePictures = false; ///< until a page has waited for one in vain
    QTimer m_standstill;
    QTimer m_closing;
};

} // namespace paravue
