<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>AboutTab</name>
    <message>
        <source>Version %1</source>
        <translation>バージョン %1</translation>
    </message>
    <message>
        <source>Image compression powered by TinyPNG API</source>
        <translation>TinyPNG APIによる画像圧縮</translation>
    </message>
    <message>
        <source>Built with ❤️ by</source>
        <translation>❤️を込めて制作：</translation>
    </message>
    <message>
        <source>Compresses on this computer: your pictures never leave it</source>
        <translation>このコンピューターで圧縮します。画像が外部に送られることはありません</translation>
    </message>
</context>
<context>
    <name>ActivityIndicator</name>
    <message>
        <source>In progress</source>
        <translation>処理中</translation>
    </message>
</context>
<context>
    <name>BackgroundChoice</name>
    <message>
        <source>Background</source>
        <translation>背景色</translation>
    </message>
    <message>
        <source>Used to fill transparency (JPEG/AVIF don&apos;t support alpha)</source>
        <translation>透明部分の塗りつぶしに使用します（JPEG/AVIFはアルファに非対応）</translation>
    </message>
</context>
<context>
    <name>ColorPopover</name>
    <message>
        <source>Colour as #rrggbb</source>
        <translation>#rrggbb形式の色</translation>
    </message>
    <message>
        <source>Enter six hexadecimal digits</source>
        <translation>16進数6桁で入力してください</translation>
    </message>
</context>
<context>
    <name>CompressionOptionsView</name>
    <message>
        <source>Compression options</source>
        <translation>圧縮オプション</translation>
    </message>
</context>
<context>
    <name>DropZoneView</name>
    <message>
        <source>Drop Images Here</source>
        <translation>ここに画像をドロップ</translation>
    </message>
    <message>
        <source>PNG, JPEG, WebP, AVIF — up to 500 MB each</source>
        <translation>PNG、JPEG、WebP、AVIF（各500 MBまで）</translation>
    </message>
    <message>
        <source>Choose Files</source>
        <translation>ファイルを選択</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>切り取り</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>貼り付け</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>すべて選択</translation>
    </message>
</context>
<context>
    <name>FolderChoice</name>
    <message>
        <source>No folder chosen</source>
        <translation>フォルダ未選択</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>変更</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>選択…</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose where Pixpress should save compressed images</source>
        <translation>圧縮した画像の保存先を選択</translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>フォルダを選択</translation>
    </message>
</context>
<context>
    <name>FormatChoice</name>
    <message>
        <source>Convert to</source>
        <translation>変換後のフォーマット</translation>
    </message>
</context>
<context>
    <name>FormatSection</name>
    <message>
        <source>Output Format</source>
        <translation>出力フォーマット</translation>
    </message>
    <message>
        <source>Convert Format</source>
        <translation>フォーマットを変換</translation>
    </message>
</context>
<context>
    <name>KeyTab</name>
    <message>
        <source>API key is valid</source>
        <translation>APIキーは有効です</translation>
    </message>
    <message>
        <source>Invalid API key</source>
        <translation>APIキーが無効です</translation>
    </message>
    <message>
        <source>Validation failed: %1</source>
        <translation>検証に失敗しました：%1</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>TinyPNG APIキー</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>APIキー</translation>
    </message>
    <message>
        <source>Save Key</source>
        <translation>キーを保存</translation>
    </message>
    <message>
        <source>Key saved successfully</source>
        <translation>キーを保存しました</translation>
    </message>
    <message>
        <source>Validate</source>
        <translation>検証</translation>
    </message>
    <message>
        <source>Get your free key (500 compressions/month) at</source>
        <translation>無料のキー（月500回まで圧縮可能）の取得先：</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Settings…</source>
        <translation>設定…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message>
        <source>Add Files…</source>
        <translation>ファイルを追加…</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Pixpressについて</translation>
    </message>
</context>
<context>
    <name>MetadataSection</name>
    <message>
        <source>Preserve Metadata</source>
        <translation>メタデータの保持</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>著作権情報</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>作成日</translation>
    </message>
    <message>
        <source>GPS Location</source>
        <translation>GPS位置情報</translation>
    </message>
</context>
<context>
    <name>OnboardingView</name>
    <message>
        <source>Invalid API key — please check and try again.</source>
        <translation>APIキーが無効です。確認して、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Could not validate: %1</source>
        <translation>検証できませんでした：%1</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>はじめる</translation>
    </message>
    <message>
        <source>Welcome to Pixpress</source>
        <translation>Pixpressへようこそ</translation>
    </message>
    <message>
        <source>Compress PNG, JPEG, WebP, and AVIF images
using the TinyPNG API — up to 500 free per month.</source>
        <translation>PNG、JPEG、WebP、AVIFの画像をTinyPNG APIで圧縮できます。
毎月500枚まで無料です。</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>TinyPNG APIキー</translation>
    </message>
    <message>
        <source>Each user needs their own free API key. It only takes 30 seconds to get one.</source>
        <translation>APIキーはユーザーごとに必要です。無料で、30秒ほどで取得できます。</translation>
    </message>
    <message>
        <source>Paste your API key here…</source>
        <translation>ここにAPIキーを貼り付け…</translation>
    </message>
    <message>
        <source>Don&apos;t have a key yet?</source>
        <translation>まだキーをお持ちではありませんか？</translation>
    </message>
    <message>
        <source>Get a free API key at %1 →</source>
        <translation>%1で無料のAPIキーを取得 →</translation>
    </message>
    <message>
        <source>Built with ❤️ by </source>
        <translation>❤️を込めて制作：</translation>
    </message>
</context>
<context>
    <name>OutputSection</name>
    <message>
        <source>Output</source>
        <translation>出力</translation>
    </message>
    <message>
        <source>Save to</source>
        <translation>保存先</translation>
    </message>
</context>
<context>
    <name>OverlayScrollBar</name>
    <message>
        <source>Scroll bar</source>
        <translation>スクロールバー</translation>
    </message>
</context>
<context>
    <name>Panels</name>
    <message>
        <source>All files</source>
        <translation>すべてのファイル</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>上のフォルダー</translation>
    </message>
</context>
<context>
    <name>QuotaBarView</name>
    <message>
        <source>Monthly Usage</source>
        <translation>月間使用量</translation>
    </message>
    <message numerus="yes">
        <source>(%n left)</source>
        <translation>
            <numerusform>(残り%n)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResizeDimensions</name>
    <message>
        <source>Width</source>
        <translation>幅</translation>
    </message>
    <message>
        <source>or</source>
        <translation>または</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高さ</translation>
    </message>
    <message>
        <source>Only one dimension set — will scale proportionally</source>
        <translation>片方の寸法のみ指定されています。縦横比を保って拡大・縮小します</translation>
    </message>
    <message>
        <source>Enter a whole number of pixels</source>
        <translation>ピクセル数を整数で入力してください</translation>
    </message>
</context>
<context>
    <name>ResizeMethod</name>
    <message>
        <source>Method</source>
        <translation>方法</translation>
    </message>
</context>
<context>
    <name>ResizeSection</name>
    <message>
        <source>Resize</source>
        <translation>サイズ変更</translation>
    </message>
    <message>
        <source>Enable Resize</source>
        <translation>サイズを変更</translation>
    </message>
</context>
<context>
    <name>RevealButton</name>
    <message>
        <source>Show in Finder</source>
        <translation>Finderに表示</translation>
    </message>
</context>
<context>
    <name>SegmentedTabs</name>
    <message>
        <source>Tabs</source>
        <translation>タブ</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>APIキー</translation>
    </message>
    <message>
        <source>Quota</source>
        <translation>利用枠</translation>
    </message>
    <message>
        <source>About</source>
        <translation>情報</translation>
    </message>
</context>
<context>
    <name>TaskListView</name>
    <message>
        <source>Images</source>
        <translation>画像</translation>
    </message>
</context>
<context>
    <name>TaskRowView</name>
    <message>
        <source>Retry</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Finderに表示</translation>
    </message>
</context>
<context>
    <name>ToolbarView</name>
    <message>
        <source>Toolbar</source>
        <translation>ツールバー</translation>
    </message>
    <message>
        <source>Hide Sidebar</source>
        <translation>サイドバーを非表示</translation>
    </message>
    <message>
        <source>Show Sidebar</source>
        <translation>サイドバーを表示</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>ファイルを追加</translation>
    </message>
    <message>
        <source>Add images to compress</source>
        <translation>圧縮する画像を追加</translation>
    </message>
    <message>
        <source>Clear Done</source>
        <translation>完了分を消去</translation>
    </message>
    <message>
        <source>Clear completed tasks</source>
        <translation>完了したタスクを消去</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>すべて消去</translation>
    </message>
    <message>
        <source>Clear all tasks</source>
        <translation>すべてのタスクを消去</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Open settings</source>
        <translation>設定を開く</translation>
    </message>
    <message>
        <source>About</source>
        <translation>情報</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Pixpressについて</translation>
    </message>
</context>
<context>
    <name>UsageTab</name>
    <message>
        <source>Monthly Usage — %1</source>
        <translation>月間使用量 — %1</translation>
    </message>
    <message>
        <source>Compressions Used</source>
        <translation>使用済みの圧縮回数</translation>
    </message>
    <message>
        <source>Monthly Limit</source>
        <translation>月間上限</translation>
    </message>
    <message>
        <source>Remaining</source>
        <translation>残り</translation>
    </message>
    <message>
        <source>Reset Local Counter</source>
        <translation>ローカルカウンタをリセット</translation>
    </message>
    <message>
        <source>This only resets the local display. The actual count is tracked by TinyPNG&apos;s servers and synced on next compression.</source>
        <translation>リセットされるのはローカルの表示のみです。実際の回数はTinyPNGのサーバーで管理され、次回の圧縮時に同期されます。</translation>
    </message>
</context>
<context>
    <name>pixpress::AppState</name>
    <message>
        <source>Select images to compress (PNG, JPEG, WebP, AVIF)</source>
        <translation>圧縮する画像を選択（PNG、JPEG、WebP、AVIF）</translation>
    </message>
</context>
<context>
    <name>pixpress::TaskModel</name>
    <message>
        <source>Queued</source>
        <translation>待機中</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>アップロード中</translation>
    </message>
    <message>
        <source>Compressing</source>
        <translation>圧縮中</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>ダウンロード中</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>%1削減</translation>
    </message>
    <message numerus="yes">
        <source>%1/%n completed</source>
        <translation>
            <numerusform>%1/%n完了</numerusform>
        </translation>
    </message>
    <message>
        <source>Total saved: %1</source>
        <translation>合計削減量：%1</translation>
    </message>
    <message>
        <source>→ %1</source>
        <extracomment>What a file has become; with ← in languages that are written from right to left.</extracomment>
        <translation>→ %1</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n件失敗</numerusform>
        </translation>
    </message>
</context>
</TS>
