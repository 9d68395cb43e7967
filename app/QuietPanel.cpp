#include "app/QuietPanel.h"

#include "app/QuietScale.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QSlider>

#include <utility>

namespace {

QSlider* MakeSlider(const char* name, int least, int most) {
    auto* const slider = new QSlider(Qt::Horizontal);
    slider->setObjectName(QLatin1String(name));
    slider->setRange(least, most);
    constexpr int kPageSteps = 10;
    slider->setPageStep(kPageSteps);
    return slider;
}

} // namespace

QuietPanel::QuietPanel(QWidget* parent)
    : QDockWidget(parent), m_levelTitle(new QLabel), m_levelText(new QLabel),
      m_level(MakeSlider("quietLevel", QuietLevelScale::kLeast, QuietLevelScale::kMost)),
      m_secondsTitle(new QLabel), m_secondsText(new QLabel),
      m_seconds(MakeSlider("quietSeconds", QuietLengthScale::kLeast, QuietLengthScale::kMost)),
      m_count(new QLabel), m_list(new QListView), m_export(new QPushButton),
      m_split(new QPushButton) {
    setObjectName(QStringLiteral("quietPanel"));
    setFeatures(DockWidgetClosable);
    m_list->setObjectName(QStringLiteral("quietList"));
    m_list->setModel(&m_model);
    m_list->setUniformItemSizes(true);
    m_count->setObjectName(QStringLiteral("quietCount"));
    m_export->setObjectName(QStringLiteral("quietExport"));
    m_split->setObjectName(QStringLiteral("quietSplit"));
    m_levelTitle->setBuddy(m_level);
    m_secondsTitle->setBuddy(m_seconds);

    auto* const content = new QWidget;
    auto* const grid = new QGridLayout(content);
    int row = 0;
    for (const auto& [title, text, slider] :
         {std::tuple(m_levelTitle, m_levelText, m_level),
          std::tuple(m_secondsTitle, m_secondsText, m_seconds)}) {
        grid->addWidget(title, row, 0);
        grid->addWidget(text, row++, 1, Qt::AlignRight);
        grid->addWidget(slider, row++, 0, 1, 2);
        connect(slider, &QSlider::valueChanged, this, [this] {
            Relist();
            if (!m_isSetting) {
                Q_EMIT thresholdsChosen();
            }
        });
    }
    grid->addWidget(m_count, row++, 0, 1, 2);
    grid->addWidget(m_list, row++, 0, 1, 2);
    grid->addWidget(m_export, row, 0);
    grid->addWidget(m_split, row, 1);
    setWidget(content);

    connect(m_list, &QListView::activated, this, &QuietPanel::Choose);
    connect(m_list, &QListView::clicked, this, &QuietPanel::Choose);
    connect(m_export, &QPushButton::clicked, this, &QuietPanel::exportRequested);
    connect(m_split, &QPushButton::clicked, this, &QuietPanel::splitRequested);
    Translate();
}

void QuietPanel::Translate() {
    setWindowTitle(tr("無音リスト"));
    // The toolkit names them once, and says the name twice.
    for (auto* const button : findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly)) {
        const bool isClose = button->objectName() == QStringLiteral("qt_dockwidget_closebutton");
        button->setAccessibleName(isClose ? tr("閉じる") : QString());
        button->setAccessibleDescription(isClose ? windowTitle() : QString());
    }
    m_levelTitle->setText(tr("レベル"));
    m_level->setAccessibleName(tr("レベル"));
    m_secondsTitle->setText(tr("長さ"));
    m_seconds->setAccessibleName(tr("長さ"));
    m_list->setAccessibleName(tr("無音の場所"));
    m_export->setText(tr("書き出し…"));
    m_split->setText(tr("無音で分割して保存…"));
    Relist();
}

void QuietPanel::changeEvent(QEvent* event) {
    QDockWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        Translate();
    }
}

void QuietPanel::SetLevels(std::vector<Block> blocks, unsigned long long length,
                           std::function<long long(unsigned long long)> millisecondsOf) {
    m_blocks = std::move(blocks);
    m_length = length;
    m_millisecondsOf = std::move(millisecondsOf);
    Relist();
}

void QuietPanel::ClearLevels() {
    m_blocks.clear();
    m_millisecondsOf = nullptr;
    Relist();
}

void QuietPanel::ShowProgress(int percent) {
    m_count->setText(tr("解析中 %1%").arg(percent));
}

void QuietPanel::SetThresholds(float level, float seconds) {
    m_isSetting = true;
    m_level->setValue(QuietLevelScale::StepOf(level));
    m_seconds->setValue(QuietLengthScale::StepOf(seconds));
    m_isSetting = false;
}

float QuietPanel::GetLevel() const {
    return QuietLevelScale::LevelOf(m_level->value());
}

float QuietPanel::GetSeconds() const {
    return QuietLengthScale::SecondsOf(m_seconds->value());
}

void QuietPanel::Relist() {
    m_levelText->setText(QString::fromStdString(QuietLevelScale::TextOf(m_level->value())));
    m_secondsText->setText(tr("%1秒").arg(static_cast<double>(GetSeconds()), 0, 'f', 2));
    const bool isKnown = m_millisecondsOf != nullptr;
    std::vector<QuietStretch> places;
    if (isKnown) {
        QuietStretches stretches(GetLevel(), GetSeconds());
        for (const Block& block : m_blocks) {
            stretches.Add(block);
        }
        stretches.Finish(m_length);
        places = stretches.Found();
    }
    m_model.SetPlaces(std::move(places), m_millisecondsOf);
    m_count->setText(isKnown ? tr("%1か所").arg(m_model.rowCount()) : QString());
    m_export->setEnabled(m_model.rowCount() > 0);
    m_split->setEnabled(m_model.rowCount() > 0);
    Q_EMIT placesChanged();
}

void QuietPanel::Choose(const QModelIndex& index) {
    if (index.isValid()) {
        std::vector<unsigned long long> positions;
        GetPlaces()[static_cast<std::size_t>(index.row())].AppendPositions(positions);
        Q_EMIT placeChosen(positions.front());
    }
}
