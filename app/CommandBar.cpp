#include "app/CommandBar.h"

#include <QLayoutItem>

#include <memory>

QToolBar* MakeCommandBar(QHBoxLayout& row, QWidget* parent) {
    auto* const bar = new QToolBar(parent);
    bar->setObjectName(QStringLiteral("commandBar"));
    bar->setMovable(false);
    bar->setContentsMargins(row.contentsMargins());
    while (const std::unique_ptr<QLayoutItem> item{row.takeAt(0)}) {
        if (QWidget* const widget = item->widget(); widget != nullptr) {
            bar->addWidget(widget);
        } else {
            bar->addSeparator();
        }
    }
    return bar;
}
