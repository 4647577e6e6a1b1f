#include "PictureCounters.h"

#include <QHash>

#include <algorithm>
#include <bit>
#include <cstdint>

namespace
{

constexpr size_t Places = 16;
constexpr size_t Kinds = 256;

// The fuzzer reads and clears these like the counters of instrumented code.
__attribute__((section("__libfuzzer_extra_counters"))) uint8_t counters[Places * Kinds];

/// A hash of the order of magnitude of the size and of a few pixels.
size_t kindOf(const QImage &image)
{
    const auto width = static_cast<unsigned>(image.width());
    const auto height = static_cast<unsigned>(image.height());
    size_t kind = qHashMulti(0, std::bit_width(width), std::bit_width(height));
    for (int part = 1; part < 4; ++part)
        kind = qHashMulti(kind, image.pixel(image.width() * part / 4, image.height() * part / 4) & 0xC0C0C0);
    return kind % Kinds;
}

} // namespace

namespace paravue::fuzz
{

void countPicture(const QImage &image, int place)
{
    const size_t row = std::min<size_t>(std::max(place, 0), Places - 1);
    counters[row * Kinds + kindOf(image)] = 1;
}

} // namespace paravue::fuzz
