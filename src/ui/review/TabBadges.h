#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include <array>

class QTabWidget;
class QWidget;

namespace paravue
{

class TabBadge;

/// Shows on each tab how many controls on its page are marked, for each kind of mark, and lets screen readers
/// say so behind the caption. A tab without marks costs nothing.
class TabBadges : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~TabBadges() override;

    enum Kind { Changes, Problems, KindCount };

    /// One more mark, or one less, on the pages that \a widget stands on.
    void add(Kind kind, QWidget &widget, int difference);
    /// To be called when captions of tabs have changed.
    void updateNames();

    static QString changesText(qsizetype count);
    static QString problemsText(qsizetype count);

private:
    struct Page {
        QPointer<QTabWidget> tabs;
        QPointer<TabBadge> badge;
        std::array<int, KindCount> counts{};
    };

    void show(QWidget &widget, Page &page);
    void updateName(const QWidget &widget, const Page &page);

    QHash<QWidget *, Page> m_pages;
};

} // namespace paravue
