#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "drawing/rgb_image.h"

namespace voxam::inline files {

/// Pictures of one size in an endless loop, with a pause on the last picture. A long run is reduced
/// to the pictures that differ most.
class Animation {
public:
    static constexpr std::size_t MAX_FRAMES = 48;

    void add(RgbImage picture);

    /// Replaces the last picture, if there is one.
    void replaceLast(RgbImage picture);

    bool empty() const { return frames.empty(); }
    std::size_t size() const { return frames.size(); }

    /// The bytes of a GIF file. Add a picture first. Throws std::runtime_error if the encoder
    /// fails.
    std::vector<std::uint8_t> encodeGif() const;

private:
    struct Frame {
        RgbImage picture;
        double loss = 0;  // what the step from its predecessor to its successor would skip
    };

    void checkSize(const RgbImage& picture) const;
    void weigh(std::size_t frame);

    std::deque<Frame> frames;
};

}  // namespace voxam::inline files
