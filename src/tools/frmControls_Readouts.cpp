// Read-outs on the tool panels that the tools write while they work.

#include "tools/frmControls.h"

#include <QLabel>

namespace velunta {

void frmControls::SetAngleText(const QString& text, int alignment)
{
    auto* label = findChild<QLabel*>(QStringLiteral("lblAngle"));
    if (!label)
        return;
    const Qt::Alignment horizontal = alignment == 1   ? Qt::AlignRight
                                     : alignment == 2 ? Qt::AlignHCenter
                                                      : Qt::AlignLeft;
    label->setAlignment(horizontal | Qt::AlignVCenter);
    label->setText(text);
}

} // namespace velunta
