#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <cstddef>
#include <cstdint>

/// The bytes of one input: a few that choose how the target behaves, then those that it is fed.
namespace paravue::fuzz
{

/// Separates the pieces of an input.
inline constexpr char PieceBorder[] = "\xf0"
                                      "cut";

class FuzzInput
{
public:
    FuzzInput(const uint8_t *data, size_t size);

    /// Takes the next byte; 0 at the end.
    quint8 takeByte();
    /// The remaining bytes.
    QByteArray rest() const { return m_rest.toByteArray(); }
    /// The remaining bytes, split at each PieceBorder.
    QList<QByteArray> pieces() const;

private:
    QByteArrayView m_rest;
};

/// Cuts \a bytes into mostly short and some long pieces. The same \a seed gives the same pieces.
QList<QByteArray> cutAtRandom(const QByteArray &bytes, quint32 seed);

} // namespace paravue::fuzz
