#pragma once

#include <QString>

#include <memory>

class QDialog;
class QWidget;

namespace paravue
{

struct WindowParts;
class WindowFrame;

/// Gives the fixed widgets of the window what the description says of them: the pages, the captions of tabs
/// and buttons, the title, the size. What it says nothing of is as it was before the first description.
class DescribedFrame
{
public:
    /// All must outlive the object. The present texts are those without a description; the title is put
    /// behind that of the header.
    DescribedFrame(QDialog &window, const WindowFrame &frame, WindowParts &parts);
    ~DescribedFrame();

    /// Builds the pages in place of those that are there. \a shownPage is the page to show; when there is
    /// none of this number the description says which.
    void build(int shownPage);
    /// Everything that is no control; again when values were fetched anew.
    void showTexts();

private:
    void adoptWindow();
    void buildPages(int shownPage);
    void applySize();
    void showButtons();

    QDialog &m_window;
    const WindowFrame &m_frame;
    WindowParts &m_parts;
    QString m_headerBase;
    QString m_okText;
    QString m_cancelText;
    std::unique_ptr<QWidget> m_retiredPages; ///< pages of the last description on their way out
};

} // namespace paravue
