// The read-outs and swatches of the picker, the replacer and the floating selection's
// transparency colour. The controls belong to their panels; these find them by name,
// so a panel without them simply shows nothing.

#include "tools/frmControls.h"

#include <QLabel>

namespace velunta {

namespace {

void paintSwatch(QWidget* swatch, Color c)
{
    if (!swatch)
        return;
    swatch->setAutoFillBackground(true);
    QPalette pal = swatch->palette();
    pal.setColor(QPalette::Window, c < 0 ? pal.color(QPalette::Button) : ToQColor(c));
    swatch->setPalette(pal);
    swatch->update();
}

} // namespace

void frmControls::SetPickReadouts(Color c)
{
    paintSwatch(findChild<QWidget*>(QStringLiteral("ColorPick")), c);
    const int channels[3] = {ColorRed(c), ColorGreen(c), ColorBlue(c)};
    const char* const names[3] = {"lblRed", "lblGreen", "lblBlue"};
    for (int k = 0; k < 3; ++k)
        if (auto* label = findChild<QLabel*>(QLatin1String(names[k])))
            label->setText(QString::number(channels[k]));
}

void frmControls::SetTransparencySwatch(Color c)
{
    paintSwatch(findChild<QWidget*>(QStringLiteral("LblTransparencyColor")), c);
}

void frmControls::SetReplaceSwatch(int index, Color c)
{
    paintSwatch(findChild<QWidget*>(QStringLiteral("LblReplaceCol(%1)").arg(index)), c);
}

} // namespace velunta
