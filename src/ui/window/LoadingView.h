#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace paravue
{

/// Fills the window during the first load, before there is a description to build pages from: shows the
/// recorder, what is being fetched and the progress, or why the load has failed.
class LoadingView : public QWidget
{
    Q_OBJECT

public:
    explicit LoadingView(QWidget *parent = nullptr);

    /// \a name is the name of the recorder as the user knows it; without one the view speaks of "the
    /// recorder".
    void setRecorder(const QString &name);
    /// \a percent of 0 to 100; \a activity is the present step and may be empty.
    void setProgress(int percent, const QString &activity);
    /// Shows that the settings could not be loaded, with \a message as the reason. "<br>" in it is a line
    /// break; other markup is shown as it is. An \a explanation in plain words stands above it.
    /// setProgress() returns to the progress.
    void showFailure(const QString &message, const QString &explanation = {});

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyFont();
    void showHeadline();

    QLabel *m_headline;
    QLabel *m_detail;
    QLabel *m_advice;
    QProgressBar *m_bar;
    QString m_recorder;
    bool m_failed = false;
};

} // namespace paravue
