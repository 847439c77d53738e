#include "core/Color.h"

namespace velunta {

QString ColorToHTML(Color c)
{
    const QString hex = QString(QStringLiteral("00000") + QString::number(quint32(c), 16).toUpper()).right(6);
    return QLatin1Char('#') + hex.mid(4, 2) + hex.mid(2, 2) + hex.left(2);
}

} // namespace velunta
