// Requires that the setup window loads, builds and runs any description: at most one message while it loads,
// and whatever is pressed, typed, reloaded, rebuilt or saved then, nothing hangs.
//
// Input: the description; then pieces "name", line feed and content, each a configuration file.

#include "FuzzInput.h"
#include "InputFolder.h"
#include "InputTime.h"
#include "ModalCloser.h"
#include "Require.h"

#include "store/OrbSetup.h"
#include "ui/CWinMain.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLoggingCategory>

#include <algorithm>

using namespace paravue::fuzz;

namespace
{

const QStringList FileNames{"general", "streams", "net", "time", "timers", "soft", "disk", "users", "state"};
constexpr int MaxUsed = 48;

struct Key {
    Qt::Key key;
    const char *text;
};
constexpr Key Keys[] = {{Qt::Key_5, "5"}, {Qt::Key_Down, ""}, {Qt::Key_Right, ""}, {Qt::Key_Space, " "}};

void press(const QPointer<QWidget> &widget, const Key &key)
{
    QKeyEvent down(QEvent::KeyPress, key.key, Qt::NoModifier, key.text);
    QCoreApplication::sendEvent(widget, &down);
    if (!widget)
        return;
    QKeyEvent up(QEvent::KeyRelease, key.key, Qt::NoModifier, key.text);
    QCoreApplication::sendEvent(widget, &up);
}

void handleEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Types into everything that takes the keyboard. Pressed buttons may rebuild the window.
void useControls(CWinMain &window)
{
    QList<QPointer<QWidget>> widgets;
    for (QWidget *widget : window.findChildren<QWidget *>())
        widgets << widget;
    int used = 0;
    for (const QPointer<QWidget> &widget : widgets) {
        if (!widget || !widget->isEnabled() || widget->focusPolicy() == Qt::NoFocus)
            continue;
        if (++used > MaxUsed)
            break;
        for (const Key &key : Keys) {
            if (widget)
                press(widget, key);
        }
        if (!window.isVisible())
            window.show(); // a button has closed it
    }
    handleEvents();
}

class Session
{
public:
    explicit Session(const QList<QByteArray> &pieces);

    void run();

private:
    void setFile(const QString &name, const QByteArray &content)
    {
        m_store.setFilePath(name, m_folder.write(name, content));
    }

    InputFolder m_folder; // outlives the store, which writes its files at its end
    OrbSetup m_store;
    QByteArray m_description;
};

Session::Session(const QList<QByteArray> &pieces) : m_description(pieces.first())
{
    m_store.setProperty("offline", true);
    for (const QString &name : FileNames) {
        QFile file(":/recorder/model/" + name);
        setFile(name, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    }
    for (const QByteArray &piece : pieces.sliced(1)) {
        const qsizetype lineFeed = piece.indexOf('\n');
        const QString name = QString::fromLatin1(piece.first(qMax<qsizetype>(lineFeed, 0)));
        if (FileNames.contains(name))
            setFile(name, piece.sliced(lineFeed + 1));
    }
    setFile("interface", m_description);
}

void Session::run()
{
    ModalCloser closer;
    CWinMain window(&m_store, nullptr);
    closer.setWindow(&window);
    window.setPathQuestion([](const QString &, paravue::FileUse) { return false; });
    require(closer.closed() <= 1, "there is one message at most while a description loads");
    window.onLoadDone();
    handleEvents();
    window.timeout();
    useControls(window);
    // The recorder may send another description, here the same with a line end more.
    setFile("interface", m_description + '\n');
    window.onLoadDone();
    handleEvents();
    window.saveSettings();
    window.timeout();
    handleEvents();
    window.endSession();
}

} // namespace

/// What fontconfig keeps of its configuration looks like a leak.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: static data of Qt, which it needs for that, would be gone by then.
    static QApplication *const application = new QApplication(*argc, *argv);
    application->setQuitOnLastWindowClosed(false);
    QLoggingCategory::setFilterRules("*=false");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const InputTime time;
    Session(FuzzInput(data, size).pieces()).run();
    handleEvents();
    return 0;
}
