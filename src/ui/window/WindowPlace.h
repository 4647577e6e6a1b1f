#pragma once

#include <QPoint>
#include <QSize>
#include <QString>

#include <optional>

namespace paravue
{

struct WindowMemory;

/// What a user has made of the window: its size, where its middle stands, and the page that is open.
struct WindowPlace {
    QSize size;
    QPoint middle;
    int page = 0;

    /// What \a memory holds under \a key; nothing when it holds none, or nonsense.
    static std::optional<WindowPlace> recall(const WindowMemory &memory, const QString &key);
    void keep(const WindowMemory &memory, const QString &key) const;
};

} // namespace paravue
