#pragma once

#include "controls/PictureView.h"
#include "controls/PtzPosition.h"

#include <QElapsedTimer>
#include <QTimer>

namespace paravue
{

/// A picture with a line below it that says where the camera looks.
class PtzView : public PictureView
{
    Q_OBJECT

public:
    explicit PtzView(QWidget *parent = nullptr);

    /// Nothing while it is not known.
    const std::optional<PtzPosition> &position() const { return m_position; }
    /// The position has just changed or become known, so that the camera may have gone on since, or is not
    /// certain.
    bool isTurning() const { return m_rest.isActive() || !m_isCertain; }
    void setCertain(bool isCertain);
    /// Shows the position of \a original from now on.
    void follow(const PtzView &original);
    /// The camera was told to turn: what is known of its position may have changed.
    void expectTurn();

    /// A position for the user.
    static QString textOf(const PtzPosition &position, const QLocale &locale);

    QString valueText() const override;

Q_SIGNALS:
    void positionChanged();
    /// isTurning() is over, or the position has become unknown.
    void cameraAtRest();

public Q_SLOTS:
    /// "pan,tilt" or "pan,tilt,zoom" as PtzPosition documents them. Any other text means that the position is
    /// not known.
    void slot_Set_PTZ_pos(const QString &position);
    void slot_Set_PTZ_pos(double pan, double tilt, double zoom);

protected:
    int footerHeight(int width) const override;
    void paintFooter(QPainter &painter) override;

private:
    void setPosition(const std::optional<PtzPosition> &position);
    QString positionText() const;

    std::optional<PtzPosition> m_position;
    QTimer m_rest;
    QElapsedTimer m_lastPosition; ///< since the last one came
    bool m_isCertain = true;
    bool m_expectsTurn = false; ///< it was told to turn and has not been seen turning since
};

} // namespace paravue
