#include "files/FileNames.h"

#include <algorithm>

namespace velunta {

namespace {

// What each entry of the standard save dialog writes, by its index (0 is no entry).
struct FilterEntry {
    const char* extension;
    std::optional<SaveFormat> format;
};
const FilterEntry kFilters[6] = {{"", std::nullopt},        {".bmp", SaveFormat::Bmp},
                                 {".bmp", SaveFormat::Bmp}, {".jpg", SaveFormat::Jpeg},
                                 {".gif", SaveFormat::Gif}, {"", std::nullopt}};

// The extension rules look at the file's own name only: a full stop in a folder's name
// ("/home/jo.doe/Pictures/cat") is no extension, and no folder loses characters to one.
template <class Rule> QString onFileName(const QString& path, Rule rule)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return path.left(slash + 1) + rule(path.mid(slash + 1));
}

} // namespace

std::optional<SaveFormat> FormatOfFilter(int filterIndex)
{
    return filterIndex >= 0 && filterIndex <= kFilterAllFiles ? kFilters[filterIndex].format : std::nullopt;
}

// The name Save As proposes the extension for: the filter decides the format, the typed
// extension never does. A name without a full stop gets the filter's extension; a name
// that doesn't hold it loses its last four characters to it, whatever they were.
QString SaveAsFileName(QString result, int filterIndex)
{
    const QString extension =
        QString::fromLatin1(kFilters[std::clamp(filterIndex, 0, int(kFilterAllFiles))].extension);
    return onFileName(result, [&](QString name) -> QString {
        if (!name.contains(u'.'))
            name += extension;
        if (!name.contains(extension))
            name = name.left(name.size() - 4) + extension;
        return name;
    });
}

// The filter index a name's extension stands for, or `current` when it names none.
int FilterIndexOfName(const QString& name, int current, bool knowsJpeg)
{
    const QString lower = name.toLower();
    if (lower.endsWith(QLatin1String(".gif")))
        return kFilterGif;
    if (lower.endsWith(QLatin1String(".jpg")) || (knowsJpeg && lower.endsWith(QLatin1String(".jpeg"))))
        return kFilterJpeg;
    if (lower.endsWith(QLatin1String(".bmp")))
        return kFilterPictures;
    return current;
}

// The export dialogs' proposal: the caption without its last seven characters (" - 100%"),
// trimmed, with its last four characters made `extension`.
QString ExportProposal(const QString& caption, const QString& extension)
{
    return onFileName(caption.left(std::max<qsizetype>(0, caption.size() - 7)).trimmed(),
                      [&](QString name) -> QString {
                          if (name.right(4).toLower() != extension)
                              name = name.left(std::max<qsizetype>(0, name.size() - 4)) + extension;
                          return name;
                      });
}

// A chosen export name: without a full stop it gets the extension, otherwise its last
// four characters become it ("x.jpeg" gives "x..jpg").
QString ExportFileName(QString path, const QString& extension)
{
    return onFileName(path, [&](QString name) -> QString {
        if (!name.contains(u'.'))
            return name + extension;
        if (name.right(4).toLower() != extension)
            name = name.left(name.size() - 4) + extension;
        return name;
    });
}

} // namespace velunta
