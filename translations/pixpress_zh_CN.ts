<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AboutTab</name>
    <message>
        <source>Version %1</source>
        <translation>版本 %1</translation>
    </message>
    <message>
        <source>Image compression powered by TinyPNG API</source>
        <translation>由 TinyPNG API 提供图像压缩</translation>
    </message>
    <message>
        <source>Built with ❤️ by</source>
        <translation>用 ❤️ 制作，作者：</translation>
    </message>
    <message>
        <source>Compresses on this computer: your pictures never leave it</source>
        <translation>在本机上压缩：您的图片绝不会离开这台电脑</translation>
    </message>
</context>
<context>
    <name>ActivityIndicator</name>
    <message>
        <source>In progress</source>
        <translation>正在进行</translation>
    </message>
</context>
<context>
    <name>BackgroundChoice</name>
    <message>
        <source>Background</source>
        <translation>背景</translation>
    </message>
    <message>
        <source>Used to fill transparency (JPEG/AVIF don&apos;t support alpha)</source>
        <translation>用于填充透明区域（JPEG/AVIF 不支持 Alpha 通道）</translation>
    </message>
</context>
<context>
    <name>ColorPopover</name>
    <message>
        <source>Colour as #rrggbb</source>
        <translation>#rrggbb 格式的颜色</translation>
    </message>
    <message>
        <source>Enter six hexadecimal digits</source>
        <translation>请输入六位十六进制数字</translation>
    </message>
</context>
<context>
    <name>CompressionOptionsView</name>
    <message>
        <source>Compression options</source>
        <translation>压缩选项</translation>
    </message>
</context>
<context>
    <name>DropZoneView</name>
    <message>
        <source>Drop Images Here</source>
        <translation>将图像拖放到此处</translation>
    </message>
    <message>
        <source>PNG, JPEG, WebP, AVIF — up to 500 MB each</source>
        <translation>PNG、JPEG、WebP、AVIF，每个最大 500 MB</translation>
    </message>
    <message>
        <source>Choose Files</source>
        <translation>选择文件</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>剪切</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>粘贴</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全选</translation>
    </message>
</context>
<context>
    <name>FolderChoice</name>
    <message>
        <source>No folder chosen</source>
        <translation>未选择文件夹</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>更改</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>选择…</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose where Pixpress should save compressed images</source>
        <translation>选择 Pixpress 保存压缩图像的位置</translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>选择文件夹</translation>
    </message>
</context>
<context>
    <name>FormatChoice</name>
    <message>
        <source>Convert to</source>
        <translation>转换为</translation>
    </message>
</context>
<context>
    <name>FormatSection</name>
    <message>
        <source>Output Format</source>
        <translation>输出格式</translation>
    </message>
    <message>
        <source>Convert Format</source>
        <translation>转换格式</translation>
    </message>
</context>
<context>
    <name>KeyTab</name>
    <message>
        <source>API key is valid</source>
        <translation>API 密钥有效</translation>
    </message>
    <message>
        <source>Invalid API key</source>
        <translation>API 密钥无效</translation>
    </message>
    <message>
        <source>Validation failed: %1</source>
        <translation>验证失败：%1</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>TinyPNG API 密钥</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>API 密钥</translation>
    </message>
    <message>
        <source>Save Key</source>
        <translation>保存密钥</translation>
    </message>
    <message>
        <source>Key saved successfully</source>
        <translation>密钥已保存</translation>
    </message>
    <message>
        <source>Validate</source>
        <translation>验证</translation>
    </message>
    <message>
        <source>Get your free key (500 compressions/month) at</source>
        <translation>获取免费密钥（每月 500 次压缩）：</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Settings…</source>
        <translation>设置…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>Add Files…</source>
        <translation>添加文件…</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>关于 Pixpress</translation>
    </message>
</context>
<context>
    <name>MetadataSection</name>
    <message>
        <source>Preserve Metadata</source>
        <translation>保留元数据</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>版权</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>创建日期</translation>
    </message>
    <message>
        <source>GPS Location</source>
        <translation>GPS 位置</translation>
    </message>
</context>
<context>
    <name>OnboardingView</name>
    <message>
        <source>Invalid API key — please check and try again.</source>
        <translation>API 密钥无效，请检查后重试。</translation>
    </message>
    <message>
        <source>Could not validate: %1</source>
        <translation>无法验证：%1</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>开始使用</translation>
    </message>
    <message>
        <source>Welcome to Pixpress</source>
        <translation>欢迎使用 Pixpress</translation>
    </message>
    <message>
        <source>Compress PNG, JPEG, WebP, and AVIF images
using the TinyPNG API — up to 500 free per month.</source>
        <translation>使用 TinyPNG API 压缩 PNG、JPEG、WebP 和 AVIF 图像，
每月可免费压缩 500 张。</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>TinyPNG API 密钥</translation>
    </message>
    <message>
        <source>Each user needs their own free API key. It only takes 30 seconds to get one.</source>
        <translation>每位用户都需要自己的免费 API 密钥，只需 30 秒即可获取。</translation>
    </message>
    <message>
        <source>Paste your API key here…</source>
        <translation>在此粘贴 API 密钥…</translation>
    </message>
    <message>
        <source>Don&apos;t have a key yet?</source>
        <translation>还没有密钥？</translation>
    </message>
    <message>
        <source>Get a free API key at %1 →</source>
        <translation>前往 %1 获取免费 API 密钥 →</translation>
    </message>
    <message>
        <source>Built with ❤️ by </source>
        <translation>用 ❤️ 制作，作者：</translation>
    </message>
</context>
<context>
    <name>OutputSection</name>
    <message>
        <source>Output</source>
        <translation>输出</translation>
    </message>
    <message>
        <source>Save to</source>
        <translation>保存到</translation>
    </message>
</context>
<context>
    <name>OverlayScrollBar</name>
    <message>
        <source>Scroll bar</source>
        <translation>滚动条</translation>
    </message>
</context>
<context>
    <name>Panels</name>
    <message>
        <source>All files</source>
        <translation>所有文件</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>上级文件夹</translation>
    </message>
</context>
<context>
    <name>QuotaBarView</name>
    <message>
        <source>Monthly Usage</source>
        <translation>每月用量</translation>
    </message>
    <message numerus="yes">
        <source>(%n left)</source>
        <translation>
            <numerusform>(剩余 %n)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResizeDimensions</name>
    <message>
        <source>Width</source>
        <translation>宽度</translation>
    </message>
    <message>
        <source>or</source>
        <translation>或</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>高度</translation>
    </message>
    <message>
        <source>Only one dimension set — will scale proportionally</source>
        <translation>只设置了一个尺寸，将按比例缩放</translation>
    </message>
    <message>
        <source>Enter a whole number of pixels</source>
        <translation>请输入整数像素值</translation>
    </message>
</context>
<context>
    <name>ResizeMethod</name>
    <message>
        <source>Method</source>
        <translation>方式</translation>
    </message>
</context>
<context>
    <name>ResizeSection</name>
    <message>
        <source>Resize</source>
        <translation>调整大小</translation>
    </message>
    <message>
        <source>Enable Resize</source>
        <translation>调整图像大小</translation>
    </message>
</context>
<context>
    <name>RevealButton</name>
    <message>
        <source>Show in Finder</source>
        <translation>在 Finder 中显示</translation>
    </message>
</context>
<context>
    <name>SegmentedTabs</name>
    <message>
        <source>Tabs</source>
        <translation>标签页</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>API 密钥</translation>
    </message>
    <message>
        <source>Quota</source>
        <translation>配额</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
</context>
<context>
    <name>TaskListView</name>
    <message>
        <source>Images</source>
        <translation>图像</translation>
    </message>
</context>
<context>
    <name>TaskRowView</name>
    <message>
        <source>Retry</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>在 Finder 中显示</translation>
    </message>
</context>
<context>
    <name>ToolbarView</name>
    <message>
        <source>Toolbar</source>
        <translation>工具栏</translation>
    </message>
    <message>
        <source>Hide Sidebar</source>
        <translation>隐藏边栏</translation>
    </message>
    <message>
        <source>Show Sidebar</source>
        <translation>显示边栏</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>添加文件</translation>
    </message>
    <message>
        <source>Add images to compress</source>
        <translation>添加要压缩的图像</translation>
    </message>
    <message>
        <source>Clear Done</source>
        <translation>清除已完成</translation>
    </message>
    <message>
        <source>Clear completed tasks</source>
        <translation>清除已完成的任务</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>全部清除</translation>
    </message>
    <message>
        <source>Clear all tasks</source>
        <translation>清除所有任务</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Open settings</source>
        <translation>打开设置</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>关于 Pixpress</translation>
    </message>
</context>
<context>
    <name>UsageTab</name>
    <message>
        <source>Monthly Usage — %1</source>
        <translation>每月用量 — %1</translation>
    </message>
    <message>
        <source>Compressions Used</source>
        <translation>已用压缩次数</translation>
    </message>
    <message>
        <source>Monthly Limit</source>
        <translation>每月限额</translation>
    </message>
    <message>
        <source>Remaining</source>
        <translation>剩余</translation>
    </message>
    <message>
        <source>Reset Local Counter</source>
        <translation>重置本地计数器</translation>
    </message>
    <message>
        <source>This only resets the local display. The actual count is tracked by TinyPNG&apos;s servers and synced on next compression.</source>
        <translation>这只会重置本地显示。实际次数由 TinyPNG 服务器记录，并在下次压缩时同步。</translation>
    </message>
</context>
<context>
    <name>pixpress::AppState</name>
    <message>
        <source>Select images to compress (PNG, JPEG, WebP, AVIF)</source>
        <translation>选择要压缩的图像（PNG、JPEG、WebP、AVIF）</translation>
    </message>
</context>
<context>
    <name>pixpress::TaskModel</name>
    <message>
        <source>Queued</source>
        <translation>排队中</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>正在上传</translation>
    </message>
    <message>
        <source>Compressing</source>
        <translation>正在压缩</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>正在下载</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>节省 %1</translation>
    </message>
    <message numerus="yes">
        <source>%1/%n completed</source>
        <translation>
            <numerusform>已完成 %1/%n</numerusform>
        </translation>
    </message>
    <message>
        <source>Total saved: %1</source>
        <translation>共节省：%1</translation>
    </message>
    <message>
        <source>→ %1</source>
        <extracomment>What a file has become; with ← in languages that are written from right to left.</extracomment>
        <translation>→ %1</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n 个失败</numerusform>
        </translation>
    </message>
</context>
</TS>
