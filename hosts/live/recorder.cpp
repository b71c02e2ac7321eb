#include "recorder.h"

#include <algorithm>

namespace {

constexpr qint64 INTERVAL = 1000;          // ms
constexpr std::size_t MAX_PICTURES = 150;  // two and a half minutes
constexpr std::size_t MAX_BYTES = 100u << 20;
// The first moments of a run, in which the structure forms, go by faster than that.
constexpr int ITERATIONS_AT_FIRST = 40;
constexpr qint64 FIRST_INTERVAL = 100;  // ms

}  // namespace

Field Recorder::Picture::material() const {
    Field field(columns, rows);
    std::transform(densities.begin(), densities.end(), field.values.begin(),
                   [](std::uint8_t density) { return static_cast<float>(density) / 255; });
    return field;
}

void Recorder::offer(const Frame& frame, std::shared_ptr<const Scene> scene, const Area& blob) {
    const qint64 interval =
        frame.numbers.iteration <= ITERATIONS_AT_FIRST ? FIRST_INTERVAL : INTERVAL;
    if (sinceLast.isValid() && sinceLast.elapsed() < interval) return;
    sinceLast.start();
    // An animation has pictures of one size.
    const Field& material = frame.material;
    if (!kept.empty() &&
        (kept.back().columns != material.width || kept.back().rows != material.height))
        kept.clear();
    Picture picture{std::move(scene), material.width, material.height, frame.numbers, {}, blob};
    picture.densities.resize(material.values.size());
    std::transform(
        material.values.begin(), material.values.end(), picture.densities.begin(),
        [](float density) {
            return static_cast<std::uint8_t>(255 * std::clamp(density, 0.0f, 1.0f) + 0.5f);
        });
    const std::size_t most =
        std::min(MAX_PICTURES, std::max<std::size_t>(2, MAX_BYTES / picture.densities.size()));
    kept.push_back(std::move(picture));
    while (kept.size() > most) kept.pop_front();
}

void Recorder::clear() {
    kept.clear();
    sinceLast.invalidate();
}
