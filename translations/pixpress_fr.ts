<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>AboutTab</name>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Image compression powered by TinyPNG API</source>
        <translation>Compression d’images par l’API TinyPNG</translation>
    </message>
    <message>
        <source>Built with ❤️ by</source>
        <translation>Créé avec ❤️ par</translation>
    </message>
    <message>
        <source>Compresses on this computer: your pictures never leave it</source>
        <translation>Compresse sur cet ordinateur : vos images ne le quittent jamais</translation>
    </message>
</context>
<context>
    <name>ActivityIndicator</name>
    <message>
        <source>In progress</source>
        <translation>En cours</translation>
    </message>
</context>
<context>
    <name>BackgroundChoice</name>
    <message>
        <source>Background</source>
        <translation>Arrière-plan</translation>
    </message>
    <message>
        <source>Used to fill transparency (JPEG/AVIF don&apos;t support alpha)</source>
        <translation>Remplit les zones transparentes (JPEG/AVIF ne prennent pas en charge l’alpha)</translation>
    </message>
</context>
<context>
    <name>ColorPopover</name>
    <message>
        <source>Colour as #rrggbb</source>
        <translation>Couleur au format #rrggbb</translation>
    </message>
    <message>
        <source>Enter six hexadecimal digits</source>
        <translation>Saisissez six chiffres hexadécimaux</translation>
    </message>
</context>
<context>
    <name>CompressionOptionsView</name>
    <message>
        <source>Compression options</source>
        <translation>Options de compression</translation>
    </message>
</context>
<context>
    <name>DropZoneView</name>
    <message>
        <source>Drop Images Here</source>
        <translation>Déposez des images ici</translation>
    </message>
    <message>
        <source>PNG, JPEG, WebP, AVIF — up to 500 MB each</source>
        <translation>PNG, JPEG, WebP, AVIF — 500 MB maximum par fichier</translation>
    </message>
    <message>
        <source>Choose Files</source>
        <translation>Choisir des fichiers</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>Couper</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Coller</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
    </message>
</context>
<context>
    <name>FolderChoice</name>
    <message>
        <source>No folder chosen</source>
        <translation>Aucun dossier choisi</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Modifier</translation>
    </message>
    <message>
        <source>Choose…</source>
        <translation>Choisir…</translation>
    </message>
</context>
<context>
    <name>FolderPanel</name>
    <message>
        <source>Choose where Pixpress should save compressed images</source>
        <translation>Choisissez où Pixpress doit enregistrer les images compressées</translation>
    </message>
    <message>
        <source>Select Folder</source>
        <translation>Sélectionner le dossier</translation>
    </message>
</context>
<context>
    <name>FormatChoice</name>
    <message>
        <source>Convert to</source>
        <translation>Convertir en</translation>
    </message>
</context>
<context>
    <name>FormatSection</name>
    <message>
        <source>Output Format</source>
        <translation>Format de sortie</translation>
    </message>
    <message>
        <source>Convert Format</source>
        <translation>Convertir le format</translation>
    </message>
</context>
<context>
    <name>KeyTab</name>
    <message>
        <source>API key is valid</source>
        <translation>La clé API est valide</translation>
    </message>
    <message>
        <source>Invalid API key</source>
        <translation>Clé API non valide</translation>
    </message>
    <message>
        <source>Validation failed: %1</source>
        <translation>Échec de la vérification&#xa0;: %1</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>Clé API TinyPNG</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>Clé API</translation>
    </message>
    <message>
        <source>Save Key</source>
        <translation>Enregistrer la clé</translation>
    </message>
    <message>
        <source>Key saved successfully</source>
        <translation>La clé a été enregistrée</translation>
    </message>
    <message>
        <source>Validate</source>
        <translation>Vérifier</translation>
    </message>
    <message>
        <source>Get your free key (500 compressions/month) at</source>
        <translation>Obtenez votre clé gratuite (500 compressions/mois) sur</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Settings…</source>
        <translation>Réglages…</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>Add Files…</source>
        <translation>Ajouter des fichiers…</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>À propos de Pixpress</translation>
    </message>
</context>
<context>
    <name>MetadataSection</name>
    <message>
        <source>Preserve Metadata</source>
        <translation>Conserver les métadonnées</translation>
    </message>
    <message>
        <source>Copyright</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>Creation Date</source>
        <translation>Date de création</translation>
    </message>
    <message>
        <source>GPS Location</source>
        <translation>Position GPS</translation>
    </message>
</context>
<context>
    <name>OnboardingView</name>
    <message>
        <source>Invalid API key — please check and try again.</source>
        <translation>Clé API non valide — vérifiez-la et réessayez.</translation>
    </message>
    <message>
        <source>Could not validate: %1</source>
        <translation>Vérification impossible&#xa0;: %1</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>Commencer</translation>
    </message>
    <message>
        <source>Welcome to Pixpress</source>
        <translation>Bienvenue dans Pixpress</translation>
    </message>
    <message>
        <source>Compress PNG, JPEG, WebP, and AVIF images
using the TinyPNG API — up to 500 free per month.</source>
        <translation>Compressez des images PNG, JPEG, WebP et AVIF
avec l’API TinyPNG — jusqu’à 500 gratuites par mois.</translation>
    </message>
    <message>
        <source>TinyPNG API Key</source>
        <translation>Clé API TinyPNG</translation>
    </message>
    <message>
        <source>Each user needs their own free API key. It only takes 30 seconds to get one.</source>
        <translation>Chaque utilisateur a besoin de sa propre clé API gratuite. L’obtenir ne prend que 30 secondes.</translation>
    </message>
    <message>
        <source>Paste your API key here…</source>
        <translation>Collez votre clé API ici…</translation>
    </message>
    <message>
        <source>Don&apos;t have a key yet?</source>
        <translation>Pas encore de clé&#xa0;?</translation>
    </message>
    <message>
        <source>Get a free API key at %1 →</source>
        <translation>Obtenir une clé API gratuite sur %1 →</translation>
    </message>
    <message>
        <source>Built with ❤️ by </source>
        <translation>Créé avec ❤️ par </translation>
    </message>
</context>
<context>
    <name>OutputSection</name>
    <message>
        <source>Output</source>
        <translation>Sortie</translation>
    </message>
    <message>
        <source>Save to</source>
        <translation>Destination</translation>
    </message>
</context>
<context>
    <name>OverlayScrollBar</name>
    <message>
        <source>Scroll bar</source>
        <translation>Barre de défilement</translation>
    </message>
</context>
<context>
    <name>Panels</name>
    <message>
        <source>All files</source>
        <translation>Tous les fichiers</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>Dossier parent</translation>
    </message>
</context>
<context>
    <name>QuotaBarView</name>
    <message>
        <source>Monthly Usage</source>
        <translation>Utilisation mensuelle</translation>
    </message>
    <message numerus="yes">
        <source>(%n left)</source>
        <translation>
            <numerusform>(%n restante)</numerusform>
            <numerusform>(%n restantes)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResizeDimensions</name>
    <message>
        <source>Width</source>
        <translation>Largeur</translation>
    </message>
    <message>
        <source>or</source>
        <translation>ou</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Hauteur</translation>
    </message>
    <message>
        <source>Only one dimension set — will scale proportionally</source>
        <translation>Une seule dimension définie — l’image sera redimensionnée proportionnellement</translation>
    </message>
    <message>
        <source>Enter a whole number of pixels</source>
        <translation>Saisissez un nombre entier de pixels</translation>
    </message>
</context>
<context>
    <name>ResizeMethod</name>
    <message>
        <source>Method</source>
        <translation>Méthode</translation>
    </message>
</context>
<context>
    <name>ResizeSection</name>
    <message>
        <source>Resize</source>
        <translation>Dimensions</translation>
    </message>
    <message>
        <source>Enable Resize</source>
        <translation>Redimensionner</translation>
    </message>
</context>
<context>
    <name>RevealButton</name>
    <message>
        <source>Show in Finder</source>
        <translation>Afficher dans le Finder</translation>
    </message>
</context>
<context>
    <name>SegmentedTabs</name>
    <message>
        <source>Tabs</source>
        <translation>Onglets</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Terminé</translation>
    </message>
    <message>
        <source>API Key</source>
        <translation>Clé API</translation>
    </message>
    <message>
        <source>Quota</source>
        <translation>Quota</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
</context>
<context>
    <name>TaskListView</name>
    <message>
        <source>Images</source>
        <translation>Images</translation>
    </message>
</context>
<context>
    <name>TaskRowView</name>
    <message>
        <source>Retry</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Afficher dans le Finder</translation>
    </message>
</context>
<context>
    <name>ToolbarView</name>
    <message>
        <source>Toolbar</source>
        <translation>Barre d’outils</translation>
    </message>
    <message>
        <source>Hide Sidebar</source>
        <translation>Masquer la barre latérale</translation>
    </message>
    <message>
        <source>Show Sidebar</source>
        <translation>Afficher la barre latérale</translation>
    </message>
    <message>
        <source>Add Files</source>
        <translation>Ajouter des fichiers</translation>
    </message>
    <message>
        <source>Add images to compress</source>
        <translation>Ajouter des images à compresser</translation>
    </message>
    <message>
        <source>Clear Done</source>
        <translation>Effacer les terminées</translation>
    </message>
    <message>
        <source>Clear completed tasks</source>
        <translation>Effacer les tâches terminées</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Tout effacer</translation>
    </message>
    <message>
        <source>Clear all tasks</source>
        <translation>Effacer toutes les tâches</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Open settings</source>
        <translation>Ouvrir les réglages</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>About Pixpress</source>
        <translation>À propos de Pixpress</translation>
    </message>
</context>
<context>
    <name>UsageTab</name>
    <message>
        <source>Monthly Usage — %1</source>
        <translation>Utilisation mensuelle — %1</translation>
    </message>
    <message>
        <source>Compressions Used</source>
        <translation>Compressions utilisées</translation>
    </message>
    <message>
        <source>Monthly Limit</source>
        <translation>Limite mensuelle</translation>
    </message>
    <message>
        <source>Remaining</source>
        <translation>Restantes</translation>
    </message>
    <message>
        <source>Reset Local Counter</source>
        <translation>Réinitialiser le compteur local</translation>
    </message>
    <message>
        <source>This only resets the local display. The actual count is tracked by TinyPNG&apos;s servers and synced on next compression.</source>
        <translation>Seul l’affichage local est réinitialisé. Le décompte réel est tenu par les serveurs de TinyPNG et synchronisé lors de la prochaine compression.</translation>
    </message>
</context>
<context>
    <name>pixpress::AppState</name>
    <message>
        <source>Select images to compress (PNG, JPEG, WebP, AVIF)</source>
        <translation>Sélectionnez les images à compresser (PNG, JPEG, WebP, AVIF)</translation>
    </message>
</context>
<context>
    <name>pixpress::TaskModel</name>
    <message>
        <source>Queued</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>Uploading</source>
        <translation>Envoi</translation>
    </message>
    <message>
        <source>Compressing</source>
        <translation>Compression</translation>
    </message>
    <message>
        <source>Downloading</source>
        <translation>Téléchargement</translation>
    </message>
    <message>
        <source>saved %1</source>
        <translation>%1 en moins</translation>
    </message>
    <message numerus="yes">
        <source>%1/%n completed</source>
        <translation>
            <numerusform>%1/%n terminée</numerusform>
            <numerusform>%1/%n terminées</numerusform>
        </translation>
    </message>
    <message>
        <source>Total saved: %1</source>
        <translation>Total économisé&#xa0;: %1</translation>
    </message>
    <message>
        <source>→ %1</source>
        <extracomment>What a file has become; with ← in languages that are written from right to left.</extracomment>
        <translation>→ %1</translation>
    </message>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n en échec</numerusform>
            <numerusform>%n en échec</numerusform>
        </translation>
    </message>
</context>
</TS>
