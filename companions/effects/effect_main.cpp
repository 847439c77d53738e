// One effect program of those that ship with Velunta: VELUNTA_EFFECT names the
// function of SampleEffects.h it runs on the picture it is given.

#include "effects/SampleEffects.h"
#include "exchange/EffectProgram.h"

int main(int argc, char** argv)
{
    return velunta::RunEffectProgram(argc, argv, [](QImage& picture) { velunta::VELUNTA_EFFECT(picture); });
}
