#include "tools/frmFontStyle.h"

#include <QListWidget>

namespace velunta {

bool FontStyleBold(const QString& style)
{
    return style.compare(QLatin1String("Bold"), Qt::CaseInsensitive) == 0 ||
           style.compare(QLatin1String("Bold Italic"), Qt::CaseInsensitive) == 0;
}

bool FontStyleItalic(const QString& style)
{
    return style.compare(QLatin1String("Italic"), Qt::CaseInsensitive) == 0 ||
           style.compare(QLatin1String("Bold Italic"), Qt::CaseInsensitive) == 0;
}

frmFontStyle::frmFontStyle(QWidget* parent) : PickList(QStringLiteral("frmFontStyle"), parent)
{
    for (const char* style : {"Normal", "Bold", "Italic", "Bold Italic"}) {
        const QString name = QString::fromLatin1(style);
        QFont face = font();
        face.setPointSizeF(face.pointSizeF() + 2);
        face.setBold(FontStyleBold(name));
        face.setItalic(FontStyleItalic(name));
        addRow(name, face);
    }
    int height = 0;
    for (int i = 0; i < list()->count(); ++i)
        height += list()->sizeHintForRow(i);
    list()->setFixedSize(160, height + 2 * list()->frameWidth());
}

} // namespace velunta
