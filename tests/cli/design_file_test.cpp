// Files of designs, and animations.
#include "export/design_file.h"

#include <gif_lib.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "cli_fixture.h"
#include "export/animation.h"
#include "export/output_file.h"
#include "format/input_error.h"

using namespace voxam;

namespace {

Field random(int width, int height) {
    std::mt19937 generator(7);
    Field field(width, height);
    for (float& value : field.values) value = float(generator()) / float(generator.max());
    return field;
}

class DesignFile : public Cli {
protected:
    /// The error of reading a file for a grid of 2 x 1 elements.
    static std::string errorOf(const fs::path& file) {
        try {
            readDesign(file, 2, 1);
        } catch (const InputError& error) {
            return error.what();
        }
        return "";
    }
};

TEST_F(DesignFile, comesBackAtAnyMultipleOfTheGrid) {
    Field design = random(24, 12);
    design.values[5] = std::nextafter(0.5f, 0.0f);
    design.values[6] = 0.5f;
    writeFile(directory / "d.CSV", encodeDesign("d.CSV", design));
    EXPECT_EQ(readDesign(directory / "d.CSV", 8, 4), design);
    writeFile(directory / "d.png", encodeDesign("d.png", design));
    const Field shades = readDesign(directory / "d.png", 24, 12);
    for (std::size_t i = 0; i < design.values.size(); ++i) {
        EXPECT_NEAR(shades.values[i], design.values[i], 0.5 / 255 + 1e-6);
        EXPECT_EQ(shades.values[i] >= 0.5f, design.values[i] >= 0.5f) << design.values[i];
    }
    EXPECT_THROW(readDesign(directory / "d.png", 8, 6), InputError);
    EXPECT_THROW(readDesign(directory / "d.png", 5, 12), InputError);
    EXPECT_THROW(readDesign(directory / "d.png", 48, 24), InputError);
}

TEST_F(DesignFile, readsWhatOtherProgramsWriteAsCsv) {
    const Field expected = [] {
        Field field(4, 2);
        field.values = {0, 1, 0.5f, 1, 1, 0, 0.25f, 0};
        return field;
    }();
    for (const char* text : {"0,1,0.5,1\n1,0,0.25,0\n", "0;1;.5;1\r\n1; 0;2.5e-1 ;0\r\n\r\n",
                             "\xef\xbb\xbf\n0,\t1,0.5,1.0\n1,0,0.25,0"}) {
        EXPECT_EQ(readDesign(write("d.csv", text), 2, 1), expected) << text;
    }
}

TEST_F(DesignFile, namesWhatIsWrongWithACsv) {
    const struct {
        const char* csv;
        const char* error;
    } cases[] = {
        {"0,1\n1,x\n", "d.csv: line 2: column 2: \"x\" is not a number from 0 to 1"},
        {"0,5;1\n", "line 1: column 1: \"0,5\" is not a number from 0 to 1"},
        {"0,1.5\n", "line 1: column 2: \"1.5\" is not"},
        {"0,nan\n", "line 1: column 2: \"nan\" is not"},
        {"0,1,\n", "line 1: column 3: \"\" is not"},
        {"0,1,1,0\n\n0,1,1\n", "line 3: has 3 numbers, the lines before have 4"},
        {"0,1,1\n", "is 3 x 1 cells, expected 2 x 1 times a whole number"},
        {"", "is 0 x 0 cells"},
    };
    for (const auto& [csv, error] : cases)
        EXPECT_THAT(errorOf(write("d.csv", csv)), testing::HasSubstr(error));
    Scene half;
    half.width = 2;
    half.height = 1;
    half.symmetry = Symmetry::BOTTOM;
    try {
        readDesign(write("d.csv", "0,1,1\n"), half);
        FAIL() << "a wrong size was read";
    } catch (const InputError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("2 x 2 times such a number (whole plate)"));
    }
    EXPECT_THAT(errorOf(directory / "none.csv"),
                testing::HasSubstr("none.csv: cannot be read: No such file"));
}

/// The frames of a GIF file as a player shows them, and how long.
struct Player {
    std::vector<RgbImage> frames;
    std::vector<int> delays;

    explicit Player(std::vector<std::uint8_t> bytes) {
        struct Source {
            const std::vector<std::uint8_t>& bytes;
            std::size_t next = 0;
        } source{bytes};
        const auto read = [](GifFileType* file, GifByteType* target, int length) {
            auto& from = *static_cast<Source*>(file->UserData);
            const auto count = std::min(std::size_t(length), from.bytes.size() - from.next);
            std::copy_n(from.bytes.begin() + std::ptrdiff_t(from.next), count, target);
            from.next += count;
            return int(count);
        };
        GifFileType* const file = DGifOpen(&source, read, nullptr);
        EXPECT_EQ(DGifSlurp(file), GIF_OK);
        EXPECT_EQ(source.next, bytes.size());
        RgbImage shown{file->SWidth, file->SHeight, {}};
        shown.pixels.resize(3 * std::size_t(shown.width) * std::size_t(shown.height));
        for (int i = 0; i < file->ImageCount; ++i) {
            GraphicsControlBlock control;
            EXPECT_EQ(DGifSavedExtensionToGCB(file, i, &control), GIF_OK);
            draw(file->SavedImages[i], control.TransparentColor, file->SColorMap->Colors, shown);
            frames.push_back(shown);
            delays.push_back(control.DelayTime);
        }
        DGifCloseFile(file, nullptr);
    }

    static void draw(const SavedImage& image, int transparent, const GifColorType* colours,
                     RgbImage& shown) {
        const GifImageDesc& place = image.ImageDesc;
        for (int i = 0; i < place.Width * place.Height; ++i) {
            const GifByteType index = image.RasterBits[i];
            if (index == transparent) continue;
            const int x = place.Left + i % place.Width;
            const int y = place.Top + i / place.Width;
            std::uint8_t* const pixel = &shown.pixels[std::size_t(3 * (y * shown.width + x))];
            pixel[0] = colours[index].Red;
            pixel[1] = colours[index].Green;
            pixel[2] = colours[index].Blue;
        }
    }

    static int farthest(const RgbImage& a, const RgbImage& b) {
        int most = 0;
        for (std::size_t i = 0; i < a.pixels.size(); ++i)
            most = std::max(most, std::abs(a.pixels[i] - b.pixels[i]));
        return most;
    }
};

/// White, with a grey square that moves to the right and darkens, and one red pixel.
RgbImage step(int number) {
    RgbImage image{80, 20, std::vector<std::uint8_t>(80 * 20 * 3, 255)};
    for (int y = 5; y < 15; ++y)
        for (int x = number; x < number + 10; ++x)
            std::fill_n(&image.pixels[std::size_t(3 * (80 * y + x))], 3,
                        std::uint8_t(200 - 2 * number));
    image.pixels[1] = image.pixels[2] = 0;
    return image;
}

TEST(AnimationFile, showsEveryFrameAndThenPauses) {
    Animation animation;
    for (const int i : {0, 1, 1, 30}) animation.add(step(i));
    const Player player(animation.encodeGif());
    ASSERT_EQ(player.frames.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LE(Player::farthest(player.frames[i], step(std::vector{0, 1, 1, 30}[i])), 8);
    EXPECT_EQ(player.frames[0].pixels[0], 255);  // the lone pixel kept its colour
    EXPECT_EQ(player.frames[0].pixels[1], 0);
    EXPECT_EQ(player.frames[0].pixels[3], 255);  // and white stayed white
    EXPECT_EQ(player.delays.back(), 300);
    EXPECT_LT(player.delays[1], 30);
}

TEST(AnimationFile, ofALongRunKeepsWhereMostHappens) {
    Animation animation;
    for (int i = 0; i < 40; ++i) animation.add(step(i));
    for (int i = 0; i < 400; ++i) animation.add(step(40));
    animation.add(step(60));
    EXPECT_EQ(animation.size(), Animation::MAX_FRAMES);
    const Player player(animation.encodeGif());
    for (int i = 0; i < 40; ++i)
        EXPECT_LE(Player::farthest(player.frames[std::size_t(i)], step(i)), 8) << i;
    EXPECT_LE(Player::farthest(player.frames.back(), step(60)), 8);
}

TEST(AnimationFile, holdsASinglePictureOfManyColours) {
    RgbImage image{200, 200, std::vector<std::uint8_t>(200 * 200 * 3)};
    std::mt19937 generator(3);
    for (auto& part : image.pixels) part = std::uint8_t(generator());
    Animation animation;
    animation.add(image);
    EXPECT_EQ(Player(animation.encodeGif()).frames.size(), 1u);
}

}  // namespace
