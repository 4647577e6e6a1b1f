#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace paravue
{

/// Fills the window while the first load runs, when there is no description to build pages from yet: whom it
/// is connecting to, what is being fetched and how far it is. When that fails it says so in plain words.
class LoadingView : public QWidget
{
    Q_OBJECT

public:
    explicit LoadingView(QWidget *parent = nullptr);

    /// \a name is what the user knows the recorder by; without one the view speaks of "the recorder".
    void setRecorder(const QString &name);
    /// \a percent of 0 to 100; \a activity says what is going on at the moment and may be empty.
    void setProgress(int percent, const QString &activity);
    /// Turns the view into one that says that the settings could not be loaded, with \a message as the
    /// reason. "<br>" in it is a line break; other markup is shown as it is. Another setProgress() goes back.
    void showFailure(const QString &message);

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
