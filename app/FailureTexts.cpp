#include "app/FailureTexts.h"

#include <QCoreApplication>
#include <QLocale>

#include <system_error>

namespace {

class FailureTexts {
    Q_DECLARE_TR_FUNCTIONS(FailureTexts)

public:
    static QString Of(CutReason reason) {
        switch (reason) {
        case CutReason::None:
        case CutReason::Cancelled:
            return {};
        case CutReason::SourceUnreadable:
            return tr("元のファイルを読み取れません");
        case CutReason::SourceChanged:
            return tr("処理中に元のファイルが変更されました");
        case CutReason::SourceEndsInFrame:
            return tr("元のファイルの最後のフレームが途中で切れています");
        case CutReason::NoFrame:
            return tr("MP3の音声が見つかりません");
        case CutReason::DamagedTag:
            return tr("タグが壊れています");
        case CutReason::NotWAV:
            return tr("WAVファイルではありません");
        case CutReason::FormatNotFirst:
        case CutReason::DamagedWAV:
        case CutReason::TooManyChunks:
            return tr("WAVファイルの構造が壊れています");
        case CutReason::NoData:
        case CutReason::NoSamples:
            return tr("WAVファイルに音声データがありません");
        case CutReason::NotPCM:
        case CutReason::CompressedWAV:
            return tr("圧縮されたWAVは切れません");
        case CutReason::NoAudioInRange:
            return tr("範囲に音声がありません");
        case CutReason::NothingLeft:
            return tr("何も残りません");
        case CutReason::ResultTooLarge:
            return tr("結果が大きすぎます");
        case CutReason::OutputNotCreatable:
            return tr("ファイルを作成できません");
        case CutReason::OutputNotWritable:
            return tr("ファイルに書き込めません");
        case CutReason::DiskFull:
            return tr("ディスクに空きがありません");
        case CutReason::EditAltered:
            return tr("編集結果が元のファイルの音声と一致しません");
        case CutReason::OutOfMemory:
            return tr("メモリーが足りません");
        }
        return {};
    }

    static QString Missing(long long bytes) {
        return tr("ディスクの空きが %1 足りません")
            .arg(QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat));
    }
};

} // namespace

QString FailureText(const EditFailure& failure) {
    if (failure.missingBytes > 0) {
        return FailureTexts::Missing(failure.missingBytes);
    }
    const QString text = FailureTexts::Of(failure.problem.reason);
    const int error = failure.problem.errorNumber;
    return text.isEmpty() || error == 0
               ? text
               : QStringLiteral("%1 (%2)").arg(
                     text, QString::fromStdString(std::generic_category().message(error)));
}
