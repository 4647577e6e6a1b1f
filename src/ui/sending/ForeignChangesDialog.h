#pragma once

#include "changes/SaveCheck.h"

#include <QDialog>
#include <QList>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

class QTreeWidget;

namespace paravue
{

/// How a value and its place are shown to the user.
struct ValueTexts {
    std::function<QString(const QString &path)> caption;
    std::function<bool(const QString &path)> isSecret;

    QString shown(const QString &path, const std::optional<QString> &value) const;
};

/// Shows what somebody else has changed at the recorder since it was fetched. It is kept, except where the
/// user ticks a value to send their own.
class ForeignChangesDialog : public QDialog
{
    Q_OBJECT

public:
    ForeignChangesDialog(const QList<ForeignChange> &changes, const ValueTexts &texts, QWidget *parent);

    /// The paths of the values that the user wants to send all the same.
    QSet<QString> own() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTreeWidget *m_list;
};

} // namespace paravue
