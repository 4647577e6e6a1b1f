#include "ui/tasks/PictureLog.h"

#include "store/LogText.h"
#include "ui/tasks/PictureSource.h"
#include "ui/tasks/PictureStatus.h"

#include <QLoggingCategory>

namespace paravue
{
namespace
{

Q_LOGGING_CATEGORY(pictureLog, "paravue.pictures", QtWarningMsg)

} // namespace

void PictureLog::begin(const QString &recorder)
{
    m_recorder = logText(recorder);
    m_stage = Stage::Connecting;
}

void PictureLog::poll(const PictureSource &source, const PictureStatus &status)
{
    if (m_stage == Stage::Connecting && source.hasConnected())
        enter(Stage::Connected, QStringLiteral("connected"));
    if (m_stage == Stage::Connected && source.pictures() > 0)
        enter(Stage::Showing, QStringLiteral("first picture"));
    if (m_stage != Stage::Ended && (!source.isActive() || status.isDead()))
        enter(Stage::Ended, status.text());
}

void PictureLog::enter(Stage stage, const QString &what)
{
    m_stage = stage;
    if (m_last == what)
        return;
    m_last = what;
    qCInfo(pictureLog).noquote() << m_recorder << what;
}

} // namespace paravue
