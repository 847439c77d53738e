#pragma once
// libjpeg reports a fatal error by calling error_exit, which by default ends the
// process. Here it jumps back to the setjmp of the routine that drove the library
// instead, with the library's message kept for the reason text. Warnings (data
// that is damaged or ends early) don't stop the library: it decodes what there
// is, so they are only counted and the first one kept.
//
// Only plain C frames and routines without C++ objects may lie between a setjmp
// and the library calls it guards: the jump skips destructors.

#include <csetjmp>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

#include <QString>

namespace velunta {

struct JpegErrors {
    jpeg_error_mgr pub;
    std::jmp_buf jump;
    char message[JMSG_LENGTH_MAX] = {};
    char warning[JMSG_LENGTH_MAX] = {};
    int warnings = 0;
    // The output row a decompressor had reached when its data ran out or was broken
    // off by a marker; -1 while it lasts.
    long dataEndRow = -1;

    // Installs the handlers on a struct that is about to be created.
    void attach(jpeg_common_struct* common);
    QString text() const { return QString::fromLocal8Bit(message); }
    QString warningText() const { return QString::fromLocal8Bit(warning); }
};

} // namespace velunta
