#include "ui/window/WindowPlace.h"

#include "ui/WindowOptions.h"

#include <QList>

#include <cstdlib>

namespace paravue
{
namespace
{

/// "width height x y page"
constexpr int PlaceNumbers = 5;
constexpr int FarthestPlace = 100'000; // pixels: screens can stand beside each other

} // namespace

std::optional<WindowPlace> WindowPlace::recall(const WindowMemory &memory, const QString &key)
{
    if (!memory.read)
        return {};
    QList<int> numbers;
    for (const QByteArray &word : memory.read(key).split(' ')) {
        bool isNumber = false;
        numbers.append(word.toInt(&isNumber));
        if (!isNumber || std::abs(numbers.last()) > FarthestPlace)
            return {};
    }
    if (numbers.size() != PlaceNumbers || numbers[0] <= 0 || numbers[1] <= 0)
        return {};
    return WindowPlace{QSize(numbers[0], numbers[1]), QPoint(numbers[2], numbers[3]), numbers[4]};
}

void WindowPlace::keep(const WindowMemory &memory, const QString &key) const
{
    if (!memory.write)
        return;
    QByteArrayList words;
    for (const int number : {size.width(), size.height(), middle.x(), middle.y(), page})
        words.append(QByteArray::number(number));
    memory.write(key, words.join(' '));
}

} // namespace paravue
