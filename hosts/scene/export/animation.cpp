#include "export/animation.h"

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace voxam::inline files {

namespace {

// Hundredths of a second. Players slow down what is to be shown more briefly.
constexpr int WHOLE_RUN = 600;
constexpr int SHORTEST_DELAY = 6;
constexpr int LONGEST_DELAY = 20;
constexpr int FIRST_DELAY = 60;
constexpr int LAST_DELAY = 300;

constexpr int PALETTE_BITS = 7;  // 128 colours, the last of them transparent
constexpr int MAX_COLOURS = (1 << PALETTE_BITS) - 1;
constexpr GifByteType TRANSPARENT = MAX_COLOURS;

using Indices = std::vector<GifByteType>;

/// What the quantiser tells colours apart by: five bits of each part.
std::size_t colourKey(const std::uint8_t* pixel) {
    return static_cast<std::size_t>(pixel[0] >> 3) << 10 |
           static_cast<std::size_t>(pixel[1] >> 3) << 5 | static_cast<std::size_t>(pixel[2] >> 3);
}

/// A palette for all frames, so that what does not change keeps its colour to the bit.
class Palette {
public:
    void count(const RgbImage& picture) {
        for (std::size_t i = 0; i < picture.pixels.size(); i += 3) {
            Sum& sum = sums[colourKey(&picture.pixels[i])];
            ++sum.count;
            for (std::size_t part = 0; part < 3; ++part)
                sum.parts[part] += picture.pixels[i + part];
        }
    }

    /// Every colour counts once, or the few pixels of an arrow would lose theirs to the material.
    void choose() {
        std::vector<std::size_t> keys;
        std::array<std::vector<GifByteType>, 3> parts;
        for (std::size_t key = 0; key < sums.size(); ++key) {
            if (sums[key].count == 0) continue;
            keys.push_back(key);
            for (std::size_t part = 0; part < 3; ++part)
                parts[part].push_back(static_cast<GifByteType>(sums[key].mean(part)));
        }
        Indices indices(keys.size());
        std::array<GifColorType, MAX_COLOURS> unused;
        int colourCount = MAX_COLOURS;
        if (GifQuantizeBuffer(static_cast<unsigned>(keys.size()), 1, &colourCount, parts[0].data(),
                              parts[1].data(), parts[2].data(), indices.data(),
                              unused.data()) != GIF_OK)
            throw std::runtime_error("GIF encoder: no palette");
        // The quantiser's own colours are five bits deep, and its white is grey.
        std::array<Sum, MAX_COLOURS> chosen = {};
        for (std::size_t i = 0; i < keys.size(); ++i) {
            indexOfKey[keys[i]] = indices[i];
            chosen[indices[i]].add(sums[keys[i]]);
        }
        for (std::size_t i = 0; i < chosen.size(); ++i)
            colours[i] = {chosen[i].mean(0), chosen[i].mean(1), chosen[i].mean(2)};
    }

    Indices indices(const RgbImage& picture) const {
        Indices result(picture.pixels.size() / 3);
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = indexOfKey[colourKey(&picture.pixels[3 * i])];
        return result;
    }

    const std::vector<GifColorType>& all() const { return colours; }

private:
    struct Sum {
        std::size_t count = 0;
        std::array<std::size_t, 3> parts = {};

        GifByteType mean(std::size_t part) const {
            return static_cast<GifByteType>(count == 0 ? 0 : (parts[part] + count / 2) / count);
        }
        void add(const Sum& other) {
            count += other.count;
            for (std::size_t part = 0; part < 3; ++part) parts[part] += other.parts[part];
        }
    };

    std::vector<Sum> sums = std::vector<Sum>(1 << 15);
    Indices indexOfKey = Indices(1 << 15);
    std::vector<GifColorType> colours = std::vector<GifColorType>(1 << PALETTE_BITS);
};

/// Writes a GIF file to memory.
class GifWriter {
public:
    GifWriter(int imageWidth, int imageHeight, const std::vector<GifColorType>& colours)
        : width(imageWidth), height(imageHeight) {
        if (!file) throw std::bad_alloc();
        EGifSetGifVersion(file.get(), true);
        const std::unique_ptr<ColorMapObject, void (*)(ColorMapObject*)> map(
            GifMakeMapObject(static_cast<int>(colours.size()), colours.data()), GifFreeMapObject);
        if (!map) fail();
        check(EGifPutScreenDesc(file.get(), width, height, 8, 0, map.get()));
        // Repeats without end.
        check(EGifPutExtensionLeader(file.get(), APPLICATION_EXT_FUNC_CODE));
        check(EGifPutExtensionBlock(file.get(), 11, "NETSCAPE2.0"));
        check(EGifPutExtensionBlock(file.get(), 3, "\x01\x00\x00"));
        check(EGifPutExtensionTrailer(file.get()));
    }
    /// Only what changed is stored, within the smallest rectangle around it.
    void add(Indices indices, int delay) {
        Rectangle changed = {0, 0, width, height};
        if (!shown.empty()) changed = changes(indices);
        putDelay(delay);
        check(EGifPutImageDesc(file.get(), changed.x, changed.y, changed.width, changed.height,
                               false, {}));
        Indices row(static_cast<std::size_t>(changed.width));
        for (int y = changed.y; y < changed.y + changed.height; ++y) {
            for (int x = 0; x < changed.width; ++x) {
                const std::size_t i = place(changed.x + x, y);
                const bool same = !shown.empty() && shown[i] == indices[i];
                row[static_cast<std::size_t>(x)] = same ? TRANSPARENT : indices[i];
            }
            check(EGifPutLine(file.get(), row.data(), changed.width));
        }
        shown = std::move(indices);
    }

    std::vector<std::uint8_t> finish() {
        int error = 0;
        if (EGifCloseFile(file.release(), &error) != GIF_OK)
            throw std::runtime_error("GIF encoder: the file could not be completed");
        return std::move(bytes);
    }

private:
    struct Close {
        void operator()(GifFileType* open) const {
            int error = 0;
            EGifCloseFile(open, &error);
        }
    };

    struct Rectangle {
        int x, y, width, height;
    };

    static int collect(GifFileType* target, const GifByteType* data, int length) {
        auto& all = *static_cast<std::vector<std::uint8_t>*>(target->UserData);
        all.insert(all.end(), data, data + length);
        return length;
    }

    [[noreturn]] void fail() {
        const char* const why = GifErrorString(file->Error);
        throw std::runtime_error(std::string("GIF encoder: ") + (why ? why : "failed"));
    }

    void check(int result) {
        if (result != GIF_OK) fail();
    }

    std::size_t place(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }

    void putDelay(int delay) {
        const GraphicsControlBlock control = {DISPOSE_DO_NOT, false, delay, TRANSPARENT};
        std::array<GifByteType, 4> bytesOfControl;
        const auto length = EGifGCBToExtension(&control, bytesOfControl.data());
        check(EGifPutExtension(file.get(), GRAPHICS_EXT_FUNC_CODE, static_cast<int>(length),
                               bytesOfControl.data()));
    }

    /// One pixel when nothing changed: an empty image is none.
    Rectangle changes(const Indices& indices) const {
        int left = width, right = -1, top = height, bottom = -1;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                if (shown[place(x, y)] == indices[place(x, y)]) continue;
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = y;
            }
        if (bottom < 0) return {0, 0, 1, 1};
        return {left, top, right - left + 1, bottom - top + 1};
    }

    int width;
    int height;
    std::vector<std::uint8_t> bytes;
    std::unique_ptr<GifFileType, Close> file{EGifOpen(&bytes, collect, nullptr)};
    Indices shown;
};

double difference(const RgbImage& a, const RgbImage& b) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        sum += static_cast<unsigned>(std::abs(int{a.pixels[i]} - int{b.pixels[i]}));
    return static_cast<double>(sum);
}

}  // namespace

void Animation::add(RgbImage picture) {
    checkSize(picture);
    frames.push_back({std::move(picture)});
    if (frames.size() < 3) return;
    weigh(frames.size() - 2);
    if (frames.size() <= MAX_FRAMES) return;
    const auto least =
        std::min_element(frames.begin() + 1, frames.end() - 1,
                         [](const Frame& a, const Frame& b) { return a.loss < b.loss; });
    const auto dropped = static_cast<std::size_t>(least - frames.begin());
    frames.erase(least);
    for (const std::size_t neighbour : {dropped - 1, dropped})
        if (neighbour > 0 && neighbour + 1 < frames.size()) weigh(neighbour);
}

void Animation::replaceLast(RgbImage picture) {
    if (frames.empty()) return add(std::move(picture));
    checkSize(picture);
    frames.back().picture = std::move(picture);
    if (frames.size() > 2) weigh(frames.size() - 2);
}

void Animation::checkSize(const RgbImage& picture) const {
    if (!frames.empty() && picture.pixels.size() != frames.front().picture.pixels.size())
        throw std::logic_error("frames of different sizes");
}

void Animation::weigh(std::size_t frame) {
    frames[frame].loss = difference(frames[frame - 1].picture, frames[frame + 1].picture);
}

std::vector<std::uint8_t> Animation::encodeGif() const {
    Palette palette;
    for (const Frame& frame : frames) palette.count(frame.picture);
    palette.choose();
    const RgbImage& first = frames.front().picture;
    GifWriter gif(first.width, first.height, palette.all());
    const int delay =
        std::clamp(WHOLE_RUN / static_cast<int>(frames.size()), SHORTEST_DELAY, LONGEST_DELAY);
    for (std::size_t i = 0; i < frames.size(); ++i)
        gif.add(palette.indices(frames[i].picture), i + 1 == frames.size() ? LAST_DELAY
                                                    : i == 0               ? FIRST_DELAY
                                                                           : delay);
    return gif.finish();
}

}  // namespace voxam::inline files
