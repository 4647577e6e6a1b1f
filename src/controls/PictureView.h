#pragma once

#include "controls/PictureNotice.h"

#include <QPixmap>
#include <QWidget>

namespace paravue
{

/// A picture of the recorder, as large as the widget allows with its proportions kept, and a text in its
/// place while there is none. What is drawn over it, and a footer below it, come from derived classes.
///
/// Assistive tools see a graphic whose value is valueText().
class PictureView : public QWidget, public PictureNotice
{
    Q_OBJECT
    Q_PROPERTY(bool hasPicture READ hasPicture)

public:
    explicit PictureView(QWidget *parent = nullptr);

    QPixmap pixmap() const { return m_pixmap; }
    bool hasPicture() const { return !m_pixmap.isNull(); }
    /// The size that the view shows pictures in, or more where there is room, in device-independent pixels;
    /// its proportions are those of the place that waits for one. 320 x 240 unless told otherwise, and less
    /// where there is no room.
    void setPreferredSize(const QSize &size);

    /// Where in the widget the picture is, or would be. Empty while the widget is too small for one.
    QRect pictureRect() const;
    /// The state of the view in words. Derived classes put what they have to say behind the notice.
    virtual QString valueText() const;
    void setNotice(const QString &text) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// A null pixmap takes the picture away.
    void setPixmap(const QPixmap &pixmap);
    /// Says why there is no picture, in plain text, while there is no notice. An empty text brings the usual
    /// one back.
    void setText(const QString &reason);

Q_SIGNALS:
    void pictureChanged();

protected:
    QRect footerRect() const;
    /// A fraction of the picture (0 to 1 in both directions) for a position in the widget, and back.
    QPointF fractionAt(const QPointF &position) const;
    QPointF positionOf(const QPointF &fraction) const;

    /// Draws what belongs over the picture. Only what lies in \a dirty need be drawn.
    virtual void paintOver(QPainter &painter, const QRect &dirty);
    virtual int footerHeight(int width) const;
    virtual void paintFooter(QPainter &painter);
    /// The notice, or the text that says why there is no picture; nothing when there is one. Its ground lets
    /// some of what is under it through when \a coverage is less than 1.
    void paintPlaceholder(QPainter &painter, float coverage = 1);
    /// \a text with the notice before it.
    QString withNotice(const QString &text) const;
    /// Tells assistive tools about another valueText(), and paints all again.
    void stateChanged();

    void paintEvent(QPaintEvent *event) override;

private:
    QRect pictureArea() const;
    /// The size of the view with such a picture.
    QSize viewSize(const QSize &picture) const;
    int footerRoom(int width) const;
    QString placeholder() const;

    QPixmap m_pixmap;
    QString m_notice;
    QString m_reason;
    QSize m_preferred;
    QSize m_requested; ///< 0 or less where nothing was
};

/// Lines that are seen on bright and dark pictures alike: white with a black rim.
void drawOnPicture(QPainter &painter, const QList<QLineF> &lines, double width,
                   Qt::PenStyle style = Qt::SolidLine);

} // namespace paravue
