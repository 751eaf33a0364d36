<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>DriveCell</name>
    <message>
        <source>Drives</source>
        <translation>Laufwerke</translation>
    </message>
</context>
<context>
    <name>FilePreview</name>
    <message>
        <source>This file is no longer there.</source>
        <translation>Diese Datei ist nicht mehr da.</translation>
    </message>
    <message>
        <source>You are not allowed to read this file.</source>
        <translation>Sie dürfen diese Datei nicht lesen.</translation>
    </message>
    <message>
        <source>Only files have a preview.</source>
        <translation>Nur Dateien haben eine Vorschau.</translation>
    </message>
    <message>
        <source>This file cannot be read.</source>
        <translation>Diese Datei kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>File of unknown type</source>
        <translation>Datei unbekannten Typs</translation>
    </message>
    <message>
        <source>This drawing is damaged, or too large to preview.</source>
        <translation>Diese Zeichnung ist beschädigt oder zu groß für eine Vorschau.</translation>
    </message>
    <message>
        <source>This image is too large to preview.</source>
        <translation>Dieses Bild ist zu groß für eine Vorschau.</translation>
    </message>
    <message>
        <source>This image cannot be read. It may be damaged.</source>
        <translation>Dieses Bild kann nicht gelesen werden. Es ist vielleicht beschädigt.</translation>
    </message>
    <message>
        <source>There is too little memory for a preview.</source>
        <translation>Für eine Vorschau ist zu wenig Speicher frei.</translation>
    </message>
    <message>
        <source>This document is protected by a password.</source>
        <translation>Dieses Dokument ist durch ein Passwort geschützt.</translation>
    </message>
    <message>
        <source>This document cannot be read. It may be damaged.</source>
        <translation>Dieses Dokument kann nicht gelesen werden. Es ist vielleicht beschädigt.</translation>
    </message>
    <message>
        <source>This file cannot be shown.</source>
        <translation>Diese Datei kann nicht gezeigt werden.</translation>
    </message>
</context>
<context>
    <name>FolderCell</name>
    <message>
        <source>Home Folder</source>
        <translation>Persönlicher Ordner</translation>
    </message>
</context>
<context>
    <name>HistoryCell</name>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
</context>
<context>
    <name>HomeFolderGrant</name>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
</context>
<context>
    <name>KORVENAppDelegate</name>
    <message>
        <source>Scan Completed</source>
        <translation>Scan abgeschlossen</translation>
    </message>
    <message>
        <source>Scan Canceled</source>
        <translation>Scan abgebrochen</translation>
    </message>
</context>
<context>
    <name>KORVENDriveCell</name>
    <message>
        <source>Used space</source>
        <translation>Belegter Platz</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Gesamt</translation>
    </message>
    <message>
        <source>Used</source>
        <translation>Belegt</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>Frei</translation>
    </message>
    <message>
        <source>Eject</source>
        <translation>Auswerfen</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
</context>
<context>
    <name>KORVENDriveViewController</name>
    <message>
        <source>Mounted volumes</source>
        <translation>Eingehängte Datenträger</translation>
    </message>
    <message>
        <source>Number of volumes</source>
        <translation>Anzahl der Datenträger</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Die Reihenfolge der Zeilen ändern (Strg+Umschalt+S)</translation>
    </message>
    <message>
        <source>Disk Utility</source>
        <translation>Laufwerksverwaltung</translation>
    </message>
    <message>
        <source>Open the system&apos;s disk utility</source>
        <translation>Die Laufwerksverwaltung des Systems öffnen</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Look for volumes again (F5)</source>
        <translation>Erneut nach Datenträgern suchen (F5)</translation>
    </message>
</context>
<context>
    <name>KORVENFolderCell</name>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
</context>
<context>
    <name>KORVENHistoryCell</name>
    <message>
        <source>Load scan</source>
        <translation>Scan laden</translation>
    </message>
    <message>
        <source>Date of the scan</source>
        <translation>Datum des Scans</translation>
    </message>
    <message>
        <source>Total size</source>
        <translation>Gesamtgröße</translation>
    </message>
    <message>
        <source>Delete this scan (Del)</source>
        <translation>Diesen Scan löschen (Entf)</translation>
    </message>
    <message>
        <source>Delete this scan</source>
        <translation>Diesen Scan löschen</translation>
    </message>
</context>
<context>
    <name>KORVENHistoryViewController</name>
    <message>
        <source>Scan history</source>
        <translation>Scan-Verlauf</translation>
    </message>
    <message>
        <source>Recorded scans</source>
        <translation>Aufgezeichnete Scans</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Die Reihenfolge der Zeilen ändern (Strg+Umschalt+S)</translation>
    </message>
    <message>
        <source>Delete all</source>
        <translation>Alle löschen</translation>
    </message>
    <message>
        <source>Delete all scans that are kept</source>
        <translation>Alle gespeicherten Scans löschen</translation>
    </message>
    <message>
        <source>Delete all scans</source>
        <translation>Alle Scans löschen</translation>
    </message>
    <message>
        <source>New scan</source>
        <translation>Neuer Scan</translation>
    </message>
    <message>
        <source>Choose a folder and scan it (Ctrl+O)</source>
        <translation>Einen Ordner auswählen und scannen (Strg+O)</translation>
    </message>
</context>
<context>
    <name>KORVENHomeViewController</name>
    <message>
        <source>Choose your home folder</source>
        <translation>Wählen Sie Ihren persönlichen Ordner</translation>
    </message>
    <message>
        <source>Tessaly reads only the folders that you choose. Choose your home folder once, and its contents can be scanned from this page from then on.</source>
        <translation>Tessaly liest nur die Ordner, die Sie wählen. Wählen Sie einmal Ihren persönlichen Ordner, und von da an kann sein Inhalt auf dieser Seite gescannt werden.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Choose the home folder</source>
        <translation>Den persönlichen Ordner auswählen</translation>
    </message>
    <message>
        <source>‹ Back</source>
        <translation>‹ Zurück</translation>
    </message>
    <message>
        <source>Go up to the enclosing folder (Alt+Left)</source>
        <translation>Hinauf in den übergeordneten Ordner (Alt+Links)</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Date of the scan</source>
        <translation>Datum des Scans</translation>
    </message>
    <message>
        <source>Total size</source>
        <translation>Gesamtgröße</translation>
    </message>
    <message>
        <source>total</source>
        <translation>gesamt</translation>
    </message>
    <message>
        <source>Items of the folder</source>
        <translation>Objekte des Ordners</translation>
    </message>
    <message>
        <source>Scan Home Folder</source>
        <translation>Persönlichen Ordner scannen</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Die Reihenfolge der Zeilen ändern (Strg+Umschalt+S)</translation>
    </message>
    <message>
        <source>Scanning</source>
        <translation>Scan läuft</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stop the scan (Esc)</source>
        <translation>Den Scan abbrechen (Esc)</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Scannen</translation>
    </message>
    <message>
        <source>Scan the home folder (Ctrl+R)</source>
        <translation>Den persönlichen Ordner scannen (Strg+R)</translation>
    </message>
</context>
<context>
    <name>KORVENScanViewController</name>
    <message>
        <source>‹ Back</source>
        <translation>‹ Zurück</translation>
    </message>
    <message>
        <source>Go up to the enclosing folder (Alt+Left)</source>
        <translation>Hinauf in den übergeordneten Ordner (Alt+Links)</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Date of the scan</source>
        <translation>Datum des Scans</translation>
    </message>
    <message>
        <source>Total size</source>
        <translation>Gesamtgröße</translation>
    </message>
    <message>
        <source>total</source>
        <translation>gesamt</translation>
    </message>
    <message>
        <source>Items of the folder</source>
        <translation>Objekte des Ordners</translation>
    </message>
    <message>
        <source>Scan Folder…</source>
        <translation>Ordner scannen …</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Die Reihenfolge der Zeilen ändern (Strg+Umschalt+S)</translation>
    </message>
    <message>
        <source>Scanning</source>
        <translation>Scan läuft</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stop the scan (Esc)</source>
        <translation>Den Scan abbrechen (Esc)</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Scannen</translation>
    </message>
    <message>
        <source>Choose a folder and scan it (Ctrl+O)</source>
        <translation>Einen Ordner auswählen und scannen (Strg+O)</translation>
    </message>
</context>
<context>
    <name>ScanCell</name>
    <message>
        <source>Folder Scan</source>
        <translation>Ordner-Scan</translation>
    </message>
</context>
<context>
    <name>ScanResult</name>
    <message>
        <source>This folder cannot be read</source>
        <translation>Dieser Ordner kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>This scan cannot be opened</source>
        <translation>Dieser Scan kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>This scan could not be kept: %1</source>
        <translation>Dieser Scan konnte nicht aufbewahrt werden: %1</translation>
    </message>
</context>
<context>
    <name>SingleInstance</name>
    <message>
        <source>Tessaly is already running.</source>
        <translation>Tessaly läuft bereits.</translation>
    </message>
</context>
<context>
    <name>TessalyPreferences</name>
    <message>
        <source>Show hidden items</source>
        <translation>Versteckte Objekte zeigen</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>Larger than 1 MB</source>
        <translation>Größer als 1 MB</translation>
    </message>
    <message>
        <source>Larger than 500 KB</source>
        <translation>Größer als 500 KB</translation>
    </message>
    <message>
        <source>Larger than 1 KB</source>
        <translation>Größer als 1 KB</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Show files</source>
        <translation>Dateien zeigen</translation>
    </message>
    <message>
        <source>Larger than 1 GB</source>
        <translation>Größer als 1 GB</translation>
    </message>
    <message>
        <source>Larger than 500 MB</source>
        <translation>Größer als 500 MB</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Benachrichtigungen</translation>
    </message>
    <message>
        <source>Notify when a scan ends</source>
        <translation>Benachrichtigen, wenn ein Scan endet</translation>
    </message>
    <message>
        <source>Play a sound with the notification</source>
        <translation>Zur Benachrichtigung einen Ton abspielen</translation>
    </message>
    <message>
        <source>Warning colours</source>
        <translation>Warnfarben</translation>
    </message>
    <message>
        <source>Colour nearly full drives yellow and red</source>
        <translation>Fast volle Laufwerke gelb und rot färben</translation>
    </message>
    <message>
        <source>Colour large folders yellow and red</source>
        <translation>Große Ordner gelb und rot färben</translation>
    </message>
    <message>
        <source>Choose home folder…</source>
        <translation>Persönlichen Ordner wählen …</translation>
    </message>
    <message>
        <source>Remove home folder</source>
        <translation>Persönlichen Ordner entfernen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>tessaly::AccessibleCellRow</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Auswählen</translation>
    </message>
</context>
<context>
    <name>tessaly::ApplicationMenu</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>&amp;About Tessaly</source>
        <translation>Über &amp;Tessaly</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Scan &amp;Folder…</source>
        <translation>&amp;Ordner scannen …</translation>
    </message>
    <message>
        <source>Scan &amp;Home</source>
        <translation>&amp;Persönlichen Ordner scannen</translation>
    </message>
    <message>
        <source>&amp;Refresh Drives</source>
        <translation>&amp;Laufwerke aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Zurück</translation>
    </message>
    <message>
        <source>Change &amp;Sort Order</source>
        <translation>&amp;Sortierung ändern</translation>
    </message>
    <message>
        <source>&amp;Go To</source>
        <translation>&amp;Gehe zu</translation>
    </message>
    <message>
        <source>Quick &amp;Look</source>
        <translation>&amp;Vorschau</translation>
    </message>
    <message>
        <source>Show in File &amp;Manager</source>
        <translation>In der &amp;Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show &amp;Info</source>
        <translation>&amp;Informationen zeigen</translation>
    </message>
    <message>
        <source>&amp;Choose Home Folder…</source>
        <translation>Persönlichen Ordner &amp;wählen …</translation>
    </message>
    <message>
        <source>Remo&amp;ve Home Folder</source>
        <translation>Persönlichen Ordner entfe&amp;rnen</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Einstellungen …</translation>
    </message>
    <message>
        <source>Enter Full Screen</source>
        <translation>Vollbild einschalten</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>Wer&amp;kzeuge</translation>
    </message>
    <message>
        <source>&amp;Disk Utility</source>
        <translation>&amp;Laufwerksverwaltung</translation>
    </message>
    <message>
        <source>&amp;File Manager</source>
        <translation>&amp;Dateiverwaltung</translation>
    </message>
    <message>
        <source>&amp;System Settings</source>
        <translation>&amp;Systemeinstellungen</translation>
    </message>
    <message>
        <source>H&amp;elp</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>Tessaly &amp;Help</source>
        <translation>Tessaly-&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Website</source>
        <translation>&amp;Website</translation>
    </message>
    <message>
        <source>&amp;Support</source>
        <translation>&amp;Support</translation>
    </message>
    <message>
        <source>Software Sto&amp;re Page</source>
        <translation>Seite im Software Sto&amp;re</translation>
    </message>
    <message>
        <source>Tessaly on &amp;Facebook</source>
        <translation>Tessaly auf &amp;Facebook</translation>
    </message>
    <message>
        <source>Tessaly on &amp;Twitter</source>
        <translation>Tessaly auf &amp;Twitter</translation>
    </message>
    <message>
        <source>Tessaly on &amp;Google+</source>
        <translation>Tessaly auf &amp;Google+</translation>
    </message>
</context>
<context>
    <name>tessaly::CardView</name>
    <message numerus="yes">
        <source>%1 (%2 bytes)</source>
        <extracomment>%1 is a size (&quot;1.50 MB&quot;), %2 the same in bytes (&quot;1,500,000&quot;)</extracomment>
        <translation>
            <numerusform>%1 (%2 Byte)</numerusform>
            <numerusform>%1 (%2 Byte)</numerusform>
        </translation>
    </message>
    <message>
        <source>About the file</source>
        <translation>Über die Datei</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Erstellt</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Geändert</translation>
    </message>
</context>
<context>
    <name>tessaly::CellTableView</name>
    <message>
        <source>1 item: %1</source>
        <translation>1 Objekt: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n items: %1</source>
        <translation>
            <numerusform>%n Objekt: %1</numerusform>
            <numerusform>%n Objekte: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessaly::CommandLine</name>
    <message>
        <source>Displays this help and ends.</source>
        <translation>Zeigt diese Hilfe und endet.</translation>
    </message>
    <message>
        <source>Displays the version and ends.</source>
        <translation>Zeigt die Version und endet.</translation>
    </message>
    <message>
        <source>Shows where the space on your disks has gone.</source>
        <translation>Zeigt, wohin der Platz auf den Laufwerken gegangen ist.</translation>
    </message>
    <message>
        <source>There is no option &quot;%1&quot;.</source>
        <translation>Eine Option „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one argument too many.</source>
        <translation>„%1“ ist ein Argument zu viel.</translation>
    </message>
    <message>
        <source>Try &quot;tessaly --help&quot;.</source>
        <translation>Hilfe gibt „tessaly --help“.</translation>
    </message>
</context>
<context>
    <name>tessaly::FolderDialog</name>
    <message>
        <source>Choose a Folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>Übergeordneter Ordner</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Orte</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Ordner:</translation>
    </message>
    <message>
        <source>Show hidden folders</source>
        <translation>Versteckte Ordner anzeigen</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Persönlicher Ordner</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Looking into “%1”…</source>
        <translation>„%1“ wird gelesen …</translation>
    </message>
    <message>
        <source>“%1” cannot be read: %2</source>
        <translation>„%1“ kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>There is no folder “%1”.</source>
        <translation>Es gibt keinen Ordner „%1“.</translation>
    </message>
    <message>
        <source>Looking for “%1”…</source>
        <translation>„%1“ wird gesucht …</translation>
    </message>
</context>
<context>
    <name>tessaly::FullScreen</name>
    <message>
        <source>Exit Full Screen</source>
        <translation>Vollbild beenden</translation>
    </message>
    <message>
        <source>Enter Full Screen</source>
        <translation>Vollbild einschalten</translation>
    </message>
</context>
<context>
    <name>tessaly::InformationWindow</name>
    <message>
        <source>%1 (1 byte)</source>
        <translation>%1 (1 Byte)</translation>
    </message>
    <message numerus="yes">
        <source>%1 (%2 bytes)</source>
        <translation>
            <numerusform>%1 (%2 Byte)</numerusform>
            <numerusform>%1 (%2 Byte)</numerusform>
        </translation>
    </message>
    <message>
        <source>This folder cannot be read</source>
        <translation>Dieser Ordner kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 Objekt</translation>
    </message>
    <message numerus="yes">
        <source>%1 items</source>
        <translation>
            <numerusform>%1 Objekt</numerusform>
            <numerusform>%1 Objekte</numerusform>
        </translation>
    </message>
    <message>
        <source>read</source>
        <translation>lesen</translation>
    </message>
    <message>
        <source>write</source>
        <translation>schreiben</translation>
    </message>
    <message>
        <source>enter</source>
        <translation>hineingehen</translation>
    </message>
    <message>
        <source>run</source>
        <translation>ausführen</translation>
    </message>
    <message>
        <source>no access</source>
        <translation>kein Zugriff</translation>
    </message>
    <message>
        <source>Information about “%1”</source>
        <translation>Informationen zu „%1“</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Contains</source>
        <translation>Enthält</translation>
    </message>
    <message>
        <source>Leads to</source>
        <translation>Führt zu</translation>
    </message>
    <message>
        <source>%1 (not there)</source>
        <translation>%1 (nicht da)</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Ort</translation>
    </message>
    <message>
        <source>Dates</source>
        <translation>Daten</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Erstellt</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Last opened</source>
        <translation>Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>Zugriffsrechte</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Eigentümer</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Others</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>In short</source>
        <translation>Kurz</translation>
    </message>
    <message>
        <source>This item is not there any more.</source>
        <translation>Dieses Objekt ist nicht mehr da.</translation>
    </message>
    <message>
        <source>You are not permitted to look into the folder of this item.</source>
        <translation>Sie dürfen nicht in den Ordner dieses Objekts sehen.</translation>
    </message>
    <message>
        <source>This item cannot be looked at: %1.</source>
        <translation>Dieses Objekt kann nicht angesehen werden: %1.</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENDriveCellView</name>
    <message>
        <source>Eject</source>
        <translation>Auswerfen</translation>
    </message>
    <message>
        <source>Ejecting…</source>
        <translation>Auswerfen …</translation>
    </message>
    <message>
        <source>Eject the volume</source>
        <translation>Den Datenträger auswerfen</translation>
    </message>
    <message>
        <source>Unmount the volume</source>
        <translation>Den Datenträger aushängen</translation>
    </message>
    <message>
        <source>Eject %1</source>
        <translation>%1 auswerfen</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show Info</source>
        <translation>Informationen zeigen</translation>
    </message>
    <message>
        <source>As of the last time the volume answered</source>
        <translation>Stand der letzten Antwort des Volumes</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENDriveViewController</name>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Looking for volumes…</source>
        <translation>Datenträger werden gesucht …</translation>
    </message>
    <message>
        <source>No volumes found</source>
        <translation>Keine Datenträger gefunden</translation>
    </message>
    <message>
        <source>A drive appears here as soon as it is mounted.</source>
        <translation>Ein Laufwerk erscheint hier, sobald es eingehängt ist.</translation>
    </message>
    <message>
        <source>1 volume</source>
        <translation>1 Datenträger</translation>
    </message>
    <message>
        <source>%1 volumes</source>
        <translation>%1 Datenträger</translation>
    </message>
    <message>
        <source>Sort by size</source>
        <translation>Nach Größe sortieren</translation>
    </message>
    <message>
        <source>%1, size unknown</source>
        <translation>%1, Größe unbekannt</translation>
    </message>
    <message>
        <source>%1, %2 used, %3</source>
        <translation>%1, %2 belegt, %3</translation>
    </message>
    <message>
        <source>%1, %2 used, %3, out of date</source>
        <translation>%1, %2 belegt, %3, nicht aktuell</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENFolderCellView</name>
    <message>
        <source>Quick Look</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>In der Dateiverwaltung zeigen</translation>
    </message>
    <message>
        <source>Show Info</source>
        <translation>Informationen zeigen</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENHistoryViewController</name>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Sort by date</source>
        <translation>Nach Datum sortieren</translation>
    </message>
    <message>
        <source>The history cannot be read</source>
        <translation>Der Verlauf kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Scans are not recorded until it can be: %1</source>
        <translation>Bis dahin werden Scans nicht aufgezeichnet: %1</translation>
    </message>
    <message>
        <source>No scans kept</source>
        <translation>Keine Scans gespeichert</translation>
    </message>
    <message>
        <source>1 scan kept</source>
        <translation>1 Scan gespeichert</translation>
    </message>
    <message>
        <source>%1 scans kept</source>
        <translation>%1 Scans gespeichert</translation>
    </message>
    <message>
        <source>No scans kept yet</source>
        <translation>Noch keine Scans gespeichert</translation>
    </message>
    <message>
        <source>Each folder that you scan is listed here, to be opened again without a scan.</source>
        <translation>Jeder Ordner, den Sie scannen, wird hier aufgelistet und lässt sich ohne neuen Scan wieder öffnen.</translation>
    </message>
    <message>
        <source>Load scan</source>
        <translation>Scan laden</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENHomeViewController</name>
    <message>
        <source>Home folder not scanned yet</source>
        <translation>Persönlicher Ordner noch nicht gescannt</translation>
    </message>
    <message>
        <source>Scan it to see what takes up its space.</source>
        <translation>Scannen Sie ihn, um zu sehen, was darin Platz belegt.</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Tessaly Message</source>
        <translation>Mitteilung von Tessaly</translation>
    </message>
    <message>
        <source>The folder was not your home folder.
Please select your home folder again.</source>
        <translation>Der Ordner war nicht Ihr persönlicher Ordner.
Bitte wählen Sie Ihren persönlichen Ordner noch einmal aus.</translation>
    </message>
    <message>
        <source>The home folder cannot be reached</source>
        <translation>Der persönliche Ordner ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Choose it again when Tessaly starts the next time.</source>
        <translation>Wählen Sie ihn noch einmal aus, wenn Tessaly das nächste Mal startet.</translation>
    </message>
    <message>
        <source>Home folders scan completed</source>
        <translation>Der Scan des persönlichen Ordners ist abgeschlossen</translation>
    </message>
    <message>
        <source>Home folders scan canceled</source>
        <translation>Der Scan des persönlichen Ordners wurde abgebrochen</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENRate</name>
    <message>
        <source>%1 - Rate and Review</source>
        <translation>%1 - Bewerten und rezensieren</translation>
    </message>
    <message>
        <source>If you enjoy using %1 please take a moment to rate and review. Thank you.</source>
        <translation>Wenn Ihnen %1 gefällt, nehmen Sie sich bitte einen Moment Zeit, um es zu bewerten und zu rezensieren. Vielen Dank.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Nicht jetzt</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENScanViewController</name>
    <message>
        <source>No folder scanned yet</source>
        <translation>Noch kein Ordner gescannt</translation>
    </message>
    <message>
        <source>Choose a folder to see what takes up its space.</source>
        <translation>Wählen Sie einen Ordner, um zu sehen, was darin Platz belegt.</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Scannen</translation>
    </message>
    <message>
        <source>The history cannot be read</source>
        <translation>Der Verlauf kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Scans are not recorded until it can be: %1</source>
        <translation>Bis dahin werden Scans nicht aufgezeichnet: %1</translation>
    </message>
    <message>
        <source>Scan completed</source>
        <translation>Der Scan ist abgeschlossen</translation>
    </message>
    <message>
        <source>Scan canceled</source>
        <translation>Der Scan wurde abgebrochen</translation>
    </message>
    <message>
        <source>the record names no file</source>
        <translation>der Eintrag nennt keine Datei</translation>
    </message>
    <message>
        <source>the history could not be written</source>
        <translation>Der Verlauf konnte nicht geschrieben werden</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENViewController</name>
    <message>
        <source>Canceled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Drill down</source>
        <translation>Hineingehen</translation>
    </message>
    <message>
        <source>Quick look</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>%1, folder, %2, %3</source>
        <translation>%1, Ordner, %2, %3</translation>
    </message>
    <message>
        <source>%1, file, %2, %3</source>
        <translation>%1, Datei, %2, %3</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENWindow</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoomen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENWindowController</name>
    <message>
        <source>Tessaly Message</source>
        <translation>Mitteilung von Tessaly</translation>
    </message>
    <message>
        <source>There is a scan currently running.
Please try again after the scan completes.</source>
        <translation>Es läuft gerade ein Scan.
Bitte versuchen Sie es noch einmal, wenn er abgeschlossen ist.</translation>
    </message>
    <message>
        <source>Saving changes and exiting.
Please restart the app.</source>
        <translation>Die Änderungen werden gespeichert, dann wird Tessaly beendet.
Bitte starten Sie die Anwendung neu.</translation>
    </message>
    <message>
        <source>Tessaly %1</source>
        <translation>Tessaly %1</translation>
    </message>
    <message>
        <source>Shows where the space on your disks has gone.
Licensed under the Apache License 2.0.</source>
        <translation>Zeigt, wohin der Platz auf den Laufwerken gegangen ist.
Lizenziert unter der Apache License 2.0.</translation>
    </message>
</context>
<context>
    <name>tessaly::MediaView</name>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Player</source>
        <translation>Wiedergabe</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>%1 / %2</source>
        <extracomment>How much of a sound or video has been played, and its length: &quot;0:03 / 1:20&quot;</extracomment>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>There is no device to play sounds on.</source>
        <translation>Es gibt kein Gerät, das Töne abspielt.</translation>
    </message>
</context>
<context>
    <name>tessaly::MessageAlert</name>
    <message>
        <source>ok</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>tessaly::MiddleElidedLabel</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
</context>
<context>
    <name>tessaly::Pages</name>
    <message>
        <source>&amp;Drives</source>
        <translation>&amp;Laufwerke</translation>
    </message>
    <message>
        <source>&amp;Home Folder</source>
        <translation>&amp;Persönlicher Ordner</translation>
    </message>
    <message>
        <source>&amp;Folder Scan</source>
        <translation>&amp;Ordner-Scan</translation>
    </message>
    <message>
        <source>H&amp;istory</source>
        <translation>&amp;Verlauf</translation>
    </message>
</context>
<context>
    <name>tessaly::PdfView</name>
    <message>
        <source>Document</source>
        <translation>Dokument</translation>
    </message>
</context>
<context>
    <name>tessaly::PreferenceSheet</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>tessaly::PreviewHeader</name>
    <message>
        <source>Previous file</source>
        <translation>Vorige Datei</translation>
    </message>
    <message>
        <source>Next file</source>
        <translation>Nächste Datei</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Leave full screen</source>
        <translation>Vollbild beenden</translation>
    </message>
</context>
<context>
    <name>tessaly::PreviewWindow</name>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>This cannot be played: %1</source>
        <translation>Das kann nicht abgespielt werden: %1</translation>
    </message>
    <message>
        <source>%1 — %2 of %3</source>
        <extracomment>The title of a preview: a file&apos;s name, its place among the files, and their number</extracomment>
        <translation>%1 — %2 von %3</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>Wird geladen …</translation>
    </message>
    <message>
        <source>Nothing to preview</source>
        <translation>Nichts für eine Vorschau</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>… first 256 KB of %1</source>
        <translation>… die ersten 256 KB von %1</translation>
    </message>
    <message>
        <source>… first %1 lines of %2</source>
        <translation>… die ersten %1 Zeilen von %2</translation>
    </message>
    <message numerus="yes">
        <source>first %1 of %2 pages</source>
        <translation>
            <numerusform>%1 von %2 Seite</numerusform>
            <numerusform>die ersten %1 von %2 Seiten</numerusform>
        </translation>
    </message>
    <message>
        <source>1 page</source>
        <translation>1 Seite</translation>
    </message>
    <message numerus="yes">
        <source>%1 pages</source>
        <translation>
            <numerusform>%1 Seite</numerusform>
            <numerusform>%1 Seiten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessaly::ResultViewController</name>
    <message>
        <source>Scanning…</source>
        <translation>Scan läuft …</translation>
    </message>
    <message>
        <source>The scan was canceled</source>
        <translation>Der Scan wurde abgebrochen</translation>
    </message>
    <message>
        <source>Nothing of it was kept.</source>
        <translation>Nichts davon wurde behalten.</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Nach Namen sortieren</translation>
    </message>
    <message>
        <source>Sort by size</source>
        <translation>Nach Größe sortieren</translation>
    </message>
    <message>
        <source>Scanning %1</source>
        <translation>%1 wird gescannt</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Stopping…</source>
        <translation>Wird angehalten …</translation>
    </message>
    <message>
        <source>This folder is empty</source>
        <translation>Dieser Ordner ist leer</translation>
    </message>
    <message>
        <source>Nothing to list here</source>
        <translation>Hier ist nichts aufzulisten</translation>
    </message>
    <message>
        <source>All items of this folder are hidden by the preferences.</source>
        <translation>Alle Objekte dieses Ordners sind durch die Einstellungen ausgeblendet.</translation>
    </message>
</context>
<context>
    <name>tessaly::Sidebar</name>
    <message>
        <source>Screens</source>
        <translation>Bereiche</translation>
    </message>
</context>
<context>
    <name>tessaly::TextView</name>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>tessaly::WindowMenu</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Verschieben</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>&amp;Größe ändern</translation>
    </message>
    <message>
        <source>Mi&amp;nimize</source>
        <translation>Mi&amp;nimieren</translation>
    </message>
    <message>
        <source>Ma&amp;ximize</source>
        <translation>Ma&amp;ximieren</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Window menu</source>
        <translation>Fenstermenü</translation>
    </message>
</context>
</TS>
