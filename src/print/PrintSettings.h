#pragma once
// What the print preview remembers in VeluntaPrint.ini: the paper, its orientation,
// colour and quality, the margins, the zoom of the sheet and the window's place. The
// file is plain text with CR LF line ends: two comment lines, then one number per
// line in the order of the record, each with a blank before and after it.

#include <QByteArray>
#include <QPageSize>
#include <QString>

#include <array>
#include <cstdint>

namespace velunta {

struct PrintSettings {
    std::int16_t Quality = 1;      // OptQuality: 0 Draft, 1 Normal, 2 High
    std::int16_t Paper = 1;        // OptPaper, a row of PaperTable()
    std::int16_t ColorMode = 0;    // OptColor: 0 Color, 1 Monochrome
    std::int16_t Orientation = 0;  // OptOrient: 0 Portrait, 1 Landscape
    std::int16_t MarginLeft = 100; // twips on the sheet
    std::int16_t MarginTop = 100;
    std::int16_t ZoomIndex = 1; // in Cmbzoom
    std::int32_t WinLeft = 200; // the window, in twips
    std::int32_t WinTop = 200;
    std::int32_t WinWidth = 11925;
    std::int32_t WinHeight = 8925;

    bool operator==(const PrintSettings&) const = default;
};

// The record's defaults.
PrintSettings PrintDefaults();

// A sheet of the preview, in twips, portrait. The sizes are the preview's sheets, a
// little off the standards; `page` is the paper the printer is asked for.
struct PaperRow {
    const char* caption;
    int width;
    int height;
    QPageSize::PageSizeId page;
};
const std::array<PaperRow, 5>& PaperTable();

// Cmbzoom's entries and the zoom menu's, in percent.
const std::array<int, 5>& ZoomList();
const std::array<int, 8>& ZoomMenuList();

// The quality's printer resolution in dots per inch: Draft 150, Normal 300, High 600.
int QualityResolution(int quality);

// Reads the file. False when it is missing, short, or holds anything but numbers of
// the record's ranges; `settings` is then left as it was.
bool ReadPrintSettings(const QString& path, PrintSettings& settings);

// The file's bytes: the header with `version` ("3.0.0") and the record.
QByteArray PrintSettingsText(const PrintSettings& settings, const QString& version);

// Writes the file whole, or leaves the old one; false with the reason.
bool WritePrintSettings(const QString& path, const PrintSettings& settings, const QString& version,
                        QString* reason = nullptr);

} // namespace velunta
