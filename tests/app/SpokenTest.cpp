#include "app/Language.h"
#include "tests/app/Program.h"

#include <QAccessible>
#include <QTreeView>

namespace {

QAccessibleEvent* const kNoEvent = nullptr;
std::vector<double> announced; // values of the strip

void Record(QAccessibleEvent* event) {
    if (event != kNoEvent && event->type() == QAccessible::ValueChanged &&
        event->object() != nullptr && event->object()->objectName() == "waveView") {
        announced.push_back(static_cast<QAccessibleValueChangeEvent*>(event)->value().toDouble());
    }
}

TEST(Spoken, TheStripIsASliderOverTheTimeThatTellsPositionAndMarks) {
    Program program;
    QAccessibleInterface* const strip =
        QAccessible::queryAccessibleInterface(program.Find("waveView"));
    EXPECT_EQ(strip->role(), QAccessible::Slider);
    EXPECT_TRUE(strip->state().focusable);
    EXPECT_EQ(strip->text(QAccessible::Name), "波形");
    EXPECT_EQ(strip->text(QAccessible::Value), "0:00.000");
    QAccessibleValueInterface* const value = strip->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->minimumValue().toDouble(), 0.0);
    EXPECT_EQ(value->maximumValue().toDouble(), 5.0);

    QAccessible::setActive(true);
    const auto before = QAccessible::installUpdateHandler(Record);
    value->setCurrentValue(1.25);
    program.Trigger("SetStartButton");
    QTest::keyClick(program.Find("mainView"), Qt::Key_Right);
    program.Trigger("SetEndButton");
    QTest::mouseClick(program.Find("waveView"), Qt::LeftButton, {}, {0, 100});
    QAccessible::installUpdateHandler(before);
    if (QAccessible::isActive()) { // not every platform plugin can be made to
        EXPECT_EQ(announced, (std::vector{1.25, 1.25, 2.25, 2.25, 0.0}));
    }
    EXPECT_EQ(strip->text(QAccessible::Value), "0:00.000、始点 0:01.250、終点 0:02.250");
}

TEST(Spoken, EveryFocusStopHasANameOfItsOwnAndNothingIsReadTwice) {
    Program program;
    program.Trigger("QuietListMenu");
    program.Trigger("CutDelButton", 0, 16'000);
    program.desktop.answer = program.folder.Path("out.wav");
    program.Trigger("SaveMenu");
    QStringList names;
    for (QWidget* const widget : program.delegate.GetWindow()->findChildren<QWidget*>()) {
        QAccessibleInterface* const object = QAccessible::queryAccessibleInterface(widget);
        const QString name = object->text(QAccessible::Name);
        const QString description = object->text(QAccessible::Description);
        EXPECT_FALSE(!name.isEmpty() && description.contains(name)) << name.toStdString();
        if (widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
            widget->focusProxy() == nullptr) {
            EXPECT_NE(name, "") << widget->objectName().toStdString()
                                << widget->metaObject()->className();
            EXPECT_FALSE(names.contains(name)) << name.toStdString();
            names << name;
        }
    }
    EXPECT_GT(names.size(), 15);
    // That an entry was saved is a text too, beside the picture.
    const QModelIndex entry = program.Find<QTreeView>("HistoryOutlineView")->currentIndex();
    const QString details = entry.siblingAtColumn(1).data().toString();
    EXPECT_TRUE(details.startsWith("削除 0:00.000–0:01.000 残り 0:04.000 保存先 /"))
        << details.toStdString();
}

TEST(Spoken, TheTabKeyFollowsTheEye) {
    Program program;
    QWidget* const window = program.delegate.GetWindow();
    program.Find("BeginButton")->setFocus();
    std::vector<int> places; // the tool bar from the left, then downwards
    for (int i = 0; i < 8; ++i) {
        const QPoint place = QApplication::focusWidget()->mapTo(window, QPoint());
        const bool isTool = QApplication::focusWidget()->inherits("QToolButton");
        places.push_back(isTool ? place.x() : 10'000 + place.y());
        QTest::keyClick(window, Qt::Key_Tab);
    }
    EXPECT_TRUE(std::ranges::is_sorted(places)) << testing::PrintToString(places);
    EXPECT_GT(places.back(), 10'000); // the history
}

} // namespace
