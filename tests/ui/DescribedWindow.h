#pragma once

#include "ModalWatcher.h"
#include "StoreFixture.h"
#include "ui/CWinMain.h"

#include <QMap>
#include <QTest>

#include <memory>

namespace paravue::test
{

/// A description of \a content under its root.
inline QByteArray describe(const QByteArray &content)
{
    return "<pvsetup version=\"1.0\">" + content + "</pvsetup>";
}

/// A description with one page that holds one grid of \a cells, and \a rest behind it. An action reaches the
/// window by the tag "self".
inline QByteArray describePage(const QByteArray &cells, const QByteArray &rest = {})
{
    return describe("<window><self/></window><tabwidget><tab><name>Page</name><item type=\"gridlayout\">" +
                    cells + "</item></tab></tabwidget>" + rest);
}

/// A setup window on a store without a recorder, loaded and active. It notes and closes every message box.
class DescribedWindow
{
public:
    using Files = QMap<QString, QByteArray>;

    explicit DescribedWindow(const QByteArray &description, Files files = {},
                             const paravue::WindowOptions &options = {})
        : fixture(with(std::move(files), description)),
          window(std::make_unique<CWinMain>(&fixture.store(), nullptr, CWinMain::Placement::Window, options))
    {
        window->activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(window.get()));
    }
    ~DescribedWindow() { window->endSession(); }

    QString value(const QString &address) { return fixture.store().value(address); }
    /// The widget number \a index of this class, in the order of the description.
    template <class Widget>
    Widget *widget(int index = 0) const
    {
        return page()->findChildren<Widget *>().value(index);
    }
    QWidget *page() const { return window->findChild<QWidget *>("qt_tabwidget_stackedwidget"); }
    template <class Button>
    Button *button(const QString &text) const
    {
        for (Button *button : window->findChildren<Button *>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }
    /// A rebuilt window keeps its old widgets until the events that remove them.
    void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    ModalWatcher messages;
    StoreFixture fixture;
    std::unique_ptr<CWinMain> window;

private:
    static Files with(Files files, const QByteArray &description)
    {
        files["interface"] = description;
        return files;
    }
};

} // namespace paravue::test
