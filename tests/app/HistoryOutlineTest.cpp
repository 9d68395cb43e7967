#include "tests/app/Program.h"

#include <QIcon>
#include <QTreeView>

namespace {

/// The rows that are seen: "*" for a selected one, "d" or "s" for the picture, name, parent's name.
std::string Rows(const QTreeView& view) {
    QString rows;
    for (QModelIndex row = view.model()->index(0, 0); row.isValid(); row = view.indexBelow(row)) {
        const auto icon = row.data(Qt::DecorationRole).value<QIcon>();
        const bool isDisk = icon.pixmap(16).toImage() == QIcon(":/disk.png").pixmap(16).toImage();
        rows += view.selectionModel()->isSelected(row) ? "*" : " ";
        rows += icon.isNull() ? " " : isDisk ? "d" : "s";
        rows += row.data().toString() + "<" + row.parent().data().toString() + "\n";
    }
    return rows.toStdString();
}

TEST(HistoryOutline, FollowsEditsSavesAndSelection) {
    Program program(Wav(Song()), "x.wav");
    auto& view = *program.Find<QTreeView>("HistoryOutlineView");
    EXPECT_EQ(Rows(view), "*d# x.wav<\n");
    EXPECT_EQ(program.Enabled(), "Play ");
    program.Trigger("SplitButton", 16'000, 16'000);
    EXPECT_EQ(Rows(view), " d# x.wav<\n  #-1<# x.wav\n  #-2<# x.wav\n* #-3<# x.wav\n");
    program.Trigger("CutUndoMenu");
    program.Trigger("CutUndoMenu"); // no further
    EXPECT_EQ(program.State(), "0 5000 1000 1000 # x.wav");
    EXPECT_EQ(program.Enabled(), "Play Split Save ");
    view.setCurrentIndex(view.indexBelow(view.model()->index(0, 0)));
    EXPECT_EQ(program.State(), "0 1000 -1 -1 #-1");
    program.Trigger("CutUndoMenu");

    program.Trigger("CutExtButton", 0, 32'000); // takes the place of what the split has made
    program.desktop.answer = program.folder.Path("% s.wav");
    program.Trigger("SaveButton");
    EXPECT_EQ(Rows(view), " d# x.wav<\n*s#-1 % s.wav<# x.wav\n");
    program.Trigger("DetectButton"); // finds one
    EXPECT_EQ(program.Enabled(), "Play Save CutUndo ");
    view.selectionModel()->clear();
    EXPECT_TRUE(program.Engine().sceneChangePositions.empty());
    EXPECT_EQ(program.State(), "1500 2000 -1 -1 #-1 % s.wav");
}

} // namespace
