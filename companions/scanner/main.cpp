// Velunta's scanner companion: the SANE devices there are, and one page scanned to a
// BMP file. Velunta runs it and can stop it at any time (SIGTERM cancels the scan).

#include "files/BmpWriter.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <sane/sane.h>
#include <sane/saneopts.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

enum Exit { kDone = 0, kAborted = 1, kFailed = 2 };

volatile std::sig_atomic_t g_stop = 0;
SANE_Handle g_handle = nullptr;

// SANE allows sane_cancel from a signal handler: the read in progress ends with CANCELLED.
void onStop(int)
{
    g_stop = 1;
    if (g_handle)
        sane_cancel(g_handle);
}

int fail(Exit code, const char* what, SANE_Status status = SANE_STATUS_GOOD)
{
    if (status == SANE_STATUS_GOOD)
        std::fprintf(stderr, "%s\n", what);
    else
        std::fprintf(stderr, "%s: %s\n", what, sane_strstatus(status));
    return code;
}

// How long the driver may take to let go of the device once the page is done or has
// failed. Some drivers wait on their reader for good after a failed read (SANE's test
// device after a jam, now and then); the outcome is known by then, so the program ends
// with it rather than hang until Velunta gives up.
constexpr unsigned kReleaseSeconds = 10;
volatile std::sig_atomic_t g_exitCode = kFailed;

void onReleaseTooLong(int)
{
    _exit(int(g_exitCode));
}

// Cancels and closes the device, with `code` as the program's end should that hang.
int releaseDevice(SANE_Handle handle, int code)
{
    g_handle = nullptr;
    g_exitCode = code;
    std::fflush(stdout);
    std::fflush(stderr);
    std::signal(SIGALRM, onReleaseTooLong);
    alarm(kReleaseSeconds); // stays armed through sane_exit
    sane_cancel(handle);
    sane_close(handle);
    return code;
}

// The statuses that end a scan the user can simply try again.
bool isAbort(SANE_Status status)
{
    return status == SANE_STATUS_CANCELLED || status == SANE_STATUS_NO_DOCS || status == SANE_STATUS_JAMMED ||
           status == SANE_STATUS_COVER_OPEN || status == SANE_STATUS_DEVICE_BUSY || g_stop;
}

int listDevices()
{
    const SANE_Device** devices = nullptr;
    const SANE_Status status = sane_get_devices(&devices, SANE_FALSE);
    if (status != SANE_STATUS_GOOD)
        return fail(kFailed, "The scanners could not be listed", status);
    for (int i = 0; devices && devices[i]; ++i)
        std::printf("%s\t%s\t%s\t%s\n", devices[i]->name, devices[i]->vendor ? devices[i]->vendor : "",
                    devices[i]->model ? devices[i]->model : "", devices[i]->type ? devices[i]->type : "");
    return kDone;
}

// Colour when the device offers it; everything else stays as the device sets it.
void chooseColour(SANE_Handle handle)
{
    SANE_Int count = 0;
    if (sane_control_option(handle, 0, SANE_ACTION_GET_VALUE, &count, nullptr) != SANE_STATUS_GOOD)
        return;
    for (SANE_Int i = 1; i < count; ++i) {
        const SANE_Option_Descriptor* option = sane_get_option_descriptor(handle, i);
        if (!option || !option->name || std::strcmp(option->name, SANE_NAME_SCAN_MODE) != 0 ||
            option->type != SANE_TYPE_STRING || !SANE_OPTION_IS_ACTIVE(option->cap) ||
            !SANE_OPTION_IS_SETTABLE(option->cap) || option->constraint_type != SANE_CONSTRAINT_STRING_LIST)
            continue;
        for (const SANE_String_Const* value = option->constraint.string_list; *value; ++value)
            if (std::strcmp(*value, SANE_VALUE_SCAN_MODE_COLOR) == 0) {
                QByteArray buffer(std::max<SANE_Int>(option->size, 16), '\0');
                std::strncpy(buffer.data(), *value, size_t(buffer.size() - 1));
                sane_control_option(handle, i, SANE_ACTION_SET_VALUE, buffer.data(), nullptr);
                return;
            }
    }
}

// One sample of a line as 0..255.
int sample(const uchar* line, int index, int depth, bool gray)
{
    if (depth == 1) {
        const bool bit = line[index / 8] & (0x80 >> (index % 8));
        // A set bit is black in a grey line art scan and full intensity in a colour one.
        return gray ? (bit ? 0 : 255) : (bit ? 255 : 0);
    }
    if (depth == 16) {
        quint16 v;
        std::memcpy(&v, line + 2 * index, 2); // in the host's byte order
        return v >> 8;
    }
    return line[index];
}

// Reads one frame to its end. False with the status when it stopped early.
SANE_Status readFrame(SANE_Handle handle, const SANE_Parameters& p, QByteArray& data, double from,
                      double share)
{
    const qint64 expected = p.lines > 0 ? qint64(p.bytes_per_line) * p.lines : 0;
    constexpr qint64 kMaxBytes = qint64(1) << 31;
    if (expected > 0 && expected < kMaxBytes)
        data.reserve(qsizetype(expected));
    QByteArray chunk(1 << 16, '\0');
    int lastShown = -1;
    for (;;) {
        SANE_Int length = 0;
        const SANE_Status status =
            sane_read(handle, reinterpret_cast<SANE_Byte*>(chunk.data()), SANE_Int(chunk.size()), &length);
        if (status == SANE_STATUS_EOF)
            return SANE_STATUS_GOOD;
        if (status != SANE_STATUS_GOOD)
            return status;
        if (data.size() + length > kMaxBytes)
            return SANE_STATUS_NO_MEM;
        data.append(chunk.constData(), length);
        if (expected > 0) {
            const int shown = int(100 * (from + share * std::min(1.0, double(data.size()) / expected)));
            if (shown != lastShown) {
                std::printf("progress %d\n", shown);
                std::fflush(stdout);
                lastShown = shown;
            }
        }
    }
}

int scanPage(QByteArray device, const QString& file)
{
    if (device.isEmpty()) {
        const SANE_Device** devices = nullptr;
        if (sane_get_devices(&devices, SANE_FALSE) != SANE_STATUS_GOOD || !devices || !devices[0])
            return fail(kFailed, "No scanner was found");
        device = devices[0]->name;
    }
    SANE_Handle handle = nullptr;
    SANE_Status status = sane_open(device.constData(), &handle);
    if (status != SANE_STATUS_GOOD)
        return fail(kFailed, "The scanner could not be opened", status);
    g_handle = handle;
    chooseColour(handle);

    QImage picture;
    bool lastFrame = false;
    int frame = 0;
    while (!lastFrame) {
        std::printf("progress %d\n", 0);
        std::fflush(stdout);
        status = g_stop ? SANE_STATUS_CANCELLED : sane_start(handle);
        SANE_Parameters p{};
        if (status == SANE_STATUS_GOOD)
            status = sane_get_parameters(handle, &p);
        QByteArray data;
        const bool separate =
            p.format == SANE_FRAME_RED || p.format == SANE_FRAME_GREEN || p.format == SANE_FRAME_BLUE;
        if (status == SANE_STATUS_GOOD)
            status = readFrame(handle, p, data, separate ? frame / 3.0 : 0, separate ? 1 / 3.0 : 1);
        if (status != SANE_STATUS_GOOD)
            return releaseDevice(handle, isAbort(status) ? fail(kAborted, "The scan was aborted", status)
                                                         : fail(kFailed, "The scan failed", status));
        lastFrame = p.last_frame;
        if (p.bytes_per_line <= 0 || p.pixels_per_line <= 0)
            return fail(kFailed, "The scanner sent no picture");
        const int lines = int(data.size() / p.bytes_per_line);
        if (picture.isNull()) {
            if (qint64(p.pixels_per_line) * lines > 400'000'000 || lines < 1)
                return fail(kFailed, "The scanner sent a picture of no usable size");
            picture = QImage(p.pixels_per_line, lines, QImage::Format_RGB32);
            if (picture.isNull())
                return fail(kFailed, "There is not enough memory for the scan");
            picture.fill(Qt::black);
        }
        const int h = std::min(lines, picture.height());
        const int w = std::min(p.pixels_per_line, picture.width());
        for (int y = 0; y < h; ++y) {
            const auto* in =
                reinterpret_cast<const uchar*>(data.constData()) + qsizetype(y) * p.bytes_per_line;
            auto* out = reinterpret_cast<QRgb*>(picture.scanLine(y));
            for (int x = 0; x < w; ++x) {
                if (p.format == SANE_FRAME_GRAY) {
                    const int v = sample(in, x, p.depth, true);
                    out[x] = qRgb(v, v, v);
                } else if (p.format == SANE_FRAME_RGB) {
                    out[x] = qRgb(sample(in, 3 * x, p.depth, false), sample(in, 3 * x + 1, p.depth, false),
                                  sample(in, 3 * x + 2, p.depth, false));
                } else {
                    const int v = sample(in, x, p.depth, false);
                    const int shift = p.format == SANE_FRAME_RED ? 16 : p.format == SANE_FRAME_GREEN ? 8 : 0;
                    out[x] = (out[x] & ~(0xFFu << shift)) | (uint(v) << shift) | 0xFF000000u;
                }
            }
        }
        ++frame;
    }
    // The page is written before the device is let go, so that it is there however that goes.
    velunta::WriteFailure failure;
    if (!velunta::SaveBMP(picture, file, &failure)) {
        std::fprintf(stderr, "The scan could not be written: %s\n", qPrintable(failure.reason));
        return releaseDevice(handle, kFailed);
    }
    std::printf("progress 100\n");
    return releaseDevice(handle, kDone);
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray command = argc > 1 ? QByteArray(argv[1]) : QByteArray();
    if (!(command == "--list" && argc == 2) && !(command == "--scan" && argc == 4)) {
        std::fprintf(stderr, "usage: scanner --list | scanner --scan DEVICE FILE.bmp\n");
        return kFailed;
    }
    std::signal(SIGTERM, onStop);
    std::signal(SIGINT, onStop);
    SANE_Int version = 0;
    const SANE_Status status = sane_init(&version, nullptr);
    if (status != SANE_STATUS_GOOD)
        return fail(kFailed, "SANE could not start", status);
    const int code =
        command == "--list" ? listDevices() : scanPage(QByteArray(argv[2]), QString::fromLocal8Bit(argv[3]));
    sane_exit();
    return code;
}
