#pragma once
// Texture fill: a picture repeated over a surface like tiles on a floor.

#include <QString>
#include <QStringList>

namespace velunta {

class Surface;

// Copies `texture` over the whole of `target`, from its top left, in rows of tiles
// the texture's size; the last tile of a row or a column is cut at the target's edge.
// So every pixel x, y of the target takes the texture's pixel x mod w, y mod h. An
// empty texture or target changes nothing (false).
bool TileTexture(Surface& target, const Surface& texture);

// The same for Texture Fill's command: the tiles land in a new picture that takes the
// target's place. The command runner keeps the target's old picture to roll back to,
// so tiling over it in place would first copy all of it, and the new picture gets
// huge pages, which a 4000 x 3000 picture fills with far fewer page faults.
bool FillWithTexture(Surface& target, const Surface& texture);

// The picture files a texture may be taken from, as name filters ("*.bmp", ...).
QStringList TextureFileFilters();

} // namespace velunta
