#include "app/GoWindowController.h"

#include "app/DialogText.h"
#include "app/GoFields.h"
#include "app/Language.h"
#include "ui_GoWindowController.h"

#include <QObject>

GoWindowController::GoWindowController(QWidget* parent)
    : m_window(std::make_unique<QDialog>(parent)), m_ui(std::make_unique<Ui::GoWindow>()) {
    m_ui->setupUi(m_window.get());
    OnLanguageChange(m_window.get(), [this] { m_ui->retranslateUi(m_window.get()); });
    QObject::connect(m_ui->OKButton, &QPushButton::clicked, m_window.get(),
                     [this] { OKButtonClick(); });
    QObject::connect(m_ui->CancelButton, &QPushButton::clicked, m_window.get(),
                     [this] { CancelBtnClick(); });
}

GoWindowController::~GoWindowController() = default;

void GoWindowController::showWindow() {
    windowDidLoad();
    m_window->show();
}

void GoWindowController::windowDidLoad() {
    const GoFields fields = FillGoFields(seconds);
    m_ui->TextField1->setText(QString::fromStdString(fields.minutes));
    m_ui->TextField2->setText(QString::fromStdString(fields.seconds));
    m_ui->TextField3->setText(QString::fromStdString(fields.milliseconds));
    m_ui->TextField1->setFocus();
    m_ui->TextField1->selectAll();
}

void GoWindowController::OKButtonClick() {
    seconds = ReadGoFields(
        {FieldText(*m_ui->TextField1), FieldText(*m_ui->TextField2), FieldText(*m_ui->TextField3)});
    if (m_delegate != nullptr) {
        m_delegate->goAtPosition(seconds);
    }
    m_window->close();
}

void GoWindowController::CancelBtnClick() {
    m_window->close();
}
