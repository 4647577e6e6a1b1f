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

public:
    explicit LiveView(QWidget *parent = nullptr);

    void setNotice(const QString &text) override;
    void setRemark(const QString &text) override;
    void setCaption(const QString &text) override;
    bool hasPicture() const { return !pixmap(Qt::ReturnByValue).isNull(); }
    /// The state of the view in words; empty while it shows the present picture without a remark.
    QString valueText() const;

public Q_SLOTS:
    void setPixmap(const QPixmap &pixmap);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void stateChanged();
    const QPixmap &scaledPicture();
    void paintPicture(QPainter &painter);

    ScaledPicture m_scaled;
    QString m_notice;
    QString m_remark;
    QString m_caption;
};

} // namespace paravue
