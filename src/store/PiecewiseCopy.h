#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace paravue
{

/// Copies a text from its front to its end while pieces of it are replaced. Without any, the copy is shared
/// with the source.
class PiecewiseCopy
{
public:
    /// \a source must outlive it.
    explicit PiecewiseCopy(const QByteArray &source) : m_source(source) {}

    /// The piece must not begin before the end of the last one.
    void replace(qsizetype begin, qsizetype end, QByteArrayView replacement)
    {
        m_result.append(m_source.constData() + m_copied, begin - m_copied);
        m_result.append(replacement);
        m_copied = end;
    }
    /// Where the copy of the source's position \a position stands, as long as nothing more is replaced.
    qsizetype position(qsizetype position) const { return m_result.size() + position - m_copied; }

    QByteArray result()
    {
        if (m_copied == 0)
            return m_source; // shared
        return m_result.append(m_source.constData() + m_copied, m_source.size() - m_copied);
    }

private:
    const QByteArray &m_source;
    QByteArray m_result;
    qsizetype m_copied = 0;
};

} // namespace paravue
