#include "app/QtDesktop.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>

#include <algorithm>

namespace {

/// What the engine and its adaptor have to say: they speak Japanese only.
[[maybe_unused]] constexpr const char* kTexts[] = {
    QT_TRANSLATE_NOOP("Desktop", "コンテンツのロードに失敗しました。"),
    QT_TRANSLATE_NOOP("Desktop", "保存できませんでした。"),
    QT_TRANSLATE_NOOP("Desktop", "不明なエラー"),
    QT_TRANSLATE_NOOP("Desktop", "確認"),
    QT_TRANSLATE_NOOP("Desktop", "編集内容が保存されていません。終了して良いですか。"),
    QT_TRANSLATE_NOOP("Desktop", "前回の編集が残っています。復元しますか。"),
    QT_TRANSLATE_NOOP("Desktop", "いいえ"),
    QT_TRANSLATE_NOOP("Desktop", "はい"),
};

/// One of these in the language of the window; another text as it is.
QString Translated(const std::string& text) {
    return QCoreApplication::translate("Desktop", text.c_str());
}

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
        if (auto* const label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
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
                   QtDesktop::tr("“%1”は既に存在します。").arg(QFileInfo(path).fileName()),
                   QtDesktop::tr("置き換えると、今の内容は失われます。"), parent);
    const QPushButton* const replace =
        box.addButton(QtDesktop::tr("置き換える"), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(QtDesktop::tr("キャンセル"), QMessageBox::RejectRole));
    box.exec();
    return box.clickedButton() == replace;
}

/// The path with the first of the extensions, unless it has one of them.
QString WithExtension(const QString& path, const QStringList& extensions) {
    const bool hasOne = std::ranges::any_of(extensions, [&](const QString& extension) {
        return path.endsWith(u'.' + extension, Qt::CaseInsensitive);
    });
    return hasOne ? path : path + u'.' + extensions.constFirst();
}

QStringList ToStrings(const std::vector<std::string>& texts) {
    QStringList strings;
    for (const std::string& text : texts) {
        strings << QString::fromStdString(text);
    }
    return strings;
}

/// One filter for each extension.
QStringList NameFilters(const QStringList& extensions) {
    QStringList filters;
    for (const QString& extension : extensions) {
        filters << QStringLiteral("%1 (*.%2)").arg(extension.toUpper(), extension);
    }
    return filters;
}

} // namespace

int QtDesktop::ShowAlert(const std::string& headline, const std::string& text,
                         const std::vector<std::string>& buttons) {
    const AnswerCursor cursor;
    const auto icon = buttons.size() > 1 ? QMessageBox::Question
                      : text.empty()     ? QMessageBox::Information
                                         : QMessageBox::Warning;
    MessageBox box(icon, Translated(headline), Translated(text), QApplication::activeWindow());
    std::vector<QAbstractButton*> boxButtons;
    for (const std::string& title : buttons) {
        const auto role = boxButtons.empty() ? QMessageBox::RejectRole : QMessageBox::AcceptRole;
        boxButtons.push_back(box.addButton(Translated(title), role));
    }
    box.setDefaultButton(static_cast<QPushButton*>(boxButtons.front()));
    box.setEscapeButton(boxButtons.front());
    box.exec();
    const auto chosen = std::find(boxButtons.begin(), boxButtons.end(), box.clickedButton());
    return chosen == boxButtons.end() ? -1 : static_cast<int>(chosen - boxButtons.begin());
}

std::string QtDesktop::AskOutputPath(const std::string& folder, const std::string& name,
                                     const std::string& extension) {
    return AskListPath(folder, name, {extension});
}

std::string QtDesktop::AskListPath(const std::string& folder, const std::string& name,
                                   const std::vector<std::string>& extensions) {
    const AnswerCursor cursor;
    const QStringList endings = ToStrings(extensions);
    QWidget* const parent = QApplication::activeWindow();
    QFileDialog panel(parent, tr("保存"), QFile::decodeName(folder.c_str()));
    panel.setNameFilters(NameFilters(endings));
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    // Asked below, for the name with its extension.
    panel.setOption(QFileDialog::DontConfirmOverwrite);
    panel.selectFile(QFile::decodeName(name.c_str()));
    while (panel.exec() == QDialog::Accepted) {
        // What the person has chosen comes first.
        QStringList chosen = endings;
        chosen.move(panel.nameFilters().indexOf(panel.selectedNameFilter()), 0);
        const QString typed = panel.selectedFiles().constFirst();
        const QString path = WithExtension(typed, chosen);
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

std::string QtDesktop::AskInputPath(const std::string& folder,
                                    const std::vector<std::string>& extensions) {
    const AnswerCursor cursor;
    QStringList patterns;
    for (const QString& extension : ToStrings(extensions)) {
        patterns << QStringLiteral("*.") + extension << QStringLiteral("*.") + extension.toUpper();
    }
    const QString path = QFileDialog::getOpenFileName(
        QApplication::activeWindow(), tr("開く"), QFile::decodeName(folder.c_str()),
        tr("音声ファイル (%1)").arg(patterns.join(u' ')));
    return QFile::encodeName(path).toStdString();
}

bool QtDesktop::OpenInWindow(const std::string& path) {
    return QProcess::startDetached(QCoreApplication::applicationFilePath(),
                                   {QFile::decodeName(path.c_str())});
}
