#include "app/PreferenceWindowController.h"

#include "app/DialogText.h"
#include "app/Language.h"
#include "ui_PreferenceWindowController.h"

#include <QObject>

PreferenceWindowController& PreferenceWindowController::sharedPreferenceWindowController() {
    static PreferenceWindowController controller;
    return controller;
}

PreferenceWindowController::PreferenceWindowController() = default;
PreferenceWindowController::~PreferenceWindowController() = default;

void PreferenceWindowController::showWindow(QWidget* parent) {
    if (m_window == nullptr) {
        m_window = std::make_unique<QDialog>(parent);
        m_ui = std::make_unique<Ui::PreferencesWindow>();
        m_ui->setupUi(m_window.get());
        OnLanguageChange(m_window.get(), [this] { m_ui->retranslateUi(m_window.get()); });
        windowDidLoad();
        QObject::connect(m_window.get(), &QDialog::finished, m_window.get(),
                         [this] { windowWillClose(); });
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void PreferenceWindowController::closeForGood() {
    m_window.reset();
    m_ui.reset();
    m_delegate = nullptr;
}

void PreferenceWindowController::windowDidLoad() {
    if (m_delegate == nullptr) {
        return;
    }
    const PreferenceFields fields = FillPreferenceFields(*m_delegate);
    m_ui->levelTextField->setText(QString::fromStdString(fields.level));
    m_ui->timeTextField->setText(QString::fromStdString(fields.time));
    m_ui->moveAmountTextField->setText(QString::fromStdString(fields.moveAmount));
}

void PreferenceWindowController::windowWillClose() {
    if (m_delegate != nullptr) {
        ApplyPreferenceFields({FieldText(*m_ui->levelTextField), FieldText(*m_ui->timeTextField),
                               FieldText(*m_ui->moveAmountTextField)},
                              *m_delegate);
    }
}
