#pragma once

namespace velunta {

// The twenty tools, numbered as the buttons Cmd(0..19) stand and as settings keep them.
enum Tool : int {
    kToolPointer = 0,
    kToolPencil = 1,
    kToolZoom = 2,
    kToolFill = 3,
    kToolGradient = 4,
    kToolSelectArea = 5,
    kToolAirbrush = 6,
    kToolCrop = 7,
    kToolColorPicker = 8,
    kToolRectangle = 9,
    kToolCircle = 10,
    kToolBrighten = 11,
    kToolText = 12,
    kToolBlur = 13,
    kToolLine = 14,
    kToolDarken = 15,
    kToolRectangle3D = 16,
    kToolColorReplacer = 17,
    kToolDissolve = 18,
    kToolEnhance = 19,
    kToolCount = 20,
};

} // namespace velunta
