#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <cstddef>
#include <cstdint>

/// What a fuzz target makes of the bytes of one input: a few that choose how the target behaves, then what is
/// fed.
namespace paravue::fuzz
{

/// Stands between the pieces of an input that has borders of its own.
inline constexpr char PieceBorder[] = "\xf0"
                                      "cut";

class FuzzInput
{
public:
    FuzzInput(const uint8_t *data, size_t size);

    /// Takes the next byte; 0 at the end.
    quint8 takeByte();
    /// All that is left.
    QByteArray rest() const { return m_rest.toByteArray(); }
    /// The same, cut where a PieceBorder stands, which belongs to no piece.
    QList<QByteArray> pieces() const;

private:
    QByteArrayView m_rest;
};

/// \a bytes cut at borders that depend on the \a seed alone: mostly a few bytes apart, at times many.
QList<QByteArray> cutAtRandom(const QByteArray &bytes, quint32 seed);

} // namespace paravue::fuzz
