#include "widgets/AppStyle.h"

#include "widgets/Icons.h"

namespace velunta {

QIcon AppStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const
{
    switch (icon) {
    case SP_ToolBarHorizontalExtensionButton:
        return NamedIcon(QStringLiteral("more"));
    case SP_ToolBarVerticalExtensionButton:
        return NamedIcon(QStringLiteral("more-down"));
    default:
        return QProxyStyle::standardIcon(icon, option, widget);
    }
}

} // namespace velunta
