#pragma once

#include "device/OrbNetSetup.h"
#include "ui/CWinMain.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace paravue::test
{

/// One setup session: a store with its window, loaded.
class Session
{
public:
    explicit Session(const QString &address, const WindowOptions &options = {})
        : store(address), errors(&store, &OrbSetup::pseudothrow)
    {
        QSignalSpy loaded(&store, &OrbSetup::loadDone);
        window = std::make_unique<CWinMain>(&store, nullptr, CWinMain::Placement::Window, options);
        m_isLoaded = !loaded.isEmpty() || loaded.wait(20'000);
    }

    bool isFine() const { return m_isLoaded && errors.isEmpty(); }

    QLineEdit *field(const QString &text) const
    {
        for (QLineEdit *edit : window->findChildren<QLineEdit *>()) {
            if (edit->text() == text)
                return edit;
        }
        return nullptr;
    }

    OrbNetSetup store;
    QSignalSpy errors;
    std::unique_ptr<CWinMain> window;

private:
    bool m_isLoaded = false;
};

template <class Button>
Button *buttonWithText(const QWidget &window, const QString &text)
{
    for (Button *button : window.findChildren<Button *>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

inline void replaceText(QLineEdit &field, const QString &text)
{
    field.selectAll();
    QTest::keyClicks(&field, text);
}

} // namespace paravue::test
