#pragma once

#include <stdexcept>
#include <utility>
#include <vector>

#include "suite.h"
#include "support/exports.h"
#include "support/plates.h"
#include "voxam.h"

/// The optimiser as a host drives it. There is one at a time.
class Host {
public:
    Host(const Plate& plate, test::Settings settings)
        : plate(plate),
          settings(std::move(settings)),
          picture(static_cast<std::size_t>(plate.elements()) * plate.subdivision *
                  plate.subdivision * plate.meshFactor * plate.meshFactor),
          blob(static_cast<std::size_t>(plate.elements())) {}
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    ~Host() { _DestroyVoxamApp(); }

    void create() const {
        _InitVoxamApp(plate.width, plate.height, plate.subdivision, plate.meshFactor,
                      settings.volumeFraction, 1, 0);
    }

    void send() const { test::update(settings); }

    void iterate() {
        _IterateVoxamApp(sizeof text, text, picture.data(), &change, &stat, PENALTY);
        check();
    }
    void iterateWithBlob() {
        _IterateVoxamAppWithBlob(sizeof text, text, picture.data(), &change, &stat, blob.data(),
                                 PENALTY);
        check();
    }

    const RuntimeStat& lastStat() const { return stat; }

private:
    void check() const {
        if (text[0] != '\0') throw std::runtime_error(text);
    }

    static constexpr float PENALTY = 3.0F;

    Plate plate;
    test::Settings settings;
    std::vector<float> picture;
    std::vector<int> blob;
    char text[64] = "";
    double change = 0.0;
    RuntimeStat stat{};
};
