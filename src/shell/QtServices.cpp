#include "shell/QtServices.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

namespace velunta {

int QtPrompt::MsgBox(const QString& text, int style, const QString& title)
{
    QMessageBox box(m_parent);
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("Velunta") : title);
    box.setText(text);
    switch (style & 0x70) {
    case vbCritical:
        box.setIcon(QMessageBox::Critical);
        break;
    case vbQuestion:
        box.setIcon(QMessageBox::Question);
        break;
    case vbExclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case vbInformation:
        box.setIcon(QMessageBox::Information);
        break;
    default:
        break;
    }
    switch (style & 0x7) {
    case vbOKCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case vbYesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    case vbYesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    default:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Yes:
        return vbYes;
    case QMessageBox::No:
        return vbNo;
    case QMessageBox::Cancel:
        return vbCancel;
    default:
        return (style & 0x7) == vbOKCancel || (style & 0x7) == vbYesNoCancel ? vbCancel : vbOK;
    }
}

QString QtFileDialogs::getOpenFileName(const QString& title, const QString& filter,
                                       const QString& defaultName)
{
    return QFileDialog::getOpenFileName(m_parent, title,
                                        defaultName.isEmpty() ? QDir::currentPath() : defaultName, filter);
}

QString QtFileDialogs::getSaveFileName(const QString& title, const QString& filter,
                                       const QString& defaultName, int& filterIndex)
{
    QFileDialog dialog(m_parent, title, QDir::currentPath(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    const QStringList filters = filter.split(QStringLiteral(";;"), Qt::SkipEmptyParts);
    if (filterIndex >= 1 && filterIndex <= filters.size())
        dialog.selectNameFilter(filters.at(filterIndex - 1));
    dialog.selectFile(defaultName.isEmpty() ? QStringLiteral("Untitled") : defaultName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    const int chosen = int(filters.indexOf(dialog.selectedNameFilter()));
    if (chosen >= 0)
        filterIndex = chosen + 1;
    return dialog.selectedFiles().first();
}

} // namespace velunta
