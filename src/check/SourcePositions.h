#pragma once

#include <QByteArray>
#include <QDomElement>
#include <QHash>

#include <utility>

namespace paravue
{

/// A place in a text; lines and columns count from 1, columns in characters.
struct SourcePosition {
    int line = 0;
    int column = 0;
};

/// Identifies an element of a document: the position of the end of its start tag, which QDom records.
using ElementId = std::pair<int, int>;
ElementId elementId(const QDomElement &element);

/// Where the elements of a document begin in its text. QDom records only where start tags end, which can be
/// lines further down.
class SourcePositions
{
public:
    SourcePositions() = default;
    /// \a root is the document element of what \a text was parsed to.
    SourcePositions(const QByteArray &text, const QDomElement &root);

    SourcePosition of(const QDomElement &element) const;

private:
    QHash<ElementId, SourcePosition> m_positions;
};

} // namespace paravue
