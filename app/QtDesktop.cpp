#include "app/QtDesktop.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace {

/// While it lives, the person can answer: what looked like waiting no longer does.
class AnswerCursor {
public:
    AnswerCursor() : m_isWaiting(QGuiApplication::overrideCursor() != nullptr) {
        if (m_isWaiting) {
            QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    AnswerCursor(const AnswerCursor&) = delete;
    AnswerCursor& operator=(const AnswerCursor&) = delete;
    ~AnswerCursor() {
        if (m_isWaiting) {
            QGuiApplication::restoreOverrideCursor();
        }
    }

private:
    bool m_isWaiting;
};

/// A message box as every other one here: the headline bold, the lines of a width to be read with
/// ease, no markup, as file names have none.
class MessageBox : public QMessageBox {
public:
    MessageBox(Icon icon, const QString& headline, const QString& text, QWidget* parent)
        : QMessageBox(icon, QApplication::applicationName(), headline, NoButton, parent) {
        setTextFormat(Qt::PlainText);
        setInformativeText(text);
        if (auto* const label = findChild<QLabel*>("qt_msgbox_label")) {
            QFont bold = label->font();
            bold.setBold(true);
            label->setFont(bold);
        }
        if (auto* const grid = qobject_cast<QGridLayout*>(layout())) {
            constexpr int kLeastWidth = 400; // pixels
            grid->addItem(new QSpacerItem(kLeastWidth, 0), grid->rowCount(), 0, 1,
                          grid->columnCount()); // owned by the layout
        }
    }
};

bool ConfirmReplacing(QWidget* parent, const QString& path) {
    MessageBox box(QMessageBox::Warning,
                   QString("“%1”は既に存在します。").arg(QFileInfo(path).fileName()),
                   "置き換えると、今の内容は失われます。", parent);
    const QPushButton* const replace = box.addButton("置き換える", QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton("キャンセル", QMessageBox::RejectRole));
    box.exec();
    return box.clickedButton() == replace;
}

QString WithExtension(const QString& path, const QString& extension) {
    const QString ending = "." + extension;
    return path.endsWith(ending, Qt::CaseInsensitive) ? path : path + ending;
}

} // namespace

int QtDesktop::ShowAlert(const std::string& headline, const std::string& text,
                         const std::vector<std::string>& buttons) {
    const AnswerCursor cursor;
    const auto icon = buttons.size() > 1 ? QMessageBox::Question
                      : text.empty()     ? QMessageBox::Information
                                         : QMessageBox::Warning;
    MessageBox box(icon, QString::fromStdString(headline), QString::fromStdString(text),
                   QApplication::activeWindow());
    std::vector<QAbstractButton*> boxButtons;
    for (const std::string& title : buttons) {
        const auto role = boxButtons.empty() ? QMessageBox::RejectRole : QMessageBox::AcceptRole;
        boxButtons.push_back(box.addButton(QString::fromStdString(title), role));
    }
    box.setDefaultButton(static_cast<QPushButton*>(boxButtons.front()));
    box.setEscapeButton(boxButtons.front());
    box.exec();
    const auto chosen = std::find(boxButtons.begin(), boxButtons.end(), box.clickedButton());
    return chosen == boxButtons.end() ? -1 : static_cast<int>(chosen - boxButtons.begin());
}

std::string QtDesktop::AskOutputPath(const std::string& folder, const std::string& name,
                                     const std::string& extension) {
    const AnswerCursor cursor;
    const QString ending = QString::fromStdString(extension);
    QWidget* const parent = QApplication::activeWindow();
    QFileDialog panel(parent, "保存", QFile::decodeName(folder.c_str()),
                      QString("%1 (*.%2)").arg(ending.toUpper(), ending));
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    // Asked below, for the name with its extension.
    panel.setOption(QFileDialog::DontConfirmOverwrite);
    panel.selectFile(QFile::decodeName(name.c_str()));
    while (panel.exec() == QDialog::Accepted) {
        const QString path = WithExtension(panel.selectedFiles().constFirst(), ending);
        if (const QString objection = m_objection(QFile::encodeName(path).toStdString());
            !objection.isEmpty()) {
            MessageBox box(QMessageBox::Warning, objection, {}, parent);
            box.addButton(QMessageBox::Ok);
            box.exec();
            continue;
        }
        if (!QFile::exists(path) || ConfirmReplacing(parent, path)) {
            return QFile::encodeName(path).toStdString();
        }
    }
    return "";
}
