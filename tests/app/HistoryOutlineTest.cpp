#include "tests/app/Program.h"

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

} // namespace
