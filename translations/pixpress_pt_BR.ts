<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en">
<context>
    <name>AboutTab</name>
    <message>
        <source>Version %1</source>
        <translation>Versão %1</translation>
    </message>
    <message>
        <source>Image compression powered by TinyPNG API</source>
        <translation>Compressão de imagens com a API do TinyPNG</translation>
    </message>
    <message>
        <source>Built with ❤️ by</source>
        <translation>Feito com ❤️ por</translation>
    </message>
    <message>
        <source>Compresses on this computer: your pictures never leave it</source>
        <translation>Comprime neste computador: suas imagens nunca saem dele</translation>
    </message>
</context>
<context>
    <name>ActivityIndicator</name>
    <message>
        <source>In progress</source>
        <translation>Em andamento</translation>
    </message>
</context>
<context>
    <name>BackgroundChoice</name>
    <message>
        <source>Background</source>
        <translation>Fundo</translation>
    </message>
    <message>
        <source>Used to fill transparency (JPEG/AVIF don&apos;t support alpha)</source>
        <translation>Preenche as áreas transparentes (JPEG/AVIF não têm canal alfa)</translation>
    </message>
</context>
<context>
    <name>ColorPopover</name>
    <message>
        <source>Colour as #rrggbb</source>
        <translation>Cor no formato #rrggbb</translation>
    </message>
    <message>
        <source>Enter six hexadecimal digits</source>
        <translation>Digite seis dígitos hexadecimais</translation>
    </message>
</context>
<context>
    <name>CompressionOptionsView</name>
    <message>
        <source>Compression options</source>
        <translation>Opções de compressão</translation>
    </message>
</context>
<context>
    <name>DropZoneView</name>
    <message>
        <source>Drop Images Here</source>
        <translation>Solte as imagens aqui</translation>
    </message>
    <message>
        <source>PNG, JPEG, WebP, AVIF — up to 500 MB each</source>
        <translation>PNG, JPEG, WebP, AVIF — até 500 MB por arquivo</translation>
    </message>
    <message>
        <source>Choose Files</source>
        <translation>Escolher arquivos</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>Recortar</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Colar</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Selecionar tudo</translation>
    </message>
</context>
<context>
    <name>FolderChoice</name>
    <message>
        <source>No folder chosen</source>
        <translation>Nenhuma pasta escolhida</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Alterar</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Escolher…</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose where Pixpress should save compressed images</source>
        <translation>Escolha onde o Pixpress deve salvar as imagens comprimidas</translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Selecionar pasta</translation>
    </message>
</context>
<context>
    <name>FormatChoice</name>
    <message>
        <source>Convert to</source>
        <translation>Converter para</translation>
    </message>
</context>
<context>
    <name>FormatSection</name>
    <message>
        <source>Output Format</source>
        <translation>Formato de saída</translation>
    </message>
    <message>
        <source>Convert Format</source>
        <translation>Converter o formato</translation>
    </message>
</context>
<context>
    <name>KeyTab</name>
    <message>
        <source>API key is valid</source>
        <translation>A chave de API é válida</translation>
    </message>
    <message>
        <source>Invalid API key</source>
        <translation>Chave de API inválida</translation>
    </message>
    <message>
        <source>Validation failed: %1</source>
        <translation>Falha na validação: %1</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>Chave de API do TinyPNG</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>Chave de API</translation>
    </message>
    <message>
        <source>Save Key</source>
        <translation>Salvar chave</translation>
    </message>
    <message>
        <source>Key saved successfully</source>
        <translation>A chave foi salva</translation>
    </message>
    <message>
        <source>Validate</source>
        <translation>Validar</translation>
    </message>
    <message>
        <source>Get your free key (500 compressions/month) at</source>
        <translation>Obtenha sua chave gratuita (500 compressões/mês) em</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Settings…</source>
        <translation>Ajustes…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Sair</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Arquivo</translation>
    </message>
    <message>
        <source>Add Files…</source>
        <translation>Adicionar arquivos…</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Sobre o Pixpress</translation>
    </message>
</context>
<context>
    <name>MetadataSection</name>
    <message>
        <source>Preserve Metadata</source>
        <translation>Preservar metadados</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>Direitos autorais</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>Data de criação</translation>
    </message>
    <message>
        <source>GPS Location</source>
        <translation>Localização GPS</translation>
    </message>
</context>
<context>
    <name>OnboardingView</name>
    <message>
        <source>Invalid API key — please check and try again.</source>
        <translation>Chave de API inválida — verifique e tente novamente.</translation>
    </message>
    <message>
        <source>Could not validate: %1</source>
        <translation>Não foi possível validar: %1</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>Começar</translation>
    </message>
    <message>
        <source>Welcome to Pixpress</source>
        <translation>Boas-vindas ao Pixpress</translation>
    </message>
    <message>
        <source>Compress PNG, JPEG, WebP, and AVIF images
using the TinyPNG API — up to 500 free per month.</source>
        <translation>Comprima imagens PNG, JPEG, WebP e AVIF
com a API do TinyPNG — até 500 grátis por mês.</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>Chave de API do TinyPNG</translation>
    </message>
    <message>
        <source>Each user needs their own free API key. It only takes 30 seconds to get one.</source>
        <translation>Cada usuário precisa da própria chave de API gratuita. Leva apenas 30 segundos para obtê-la.</translation>
    </message>
    <message>
        <source>Paste your API key here…</source>
        <translation>Cole sua chave de API aqui…</translation>
    </message>
    <message>
        <source>Don&apos;t have a key yet?</source>
        <translation>Ainda não tem uma chave?</translation>
    </message>
    <message>
        <source>Get a free API key at %1 →</source>
        <translation>Obtenha uma chave de API gratuita em %1 →</translation>
    </message>
    <message>
        <source>Built with ❤️ by </source>
        <translation>Feito com ❤️ por </translation>
    </message>
</context>
<context>
    <name>OutputSection</name>
    <message>
        <source>Output</source>
        <translation>Saída</translation>
    </message>
    <message>
        <source>Save to</source>
        <translation>Salvar em</translation>
    </message>
</context>
<context>
    <name>OverlayScrollBar</name>
    <message>
        <source>Scroll bar</source>
        <translation>Barra de rolagem</translation>
    </message>
</context>
<context>
    <name>Panels</name>
    <message>
        <source>All files</source>
        <translation>Todos os arquivos</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>Pasta superior</translation>
    </message>
</context>
<context>
    <name>QuotaBarView</name>
    <message>
        <source>Monthly Usage</source>
        <translation>Uso mensal</translation>
    </message>
    <message numerus="yes">
        <source>(%n left)</source>
        <translation>
            <numerusform>(resta %n)</numerusform>
            <numerusform>(restam %n)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResizeDimensions</name>
    <message>
        <source>Width</source>
        <translation>Largura</translation>
    </message>
    <message>
        <source>or</source>
        <translation>ou</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Altura</translation>
    </message>
    <message>
        <source>Only one dimension set — will scale proportionally</source>
        <translation>Apenas uma dimensão definida — a imagem será dimensionada proporcionalmente</translation>
    </message>
    <message>
        <source>Enter a whole number of pixels</source>
        <translation>Digite um número inteiro de pixels</translation>
    </message>
</context>
<context>
    <name>ResizeMethod</name>
    <message>
        <source>Method</source>
        <translation>Método</translation>
    </message>
</context>
<context>
    <name>ResizeSection</name>
    <message>
        <source>Resize</source>
        <translation>Tamanho</translation>
    </message>
    <message>
        <source>Enable Resize</source>
        <translation>Redimensionar</translation>
    </message>
</context>
<context>
    <name>RevealButton</name>
    <message>
        <source>Show in Finder</source>
        <translation>Mostrar no Finder</translation>
    </message>
</context>
<context>
    <name>SegmentedTabs</name>
    <message>
        <source>Tabs</source>
        <translation>Abas</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Concluído</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>Chave de API</translation>
    </message>
    <message>
        <source>Quota</source>
        <translation>Cota</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Sobre</translation>
    </message>
</context>
<context>
    <name>TaskListView</name>
    <message>
        <source>Images</source>
        <translation>Imagens</translation>
    </message>
</context>
<context>
    <name>TaskRowView</name>
    <message>
        <source>Retry</source>
        <translation>Repetir</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Mostrar no Finder</translation>
    </message>
</context>
<context>
    <name>ToolbarView</name>
    <message>
        <source>Toolbar</source>
        <translation>Barra de ferramentas</translation>
    </message>
    <message>
        <source>Hide Sidebar</source>
        <translation>Ocultar barra lateral</translation>
    </message>
    <message>
        <source>Show Sidebar</source>
        <translation>Mostrar barra lateral</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Adicionar arquivos</translation>
    </message>
    <message>
        <source>Add images to compress</source>
        <translation>Adicionar imagens para comprimir</translation>
    </message>
    <message>
        <source>Clear Done</source>
        <translation>Limpar concluídas</translation>
    </message>
    <message>
        <source>Clear completed tasks</source>
        <translation>Limpar as tarefas concluídas</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Limpar tudo</translation>
    </message>
    <message>
        <source>Clear all tasks</source>
        <translation>Limpar todas as tarefas</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Open settings</source>
        <translation>Abrir os ajustes</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Sobre</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Sobre o Pixpress</translation>
    </message>
</context>
<context>
    <name>UsageTab</name>
    <message>
        <source>Monthly Usage — %1</source>
        <translation>Uso mensal — %1</translation>
    </message>
    <message>
        <source>Compressions Used</source>
        <translation>Compressões usadas</translation>
    </message>
    <message>
        <source>Monthly Limit</source>
        <translation>Limite mensal</translation>
    </message>
    <message>
        <source>Remaining</source>
        <translation>Restantes</translation>
    </message>
    <message>
        <source>Reset Local Counter</source>
        <translation>Redefinir o contador local</translation>
    </message>
    <message>
        <source>This only resets the local display. The actual count is tracked by TinyPNG&apos;s servers and synced on next compression.</source>
        <translation>Isto redefine apenas a exibição local. A contagem real é mantida pelos servidores do TinyPNG e sincronizada na próxima compressão.</translation>
    </message>
</context>
<context>
    <name>pixpress::AppState</name>
    <message>
        <source>Select images to compress (PNG, JPEG, WebP, AVIF)</source>
        <translation>Selecione as imagens para comprimir (PNG, JPEG, WebP, AVIF)</translation>
    </message>
</context>
<context>
    <name>pixpress::TaskModel</name>
    <message>
        <source>Queued</source>
        <translation>Na fila</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Enviando</translation>
    </message>
    <message>
        <source>Compressing</source>
        <translation>Comprimindo</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>Baixando</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>economia de %1</translation>
    </message>
    <message numerus="yes">
        <source>%1/%n completed</source>
        <translation>
            <numerusform>%1/%n concluída</numerusform>
            <numerusform>%1/%n concluídas</numerusform>
        </translation>
    </message>
    <message>
        <source>Total saved: %1</source>
        <translation>Economia total: %1</translation>
    </message>
    <message>
        <source>→ %1</source>
        <extracomment>What a file has become; with ← in languages that are written from right to left.</extracomment>
        <translation>→ %1</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n com falha</numerusform>
            <numerusform>%n com falha</numerusform>
        </translation>
    </message>
</context>
</TS>
