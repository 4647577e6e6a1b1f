#pragma once

#include <QObject>

class QDialog;

namespace paravue
{

/// Lets Enter press the tool button that has the focus, while it lives. Where the platform has Enter press no
/// tool buttons, QDialog presses its default button instead.
class ToolButtonKeys : public QObject
{
public:
    explicit ToolButtonKeys(QDialog &dialog);

    bool eventFilter(QObject *dialog, QEvent *event) override;
};

} // namespace paravue
