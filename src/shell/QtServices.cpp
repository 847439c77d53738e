#include "shell/QtServices.h"

#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTreeView>

#include <algorithm>
#include <iterator>

namespace velunta {

namespace {

// A dialog wide enough for long names, in the detail view with the name column taking
// the room and the size, type and date columns as wide as their contents.
void readableColumns(QFileDialog& dialog)
{
    dialog.setViewMode(QFileDialog::Detail);
    dialog.resize(std::max(dialog.width(), 820), std::max(dialog.height(), 520));
    if (auto* view = dialog.findChild<QTreeView*>(QStringLiteral("treeView"))) {
        QHeaderView* header = view->header();
        header->setStretchLastSection(false);
        header->setMinimumSectionSize(60);
        header->setSectionResizeMode(0, QHeaderView::Stretch);
        for (int i = 1; i < header->count(); ++i)
            header->setSectionResizeMode(i, QHeaderView::ResizeToContents);
    }
}

// The program's own styles, as their words say: 4 Yes and No; 64 information;
// hexadecimal 34 a question with Yes and No; 44 a warning with Yes and No; 67 Yes, No
// and Cancel with a question.
struct BoxLook {
    int style;
    QMessageBox::Icon icon;
    QMessageBox::StandardButtons buttons;
};
const BoxLook kOwnStyles[] = {
    {vbYesNo, QMessageBox::NoIcon, QMessageBox::Yes | QMessageBox::No},
    {vbInformation, QMessageBox::Information, QMessageBox::Ok},
    {vbQuestionYesNo, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No},
    {vbWarningYesNo, QMessageBox::Warning, QMessageBox::Yes | QMessageBox::No},
    {vbQuestionYesNoCancel, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel},
};
// By bits: 16 critical, 32 question, 48 exclamation, 64 information; 0 OK, 1 OK and
// Cancel, 3 Yes, No and Cancel, 4 Yes and No.
const QMessageBox::Icon kIconOfBits[] = {QMessageBox::NoIcon, QMessageBox::Critical, QMessageBox::Question,
                                         QMessageBox::Warning, QMessageBox::Information};
const QMessageBox::StandardButtons kButtonsOfBits[] = {
    QMessageBox::Ok, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok,
    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes | QMessageBox::No};

} // namespace

int QtPrompt::MsgBox(const QString& text, int style, const QString& title)
{
    QMessageBox box(m_parent);
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("Velunta") : title);
    box.setText(text);
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    const auto own = std::find_if(std::begin(kOwnStyles), std::end(kOwnStyles),
                                  [style](const BoxLook& look) { return look.style == style; });
    if (own != std::end(kOwnStyles)) {
        icon = own->icon;
        buttons = own->buttons;
    } else {
        // Other values by their bits: the buttons below, the icon above.
        const int iconBits = (style & 0x70) >> 4, buttonBits = style & 0x7;
        if (iconBits < int(std::size(kIconOfBits)))
            icon = kIconOfBits[iconBits];
        if (buttonBits < int(std::size(kButtonsOfBits)))
            buttons = kButtonsOfBits[buttonBits];
    }
    box.setIcon(icon);
    box.setStandardButtons(buttons);
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

QString QtFileDialogs::startFolder() const
{
    if (!StartFolder.isEmpty() && QFileInfo(StartFolder).isDir())
        return StartFolder;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QFileInfo(pictures).isDir() ? pictures : QDir::homePath();
}

QString QtFileDialogs::getOpenFileName(const QString& title, const QString& filter,
                                       const QString& defaultName)
{
    QFileDialog dialog(m_parent, title, defaultName.isEmpty() ? startFolder() : defaultName, filter);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    readableColumns(dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().first();
}

QString QtFileDialogs::getSaveFileName(const QString& title, const QString& filter,
                                       const QString& defaultName, int& filterIndex)
{
    QFileDialog dialog(m_parent, title, startFolder(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    readableColumns(dialog);
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
