#include "app/FinishTexts.h"

#include "app/Markers.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QStringList>

#include <cmath>

namespace {

class FinishTexts {
    Q_DECLARE_TR_FUNCTIONS(FinishTexts)

public:
    static QString Of(const FinishNote& note) {
        const QString at =
            QString::fromStdString(ClockLabel(std::llround(note.atSeconds * kMilliseconds)));
        const long long lasting = std::llround(note.seconds * kMilliseconds);
        const QString tag = QString::fromStdString(note.tag);
        switch (note.kind) {
        case FinishNote::Kind::JoinMoved:
            return tr("%1 のつなぎ目が%2フレーム（%3ミリ秒）ずれました")
                .arg(at)
                .arg(note.frames)
                .arg(lasting);
        case FinishNote::Kind::JoinFades:
            return tr("%1 のつなぎ目で音が%2ミリ秒間弱まります").arg(at).arg(lasting);
        case FinishNote::Kind::NothingRemoved:
            return tr("1フレームより短い範囲は削除していません");
        case FinishNote::Kind::LengthNotFixed:
            return tr("タグ%1の長さは直せませんでした").arg(tag);
        case FinishNote::Kind::TagIsOfSource:
            return tr("タグ%1は元のファイルのままです").arg(tag);
        }
        return {};
    }

    static QString Title() { return tr("仕上げて保存"); }
    static QString Help() {
        return tr("仕上げて保存すると、再エンコードせずに、MP3のつなぎ目の雑音をなくし、"
                  "ヘッダーの長さや索引を正しく書き直します。"
                  "ギャップレス再生に対応したプレーヤーは印を付けた位置ちょうどで始まって終わり、"
                  "対応していないプレーヤーは前後に0.1秒ほど余分に鳴らします。\n\n"
                  "元のファイルにヘッダーがなければ付け足します。"
                  "そこにあるエンコーダー名「LAME3.90.」はヘッダーの形式を表すもので、"
                  "実際に使われたエンコーダーではありません。\n\n"
                  "WAVでは、キューポイントやループなどのチャンクも残し、正しく直します。");
    }

private:
    static constexpr double kMilliseconds = 1000.0;
};

} // namespace

QString FinishNotesText(const std::vector<FinishNote>& notes) {
    QStringList texts;
    for (const FinishNote& note : notes) {
        texts << FinishTexts::Of(note);
    }
    return texts.join(QStringLiteral(" / "));
}

void ShowFinishHelp(QWidget* parent) {
    auto* const box = new QMessageBox(QMessageBox::Information, QStringLiteral("Klipra"),
                                      FinishTexts::Title(), QMessageBox::Ok, parent);
    box->setObjectName(QStringLiteral("FinishHelp"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(FinishTexts::Help());
    box->setModal(false);
    box->show();
}
