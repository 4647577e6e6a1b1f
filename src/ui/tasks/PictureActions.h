#pragma once

#include "controls/EditActions.h"
#include "ui/tasks/PictureAudience.h"
#include "ui/tasks/PictureSource.h"
#include "ui/tasks/StreamDetails.h"

#include <QDateTime>
#include <QObject>
#include <QPixmap>

#include <functional>
#include <memory>

class QMouseEvent;

namespace paravue
{

/// Lets the user choose a file and saves a picture of \a control there. \a name is a name for it without a
/// suffix.
using PictureSaver = std::function<void(const QPixmap &picture, const QString &name, const QWidget &control)>;

/// What the user can do with the pictures of one task, by the keys and the context menu of its controls: see
/// them larger, save and copy them, fetch a still one now, read the details of the stream.
///
/// A control can have the keyboard focus once its task runs: a window opens with its focus on a field. A
/// double click enlarges it, too, unless it steers a camera or edits something.
class PictureActions : public QObject
{
    Q_OBJECT

public:
    /// \a save must outlive the object. Pictures in windows of their own are added to \a audience.
    PictureActions(PictureKind kind, std::shared_ptr<PictureAudience> audience, const PictureSaver &save);
    /// Closes its windows.
    ~PictureActions() override;

    /// Adds a control that shows the pictures, if it is a PictureNotice or a label.
    void add(QWidget &control);
    /// The source of the next pictures; null for none.
    void setSource(PictureSource *source);
    /// What the controls say about their pictures.
    void setNotice(const QString &notice) { m_notice = notice; }
    void setRemark(const QString &remark) { m_remark = remark; }
    /// Whether the user has asked for a picture now, since the last call.
    bool takeFetchRequest();
    /// The enlarged pictures, which belong to the audience.
    const QList<QPointer<QWidget>> &enlarged() const { return m_enlarged; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static void letFocusIn(QWidget &control);
    void pictureCame();
    EditActions actionsFor(QWidget &control);
    bool doubleClick(QWidget &control, const QMouseEvent &event);
    bool showCaption(QWidget &control, const QPoint &place);
    void enlarge(QWidget &control);
    void save(QWidget &control);
    void copy(QWidget &control);
    void requestFetch(QWidget &control);
    void showDetails(QWidget &control);
    PictureDetails details(const QPointer<QWidget> &control) const;

    const PictureKind m_kind;
    const std::shared_ptr<PictureAudience> m_audience;
    const PictureSaver &m_save;
    QPointer<PictureSource> m_source;
    QList<QPointer<QWidget>> m_controls;
    QList<QPointer<QWidget>> m_enlarged;
    QList<QPointer<QWidget>> m_details;
    QString m_notice;
    QString m_remark;
    QDateTime m_time;          ///< of the last still picture
    QString m_caption;         ///< says that time
    quint64 m_connections = 0; ///< earlier ones that have brought pictures
    quint64 m_attempts = 0;    ///< earlier ones that have brought none
    quint64 m_shown = 0;       ///< over all of them
    StreamFigures m_earlier;   ///< of all of them
    bool m_isFetchRequested = false;
};

} // namespace paravue
