#pragma once
// libjpeg reports a fatal error by calling error_exit, which by default ends the
// process. Here it jumps back to the setjmp of the routine that drove the library
// instead, with the library's message kept for the reason text.
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
    // Set by emit_message for warnings that mean the picture data is damaged.
    bool damaged = false;

    // Installs the handlers on a struct that is about to be created.
    void attach(jpeg_common_struct* common);
    QString text() const { return QString::fromLocal8Bit(message); }
};

} // namespace velunta
