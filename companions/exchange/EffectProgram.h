#pragma once
// The main of an effect program: Velunta starts it with one argument, the path of a
// picture, and takes the picture back when the program has rewritten it.
//
//     int main(int argc, char** argv)
//     {
//         return velunta::RunEffectProgram(argc, argv, [](QImage& picture) { Sepia(picture); });
//     }

#include <QImage>

#include <functional>

namespace velunta {

// Exit codes of an effect program.
enum EffectExit { kEffectDone = 0, kEffectUsage = 1, kEffectUnreadable = 2, kEffectUnwritable = 3 };

// Reads the picture named by the one argument, applies `effect` to it (Format_RGB32)
// and writes it back in place. What went wrong goes to stderr.
int RunEffectProgram(int argc, char** argv, const std::function<void(QImage&)>& effect);

} // namespace velunta
