#include "ui/screens/settings/file_choice.h"

#include "ui/style/text.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText exportTitle{"保存导出文件", "Save Export"};
constexpr BilingualText importTitle{"选择要导入的文件", "Choose a File to Import"};
constexpr BilingualText saveText{"保存", "Save"};
constexpr BilingualText openText{"打开", "Open"};
constexpr BilingualText cancelText{"取消", "Cancel"};
constexpr BilingualText nameText{"文件名：", "File name:"};
constexpr BilingualText typeText{"文件类型：", "Files of type:"};
constexpr BilingualText folderText{"位置：", "Look in:"};
constexpr BilingualText importableText{"CSV 与 JSON", "CSV and JSON"};
constexpr BilingualText allText{"所有文件", "All files"};

// Where the user was last, in this run.
QString& lastFolder()
{
    static QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QFileInfo(folder).isDir()) { // Qt would take its name for the file's
        folder = QDir::homePath();
    }
    return folder;
}

QFileDialog* makeDialog(QWidget& parent, AppLanguage language, const BilingualText& title,
                        const BilingualText& accept, FileChosen chosen)
{
    auto* dialog = new QFileDialog(&parent, qtText(title.in(language)), lastFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    const auto label = [&](QFileDialog::DialogLabel which, const BilingualText& text) {
        dialog->setLabelText(which, qtText(text.in(language)));
    };
    label(QFileDialog::Accept, accept);
    label(QFileDialog::Reject, cancelText);
    label(QFileDialog::FileName, nameText);
    label(QFileDialog::FileType, typeText);
    label(QFileDialog::LookIn, folderText);
    QObject::connect(dialog, &QFileDialog::fileSelected, &parent,
                     [chosen = std::move(chosen)](const QString& path) {
                         lastFolder() = QFileInfo(path).absolutePath();
                         chosen(path);
                     });
    return dialog;
}

} // namespace

void chooseFileToWrite(QWidget& parent, AppLanguage language, const QString& name, FileChosen chosen)
{
    QFileDialog* dialog = makeDialog(parent, language, exportTitle, saveText, std::move(chosen));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setLabelText(QFileDialog::Accept, qtText(saveText.in(language)));
    dialog->setDefaultSuffix(QFileInfo(name).suffix());
    dialog->selectFile(name);
    dialog->open();
}

void chooseFileToRead(QWidget& parent, AppLanguage language, FileChosen chosen)
{
    QFileDialog* dialog = makeDialog(parent, language, importTitle, openText, std::move(chosen));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters(
        {qtText(importableText.in(language)) + QStringLiteral(" (*.csv *.json *.CSV *.JSON)"),
         qtText(allText.in(language)) + QStringLiteral(" (*)")});
    dialog->open();
}

} // namespace brevlin
