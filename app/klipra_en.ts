<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="ja">
<context>
    <name>AppDelegate</name>
    <message>
        <source>音声出力なし</source>
        <translation>No audio output</translation>
    </message>
    <message>
        <source>音が出る装置がないため、無音で再生します。</source>
        <translation>There is nothing to play on, so playback is silent.</translation>
    </message>
    <message>
        <source>編集の復元不可</source>
        <translation>No recovery</translation>
    </message>
    <message>
        <source>作業状態を記録できないため、異常終了すると編集内容は失われます。</source>
        <translation>The session cannot be recorded: edits are lost should the program crash.</translation>
    </message>
    <message>
        <source>編集履歴が使っているファイルには保存できません。</source>
        <translation>The edit history uses this file: it cannot be saved over.</translation>
    </message>
    <message>
        <source>無音部分を検出しています…</source>
        <translation>Finding quiet places…</translation>
    </message>
    <message>
        <source>無音部分は見つかりませんでした（レベル %1 未満が %2 秒以上）</source>
        <translation>No quiet place found (below level %1 for %2 s or longer)</translation>
    </message>
    <message>
        <source>抽出しています…</source>
        <translation>Extracting…</translation>
    </message>
    <message>
        <source>削除しています…</source>
        <translation>Deleting…</translation>
    </message>
    <message>
        <source>試聴の準備をしています…</source>
        <translation>Preparing the audition…</translation>
    </message>
    <message>
        <source>分割しています…</source>
        <translation>Splitting…</translation>
    </message>
    <message>
        <source>範囲を保存しています…</source>
        <translation>Saving the range…</translation>
    </message>
    <message>
        <source>保存しています…</source>
        <translation>Saving…</translation>
    </message>
    <message>
        <source>編集を復元しています… %1/%2</source>
        <translation>Restoring edits… %1/%2</translation>
    </message>
    <message>
        <source>キャンセルしました</source>
        <translation>Cancelled</translation>
    </message>
    <message>
        <source>保存しました: %1</source>
        <translation>Saved: %1</translation>
    </message>
    <message>
        <source>範囲を仕上げて保存しています…</source>
        <translation>Saving the range finished…</translation>
    </message>
    <message>
        <source>仕上げて保存しています…</source>
        <translation>Saving finished…</translation>
    </message>
</context>
<context>
    <name>Desktop</name>
    <message>
        <source>コンテンツのロードに失敗しました。</source>
        <translation>The audio could not be loaded.</translation>
    </message>
    <message>
        <source>保存できませんでした。</source>
        <translation>It could not be saved.</translation>
    </message>
    <message>
        <source>不明なエラー</source>
        <translation>Unknown error</translation>
    </message>
    <message>
        <source>確認</source>
        <translation>Please confirm</translation>
    </message>
    <message>
        <source>編集内容が保存されていません。終了して良いですか。</source>
        <translation>Your edits have not been saved. Quit anyway?</translation>
    </message>
    <message>
        <source>前回の編集が残っています。復元しますか。</source>
        <translation>Edits of an earlier session are left. Restore them?</translation>
    </message>
    <message>
        <source>いいえ</source>
        <translation>No</translation>
    </message>
    <message>
        <source>はい</source>
        <translation>Yes</translation>
    </message>
</context>
<context>
    <name>FailureTexts</name>
    <message>
        <source>元のファイルを読み取れません</source>
        <translation>The source cannot be read</translation>
    </message>
    <message>
        <source>処理中に元のファイルが変更されました</source>
        <translation>The source was changed meanwhile</translation>
    </message>
    <message>
        <source>元のファイルの最後のフレームが途中で切れています</source>
        <translation>The source ends in the middle of its last frame</translation>
    </message>
    <message>
        <source>MP3の音声が見つかりません</source>
        <translation>No MP3 audio found</translation>
    </message>
    <message>
        <source>タグが壊れています</source>
        <translation>A tag is damaged</translation>
    </message>
    <message>
        <source>WAVファイルではありません</source>
        <translation>Not a WAV file</translation>
    </message>
    <message>
        <source>WAVファイルの構造が壊れています</source>
        <translation>The structure of the WAV file is damaged</translation>
    </message>
    <message>
        <source>WAVファイルに音声データがありません</source>
        <translation>The WAV file holds no audio</translation>
    </message>
    <message>
        <source>圧縮されたWAVは切れません</source>
        <translation>A compressed WAV cannot be cut</translation>
    </message>
    <message>
        <source>範囲に音声がありません</source>
        <translation>There is no audio in the range</translation>
    </message>
    <message>
        <source>何も残りません</source>
        <translation>Nothing would be left</translation>
    </message>
    <message>
        <source>結果が大きすぎます</source>
        <translation>The result is too large</translation>
    </message>
    <message>
        <source>ファイルを作成できません</source>
        <translation>The file cannot be created</translation>
    </message>
    <message>
        <source>ファイルに書き込めません</source>
        <translation>The file cannot be written to</translation>
    </message>
    <message>
        <source>ディスクに空きがありません</source>
        <translation>The disk is full</translation>
    </message>
    <message>
        <source>メモリーが足りません</source>
        <translation>Not enough memory</translation>
    </message>
    <message>
        <source>ディスクの空きが %1 足りません</source>
        <translation>The disk lacks %1</translation>
    </message>
    <message>
        <source>編集結果が元のファイルの音声と一致しません</source>
        <translation>The edit no longer matches the opened file</translation>
    </message>
</context>
<context>
    <name>FileOpener</name>
    <message>
        <source>なし</source>
        <translation>None</translation>
    </message>
</context>
<context>
    <name>FinishTexts</name>
    <message>
        <source>%1 のつなぎ目が%2フレーム（%3ミリ秒）ずれました</source>
        <translation>The join at %1 moved by %3 ms (frames: %2)</translation>
    </message>
    <message>
        <source>%1 のつなぎ目で音が%2ミリ秒間弱まります</source>
        <translation>The join at %1 fades for %2 ms</translation>
    </message>
    <message>
        <source>1フレームより短い範囲は削除していません</source>
        <translation>A range shorter than a frame was not removed</translation>
    </message>
    <message>
        <source>タグ%1の長さは直せませんでした</source>
        <translation>Tag %1: its length could not be corrected</translation>
    </message>
    <message>
        <source>タグ%1は元のファイルのままです</source>
        <translation>Tag %1 still describes the opened file</translation>
    </message>
    <message>
        <source>仕上げて保存すると、再エンコードせずに、MP3のつなぎ目の雑音をなくし、ヘッダーの長さや索引を正しく書き直します。ギャップレス再生に対応したプレーヤーは印を付けた位置ちょうどで始まって終わり、対応していないプレーヤーは前後に0.1秒ほど余分に鳴らします。

元のファイルにヘッダーがなければ付け足します。そこにあるエンコーダー名「LAME3.90.」はヘッダーの形式を表すもので、実際に使われたエンコーダーではありません。

WAVでは、キューポイントやループなどのチャンクも残し、正しく直します。</source>
        <translation>A finished MP3 has joins without noise and a header whose length and seek table are true; nothing is re-encoded. Players with gapless playback begin and end it at the very marks, others play about a tenth of a second more at either end.

Where the opened file has no header, one is added. The encoder name in it, “LAME3.90.”, stands for the layout of the header and not for the encoder that was used.

A finished WAV keeps its other chunks too, with cue points and loops corrected.</translation>
    </message>
    <message>
        <source>仕上げて保存</source>
        <translation>Saving finished</translation>
    </message>
</context>
<context>
    <name>GoWindow</name>
    <message>
        <source>時刻を指定して移動</source>
        <translation>Go to a time</translation>
    </message>
    <message>
        <source>分</source>
        <translation>min</translation>
    </message>
    <message>
        <source>秒</source>
        <translation>s</translation>
    </message>
    <message>
        <source>ミリ秒</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>キャンセル</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>HistoryTexts</name>
    <message>
        <source>抽出 %1–%2</source>
        <translation>Extracted %1–%2</translation>
    </message>
    <message>
        <source>削除 %1–%2</source>
        <translation>Deleted %1–%2</translation>
    </message>
    <message>
        <source>分割 %1–%2</source>
        <translation>Split %1–%2</translation>
    </message>
    <message>
        <source>残り %1</source>
        <translation>left %1</translation>
    </message>
    <message>
        <source>長さ %1</source>
        <translation>length %1</translation>
    </message>
    <message>
        <source>保存先 %1</source>
        <translation>saved in %1</translation>
    </message>
    <message>
        <source>置き換えました: %1</source>
        <translation>Replaced: %1</translation>
    </message>
    <message>
        <source>置き換えました: %1 ほか%2件</source>
        <translation>Replaced: %1 and %2 more</translation>
    </message>
</context>
<context>
    <name>KeyList</name>
    <message>
        <source>←、→</source>
        <translation>←, →</translation>
    </message>
    <message>
        <source>移動量だけ戻る、進む</source>
        <translation>One step back, ahead</translation>
    </message>
    <message>
        <source>クリック</source>
        <translation>Click</translation>
    </message>
    <message>
        <source>現在位置を移す</source>
        <translation>Move the position</translation>
    </message>
    <message>
        <source>ドラッグ</source>
        <translation>Drag</translation>
    </message>
    <message>
        <source>範囲を付ける</source>
        <translation>Mark a range</translation>
    </message>
    <message>
        <source>始点や終点の線をドラッグ</source>
        <translation>Drag the line of the start or the end</translation>
    </message>
    <message>
        <source>その線を動かす</source>
        <translation>Move that line</translation>
    </message>
    <message>
        <source>ダブルクリック</source>
        <translation>Double click</translation>
    </message>
    <message>
        <source>前後の無音部分の間を範囲にする</source>
        <translation>Mark what lies between two quiet places</translation>
    </message>
    <message>
        <source>ホイール</source>
        <translation>Wheel</translation>
    </message>
    <message>
        <source>拡大、縮小</source>
        <translation>Zoom in, zoom out</translation>
    </message>
    <message>
        <source>Ctrl+ホイール</source>
        <translation>Ctrl+Wheel</translation>
    </message>
    <message>
        <source>ポインターの位置で拡大、縮小</source>
        <translation>Zoom at the pointer</translation>
    </message>
    <message>
        <source>Shift+ホイール</source>
        <translation>Shift+Wheel</translation>
    </message>
    <message>
        <source>左右にスクロール</source>
        <translation>Scroll sideways</translation>
    </message>
    <message>
        <source>ファイルのドロップ</source>
        <translation>Drop a file</translation>
    </message>
    <message>
        <source>別のウィンドウで開く</source>
        <translation>Open it in a window of its own</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>実行中の作業を取り消す</source>
        <translation>Cancel what is under way</translation>
    </message>
    <message>
        <source>キー操作の一覧</source>
        <translation>Keys and gestures</translation>
    </message>
    <message>
        <source>検索</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>キー</source>
        <translation>Key</translation>
    </message>
    <message>
        <source>はたらき</source>
        <translation>What it does</translation>
    </message>
</context>
<context>
    <name>LaunchCheck</name>
    <message>
        <source>ファイルが指定されていません。</source>
        <translation>No file was named.</translation>
    </message>
    <message>
        <source>ファイル &apos;%1&apos; は存在しません。</source>
        <translation>There is no file &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>サポート形式は、mp3とwavのみです。</source>
        <translation>Only mp3 and wav files are supported.</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>先頭</source>
        <translation>Begin</translation>
    </message>
    <message>
        <source>先頭へ移動</source>
        <translation>Go to the beginning</translation>
    </message>
    <message>
        <source>再生</source>
        <translation>Play</translation>
    </message>
    <message>
        <source>停止</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>末尾</source>
        <translation>End</translation>
    </message>
    <message>
        <source>末尾へ移動</source>
        <translation>Go to the end</translation>
    </message>
    <message>
        <source>始点</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>現在位置を始点にする</source>
        <translation>Set the start here</translation>
    </message>
    <message>
        <source>終点</source>
        <translation>End mark</translation>
    </message>
    <message>
        <source>現在位置を終点にする</source>
        <translation>Set the end here</translation>
    </message>
    <message>
        <source>前の無音</source>
        <translation>Previous</translation>
    </message>
    <message>
        <source>前の無音部分へ移動</source>
        <translation>Go to the previous quiet place</translation>
    </message>
    <message>
        <source>無音検出</source>
        <translation>Detect</translation>
    </message>
    <message>
        <source>無音部分を検出</source>
        <translation>Find quiet places</translation>
    </message>
    <message>
        <source>次の無音</source>
        <translation>Next</translation>
    </message>
    <message>
        <source>次の無音部分へ移動</source>
        <translation>Go to the next quiet place</translation>
    </message>
    <message>
        <source>削除</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>始点から終点までを削除</source>
        <translation>Delete the range</translation>
    </message>
    <message>
        <source>抽出</source>
        <translation>Extract</translation>
    </message>
    <message>
        <source>始点から終点までだけを残す</source>
        <translation>Keep the range alone</translation>
    </message>
    <message>
        <source>分割</source>
        <translation>Split</translation>
    </message>
    <message>
        <source>始点と終点で分割</source>
        <translation>Split at the start and the end</translation>
    </message>
    <message>
        <source>範囲保存</source>
        <translation>Save range</translation>
    </message>
    <message>
        <source>始点から終点までを別のファイルに保存</source>
        <translation>Save the range to another file</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>選んだ編集結果を別のファイルに保存</source>
        <translation>Save the selected entry to another file</translation>
    </message>
    <message>
        <source>設定</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>波形</source>
        <translation>Waveform</translation>
    </message>
    <message>
        <source>編集履歴(&amp;Y)</source>
        <translation>Histor&amp;y</translation>
    </message>
    <message>
        <source>編集履歴</source>
        <translation>History</translation>
    </message>
    <message>
        <source>ファイル(&amp;F)</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>最近のファイル(&amp;T)</source>
        <translation>Recen&amp;t files</translation>
    </message>
    <message>
        <source>編集(&amp;E)</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>再生(&amp;P)</source>
        <translation>&amp;Play</translation>
    </message>
    <message>
        <source>少し移動(&amp;M)</source>
        <translation>Ste&amp;ps</translation>
    </message>
    <message>
        <source>表示(&amp;V)</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>ヘルプ(&amp;H)</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>保存(&amp;S)…</source>
        <translation>&amp;Save…</translation>
    </message>
    <message>
        <source>範囲を保存(&amp;R)…</source>
        <translation>Save &amp;range…</translation>
    </message>
    <message>
        <source>設定(&amp;P)…</source>
        <translation>Setti&amp;ngs…</translation>
    </message>
    <message>
        <source>閉じる(&amp;C)</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>終了(&amp;Q)</source>
        <translation>&amp;Quit</translation>
    </message>
    <message>
        <source>元に戻す(&amp;U)</source>
        <translation>&amp;Undo</translation>
    </message>
    <message>
        <source>始点を設定(&amp;I)</source>
        <translation>Set &amp;start</translation>
    </message>
    <message>
        <source>終点を設定(&amp;O)</source>
        <translation>Set &amp;end</translation>
    </message>
    <message>
        <source>範囲を削除(&amp;D)</source>
        <translation>&amp;Delete range</translation>
    </message>
    <message>
        <source>範囲を抽出(&amp;E)</source>
        <translation>E&amp;xtract range</translation>
    </message>
    <message>
        <source>分割(&amp;K)</source>
        <translation>S&amp;plit</translation>
    </message>
    <message>
        <source>再生/停止(&amp;P)	Space</source>
        <translation>&amp;Play/stop	Space</translation>
    </message>
    <message>
        <source>先頭へ移動(&amp;B)</source>
        <translation>Go to the &amp;beginning</translation>
    </message>
    <message>
        <source>末尾へ移動(&amp;L)</source>
        <translation>Go to the &amp;last position</translation>
    </message>
    <message>
        <source>時刻を指定して移動(&amp;G)…</source>
        <translation>&amp;Go to a time…</translation>
    </message>
    <message>
        <source>無音部分を検出(&amp;D)</source>
        <translation>Find &amp;quiet places</translation>
    </message>
    <message>
        <source>次の無音部分へ移動(&amp;N)</source>
        <translation>&amp;Next quiet place</translation>
    </message>
    <message>
        <source>前の無音部分へ移動(&amp;V)</source>
        <translation>Pre&amp;vious quiet place</translation>
    </message>
    <message>
        <source>拡大(&amp;I)</source>
        <translation>Zoom &amp;in</translation>
    </message>
    <message>
        <source>縮小(&amp;O)</source>
        <translation>Zoom &amp;out</translation>
    </message>
    <message>
        <source>1倍</source>
        <translation>1 ×</translation>
    </message>
    <message>
        <source>2倍</source>
        <translation>2 ×</translation>
    </message>
    <message>
        <source>5倍</source>
        <translation>5 ×</translation>
    </message>
    <message>
        <source>10倍</source>
        <translation>10 ×</translation>
    </message>
    <message>
        <source>20倍</source>
        <translation>20 ×</translation>
    </message>
    <message>
        <source>50倍</source>
        <translation>50 ×</translation>
    </message>
    <message>
        <source>100倍</source>
        <translation>100 ×</translation>
    </message>
    <message>
        <source>始点へ移動(&amp;S)</source>
        <translation>Go to the &amp;start</translation>
    </message>
    <message>
        <source>終点へ移動(&amp;E)</source>
        <translation>Go to the &amp;end</translation>
    </message>
    <message>
        <source>1フレーム（WAVでは10ミリ秒）戻る</source>
        <translation>One frame back (10 ms of a WAV)</translation>
    </message>
    <message>
        <source>1フレーム（WAVでは10ミリ秒）進む</source>
        <translation>One frame ahead (10 ms of a WAV)</translation>
    </message>
    <message>
        <source>移動量の10分の1だけ戻る</source>
        <translation>A tenth of a step back</translation>
    </message>
    <message>
        <source>移動量の10分の1だけ進む</source>
        <translation>A tenth of a step ahead</translation>
    </message>
    <message>
        <source>移動量の10倍戻る</source>
        <translation>Ten steps back</translation>
    </message>
    <message>
        <source>移動量の10倍進む</source>
        <translation>Ten steps ahead</translation>
    </message>
    <message>
        <source>範囲に合わせて拡大(&amp;Z)</source>
        <translation>&amp;Zoom to the range</translation>
    </message>
    <message>
        <source>無音リスト(&amp;L)</source>
        <translation>&amp;List of quiet places</translation>
    </message>
    <message>
        <source>開く(&amp;O)…</source>
        <translation>&amp;Open…</translation>
    </message>
    <message>
        <source>やり直す(&amp;Y)</source>
        <translation>&amp;Redo</translation>
    </message>
    <message>
        <source>つなぎ目を試聴(&amp;T)</source>
        <translation>Audi&amp;tion the join</translation>
    </message>
    <message>
        <source>キー操作の一覧(&amp;K)</source>
        <translation>&amp;Keys and gestures</translation>
    </message>
    <message>
        <source>Klipraについて(&amp;A)</source>
        <translation>&amp;About Klipra</translation>
    </message>
    <message>
        <source>仕上げて保存(&amp;F)…</source>
        <translation>Save &amp;finished…</translation>
    </message>
    <message>
        <source>範囲を仕上げて保存(&amp;G)…</source>
        <translation>Save ran&amp;ge finished…</translation>
    </message>
    <message>
        <source>仕上げについて(&amp;F)</source>
        <translation>About &amp;finishing</translation>
    </message>
</context>
<context>
    <name>OverviewBar</name>
    <message>
        <source>全体</source>
        <translation>Overview</translation>
    </message>
</context>
<context>
    <name>PreferencesWindow</name>
    <message>
        <source>設定</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>無音部分の検出</source>
        <translation>Finding quiet places</translation>
    </message>
    <message>
        <source>音量のしきい値(&amp;L):</source>
        <translation>&amp;Level:</translation>
    </message>
    <message>
        <source>この値より小さい音を無音とみなします</source>
        <translation>What is quieter than this counts as quiet</translation>
    </message>
    <message>
        <source>最大音量 = 1</source>
        <translation>full scale = 1</translation>
    </message>
    <message>
        <source>最短の長さ(&amp;T):</source>
        <translation>Least &amp;time:</translation>
    </message>
    <message>
        <source>無音がこの時間より長く続く所を検出します (0.02秒以上)</source>
        <translation>How long a place is quiet at least (0.02 s or more)</translation>
    </message>
    <message>
        <source>秒</source>
        <translation>s</translation>
    </message>
    <message>
        <source>矢印キー</source>
        <translation>Arrow keys</translation>
    </message>
    <message>
        <source>一度に移動する時間(&amp;M):</source>
        <translation>Ste&amp;p:</translation>
    </message>
    <message>
        <source>このウインドウを閉じると反映されます。</source>
        <translation>Takes effect when this window is closed.</translation>
    </message>
</context>
<context>
    <name>QtDesktop</name>
    <message>
        <source>“%1”は既に存在します。</source>
        <translation>“%1” exists already.</translation>
    </message>
    <message>
        <source>置き換えると、今の内容は失われます。</source>
        <translation>Replacing it loses what it holds now.</translation>
    </message>
    <message>
        <source>置き換える</source>
        <translation>Replace</translation>
    </message>
    <message>
        <source>キャンセル</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>開く</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>音声ファイル (%1)</source>
        <translation>Audio files (%1)</translation>
    </message>
</context>
<context>
    <name>QuietPanel</name>
    <message>
        <source>無音リスト</source>
        <translation>Quiet places</translation>
    </message>
    <message>
        <source>閉じる</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>レベル</source>
        <translation>Level</translation>
    </message>
    <message>
        <source>長さ</source>
        <translation>Length</translation>
    </message>
    <message>
        <source>無音の場所</source>
        <translation>List of quiet places</translation>
    </message>
    <message>
        <source>書き出し…</source>
        <translation>Export…</translation>
    </message>
    <message>
        <source>無音で分割して保存…</source>
        <translation>Split and save…</translation>
    </message>
    <message>
        <source>解析中 %1%</source>
        <translation>Reading %1%</translation>
    </message>
    <message>
        <source>%1秒</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1か所</source>
        <translation>%1 places</translation>
    </message>
</context>
<context>
    <name>QuietPlaces</name>
    <message>
        <source>書き出せるのは .cue、.txt、.csv のファイルだけです</source>
        <translation>Only .cue, .txt and .csv files can be exported</translation>
    </message>
    <message>
        <source>場所が多すぎて、CUEシートには書けません</source>
        <translation>Too many places for a CUE sheet</translation>
    </message>
    <message>
        <source>書き出しました: %1</source>
        <translation>Exported: %1</translation>
    </message>
    <message>
        <source>書き出せませんでした: %1</source>
        <translation>Could not be exported: %1</translation>
    </message>
    <message>
        <source>編集履歴が使っているファイルには保存できません。</source>
        <translation>The edit history uses this file: it cannot be saved over.</translation>
    </message>
    <message>
        <source>%1個のファイルは既に存在します。</source>
        <translation>%1 of the files exist already.</translation>
    </message>
    <message>
        <source>置き換えると、今の内容は失われます。</source>
        <translation>Replacing it loses what it holds now.</translation>
    </message>
    <message>
        <source>キャンセル</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>置き換える</source>
        <translation>Replace</translation>
    </message>
    <message>
        <source>分割する場所がありません</source>
        <translation>There is nowhere to split</translation>
    </message>
    <message>
        <source>分割して保存しています…</source>
        <translation>Splitting and saving…</translation>
    </message>
    <message>
        <source>%1個のファイルに保存しました: %2</source>
        <translation>Saved as %1 files in %2</translation>
    </message>
    <message>
        <source>キャンセルしました</source>
        <translation>Cancelled</translation>
    </message>
</context>
<context>
    <name>QuietPlacesModel</name>
    <message>
        <source>%1&#x3000;%2秒</source>
        <translation>%1   %2 s</translation>
    </message>
</context>
<context>
    <name>StatusTexts</name>
    <message>
        <source>%1  長さ %2</source>
        <translation>%1  length %2</translation>
    </message>
    <message>
        <source>範囲 %1 ～ %2</source>
        <translation>Range %1 – %2</translation>
    </message>
    <message>
        <source>無音 %1か所</source>
        <translation>Quiet: %1</translation>
    </message>
    <message>
        <source>%1 から先を読み取れません</source>
        <translation>Cannot be read from %1 on</translation>
    </message>
    <message>
        <source>波形 %1%</source>
        <translation>Waveform %1%</translation>
    </message>
</context>
<context>
    <name>StripAccessible</name>
    <message>
        <source>始点 %1</source>
        <translation>start %1</translation>
    </message>
    <message>
        <source>終点 %1</source>
        <translation>end %1</translation>
    </message>
    <message>
        <source>、</source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>TimeRuler</name>
    <message>
        <source>目盛り</source>
        <translation>Time ruler</translation>
    </message>
</context>
<context>
    <name>WorkWatch</name>
    <message>
        <source>キャンセル</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>進み具合</source>
        <translation>Progress</translation>
    </message>
</context>
</TS>
