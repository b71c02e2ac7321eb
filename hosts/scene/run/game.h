#pragma once

#include "format/field.h"
#include "format/scene.h"

/// What a drawn design is worth.
struct Score {
    bool supported = false;
    double compliance = 0;  ///< valid when supported, like the energies
    Field energies;         ///< of each element; their sum is the compliance
};

/// The library's one game solver, for as long as this object lives.
class Game {
public:
    explicit Game(const Scene& scene);
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;
    ~Game();

    /// Scores densities of the grid's size, 0 (void) to 1 (solid). Throws std::runtime_error when
    /// there is not enough memory.
    Score score(const Field& densities);

private:
    int width;
    int height;
    double unitOfForce;
};
