#pragma once
// Scanning through SANE. The scanner drivers run in the companion program "scanner"
// (companions/scanner), not in Velunta: a driver that hangs or crashes then takes only
// that program with it, never an unsaved picture, and a wait for one can always end.
//
// The companion's interface:
//   scanner --list                  one line per device: name, vendor, model, type (tab-separated)
//   scanner --scan DEVICE FILE.bmp  scans one page to FILE.bmp; an empty DEVICE takes the first
//                                   device; "progress N" lines (N in 0..100) while it reads
// Exit codes: 0 done, 1 the scan was aborted (cancelled, no paper, a jam...), 2 the
// device failed or isn't there. Reasons go to standard error.

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace velunta {

struct ScannerDevice {
    QString name; // SANE's device name, "test:0", "epson2:libusb:001:004"
    QString vendor;
    QString model;
    QString type;
    // "Vendor Model (name)", for a list.
    QString label() const;
};

struct ScannerList {
    std::vector<ScannerDevice> devices;
    bool ok = false;
    QString error;
};

// Parses the companion's --list output.
std::vector<ScannerDevice> ParseScannerList(const QByteArray& output);

// Asks the companion for the devices. Finding network scanners takes time: the wait is
// bounded, and `keepWaiting` (given the part of the limit gone) can stop it.
ScannerList ListScanners(const QString& companion, const std::function<bool(double)>& keepWaiting = {});

struct ScanResult {
    enum Outcome { Scanned, Aborted, Failed };
    Outcome outcome = Failed;
    QString error;
};

// Scans one page into `file` (a BMP). `keepWaiting` is given the scan's progress (0..1)
// and stops it by answering false. A device that says nothing for two minutes is given up.
ScanResult ScanPage(const QString& companion, const QString& device, const QString& file,
                    const std::function<bool(double)>& keepWaiting = {});

} // namespace velunta
