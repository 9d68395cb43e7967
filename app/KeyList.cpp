#include "app/KeyList.h"

#include "app/ButtonTips.h"
#include "app/Language.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>

namespace {

class Texts {
    Q_DECLARE_TR_FUNCTIONS(KeyList)

public:
    /// What the strip does without a menu.
    static std::vector<KeyEntry> Gestures() {
        return {{tr("←、→"), tr("移動量だけ戻る、進む")},
                {tr("クリック"), tr("現在位置を移す")},
                {tr("ドラッグ"), tr("範囲を付ける")},
                {tr("始点や終点の線をドラッグ"), tr("その線を動かす")},
                {tr("ダブルクリック"), tr("前後の無音部分の間を範囲にする")},
                {tr("ホイール"), tr("拡大、縮小")},
                {tr("Ctrl+ホイール"), tr("ポインターの位置で拡大、縮小")},
                {tr("Shift+ホイール"), tr("左右にスクロール")},
                {tr("ファイルのドロップ"), tr("別のウィンドウで開く")},
                {tr("Esc"), tr("実行中の作業を取り消す")}};
    }
    static QString Title() { return tr("キー操作の一覧"); }
    static QString Search() { return tr("検索"); }
    static QStringList Columns() { return {tr("キー"), tr("はたらき")}; }
};

/// A menu's text without its mnemonic, its key and its ellipsis.
QString PlainText(const QAction& item) {
    QString text = item.text().section(u'\t', 0, 0);
    if (const qsizetype mnemonic = text.indexOf(QStringLiteral("(&")); mnemonic >= 0) {
        text.remove(mnemonic, 4); // as in "(&S)"
    }
    return text.remove(u'&').remove(u'…');
}

void AppendKeys(const QList<QAction*>& items, std::vector<KeyEntry>& keys) {
    for (const QAction* const item : items) {
        if (item->menu() != nullptr) {
            AppendKeys(item->menu()->actions(), keys);
        } else if (const QString key = KeyOf(*item); !key.isEmpty()) {
            keys.push_back({key, PlainText(*item)});
        }
    }
}

void Fill(QTreeWidget& list, const std::vector<KeyEntry>& keys) {
    list.clear();
    list.setHeaderLabels(Texts::Columns());
    for (const KeyEntry& entry : keys) {
        list.addTopLevelItem(new QTreeWidgetItem({entry.key, entry.what})); // the list's
    }
    list.resizeColumnToContents(0);
}

void Filter(const QTreeWidget& list, const QString& wanted) {
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        QTreeWidgetItem* const item = list.topLevelItem(i);
        item->setHidden(!item->text(0).contains(wanted, Qt::CaseInsensitive) &&
                        !item->text(1).contains(wanted, Qt::CaseInsensitive));
    }
}

} // namespace

std::vector<KeyEntry> ListKeys(const QMenuBar& menus) {
    std::vector<KeyEntry> keys;
    AppendKeys(menus.actions(), keys);
    const std::vector<KeyEntry> gestures = Texts::Gestures();
    keys.insert(keys.end(), gestures.begin(), gestures.end());
    return keys;
}

void ShowKeyList(QWidget* parent, const QMenuBar& menus) {
    auto* const window = new QDialog(parent); // until it is closed
    window->setObjectName(QStringLiteral("KeyList"));
    window->setAttribute(Qt::WA_DeleteOnClose);
    auto* const search = new QLineEdit;
    search->setObjectName(QStringLiteral("keySearch"));
    search->setClearButtonEnabled(true);
    auto* const list = new QTreeWidget;
    list->setObjectName(QStringLiteral("keyList"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    auto* const layout = new QVBoxLayout(window);
    layout->addWidget(search);
    layout->addWidget(list);
    QObject::connect(search, &QLineEdit::textChanged, list,
                     [list](const QString& wanted) { Filter(*list, wanted); });
    OnLanguageChange(window, [window, search, list, &menus] {
        window->setWindowTitle(Texts::Title());
        search->setPlaceholderText(Texts::Search());
        search->setAccessibleName(Texts::Search());
        list->setAccessibleName(Texts::Title());
        Fill(*list, ListKeys(menus));
        Filter(*list, search->text());
    });
    constexpr QSize kSize(520, 420);
    window->resize(kSize);
    window->show();
    search->setFocus();
}
