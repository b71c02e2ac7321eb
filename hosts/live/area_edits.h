#pragma once

#include <array>

#include "format/scene.h"

using namespace voxam;

enum class PassiveKind { VOID, SOLID, SECOND_SOLID };

constexpr std::array<PassiveKind, 3> PASSIVE_KINDS = {PassiveKind::VOID, PassiveKind::SOLID,
                                                      PassiveKind::SECOND_SOLID};

Area& areaOf(PassiveAreas& passive, PassiveKind kind);
const Area& areaOf(const PassiveAreas& passive, PassiveKind kind);

/// Whether an element belongs to the area without its rings.
bool isLoose(const Area& area, const Cell& cell);

/// Adds the elements and rings of `more`. All rings stay rings.
void addArea(Area& area, const Area& more, const Scene& scene);

/// Removes the elements of `gone`. A ring that loses elements becomes loose elements, unless a ring
/// of `gone` with the same centre leaves smaller rings of it.
void takeAway(Area& area, const Area& gone, const Scene& scene);

/// The elements of `cells` that are not in the area yet.
Cells newCells(const Area& area, const Cells& cells);
