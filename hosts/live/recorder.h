#pragma once

#include <QElapsedTimer>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "format/scene.h"
#include "frame.h"

using namespace voxam;

/// The last minutes of a run, for an animation: a picture a second, in eight bits.
class Recorder {
public:
    struct Picture {
        std::shared_ptr<const Scene> scene;
        int columns;
        int rows;
        IterationNumbers numbers;
        std::vector<std::uint8_t> densities;  ///< row by row from the top: 0 void, 255 solid
        Area blob;

        Field material() const;
    };

    /// Keeps a picture if it is time for one.
    void offer(const Frame& frame, std::shared_ptr<const Scene> scene, const Area& blob);
    void clear();

    const std::deque<Picture>& pictures() const { return kept; }

private:
    QElapsedTimer sinceLast;
    std::deque<Picture> kept;
};
