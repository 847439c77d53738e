#include "tools/frmFonts.h"

#include <QFontDatabase>
#include <QListWidget>

namespace velunta {

frmFonts::frmFonts(QWidget* parent) : PickList(QStringLiteral("frmFonts"), parent)
{
    const QStringList families = QFontDatabase::families();
    for (const QString& family : families) {
        // Private families are the system's own and can't be asked for by name.
        if (QFontDatabase::isPrivateFamily(family))
            continue;
        QFont face(family);
        face.setPointSizeF(font().pointSizeF() + 2);
        addRow(family, face);
    }
    list()->setFixedSize(250, 300);
}

} // namespace velunta
