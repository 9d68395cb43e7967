#include "tests/app/Program.h"

#include <QDialog>
#include <QLineEdit>

namespace {

/// Fills the fields, whose texts are separated by slashes, and closes the dialog, by that button or
/// by the Escape key.
/// @return the texts that were there
QString Close(QDialog& dialog, const QString& texts, const char* button) {
    QStringList before;
    for (QLineEdit* const field : dialog.findChildren<QLineEdit*>()) {
        before << field->text();
        field->setText(texts.section('/', before.size() - 1, before.size() - 1));
    }
    auto* const pressed = dialog.findChild<QAbstractButton*>(button);
    pressed != nullptr ? pressed->click() : QTest::keyClick(&dialog, Qt::Key_Escape);
    return before.join('/');
}

TEST(GoWindow, GoesToTheTimeTypedUnlessItIsDismissed) {
    const std::string ok = "OKButton";
    const std::tuple<const char*, std::string, unsigned> cases[] = {
        {"0/4/-750", ok, 52'000},           {"1/-58/0", ok, 32'000},
        {"0/２/５００", ok, 40'000},        {" 0x/+3.9/z", ok, 48'000},
        {"71582788/18/0", ok, 32'000},      {"0/-1/0", ok, 0},
        {"0/2/0", "CancelButton", 980'000}, {"0/2/0", "", 980'000}};
    Program program(SilentWav(70));
    for (const auto& [texts, button, position] : cases) {
        program.Engine().SetCurrentPosition(980'000);
        program.Trigger("MoveMenu");
        EXPECT_EQ(Close(*program.Find<QDialog>("GoWindow"), texts, button.c_str()), "1/1/250");
        EXPECT_EQ(program.Engine().GetCurrentPosition(), position) << texts;
    }
}

TEST(PreferencesWindow, AppliesItsFieldsHoweverItIsClosed) {
    const std::tuple<const char*, float, float, double> cases[] = {
        {"0.5/1.5/2.25", 0.5F, 1.5F, 2.25},
        {"0/0.01/", 0.5F, 0.02F, 0.0},
        {"０．２５/.5s/inf", 0.25F, 0.5F, 0.0},
        {"-1/x/ +1", 0.25F, 0.02F, 1.0}};
    Program program;
    QApplication::processEvents(); // the main window is the active one by now
    QString shown = "0.0010/0.20/1.000";
    for (const auto& [fields, level, time, moveAmount] : cases) {
        program.Trigger(shown[0] == '0' ? "PreferenceMenu" : "ToolButton");
        EXPECT_EQ(Close(*program.Find<QDialog>("PreferencesWindow"), fields, ""), shown);
        shown = fields; // as they were left
        EXPECT_EQ(std::tuple(program.delegate.getThresholdLevel(),
                             program.delegate.getThresholdTime(), program.Engine().moveAmount),
                  std::tuple(level, time, moveAmount));
    }
}

} // namespace
