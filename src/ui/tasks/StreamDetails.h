#pragma once

#include "ui/tasks/PictureSource.h"
#include "video/StreamFigures.h"

#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>

namespace paravue
{

/// What is known of the pictures of one task.
struct PictureDetails {
    QString name; ///< of the control
    PictureKind kind{};
    QString state; ///< what the control says about its pictures; empty when all is well
    std::optional<StreamFigures> figures; ///< of a live stream
    quint64 shown = 0;
    quint64 reconnections = 0;
    quint64 attempts = 0; ///< earlier connections without a picture
    QString caption;      ///< of the last still picture: its time
    QSize size;           ///< of the picture that is shown
};

/// A window with the details of a picture as a text that can be copied, which follows them each second.
/// Escape closes it. Deletes itself when it is closed.
class StreamDetails : public QWidget
{
    Q_OBJECT

public:
    using Provider = std::function<PictureDetails()>;
    /// \a details is called as long as the window exists.
    StreamDetails(const Provider &details, QWidget *parent);

    QString text() const { return m_text->toPlainText(); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refresh();
    void copyAll();
    QString textOf(const PictureDetails &details);
    QStringList linesOf(const StreamFigures &figures);

    const Provider m_details;
    QPlainTextEdit *const m_text; // child
    QTimer m_timer;
    QElapsedTimer m_clock; ///< since m_bytes
    quint64 m_bytes = 0;
    std::chrono::milliseconds m_longestWait{0};
};

} // namespace paravue
