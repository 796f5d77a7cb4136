<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>AboutTab</name>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>Image compression powered by TinyPNG API</source>
        <translation>Compresión de imágenes con la API de TinyPNG</translation>
    </message>
    <message>
        <source>Built with ❤️ by</source>
        <translation>Hecho con ❤️ por</translation>
    </message>
    <message>
        <source>Compresses on this computer: your pictures never leave it</source>
        <translation>Comprime en este equipo: sus imágenes nunca salen de él</translation>
    </message>
</context>
<context>
    <name>ActivityIndicator</name>
    <message>
        <source>In progress</source>
        <translation>En curso</translation>
    </message>
</context>
<context>
    <name>BackgroundChoice</name>
    <message>
        <source>Background</source>
        <translation>Fondo</translation>
    </message>
    <message>
        <source>Used to fill transparency (JPEG/AVIF don&apos;t support alpha)</source>
        <translation>Rellena las zonas transparentes (JPEG/AVIF no admiten el canal alfa)</translation>
    </message>
</context>
<context>
    <name>ColorPopover</name>
    <message>
        <source>Colour as #rrggbb</source>
        <translation>Color en formato #rrggbb</translation>
    </message>
    <message>
        <source>Enter six hexadecimal digits</source>
        <translation>Introduzca seis dígitos hexadecimales</translation>
    </message>
</context>
<context>
    <name>CompressionOptionsView</name>
    <message>
        <source>Compression options</source>
        <translation>Opciones de compresión</translation>
    </message>
</context>
<context>
    <name>DropZoneView</name>
    <message>
        <source>Drop Images Here</source>
        <translation>Suelta las imágenes aquí</translation>
    </message>
    <message>
        <source>PNG, JPEG, WebP, AVIF — up to 500 MB each</source>
        <translation>PNG, JPEG, WebP, AVIF: hasta 500 MB por archivo</translation>
    </message>
    <message>
        <source>Choose Files</source>
        <translation>Elegir archivos</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>Cortar</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Pegar</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleccionar todo</translation>
    </message>
</context>
<context>
    <name>FolderChoice</name>
    <message>
        <source>No folder chosen</source>
        <translation>Ninguna carpeta elegida</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Cambiar</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Elegir…</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose where Pixpress should save compressed images</source>
        <translation>Elige dónde debe guardar Pixpress las imágenes comprimidas</translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Seleccionar carpeta</translation>
    </message>
</context>
<context>
    <name>FormatChoice</name>
    <message>
        <source>Convert to</source>
        <translation>Convertir a</translation>
    </message>
</context>
<context>
    <name>FormatSection</name>
    <message>
        <source>Output Format</source>
        <translation>Formato de salida</translation>
    </message>
    <message>
        <source>Convert Format</source>
        <translation>Convertir el formato</translation>
    </message>
</context>
<context>
    <name>KeyTab</name>
    <message>
        <source>API key is valid</source>
        <translation>La clave de API es válida</translation>
    </message>
    <message>
        <source>Invalid API key</source>
        <translation>Clave de API no válida</translation>
    </message>
    <message>
        <source>Validation failed: %1</source>
        <translation>Error al validar: %1</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>Clave de API de TinyPNG</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>Clave de API</translation>
    </message>
    <message>
        <source>Save Key</source>
        <translation>Guardar clave</translation>
    </message>
    <message>
        <source>Key saved successfully</source>
        <translation>La clave se ha guardado</translation>
    </message>
    <message>
        <source>Validate</source>
        <translation>Validar</translation>
    </message>
    <message>
        <source>Get your free key (500 compressions/month) at</source>
        <translation>Consigue tu clave gratuita (500 compresiones/mes) en</translation>
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
        <translation>Salir</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Archivo</translation>
    </message>
    <message>
        <source>Add Files…</source>
        <translation>Añadir archivos…</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Acerca de Pixpress</translation>
    </message>
</context>
<context>
    <name>MetadataSection</name>
    <message>
        <source>Preserve Metadata</source>
        <translation>Conservar metadatos</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>Fecha de creación</translation>
    </message>
    <message>
        <source>GPS Location</source>
        <translation>Ubicación GPS</translation>
    </message>
</context>
<context>
    <name>OnboardingView</name>
    <message>
        <source>Invalid API key — please check and try again.</source>
        <translation>Clave de API no válida: compruébala e inténtalo de nuevo.</translation>
    </message>
    <message>
        <source>Could not validate: %1</source>
        <translation>No se ha podido validar: %1</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>Empezar</translation>
    </message>
    <message>
        <source>Welcome to Pixpress</source>
        <translation>Te damos la bienvenida a Pixpress</translation>
    </message>
    <message>
        <source>Compress PNG, JPEG, WebP, and AVIF images
using the TinyPNG API — up to 500 free per month.</source>
        <translation>Comprime imágenes PNG, JPEG, WebP y AVIF
con la API de TinyPNG: hasta 500 gratis al mes.</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>Clave de API de TinyPNG</translation>
    </message>
    <message>
        <source>Each user needs their own free API key. It only takes 30 seconds to get one.</source>
        <translation>Cada usuario necesita su propia clave de API gratuita. Se consigue en solo 30 segundos.</translation>
    </message>
    <message>
        <source>Paste your API key here…</source>
        <translation>Pega aquí tu clave de API…</translation>
    </message>
    <message>
        <source>Don&apos;t have a key yet?</source>
        <translation>¿Aún no tienes una clave?</translation>
    </message>
    <message>
        <source>Get a free API key at %1 →</source>
        <translation>Consigue una clave de API gratuita en %1 →</translation>
    </message>
    <message>
        <source>Built with ❤️ by </source>
        <translation>Hecho con ❤️ por </translation>
    </message>
</context>
<context>
    <name>OutputSection</name>
    <message>
        <source>Output</source>
        <translation>Salida</translation>
    </message>
    <message>
        <source>Save to</source>
        <translation>Guardar en</translation>
    </message>
</context>
<context>
    <name>OverlayScrollBar</name>
    <message>
        <source>Scroll bar</source>
        <translation>Barra de desplazamiento</translation>
    </message>
</context>
<context>
    <name>Panels</name>
    <message>
        <source>All files</source>
        <translation>Todos los archivos</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>Carpeta superior</translation>
    </message>
</context>
<context>
    <name>QuotaBarView</name>
    <message>
        <source>Monthly Usage</source>
        <translation>Uso mensual</translation>
    </message>
    <message numerus="yes">
        <source>(%n left)</source>
        <translation>
            <numerusform>(queda %n)</numerusform>
            <numerusform>(quedan %n)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResizeDimensions</name>
    <message>
        <source>Width</source>
        <translation>Ancho</translation>
    </message>
    <message>
        <source>or</source>
        <translation>o</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Alto</translation>
    </message>
    <message>
        <source>Only one dimension set — will scale proportionally</source>
        <translation>Solo se ha definido una dimensión: la imagen se escalará proporcionalmente</translation>
    </message>
    <message>
        <source>Enter a whole number of pixels</source>
        <translation>Introduzca un número entero de píxeles</translation>
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
        <translation>Tamaño</translation>
    </message>
    <message>
        <source>Enable Resize</source>
        <translation>Cambiar el tamaño</translation>
    </message>
</context>
<context>
    <name>RevealButton</name>
    <message>
        <source>Show in Finder</source>
        <translation>Mostrar en el Finder</translation>
    </message>
</context>
<context>
    <name>SegmentedTabs</name>
    <message>
        <source>Tabs</source>
        <translation>Pestañas</translation>
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
        <translation>Listo</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>Clave de API</translation>
    </message>
    <message>
        <source>Quota</source>
        <translation>Cuota</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
</context>
<context>
    <name>TaskListView</name>
    <message>
        <source>Images</source>
        <translation>Imágenes</translation>
    </message>
</context>
<context>
    <name>TaskRowView</name>
    <message>
        <source>Retry</source>
        <translation>Reintentar</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Mostrar en el Finder</translation>
    </message>
</context>
<context>
    <name>ToolbarView</name>
    <message>
        <source>Toolbar</source>
        <translation>Barra de herramientas</translation>
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
        <translation>Añadir archivos</translation>
    </message>
    <message>
        <source>Add images to compress</source>
        <translation>Añadir imágenes para comprimir</translation>
    </message>
    <message>
        <source>Clear Done</source>
        <translation>Quitar completadas</translation>
    </message>
    <message>
        <source>Clear completed tasks</source>
        <translation>Quitar las tareas completadas</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Quitar todas</translation>
    </message>
    <message>
        <source>Clear all tasks</source>
        <translation>Quitar todas las tareas</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Open settings</source>
        <translation>Abrir los ajustes</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Acerca de Pixpress</translation>
    </message>
</context>
<context>
    <name>UsageTab</name>
    <message>
        <source>Monthly Usage — %1</source>
        <translation>Uso mensual — %1</translation>
    </message>
    <message>
        <source>Compressions Used</source>
        <translation>Compresiones usadas</translation>
    </message>
    <message>
        <source>Monthly Limit</source>
        <translation>Límite mensual</translation>
    </message>
    <message>
        <source>Remaining</source>
        <translation>Restantes</translation>
    </message>
    <message>
        <source>Reset Local Counter</source>
        <translation>Restablecer el contador local</translation>
    </message>
    <message>
        <source>This only resets the local display. The actual count is tracked by TinyPNG&apos;s servers and synced on next compression.</source>
        <translation>Esto solo restablece el recuento local. El recuento real lo llevan los servidores de TinyPNG y se sincroniza en la próxima compresión.</translation>
    </message>
</context>
<context>
    <name>pixpress::AppState</name>
    <message>
        <source>Select images to compress (PNG, JPEG, WebP, AVIF)</source>
        <translation>Selecciona las imágenes que quieres comprimir (PNG, JPEG, WebP, AVIF)</translation>
    </message>
</context>
<context>
    <name>pixpress::TaskModel</name>
    <message>
        <source>Queued</source>
        <translation>En cola</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Subiendo</translation>
    </message>
    <message>
        <source>Compressing</source>
        <translation>Comprimiendo</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>Descargando</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>ahorro de %1</translation>
    </message>
    <message numerus="yes">
        <source>%1/%n completed</source>
        <translation>
            <numerusform>%1/%n completada</numerusform>
            <numerusform>%1/%n completadas</numerusform>
        </translation>
    </message>
    <message>
        <source>Total saved: %1</source>
        <translation>Ahorro total: %1</translation>
    </message>
    <message>
        <source>→ %1</source>
        <extracomment>What a file has become; with ← in languages that are written from right to left.</extracomment>
        <translation>→ %1</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n con error</numerusform>
            <numerusform>%n con error</numerusform>
        </translation>
    </message>
</context>
</TS>
