#include "app/GoFields.h"
#include "tests/app/Program.h"

#include <QDialog>
#include <QLineEdit>

namespace {

/// Fills the fields, whose texts are separated by slashes, and closes the dialog: by that button,
/// by the Escape key, or by the window's own button.
/// @return the texts that were there
QString Close(QDialog& dialog, const QString& texts, const QString& way) {
    QStringList before;
    for (QLineEdit* const field : dialog.findChildren<QLineEdit*>()) {
        before << field->text();
        field->setText(texts.section('/', before.size() - 1, before.size() - 1));
    }
    auto* const button = dialog.findChild<QAbstractButton*>(way);
    button != nullptr ? button->click()
    : way == "Escape" ? QTest::keyClick(&dialog, Qt::Key_Escape)
                      : void(dialog.close());
    EXPECT_FALSE(dialog.isVisible());
    return before.join('/');
}

TEST(GoWindow, GoesToTheTimeTypedUnlessItIsDismissed) {
    const std::string ok = "OKButton";
    const std::tuple<const char*, std::string, unsigned> cases[] = {
        {"0/1/250", ok, 20'000},    {"0/4/-750", ok, 52'000},
        {"1/-58/0", ok, 32'000},    {"０/２/５００", ok, 40'000},
        {" 0x/+3.9/z", ok, 48'000}, {"//", ok, 0},
        {"9/0/0", ok, 79'998},      {"0/-1/0", ok, 79'998},
        {"0/2/0", "Escape", 1'600}, {"0/2/0", "CancelButton", 1'600},
        {"0/2/0", "", 1'600}};
    Program program;
    for (const auto& [texts, way, position] : cases) {
        program.Engine().SetCurrentPosition(1'600);
        program.Trigger("MoveMenu");
        program.Trigger("MoveMenu"); // takes the place of the first one
        const auto dialogs = program.delegate.GetWindow()->findChildren<QDialog*>("GoWindow");
        ASSERT_EQ(dialogs.size(), 1);
        EXPECT_EQ(Close(*dialogs[0], texts, way.c_str()), "0/0/100");
        EXPECT_EQ(program.Engine().GetCurrentPosition(), position) << texts;
    }
}

TEST(PreferencesWindow, AppliesItsFieldsHoweverItIsClosed) {
    const std::tuple<QString, const char*, float, float, double> cases[] = {
        {"0.5/1.5/2.25", "", 0.5F, 1.5F, 2.25},
        {"0/0.01/", "Escape", 0.5F, 0.02F, 0.0},
        {"-1/-3/-2", "", 0.5F, 0.02F, -2.0},
        {"０．２５/x/inf", "Escape", 0.25F, 0.02F, 0.0},
        {"1e-3/.5s/ +1", "", 0.001F, 0.5F, 1.0}};
    Program program;
    QString shown = "0.0010/0.20/1.000";
    for (const auto& [fields, way, level, time, moveAmount] : cases) {
        program.Trigger(fields[0] == '0' ? "PreferenceMenu" : "ToolButton");
        EXPECT_EQ(Close(*program.Find<QDialog>("PreferencesWindow"), fields, way), shown);
        shown = fields; // as they were left
        EXPECT_EQ(std::tuple(program.delegate.getThresholdLevel(),
                             program.delegate.getThresholdTime(), program.Engine().moveAmount),
                  std::tuple(level, time, moveAmount));
    }
}

TEST(GoFields, TruncateTowardsZero) {
    EXPECT_EQ(FillGoFields(725.25), (GoFields{"12", "5", "250"}));
    EXPECT_EQ(FillGoFields(-61.5), (GoFields{"-1", "-1", "-500"}));
    EXPECT_EQ(ReadGoFields({"71582789", "- 1", "+-1"}), 44.0); // 32 bits
}

} // namespace
