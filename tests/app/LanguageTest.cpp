#include "app/Language.h"

#include "app/ElidedLabel.h"
#include "app/KeyList.h"
#include "app/Remembered.h"
#include "tests/app/Program.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTreeView>

namespace {

/// Whether a text holds Japanese.
bool IsJapanese(const QString& text) {
    return std::ranges::any_of(text, [](QChar c) {
        return c.script() == QChar::Script_Hiragana || c.script() == QChar::Script_Katakana ||
               c.script() == QChar::Script_Han;
    });
}

/// All texts of a window that a person reads or hears, with the objects' names.
std::vector<std::pair<QString, QString>> TextsOf(const QWidget& window) {
    std::vector<std::pair<QString, QString>> texts;
    for (const QObject* const object : window.findChildren<QObject*>()) {
        for (const char* const property :
             {"text", "title", "windowTitle", "toolTip", "accessibleName", "accessibleDescription",
              "placeholderText", "statusTip"}) {
            const QString text = object->property(property).toString();
            const QString name = object->objectName() + "." + property;
            // What languages are called is the same in all of them.
            if (!text.isEmpty() && !text.startsWith("言語 (") && text != "日本語") {
                texts.emplace_back(name, text);
            }
        }
    }
    return texts;
}

/// Widgets of a window that are too narrow for their texts.
QStringList ClippedIn(const QWidget& window) {
    QStringList clipped;
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
        const auto* const elided = qobject_cast<const ElidedLabel*>(widget);
        const bool isText = qobject_cast<const QLabel*>(widget) != nullptr ||
                            qobject_cast<const QPushButton*>(widget) != nullptr;
        const int needed = elided != nullptr
                               ? widget->fontMetrics().horizontalAdvance(elided->text())
                           : isText ? widget->sizeHint().width()
                                    : 0;
        if (widget->isVisible() && needed > widget->contentsRect().width() + 2) {
            clipped << widget->objectName() + ": " + widget->property("text").toString();
        }
    }
    return clipped;
}

/// Speaks Japanese again afterwards.
struct Spoken {
    explicit Spoken(Language language) { SpeakLanguage(language); }
    Spoken(const Spoken&) = delete;
    Spoken& operator=(const Spoken&) = delete;
    ~Spoken() { SpeakLanguage(Language::Japanese); }
};

TEST(Language, EveryTextOfTheWindowIsTranslatedAndHasItsRoomAt800Pixels) {
    for (const Language language : {Language::English, Language::Japanese}) {
        Program program;
        program.delegate.GetWindow()->resize(800, 480);
        const Spoken spoken(language); // of a window that is there already
        program.Trigger("QuietListMenu");
        program.Trigger("MoveMenu");
        program.Trigger("PreferenceMenu");
        program.Trigger("KeysMenu");
        program.Trigger("CutDelButton", 0, 16'000);
        program.Trigger("SetStartButton");
        program.Trigger("DetectMenu");
        Await([&] { return !program.Engine().sceneChangePositions.empty(); });
        Await([&] { return !program.Find<QLabel>("quietCount")->text().contains('%'); });
        Await([&] { return ClippedIn(*program.delegate.GetWindow()).isEmpty(); }); // is laid out
        int japanese = 0;
        for (const auto& [name, text] : TextsOf(*program.delegate.GetWindow())) {
            japanese += IsJapanese(text) ? 1 : 0;
            EXPECT_FALSE(language == Language::English && IsJapanese(text))
                << name.toStdString() << ": " << text.toStdString();
        }
        EXPECT_EQ(japanese > 100, language == Language::Japanese);
        const auto* const view = program.Find<QTreeView>("HistoryOutlineView");
        const QModelIndex details = view->currentIndex().siblingAtColumn(1);
        EXPECT_EQ(IsJapanese(details.data().toString()), language == Language::Japanese);
        EXPECT_EQ(ClippedIn(*program.delegate.GetWindow()).join("\n").toStdString(), "");
        EXPECT_EQ(program.delegate.GetWindow()->width(), 800);
        for (const KeyEntry& entry : ListKeys(*program.Find<QMenuBar>("menuBar"))) {
            EXPECT_FALSE(language == Language::English && IsJapanese(entry.what + entry.key));
        }
    }
}

TEST(Language, IsTheOneOfTheVariableElseTheOneChosen) {
    const std::tuple<const char*, const char*, Language> cases[] = {
        {"", "", Language::Japanese},
        {"", "en", Language::English},
        {"ja", "en", Language::Japanese},
        {"en", "ja", Language::English},
        {"de", "xx", Language::Japanese}};
    for (const auto& [variable, chosen, language] : cases) {
        qputenv("KLIPRA_LANGUAGE", variable);
        Remembered().SetLanguage(chosen);
        EXPECT_EQ(StartLanguage(), language) << variable << chosen;
    }
    qunsetenv("KLIPRA_LANGUAGE");
    Program program;
    program.Trigger("Language_enMenu");
    EXPECT_EQ(Remembered().GetLanguage(), "en");
    QCoreApplication::processEvents();
    EXPECT_EQ(program.Find<QMenu>("FileMenu")->title(), "&File");
    program.Trigger("Language_jaMenu");
    EXPECT_EQ(Remembered().GetLanguage(), "ja");
}

TEST(KeyList, NamesEveryKeyOnceAndSoDoesTheManual) {
    const std::string manual = TemporaryFolder::Read(KLIPRA_MANUAL);
    Program program;
    QStringList keys;
    for (const KeyEntry& entry : ListKeys(*program.Find<QMenuBar>("menuBar"))) {
        EXPECT_FALSE(keys.contains(entry.key)) << entry.key.toStdString();
        keys << entry.key;
    }
    for (const QAction* const item : program.delegate.GetWindow()->findChildren<QAction*>()) {
        if (!item->shortcut().isEmpty()) {
            QString key = item->shortcut().toString(QKeySequence::PortableText);
            EXPECT_TRUE(keys.contains(item->shortcut().toString(QKeySequence::NativeText)));
            key.replace("Del", "Delete").replace("Ctrl+,", "Ctrl+comma");
            EXPECT_NE(manual.find(key.toStdString()), std::string::npos) << key.toStdString();
        }
    }
    program.Trigger("KeysMenu");
    auto* const search = program.Find<QLineEdit>("keySearch");
    Await([&] { return search->hasFocus(); });
    search->setText("試聴");
    auto* const list = program.Find<QTreeView>("keyList");
    int shown = 0;
    for (int row = 0; row < list->model()->rowCount(); ++row) {
        shown += list->isRowHidden(row, {}) ? 0 : 1;
    }
    EXPECT_EQ(shown, 1);
}

} // namespace
