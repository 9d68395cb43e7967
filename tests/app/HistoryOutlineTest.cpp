#include "tests/app/Program.h"

#include <QLabel>
#include <QTreeView>

namespace {

/// The rows that are seen: "*" for a selected one, name, parent's name.
std::string Rows(const QTreeView& view) {
    QString rows;
    for (QModelIndex row = view.model()->index(0, 0); row.isValid(); row = view.indexBelow(row)) {
        rows += view.selectionModel()->isSelected(row) ? "*" : " ";
        rows += row.data().toString() + "<" + row.parent().data().toString() + "\n";
    }
    return rows.toStdString();
}

TEST(HistoryOutline, FollowsEditsAndSelection) {
    Program program(Wav(Song()), "x.wav");
    auto& view = *program.Find<QTreeView>("HistoryOutlineView");
    EXPECT_EQ(Rows(view), "*# x.wav<\n");
    program.Trigger("SplitButton", 16'000, 16'000);
    EXPECT_EQ(Rows(view), " # x.wav<\n #-1<# x.wav\n #-2<# x.wav\n*#-3<# x.wav\n");
    program.Trigger("CutUndoMenu");
    program.Trigger("CutUndoMenu"); // no further
    EXPECT_EQ(program.State(), "0 5000 1000 1000 # x.wav");
    EXPECT_EQ(program.Enabled(), "Play Split Save ");
    view.setCurrentIndex(view.indexBelow(view.model()->index(0, 0)));
    EXPECT_EQ(program.State(), "0 1000 -1 -1 #-1");
    program.Trigger("CutUndoMenu");

    program.Trigger("CutExtButton", 0, 32'000); // takes the place of what the split has made
    program.Trigger("CutDelButton", 0, 16'000);
    EXPECT_EQ(Rows(view), " # x.wav<\n #-1<# x.wav\n*#-1-1<#-1\n");
    view.selectionModel()->clear();
    EXPECT_EQ(program.State(), "0 1000 -1 -1 #-1-1");
}

TEST(HistoryOutline, TellsWhatEditsDidAndWhatTheyReplaceAndGoesBackToWhatUndoLeft) {
    Program program(Wav(Song()), "x.wav");
    auto& view = *program.Find<QTreeView>("HistoryOutlineView");
    const auto details = [&] {
        return view.currentIndex().siblingAtColumn(1).data().toString().toStdString();
    };
    const auto message = [&] { return program.Find<QLabel>("messageLabel")->text().toStdString(); };
    EXPECT_EQ(details(), "長さ 0:05.000");
    program.Trigger("SplitButton", 16'000, 16'000);
    EXPECT_EQ(details(), "分割 0:01.000–0:05.000 残り 0:04.000");
    program.Trigger("CutDelButton", 0, 8'000);
    EXPECT_EQ(message(), "");
    EXPECT_EQ(details(), "削除 0:00.000–0:00.500 残り 0:03.500");
    for (const QString command : {"CutUndoMenu", "CutUndoMenu", "RedoMenu", "RedoMenu"}) {
        EXPECT_TRUE(program.Find<QAction>(command)->isEnabled());
        program.Trigger(command);
    }
    EXPECT_EQ(view.currentIndex().data().toString(), "#-3-1");
    EXPECT_FALSE(program.Find<QAction>("RedoMenu")->isEnabled());
    program.Trigger("CutUndoMenu");
    view.setCurrentIndex(view.model()->index(0, 0)); // by hand: what undo has left is forgotten
    EXPECT_FALSE(program.Find<QAction>("RedoMenu")->isEnabled());
    program.Trigger("CutExtButton", 0, 32'000);
    EXPECT_EQ(message(), "置き換えました: #-1 分割 0:00.000–0:01.000 ほか3件");
    EXPECT_EQ(details(), "抽出 0:00.000–0:02.000 残り 0:02.000");
}

} // namespace
