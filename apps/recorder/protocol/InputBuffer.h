#pragma once

#include <QByteArray>

#include <optional>

namespace recorder
{

/// The bytes of a client that were not handled yet. Each byte is searched once for a line end, however small
/// the pieces are in which a line arrives.
class InputBuffer
{
public:
    void append(const QByteArray &bytes);

    /// The next line without its line end (CR LF or LF); nothing while it is incomplete.
    std::optional<QByteArray> takeLine();
    /// Up to that many bytes.
    QByteArray takeBytes(qsizetype count);

    /// Bytes not taken yet.
    qsizetype size() const { return m_bytes.size() - m_start; }
    void clear();

private:
    void dropTaken();

    QByteArray m_bytes;
    qsizetype m_start = 0;   // first byte not taken
    qsizetype m_scanned = 0; // no line feed before this one
};

} // namespace recorder
