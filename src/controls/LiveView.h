#pragma once

#include "controls/PictureNotice.h"
#include "controls/ScaledPicture.h"

#include <QLabel>

namespace paravue
{

/// A framed area that a live picture is stretched to, and a text while there is none.
class LiveView : public QLabel, public PictureNotice
{
    Q_OBJECT
    Q_PROPERTY(bool hasPicture READ hasPicture)
    Q_PROPERTY(QPixmap pixmap READ pixmap WRITE setPixmap)

public:
    explicit LiveView(QWidget *parent = nullptr);

    void setNotice(const QString &text) override;
    void setRemark(const QString &text) override;
    void setCaption(const QString &text) override;
    bool hasPicture() const { return !QLabel::pixmap().isNull(); }
    /// The picture that is shown, in its own size. That of QLabel may be a few pictures older.
    QPixmap pixmap() const;
    QPixmap pixmap(Qt::ReturnByValueConstant) const { return pixmap(); }
    /// The state of the view in words; empty while it shows the present picture without a remark.
    QString valueText() const;
    /// The size in pixels in which pictures are painted, when setScaledPicture() may be used: while the
    /// control is visible and has a picture and no notice. Else an empty size.
    QSize scaledSize() const;

public Q_SLOTS:
    void setPixmap(const QPixmap &pixmap);
    /// Shows \a picture, which has the scaledSize().
    void setScaledPicture(const QPixmap &picture);
    /// The picture of setScaledPicture() in its own size. A notice stays.
    void setWholePicture(const QPixmap &pixmap);

Q_SIGNALS:
    /// Asks for setWholePicture() before the signal returns.
    void wholePictureNeeded() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void stateChanged();
    const QPixmap &scaledPicture();
    void paintPicture(QPainter &painter);

    ScaledPicture m_scaled;
    bool m_isWhole = true; ///< the picture of the label is the one that is shown
    QString m_notice;
    QString m_remark;
    QString m_caption;
};

} // namespace paravue
