#include "app/QtDesktop.h"
#include "tests/app/Program.h"

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

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

/// Answers the windows that ask, one after the other: a question by the button of that text, the
/// save panel by pressing Save, and by the Escape key where no answer is left.
/// @return what was asked and said
QString Answer(QStringList answers, const std::function<void()>& asks) {
    QStringList said;
    QTimer timer;
    timer.callOnTimeout([&] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        auto* const panel = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (panel != nullptr && !answers.isEmpty()) {
            static_cast<QDialog*>(panel)->accept();
        } else if (panel != nullptr) {
            panel->reject();
        } else if (box != nullptr) {
            said << box->text();
            const QString answer = answers.takeFirst();
            const auto buttons = box->buttons();
            (*std::ranges::find(buttons, answer, &QAbstractButton::text))->click();
        }
    });
    timer.start(0);
    asks();
    return said.join('/');
}

TEST(SavePanel, ReplacesAFileOnlyWhenToldToAndNoneThatIsInUse) {
    const TemporaryFolder folder;
    const std::string old = folder.Write("old.wav", "old");
    const QString question = "“old.wav”は既に存在します。";
    QtDesktop desktop;
    std::string path = "not asked";
    const auto save = [&] { path = desktop.AskOutputPath(folder.Path(""), "old", "wav"); };
    EXPECT_EQ(Answer({"キャンセル"}, save), question);
    EXPECT_EQ(path, ""); // asked again, and the panel dismissed
    EXPECT_EQ(Answer({"キャンセル", "置き換える"}, save), question + "/" + question);
    EXPECT_EQ(path, old);
    desktop.SetObjection([&](const std::string& to) { return QString(to == old ? "used" : ""); });
    EXPECT_EQ(Answer({"OK"}, save), "used");
    EXPECT_EQ(path, "");
}

} // namespace
