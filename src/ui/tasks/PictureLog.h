#pragma once

#include <QString>

namespace paravue
{

class PictureSource;
class PictureStatus;

/// Logs how the connections of one live video task go: made, the first picture, and why one has ended. A
/// recorder that is off is tried every few seconds, and logged once.
class PictureLog
{
public:
    /// The next connection goes to \a recorder.
    void begin(const QString &recorder);
    void poll(const PictureSource &source, const PictureStatus &status);

private:
    enum class Stage { Connecting, Connected, Showing, Ended };

    void enter(Stage stage, const QString &what);

    Stage m_stage = Stage::Ended;
    QString m_recorder;
    QString m_last; ///< what was logged last
};

} // namespace paravue
