// VeluntaExt1, the editor of Bezier curves: the user places the points of curves on the
// picture Velunta hands over, in the colour and thickness it left in the settings.
//
//     VeluntaExt1 <picture.bmp>
//
// OK writes the picture back in place; Cancel leaves it untouched.

#include "drawing/frmShapeEditor.h"

int main(int argc, char** argv)
{
    return velunta::RunShapeEditor(argc, argv, velunta::ShapeKind::Bezier);
}
