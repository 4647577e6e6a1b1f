#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <random>

namespace paravue::bench
{

inline constexpr qsizetype KiB = 1024;
inline constexpr qsizetype MiB = 1024 * KiB;

/// Random bytes, the same in every run.
inline QByteArray noise(qsizetype size)
{
    std::mt19937 random(1);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(random());
    return bytes;
}

/// Pictures of 2 to 200 KiB with a little more than \a size bytes together: the beginnings of the \a sources
/// in turn, each of which has 200 KiB. The sources have to outlive them.
inline QList<QByteArrayView> livePictures(const QList<QByteArray> &sources, qsizetype size)
{
    std::mt19937 random(2);
    std::uniform_int_distribution<qsizetype> pictureSize(2 * KiB, 200 * KiB);
    QList<QByteArrayView> pictures;
    for (qsizetype sum = 0; sum < size; sum += pictures.last().size())
        pictures.append(QByteArrayView(sources[pictures.size() % sources.size()]).first(pictureSize(random)));
    return pictures;
}

} // namespace paravue::bench
