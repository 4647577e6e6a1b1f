#pragma once

#include "controls/EditActions.h"
#include "controls/PictureNotice.h"
#include "controls/ScaledPicture.h"

#include <QPixmap>
#include <QWidget>

#include <functional>

namespace paravue
{

/// A picture of the recorder, as large as the widget allows with its proportions kept, or a text while there
/// is none. Derived classes draw over it and add a footer below it.
///
/// Screen readers get a graphic whose value is valueText().
class PictureView : public QWidget, public PictureNotice
{
    Q_OBJECT
    Q_PROPERTY(bool hasPicture READ hasPicture)

public:
    explicit PictureView(QWidget *parent = nullptr);

    QPixmap pixmap() const { return m_pixmap; }
    bool hasPicture() const { return !m_pixmap.isNull(); }
    /// The size that the view shows pictures in, or more where there is room, in device-independent pixels;
    /// its proportions are those of the empty area while there is no picture. 320 x 240 by default; less
    /// where there is no room.
    void setPreferredSize(const QSize &size);

    /// Where the picture stands in a view of other proportions; at the left and the top by default.
    void setAlignment(Qt::Alignment alignment);

    /// What else the user can do with the picture, for views with a menu of their own.
    void setPictureActions(const std::function<EditActions()> &actions) { m_actions = actions; }

    /// Where in the widget the picture is, or would be. Empty while the widget is too small for one.
    QRect pictureRect() const;
    /// The state of the view in words. Derived classes put their own state behind the notice.
    virtual QString valueText() const;
    void setNotice(const QString &text) override;
    void setRemark(const QString &text) override;
    void setCaption(const QString &text) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// A null pixmap removes the picture.
    void setPixmap(const QPixmap &pixmap);
    /// Plain text that says why there is no picture, shown while there is no notice. An empty text restores
    /// the default one.
    void setText(const QString &reason);

Q_SIGNALS:
    void pictureChanged();

protected:
    EditActions pictureActions() const { return m_actions ? m_actions() : EditActions(); }
    QRect footerRect() const;
    /// A fraction of the picture (0 to 1 in both directions) for a position in the widget, and back.
    QPointF fractionAt(const QPointF &position) const;
    QPointF positionOf(const QPointF &fraction) const;

    /// Draws over the picture. Only what lies in \a dirty needs to be drawn.
    virtual void paintOver(QPainter &painter, const QRect &dirty);
    virtual int footerHeight(int width) const;
    virtual void paintFooter(QPainter &painter);
    /// What stands at the lower edge of the picture; empty for nothing. Derived classes may put a text of
    /// their own before it.
    virtual QString shownRemark() const;
    /// Paints the notice, or else, while there is no picture, the text that says why. \a coverage is the
    /// opacity of its background.
    void paintPlaceholder(QPainter &painter, float coverage = 1);
    /// \a text with the notice or the remark before it.
    QString withNotice(const QString &text) const;
    /// Repaints all, and tells screen readers that valueText() has changed.
    void stateChanged();

    void paintEvent(QPaintEvent *event) override;

private:
    QRect pictureArea() const;
    /// The size of the view with such a picture.
    QSize viewSize(const QSize &picture) const;
    int footerRoom(int width) const;
    QString placeholder() const;
    const QPixmap &scaledPicture();

    QPixmap m_pixmap;
    ScaledPicture m_scaled;
    QString m_notice;
    QString m_remark;
    QString m_caption;
    QString m_reason;
    std::function<EditActions()> m_actions;
    QSize m_preferred;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignTop;
    QSize m_requested; ///< 0 or less: not given
};

/// Draws lines that are visible on bright and dark pictures: white with a black rim.
void drawOnPicture(QPainter &painter, const QList<QLineF> &lines, double width,
                   Qt::PenStyle style = Qt::SolidLine);

} // namespace paravue
