// VeluntaExt2, the editor of polygons: the user places the corners of shapes on the
// picture Velunta hands over, in the colour and thickness it left in the settings.
//
//     VeluntaExt2 <picture.bmp>
//
// OK writes the picture back in place; Cancel leaves it untouched.

#include "drawing/frmShapeEditor.h"

int main(int argc, char** argv)
{
    return velunta::RunShapeEditor(argc, argv, velunta::ShapeKind::Polygon);
}
