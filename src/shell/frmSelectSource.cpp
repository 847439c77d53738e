#include "shell/frmSelectSource.h"

#include "widgets/ButtonLooks.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace velunta {

frmSelectSource::frmSelectSource(const std::vector<ScannerDevice>& devices, const QString& current,
                                 QWidget* parent)
    : QDialog(parent), m_devices(devices)
{
    setObjectName(QStringLiteral("frmSelectSource"));
    setWindowTitle(tr("Select Source"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("Sources:"), this));
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstSources"));
    for (const ScannerDevice& device : m_devices)
        m_list->addItem(device.label());
    int row = 0;
    for (size_t i = 0; i < m_devices.size(); ++i)
        if (m_devices[i].name == current)
            row = int(i);
    m_list->setCurrentRow(row);
    m_list->setMinimumWidth(360);
    layout->addWidget(m_list);
    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("Select"), QDialogButtonBox::AcceptRole, QStringLiteral("cmdSelect"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    layout->addWidget(buttons);
}

QString frmSelectSource::device() const
{
    const int row = m_list->currentRow();
    return row >= 0 && row < int(m_devices.size()) ? m_devices[size_t(row)].name : QString();
}

} // namespace velunta
