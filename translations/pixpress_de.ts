<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutTab</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Image compression powered by TinyPNG API</source>
        <translation>Bildkomprimierung mit der TinyPNG-API</translation>
    </message>
    <message>
        <source>Built with ❤️ by</source>
        <translation>Mit ❤️ entwickelt von</translation>
    </message>
    <message>
        <source>Compresses on this computer: your pictures never leave it</source>
        <translation>Komprimiert auf diesem Computer: Ihre Bilder verlassen ihn nie</translation>
    </message>
</context>
<context>
    <name>ActivityIndicator</name>
    <message>
        <source>In progress</source>
        <translation>Wird ausgeführt</translation>
    </message>
</context>
<context>
    <name>BackgroundChoice</name>
    <message>
        <source>Background</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>Used to fill transparency (JPEG/AVIF don&apos;t support alpha)</source>
        <translation>Füllt transparente Bereiche (JPEG/AVIF unterstützen keinen Alphakanal)</translation>
    </message>
</context>
<context>
    <name>ColorPopover</name>
    <message>
        <source>Colour as #rrggbb</source>
        <translation>Farbe als #rrggbb</translation>
    </message>
    <message>
        <source>Enter six hexadecimal digits</source>
        <translation>Sechs hexadezimale Ziffern eingeben</translation>
    </message>
</context>
<context>
    <name>CompressionOptionsView</name>
    <message>
        <source>Compression options</source>
        <translation>Komprimierungsoptionen</translation>
    </message>
</context>
<context>
    <name>DropZoneView</name>
    <message>
        <source>Drop Images Here</source>
        <translation>Bilder hier ablegen</translation>
    </message>
    <message>
        <source>PNG, JPEG, WebP, AVIF — up to 500 MB each</source>
        <translation>PNG, JPEG, WebP, AVIF – jeweils bis zu 500 MB</translation>
    </message>
    <message>
        <source>Choose Files</source>
        <translation>Dateien auswählen</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>FolderChoice</name>
    <message>
        <source>No folder chosen</source>
        <translation>Kein Ordner gewählt</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Wählen&#xa0;…</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose where Pixpress should save compressed images</source>
        <translation>Speicherort für komprimierte Bilder auswählen</translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Ordner auswählen</translation>
    </message>
</context>
<context>
    <name>FormatChoice</name>
    <message>
        <source>Convert to</source>
        <translation>Konvertieren in</translation>
    </message>
</context>
<context>
    <name>FormatSection</name>
    <message>
        <source>Output Format</source>
        <translation>Ausgabeformat</translation>
    </message>
    <message>
        <source>Convert Format</source>
        <translation>Format konvertieren</translation>
    </message>
</context>
<context>
    <name>KeyTab</name>
    <message>
        <source>API key is valid</source>
        <translation>Der API-Schlüssel ist gültig</translation>
    </message>
    <message>
        <source>Invalid API key</source>
        <translation>Ungültiger API-Schlüssel</translation>
    </message>
    <message>
        <source>Validation failed: %1</source>
        <translation>Überprüfung fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>TinyPNG-API-Schlüssel</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>API-Schlüssel</translation>
    </message>
    <message>
        <source>Save Key</source>
        <translation>Schlüssel speichern</translation>
    </message>
    <message>
        <source>Key saved successfully</source>
        <translation>Der Schlüssel wurde gespeichert</translation>
    </message>
    <message>
        <source>Validate</source>
        <translation>Überprüfen</translation>
    </message>
    <message>
        <source>Get your free key (500 compressions/month) at</source>
        <translation>Kostenloser Schlüssel (500 Komprimierungen/Monat) auf</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen&#xa0;…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Add Files…</source>
        <translation>Dateien hinzufügen&#xa0;…</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Über Pixpress</translation>
    </message>
</context>
<context>
    <name>MetadataSection</name>
    <message>
        <source>Preserve Metadata</source>
        <translation>Metadaten beibehalten</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>Erstellungsdatum</translation>
    </message>
    <message>
        <source>GPS Location</source>
        <translation>GPS-Standort</translation>
    </message>
</context>
<context>
    <name>OnboardingView</name>
    <message>
        <source>Invalid API key — please check and try again.</source>
        <translation>Ungültiger API-Schlüssel – bitte überprüfen und erneut versuchen.</translation>
    </message>
    <message>
        <source>Could not validate: %1</source>
        <translation>Überprüfung nicht möglich: %1</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>Loslegen</translation>
    </message>
    <message>
        <source>Welcome to Pixpress</source>
        <translation>Willkommen bei Pixpress</translation>
    </message>
    <message>
        <source>Compress PNG, JPEG, WebP, and AVIF images
using the TinyPNG API — up to 500 free per month.</source>
        <translation>PNG-, JPEG-, WebP- und AVIF-Bilder komprimieren
mit der TinyPNG-API – bis zu 500 pro Monat kostenlos.</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>TinyPNG-API-Schlüssel</translation>
    </message>
    <message>
        <source>Each user needs their own free API key. It only takes 30 seconds to get one.</source>
        <translation>Jeder Benutzer benötigt einen eigenen kostenlosen API-Schlüssel. Sie erhalten ihn in nur 30 Sekunden.</translation>
    </message>
    <message>
        <source>Paste your API key here…</source>
        <translation>API-Schlüssel hier einfügen&#xa0;…</translation>
    </message>
    <message>
        <source>Don&apos;t have a key yet?</source>
        <translation>Noch keinen Schlüssel?</translation>
    </message>
    <message>
        <source>Get a free API key at %1 →</source>
        <translation>Kostenlosen API-Schlüssel auf %1 erhalten →</translation>
    </message>
    <message>
        <source>Built with ❤️ by </source>
        <translation>Mit ❤️ entwickelt von </translation>
    </message>
</context>
<context>
    <name>OutputSection</name>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Save to</source>
        <translation>Speicherort</translation>
    </message>
</context>
<context>
    <name>OverlayScrollBar</name>
    <message>
        <source>Scroll bar</source>
        <translation>Bildlaufleiste</translation>
    </message>
</context>
<context>
    <name>Panels</name>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
</context>
<context>
    <name>QuotaBarView</name>
    <message>
        <source>Monthly Usage</source>
        <translation>Monatliche Nutzung</translation>
    </message>
    <message numerus="yes">
        <source>(%n left)</source>
        <translation>
            <numerusform>(noch %n)</numerusform>
            <numerusform>(noch %n)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResizeDimensions</name>
    <message>
        <source>Width</source>
        <translation>Breite</translation>
    </message>
    <message>
        <source>or</source>
        <translation>oder</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Höhe</translation>
    </message>
    <message>
        <source>Only one dimension set — will scale proportionally</source>
        <translation>Nur ein Maß angegeben – das Bild wird proportional skaliert</translation>
    </message>
    <message>
        <source>Enter a whole number of pixels</source>
        <translation>Ganze Zahl von Pixeln eingeben</translation>
    </message>
</context>
<context>
    <name>ResizeMethod</name>
    <message>
        <source>Method</source>
        <translation>Methode</translation>
    </message>
</context>
<context>
    <name>ResizeSection</name>
    <message>
        <source>Resize</source>
        <translation>Bildgröße</translation>
    </message>
    <message>
        <source>Enable Resize</source>
        <translation>Größe ändern</translation>
    </message>
</context>
<context>
    <name>RevealButton</name>
    <message>
        <source>Show in Finder</source>
        <translation>Im Finder zeigen</translation>
    </message>
</context>
<context>
    <name>SegmentedTabs</name>
    <message>
        <source>Tabs</source>
        <translation>Tabs</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>API-Schlüssel</translation>
    </message>
    <message>
        <source>Quota</source>
        <translation>Kontingent</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
</context>
<context>
    <name>TaskListView</name>
    <message>
        <source>Images</source>
        <translation>Bilder</translation>
    </message>
</context>
<context>
    <name>TaskRowView</name>
    <message>
        <source>Retry</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Im Finder zeigen</translation>
    </message>
</context>
<context>
    <name>ToolbarView</name>
    <message>
        <source>Toolbar</source>
        <translation>Symbolleiste</translation>
    </message>
    <message>
        <source>Hide Sidebar</source>
        <translation>Seitenleiste ausblenden</translation>
    </message>
    <message>
        <source>Show Sidebar</source>
        <translation>Seitenleiste einblenden</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>Add images to compress</source>
        <translation>Bilder zum Komprimieren hinzufügen</translation>
    </message>
    <message>
        <source>Clear Done</source>
        <translation>Fertige entfernen</translation>
    </message>
    <message>
        <source>Clear completed tasks</source>
        <translation>Abgeschlossene Aufgaben entfernen</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Alle entfernen</translation>
    </message>
    <message>
        <source>Clear all tasks</source>
        <translation>Alle Aufgaben entfernen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Open settings</source>
        <translation>Einstellungen öffnen</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>Über Pixpress</translation>
    </message>
</context>
<context>
    <name>UsageTab</name>
    <message>
        <source>Monthly Usage — %1</source>
        <translation>Monatliche Nutzung – %1</translation>
    </message>
    <message>
        <source>Compressions Used</source>
        <translation>Verwendete Komprimierungen</translation>
    </message>
    <message>
        <source>Monthly Limit</source>
        <translation>Monatliches Limit</translation>
    </message>
    <message>
        <source>Remaining</source>
        <translation>Verbleibend</translation>
    </message>
    <message>
        <source>Reset Local Counter</source>
        <translation>Lokalen Zähler zurücksetzen</translation>
    </message>
    <message>
        <source>This only resets the local display. The actual count is tracked by TinyPNG&apos;s servers and synced on next compression.</source>
        <translation>Dies setzt nur die lokale Anzeige zurück. Die tatsächliche Anzahl wird von den TinyPNG-Servern geführt und bei der nächsten Komprimierung abgeglichen.</translation>
    </message>
</context>
<context>
    <name>pixpress::AppState</name>
    <message>
        <source>Select images to compress (PNG, JPEG, WebP, AVIF)</source>
        <translation>Bilder zum Komprimieren auswählen (PNG, JPEG, WebP, AVIF)</translation>
    </message>
</context>
<context>
    <name>pixpress::TaskModel</name>
    <message>
        <source>Queued</source>
        <translation>In Warteschlange</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Wird hochgeladen</translation>
    </message>
    <message>
        <source>Compressing</source>
        <translation>Wird komprimiert</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>Wird heruntergeladen</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>%1 gespart</translation>
    </message>
    <message numerus="yes">
        <source>%1/%n completed</source>
        <translation>
            <numerusform>%1/%n abgeschlossen</numerusform>
            <numerusform>%1/%n abgeschlossen</numerusform>
        </translation>
    </message>
    <message>
        <source>Total saved: %1</source>
        <translation>Insgesamt gespart: %1</translation>
    </message>
    <message>
        <source>→ %1</source>
        <extracomment>What a file has become; with ← in languages that are written from right to left.</extracomment>
        <translation>→ %1</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n fehlgeschlagen</numerusform>
            <numerusform>%n fehlgeschlagen</numerusform>
        </translation>
    </message>
</context>
</TS>
