#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstring>
#include <initializer_list>

namespace paravue
{

/// Copies a text from its front to its end while pieces of it are replaced. Without any, the copy is shared
/// with the source.
class PiecewiseCopy
{
public:
    /// \a source must outlive it.
    explicit PiecewiseCopy(const QByteArray &source) : m_source(source) {}

    /// The piece must not begin before the end of the last one. It is replaced by all of \a replacements, one
    /// behind the other.
    void replace(qsizetype begin, qsizetype end, std::initializer_list<QByteArrayView> replacements)
    {
        append({m_source.constData() + m_copied, begin - m_copied});
        for (const QByteArrayView replacement : replacements)
            append(replacement);
        m_copied = end;
    }
    /// Where the copy of the source's position \a position stands, as long as nothing more is replaced.
    qsizetype position(qsizetype position) const { return m_size + position - m_copied; }

    QByteArray result()
    {
        if (m_copied == 0)
            return m_source; // shared
        append({m_source.constData() + m_copied, m_source.size() - m_copied});
        m_result.truncate(m_size);
        return m_result;
    }

private:
    /// QByteArray's own function does much more than to copy, for each of many small pieces.
    void append(QByteArrayView piece)
    {
        if (piece.isEmpty())
            return;
        const qsizetype end = m_size + piece.size();
        if (end > m_result.size()) {
            m_result.resize(end + m_source.size() / 8 + (m_size == 0 ? m_source.size() : 0));
            m_data = m_result.data();
        }
        std::memcpy(m_data + m_size, piece.data(), size_t(piece.size()));
        m_size = end;
    }

    const QByteArray &m_source;
    QByteArray m_result;
    char *m_data = nullptr; ///< of the result
    qsizetype m_size = 0;   ///< of what is copied; the result has room behind it
    qsizetype m_copied = 0;
};

} // namespace paravue
