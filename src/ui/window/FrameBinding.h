#pragma once

#include "ui/WindowOptions.h"

#include <QString>

#include <memory>

class QDialog;
class QWidget;

namespace paravue
{

struct WindowParts;
class WindowFrame;

/// Applies the description to the fixed widgets of the window: pages, captions of tabs and buttons, title,
/// size. What it does not mention is as it was before the first description.
class FrameBinding
{
public:
    /// All must outlive the object. The present texts are the defaults; the title is appended to that of the
    /// header.
    FrameBinding(QDialog &window, WindowFrame &frame, WindowParts &parts, const WindowMemory &memory);
    ~FrameBinding();

    /// Builds the pages in place of those that are there. \a shownPage is the page to show; when there is
    /// none of this number the description says which. Of the first pages (-1), and of the place of the
    /// window, the memory has the first word.
    void build(int shownPage);
    /// Keeps the place of the window and the open page in the memory. Nothing before build().
    void remember() const;
    /// Updates the texts that are not controls; to be called again when values have changed.
    void showTexts();

private:
    void adoptWindow();
    void retirePages();
    void buildPages(int shownPage);
    void applySize();
    void showButtons();
    QString model() const;

    QDialog &m_window;
    WindowFrame &m_frame;
    WindowParts &m_parts;
    const WindowMemory m_memory;
    QString m_model; ///< empty before build()
    QString m_headerBase;
    std::unique_ptr<QWidget> m_retiredPages; ///< pages of the last description, until they are deleted
};

} // namespace paravue
