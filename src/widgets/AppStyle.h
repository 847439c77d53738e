#pragma once
// The program's style: the platform's look, with the program's own pictures for the
// bars' overflow buttons. The stock ones are picture files that Qt reads through
// every image format plugin it has, loading them all while the window opens.

#include <QProxyStyle>

namespace velunta {

class AppStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
};

} // namespace velunta
