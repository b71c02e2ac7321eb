#pragma once

#include <QRectF>
#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

#include "format/scene.h"
#include "scene_edits.h"

using namespace voxam;

// A piece is a load, a support or a kept area. The window moves, copies, mirrors and deletes
// pieces.

/// A disc or ring that is kept void or solid, or connected elements of no ring. Pieces of the same
/// kind may overlap.
struct KeptArea {
    PassiveKind kind = PassiveKind::VOID;
    Area area;

    bool operator==(const KeptArea&) const = default;
};

/// The content of a piece, without its place in a scene.
using Piece = std::variant<Load, Support, KeptArea>;

/// The identity of a piece in a scene.
struct PieceId {
    enum class Type { LOAD, SUPPORT, AREA };

    Type type = Type::LOAD;
    std::size_t index = 0;                 ///< of a load or a support, in the scene's list
    PassiveKind kind = PassiveKind::VOID;  ///< of an area
    Cell cell;                             ///< the first element of an area that is no ring
    std::optional<Ring> ring;              ///< of an area that is one

    static PieceId load(std::size_t index) { return {Type::LOAD, index, {}, {}, {}}; }
    static PieceId support(std::size_t index) { return {Type::SUPPORT, index, {}, {}, {}}; }
    static PieceId area(PassiveKind kind, const Cell& cell) {
        return {Type::AREA, 0, kind, cell, {}};
    }
    static PieceId area(PassiveKind kind, const Ring& ring) {
        return {Type::AREA, 0, kind, {}, ring};
    }

    bool operator==(const PieceId&) const = default;
};

/// The bounding box of a piece, in nodes or elements.
struct Extent {
    Range x;
    Range y;
};

bool exists(const Scene& scene, const PieceId& id);

/// All pieces: loads, then supports, then areas.
std::vector<PieceId> piecesOf(const Scene& scene);

/// The kept area that an element belongs to; the smallest one if areas overlap there.
std::optional<PieceId> areaAt(const Scene& scene, const Cell& cell);

/// The piece must exist.
Piece pieceOf(const Scene& scene, const PieceId& id);

/// Removes a piece. Throws InputError for the only load.
void takeOut(Scene& scene, const PieceId& id);
/// Removes different pieces. Throws InputError for all loads.
void takeOut(Scene& scene, std::vector<PieceId> ids);

/// Adds a piece. If the load case of a load does not exist, the load gets the last load case.
PieceId putIn(Scene& scene, const Piece& piece);
/// Adds pieces. Areas that become one have one identity.
std::vector<PieceId> putIn(Scene& scene, const std::vector<Piece>& pieces);

/// Replaces pieces by others of the same types, and returns their identities. They do not take
/// elements from each other unless they overlap.
std::vector<PieceId> replace(Scene& scene, const std::vector<PieceId>& ids,
                             const std::vector<Piece>& pieces);

Extent extentOf(const Piece& piece);
/// The frame of a piece, in plate coordinates.
QRectF boxOf(const Piece& piece);

/// Moves a piece by a number of elements, but not beyond the plate. The centre of a ring stays on
/// the plate. Throws InputError if another piece is larger than the plate.
Piece moved(const Piece& piece, int right, int down, const Scene& scene);
/// Moves pieces by the same step, unless no step keeps all of them on the plate.
std::vector<Piece> moved(std::vector<Piece> pieces, int right, int down, const Scene& scene);

/// Mirrors a piece at the middle of the plate, including its force.
Piece mirrored(const Piece& piece, bool isLeftRight, const Scene& scene);

/// The ring whose elements are the whole area; empty if the area has another form.
std::optional<Ring> ringOf(const Area& area, const Scene& scene);
bool isRectangle(const Area& area);

/// The elements of a rectangle or of a ring, without those outside the plate.
Area rectangleArea(const Extent& extent, const Scene& scene);
Area ringArea(const Ring& ring, const Scene& scene);
