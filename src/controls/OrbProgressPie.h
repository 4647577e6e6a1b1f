#pragma once

#include <QWidget>

/// A pie that fills clockwise from the top, with the percentage in its middle. It is drawn from the palette
/// and as large as its shorter side allows; a pie too small for readable digits has none.
class OrbProgressPie : public QWidget
{
    Q_OBJECT

public:
    explicit OrbProgressPie(QWidget *parent = nullptr);

    /// 0 to 100.
    int progress() const;
    /// 0 to 100; 0 without a limit.
    int limit() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Values beyond 0 to 100 are clamped.
    void setProgress(int percent);
    /// Draws a mark across the rim at \a percent, such as the share of a disk that may be filled. Nothing is
    /// drawn at 0 and 100; values beyond are clamped.
    void setLimit(int percent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_progress = 0;
    int m_limit = 0;
};
