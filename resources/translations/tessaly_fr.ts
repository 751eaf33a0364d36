<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>DriveCell</name>
    <message>
        <source>Drives</source>
        <translation>Disques</translation>
    </message>
</context>
<context>
    <name>FilePreview</name>
    <message>
        <source>This file is no longer there.</source>
        <translation>Ce fichier n’est plus là.</translation>
    </message>
    <message>
        <source>You are not allowed to read this file.</source>
        <translation>Vous n’avez pas le droit de lire ce fichier.</translation>
    </message>
    <message>
        <source>Only files have a preview.</source>
        <translation>Seuls les fichiers ont un aperçu.</translation>
    </message>
    <message>
        <source>This file cannot be read.</source>
        <translation>Ce fichier ne peut pas être lu.</translation>
    </message>
    <message>
        <source>File of unknown type</source>
        <translation>Fichier de type inconnu</translation>
    </message>
    <message>
        <source>This drawing is damaged, or too large to preview.</source>
        <translation>Ce dessin est endommagé, ou trop grand pour un aperçu.</translation>
    </message>
    <message>
        <source>This image is too large to preview.</source>
        <translation>Cette image est trop grande pour un aperçu.</translation>
    </message>
    <message>
        <source>This image cannot be read. It may be damaged.</source>
        <translation>Cette image ne peut pas être lue. Elle est peut-être endommagée.</translation>
    </message>
    <message>
        <source>There is too little memory for a preview.</source>
        <translation>Il y a trop peu de mémoire pour un aperçu.</translation>
    </message>
    <message>
        <source>This document is protected by a password.</source>
        <translation>Ce document est protégé par un mot de passe.</translation>
    </message>
    <message>
        <source>This document cannot be read. It may be damaged.</source>
        <translation>Ce document ne peut pas être lu. Il est peut-être endommagé.</translation>
    </message>
    <message>
        <source>This file cannot be shown.</source>
        <translation>Ce fichier ne peut pas être affiché.</translation>
    </message>
</context>
<context>
    <name>FolderCell</name>
    <message>
        <source>Home Folder</source>
        <translation>Dossier personnel</translation>
    </message>
</context>
<context>
    <name>HistoryCell</name>
    <message>
        <source>History</source>
        <translation>Historique</translation>
    </message>
</context>
<context>
    <name>HomeFolderGrant</name>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
</context>
<context>
    <name>KORVENAppDelegate</name>
    <message>
        <source>Scan Completed</source>
        <translation>Analyse terminée</translation>
    </message>
    <message>
        <source>Scan Canceled</source>
        <translation>Analyse annulée</translation>
    </message>
</context>
<context>
    <name>KORVENDriveCell</name>
    <message>
        <source>Used space</source>
        <translation>Espace utilisé</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Total</translation>
    </message>
    <message>
        <source>Used</source>
        <translation>Utilisé</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>Libre</translation>
    </message>
    <message>
        <source>Eject</source>
        <translation>Éjecter</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Plus</translation>
    </message>
</context>
<context>
    <name>KORVENDriveViewController</name>
    <message>
        <source>Mounted volumes</source>
        <translation>Volumes montés</translation>
    </message>
    <message>
        <source>Number of volumes</source>
        <translation>Nombre de volumes</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Changer l’ordre des lignes (Ctrl+Maj+S)</translation>
    </message>
    <message>
        <source>Disk Utility</source>
        <translation>Utilitaire de disque</translation>
    </message>
    <message>
        <source>Open the system&apos;s disk utility</source>
        <translation>Ouvrir l’utilitaire de disque du système</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Look for volumes again (F5)</source>
        <translation>Rechercher à nouveau les volumes (F5)</translation>
    </message>
</context>
<context>
    <name>KORVENFolderCell</name>
    <message>
        <source>More</source>
        <translation>Plus</translation>
    </message>
</context>
<context>
    <name>KORVENHistoryCell</name>
    <message>
        <source>Load scan</source>
        <translation>Charger l’analyse</translation>
    </message>
    <message>
        <source>Date of the scan</source>
        <translation>Date de l’analyse</translation>
    </message>
    <message>
        <source>Total size</source>
        <translation>Taille totale</translation>
    </message>
    <message>
        <source>Delete this scan (Del)</source>
        <translation>Supprimer cette analyse (Suppr)</translation>
    </message>
    <message>
        <source>Delete this scan</source>
        <translation>Supprimer cette analyse</translation>
    </message>
</context>
<context>
    <name>KORVENHistoryViewController</name>
    <message>
        <source>Scan history</source>
        <translation>Historique des analyses</translation>
    </message>
    <message>
        <source>Recorded scans</source>
        <translation>Analyses enregistrées</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Changer l’ordre des lignes (Ctrl+Maj+S)</translation>
    </message>
    <message>
        <source>Delete all</source>
        <translation>Tout supprimer</translation>
    </message>
    <message>
        <source>Delete all scans that are kept</source>
        <translation>Supprimer toutes les analyses conservées</translation>
    </message>
    <message>
        <source>Delete all scans</source>
        <translation>Supprimer toutes les analyses</translation>
    </message>
    <message>
        <source>New scan</source>
        <translation>Nouvelle analyse</translation>
    </message>
    <message>
        <source>Choose a folder and scan it (Ctrl+O)</source>
        <translation>Choisir un dossier et l’analyser (Ctrl+O)</translation>
    </message>
</context>
<context>
    <name>KORVENHomeViewController</name>
    <message>
        <source>Choose your home folder</source>
        <translation>Choisissez votre dossier personnel</translation>
    </message>
    <message>
        <source>Tessaly reads only the folders that you choose. Choose your home folder once, and its contents can be scanned from this page from then on.</source>
        <translation>Tessaly ne lit que les dossiers que vous choisissez. Choisissez une fois votre dossier personnel, et son contenu pourra dès lors être analysé depuis cette page.</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>Choose the home folder</source>
        <translation>Choisir le dossier personnel</translation>
    </message>
    <message>
        <source>‹ Back</source>
        <translation>‹ Retour</translation>
    </message>
    <message>
        <source>Go up to the enclosing folder (Alt+Left)</source>
        <translation>Remonter au dossier parent (Alt+Gauche)</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Date of the scan</source>
        <translation>Date de l’analyse</translation>
    </message>
    <message>
        <source>Total size</source>
        <translation>Taille totale</translation>
    </message>
    <message>
        <source>total</source>
        <translation>au total</translation>
    </message>
    <message>
        <source>Items of the folder</source>
        <translation>Éléments du dossier</translation>
    </message>
    <message>
        <source>Scan Home Folder</source>
        <translation>Analyser le dossier personnel</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Changer l’ordre des lignes (Ctrl+Maj+S)</translation>
    </message>
    <message>
        <source>Scanning</source>
        <translation>Analyse en cours</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Stop the scan (Esc)</source>
        <translation>Arrêter l’analyse (Échap)</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Analyser</translation>
    </message>
    <message>
        <source>Scan the home folder (Ctrl+R)</source>
        <translation>Analyser le dossier personnel (Ctrl+R)</translation>
    </message>
</context>
<context>
    <name>KORVENScanViewController</name>
    <message>
        <source>‹ Back</source>
        <translation>‹ Retour</translation>
    </message>
    <message>
        <source>Go up to the enclosing folder (Alt+Left)</source>
        <translation>Remonter au dossier parent (Alt+Gauche)</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <source>Date of the scan</source>
        <translation>Date de l’analyse</translation>
    </message>
    <message>
        <source>Total size</source>
        <translation>Taille totale</translation>
    </message>
    <message>
        <source>total</source>
        <translation>au total</translation>
    </message>
    <message>
        <source>Items of the folder</source>
        <translation>Éléments du dossier</translation>
    </message>
    <message>
        <source>Scan Folder…</source>
        <translation>Analyser un dossier…</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Change the order of the rows (Ctrl+Shift+S)</source>
        <translation>Changer l’ordre des lignes (Ctrl+Maj+S)</translation>
    </message>
    <message>
        <source>Scanning</source>
        <translation>Analyse en cours</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Stop the scan (Esc)</source>
        <translation>Arrêter l’analyse (Échap)</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Analyser</translation>
    </message>
    <message>
        <source>Choose a folder and scan it (Ctrl+O)</source>
        <translation>Choisir un dossier et l’analyser (Ctrl+O)</translation>
    </message>
</context>
<context>
    <name>ScanCell</name>
    <message>
        <source>Folder Scan</source>
        <translation>Analyse de dossier</translation>
    </message>
</context>
<context>
    <name>ScanResult</name>
    <message>
        <source>This folder cannot be read</source>
        <translation>Ce dossier ne peut pas être lu</translation>
    </message>
    <message>
        <source>This scan cannot be opened</source>
        <translation>Cette analyse ne peut pas être ouverte</translation>
    </message>
    <message>
        <source>This scan could not be kept: %1</source>
        <translation>Cette analyse n’a pas pu être conservée&#xa0;: %1</translation>
    </message>
</context>
<context>
    <name>SingleInstance</name>
    <message>
        <source>Tessaly is already running.</source>
        <translation>Tessaly est déjà en cours d’exécution.</translation>
    </message>
</context>
<context>
    <name>TessalyPreferences</name>
    <message>
        <source>Show hidden items</source>
        <translation>Afficher les éléments cachés</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Jamais</translation>
    </message>
    <message>
        <source>Larger than 1 MB</source>
        <translation>Plus grands que 1 MB</translation>
    </message>
    <message>
        <source>Larger than 500 KB</source>
        <translation>Plus grands que 500 KB</translation>
    </message>
    <message>
        <source>Larger than 1 KB</source>
        <translation>Plus grands que 1 KB</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Tous</translation>
    </message>
    <message>
        <source>Show files</source>
        <translation>Afficher les fichiers</translation>
    </message>
    <message>
        <source>Larger than 1 GB</source>
        <translation>Plus grands que 1 GB</translation>
    </message>
    <message>
        <source>Larger than 500 MB</source>
        <translation>Plus grands que 500 MB</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Notifications</translation>
    </message>
    <message>
        <source>Notify when a scan ends</source>
        <translation>Notifier la fin d’une analyse</translation>
    </message>
    <message>
        <source>Play a sound with the notification</source>
        <translation>Jouer un son avec la notification</translation>
    </message>
    <message>
        <source>Warning colours</source>
        <translation>Couleurs d’avertissement</translation>
    </message>
    <message>
        <source>Colour nearly full drives yellow and red</source>
        <translation>Colorer en jaune et rouge les disques presque pleins</translation>
    </message>
    <message>
        <source>Colour large folders yellow and red</source>
        <translation>Colorer en jaune et rouge les grands dossiers</translation>
    </message>
    <message>
        <source>Choose home folder…</source>
        <translation>Choisir le dossier personnel…</translation>
    </message>
    <message>
        <source>Remove home folder</source>
        <translation>Retirer le dossier personnel</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>tessaly::AccessibleCellRow</name>
    <message>
        <source>Open</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Sélectionner</translation>
    </message>
</context>
<context>
    <name>tessaly::ApplicationMenu</name>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>&amp;About Tessaly</source>
        <translation>À &amp;propos de Tessaly</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>Scan &amp;Folder…</source>
        <translation>Analyser un &amp;dossier…</translation>
    </message>
    <message>
        <source>Scan &amp;Home</source>
        <translation>Analyser le dossier perso&amp;nnel</translation>
    </message>
    <message>
        <source>&amp;Refresh Drives</source>
        <translation>Actuali&amp;ser les disques</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>&amp;Retour</translation>
    </message>
    <message>
        <source>Change &amp;Sort Order</source>
        <translation>Changer l’ordre de &amp;tri</translation>
    </message>
    <message>
        <source>&amp;Go To</source>
        <translation>A&amp;ller à</translation>
    </message>
    <message>
        <source>Quick &amp;Look</source>
        <translation>Aperç&amp;u rapide</translation>
    </message>
    <message>
        <source>Show in File &amp;Manager</source>
        <translation>Montrer dans le &amp;gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Show &amp;Info</source>
        <translation>Afficher les &amp;informations</translation>
    </message>
    <message>
        <source>&amp;Choose Home Folder…</source>
        <translation>&amp;Choisir le dossier personnel…</translation>
    </message>
    <message>
        <source>Remo&amp;ve Home Folder</source>
        <translation>R&amp;etirer le dossier personnel</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>Pré&amp;férences…</translation>
    </message>
    <message>
        <source>Enter Full Screen</source>
        <translation>Passer en plein écran</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Outils</translation>
    </message>
    <message>
        <source>&amp;Disk Utility</source>
        <translation>&amp;Utilitaire de disque</translation>
    </message>
    <message>
        <source>&amp;File Manager</source>
        <translation>&amp;Gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>&amp;System Settings</source>
        <translation>&amp;Paramètres système</translation>
    </message>
    <message>
        <source>H&amp;elp</source>
        <translation>&amp;Aide</translation>
    </message>
    <message>
        <source>Tessaly &amp;Help</source>
        <translation>&amp;Aide de Tessaly</translation>
    </message>
    <message>
        <source>&amp;Website</source>
        <translation>Site &amp;web</translation>
    </message>
    <message>
        <source>&amp;Support</source>
        <translation>Assi&amp;stance</translation>
    </message>
    <message>
        <source>Software Sto&amp;re Page</source>
        <translation>Page du Software Sto&amp;re</translation>
    </message>
    <message>
        <source>Tessaly on &amp;Facebook</source>
        <translation>Tessaly sur &amp;Facebook</translation>
    </message>
    <message>
        <source>Tessaly on &amp;Twitter</source>
        <translation>Tessaly sur &amp;Twitter</translation>
    </message>
    <message>
        <source>Tessaly on &amp;Google+</source>
        <translation>Tessaly sur &amp;Google+</translation>
    </message>
</context>
<context>
    <name>tessaly::CardView</name>
    <message numerus="yes">
        <source>%1 (%2 bytes)</source>
        <extracomment>%1 is a size (&quot;1.50 MB&quot;), %2 the same in bytes (&quot;1,500,000&quot;)</extracomment>
        <translation>
            <numerusform>%1 (%2 octet)</numerusform>
            <numerusform>%1 (%2 octets)</numerusform>
        </translation>
    </message>
    <message>
        <source>About the file</source>
        <translation>À propos du fichier</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Créé</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>Modifié</translation>
    </message>
</context>
<context>
    <name>tessaly::CellTableView</name>
    <message>
        <source>1 item: %1</source>
        <translation>1 élément&#xa0;: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n items: %1</source>
        <translation>
            <numerusform>%n élément&#xa0;: %1</numerusform>
            <numerusform>%n éléments&#xa0;: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessaly::CommandLine</name>
    <message>
        <source>Displays this help and ends.</source>
        <translation>Affiche cette aide et se termine.</translation>
    </message>
    <message>
        <source>Displays the version and ends.</source>
        <translation>Affiche la version et se termine.</translation>
    </message>
    <message>
        <source>Shows where the space on your disks has gone.</source>
        <translation>Montre où est passée la place sur vos disques.</translation>
    </message>
    <message>
        <source>There is no option &quot;%1&quot;.</source>
        <translation>Il n’y a pas d’option «&#xa0;%1&#xa0;».</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one argument too many.</source>
        <translation>«&#xa0;%1&#xa0;» est un argument de trop.</translation>
    </message>
    <message>
        <source>Try &quot;tessaly --help&quot;.</source>
        <translation>Essayez «&#xa0;tessaly --help&#xa0;».</translation>
    </message>
</context>
<context>
    <name>tessaly::FolderDialog</name>
    <message>
        <source>Choose a Folder</source>
        <translation>Choisir un dossier</translation>
    </message>
    <message>
        <source>Parent Folder</source>
        <translation>Dossier parent</translation>
    </message>
    <message>
        <source>Places</source>
        <translation>Emplacements</translation>
    </message>
    <message>
        <source>Folders</source>
        <translation>Dossiers</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Dossier :</translation>
    </message>
    <message>
        <source>Show hidden folders</source>
        <translation>Afficher les dossiers cachés</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Dossier personnel</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
    <message>
        <source>Looking into “%1”…</source>
        <translation>Lecture de « %1 »…</translation>
    </message>
    <message>
        <source>“%1” cannot be read: %2</source>
        <translation>Impossible de lire « %1 » : %2</translation>
    </message>
    <message>
        <source>There is no folder “%1”.</source>
        <translation>Le dossier « %1 » n’existe pas.</translation>
    </message>
    <message>
        <source>Looking for “%1”…</source>
        <translation>Recherche de « %1 »…</translation>
    </message>
</context>
<context>
    <name>tessaly::FullScreen</name>
    <message>
        <source>Exit Full Screen</source>
        <translation>Quitter le plein écran</translation>
    </message>
    <message>
        <source>Enter Full Screen</source>
        <translation>Passer en plein écran</translation>
    </message>
</context>
<context>
    <name>tessaly::InformationWindow</name>
    <message>
        <source>%1 (1 byte)</source>
        <translation>%1 (1 octet)</translation>
    </message>
    <message numerus="yes">
        <source>%1 (%2 bytes)</source>
        <translation>
            <numerusform>%1 (%2 octet)</numerusform>
            <numerusform>%1 (%2 octets)</numerusform>
        </translation>
    </message>
    <message>
        <source>This folder cannot be read</source>
        <translation>Ce dossier ne peut pas être lu</translation>
    </message>
    <message>
        <source>1 item</source>
        <translation>1 élément</translation>
    </message>
    <message numerus="yes">
        <source>%1 items</source>
        <translation>
            <numerusform>%1 élément</numerusform>
            <numerusform>%1 éléments</numerusform>
        </translation>
    </message>
    <message>
        <source>read</source>
        <translation>lire</translation>
    </message>
    <message>
        <source>write</source>
        <translation>écrire</translation>
    </message>
    <message>
        <source>enter</source>
        <translation>entrer</translation>
    </message>
    <message>
        <source>run</source>
        <translation>exécuter</translation>
    </message>
    <message>
        <source>no access</source>
        <translation>aucun accès</translation>
    </message>
    <message>
        <source>Information about “%1”</source>
        <translation>Informations sur «&#xa0;%1&#xa0;»</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Contains</source>
        <translation>Contient</translation>
    </message>
    <message>
        <source>Leads to</source>
        <translation>Mène à</translation>
    </message>
    <message>
        <source>%1 (not there)</source>
        <translation>%1 (absent)</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Emplacement</translation>
    </message>
    <message>
        <source>Dates</source>
        <translation>Dates</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>Créé</translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modifié</translation>
    </message>
    <message>
        <source>Last opened</source>
        <translation>Dernière ouverture</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>Permissions</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Propriétaire</translation>
    </message>
    <message>
        <source>Group</source>
        <translation>Groupe</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1&#xa0;: %2</translation>
    </message>
    <message>
        <source>Others</source>
        <translation>Autres</translation>
    </message>
    <message>
        <source>In short</source>
        <translation>En bref</translation>
    </message>
    <message>
        <source>This item is not there any more.</source>
        <translation>Cet élément n’est plus là.</translation>
    </message>
    <message>
        <source>You are not permitted to look into the folder of this item.</source>
        <translation>Vous n’avez pas le droit de regarder dans le dossier de cet élément.</translation>
    </message>
    <message>
        <source>This item cannot be looked at: %1.</source>
        <translation>Cet élément ne peut pas être examiné&#xa0;: %1.</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENDriveCellView</name>
    <message>
        <source>Eject</source>
        <translation>Éjecter</translation>
    </message>
    <message>
        <source>Ejecting…</source>
        <translation>Éjection…</translation>
    </message>
    <message>
        <source>Eject the volume</source>
        <translation>Éjecter le volume</translation>
    </message>
    <message>
        <source>Unmount the volume</source>
        <translation>Démonter le volume</translation>
    </message>
    <message>
        <source>Eject %1</source>
        <translation>Éjecter %1</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>Montrer dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Show Info</source>
        <translation>Afficher les informations</translation>
    </message>
    <message>
        <source>As of the last time the volume answered</source>
        <translation>État lors de la dernière réponse du volume</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENDriveViewController</name>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Looking for volumes…</source>
        <translation>Recherche de volumes…</translation>
    </message>
    <message>
        <source>No volumes found</source>
        <translation>Aucun volume trouvé</translation>
    </message>
    <message>
        <source>A drive appears here as soon as it is mounted.</source>
        <translation>Un disque apparaît ici dès qu’il est monté.</translation>
    </message>
    <message>
        <source>1 volume</source>
        <translation>1 volume</translation>
    </message>
    <message>
        <source>%1 volumes</source>
        <translation>%1 volumes</translation>
    </message>
    <message>
        <source>Sort by size</source>
        <translation>Trier par taille</translation>
    </message>
    <message>
        <source>%1, size unknown</source>
        <translation>%1, taille inconnue</translation>
    </message>
    <message>
        <source>%1, %2 used, %3</source>
        <translation>%1, %2 utilisés, %3</translation>
    </message>
    <message>
        <source>%1, %2 used, %3, out of date</source>
        <translation>%1, %2 utilisés, %3, pas à jour</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENFolderCellView</name>
    <message>
        <source>Quick Look</source>
        <translation>Aperçu rapide</translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation>Montrer dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <source>Show Info</source>
        <translation>Afficher les informations</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENHistoryViewController</name>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Sort by date</source>
        <translation>Trier par date</translation>
    </message>
    <message>
        <source>The history cannot be read</source>
        <translation>L’historique ne peut pas être lu</translation>
    </message>
    <message>
        <source>Scans are not recorded until it can be: %1</source>
        <translation>D’ici là, les analyses ne sont pas enregistrées&#xa0;: %1</translation>
    </message>
    <message>
        <source>No scans kept</source>
        <translation>Aucune analyse conservée</translation>
    </message>
    <message>
        <source>1 scan kept</source>
        <translation>1 analyse conservée</translation>
    </message>
    <message>
        <source>%1 scans kept</source>
        <translation>%1 analyses conservées</translation>
    </message>
    <message>
        <source>No scans kept yet</source>
        <translation>Aucune analyse conservée pour l’instant</translation>
    </message>
    <message>
        <source>Each folder that you scan is listed here, to be opened again without a scan.</source>
        <translation>Chaque dossier que vous analysez est listé ici, pour être rouvert sans nouvelle analyse.</translation>
    </message>
    <message>
        <source>Load scan</source>
        <translation>Charger l’analyse</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENHomeViewController</name>
    <message>
        <source>Home folder not scanned yet</source>
        <translation>Dossier personnel pas encore analysé</translation>
    </message>
    <message>
        <source>Scan it to see what takes up its space.</source>
        <translation>Analysez-le pour voir ce qui y prend de la place.</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Tessaly Message</source>
        <translation>Message de Tessaly</translation>
    </message>
    <message>
        <source>The folder was not your home folder.
Please select your home folder again.</source>
        <translation>Le dossier n’était pas votre dossier personnel.
Veuillez choisir à nouveau votre dossier personnel.</translation>
    </message>
    <message>
        <source>The home folder cannot be reached</source>
        <translation>Le dossier personnel n’est pas accessible</translation>
    </message>
    <message>
        <source>Choose it again when Tessaly starts the next time.</source>
        <translation>Choisissez-le à nouveau au prochain démarrage de Tessaly.</translation>
    </message>
    <message>
        <source>Home folders scan completed</source>
        <translation>L’analyse du dossier personnel est terminée</translation>
    </message>
    <message>
        <source>Home folders scan canceled</source>
        <translation>L’analyse du dossier personnel a été annulée</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENRate</name>
    <message>
        <source>%1 - Rate and Review</source>
        <translation>%1 - Noter et donner un avis</translation>
    </message>
    <message>
        <source>If you enjoy using %1 please take a moment to rate and review. Thank you.</source>
        <translation>Si vous aimez utiliser %1, veuillez prendre un instant pour le noter et donner votre avis. Merci.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>Not now</source>
        <translation>Pas maintenant</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENScanViewController</name>
    <message>
        <source>No folder scanned yet</source>
        <translation>Aucun dossier analysé pour l’instant</translation>
    </message>
    <message>
        <source>Choose a folder to see what takes up its space.</source>
        <translation>Choisissez un dossier pour voir ce qui y prend de la place.</translation>
    </message>
    <message>
        <source>Scan</source>
        <translation>Analyser</translation>
    </message>
    <message>
        <source>The history cannot be read</source>
        <translation>L’historique ne peut pas être lu</translation>
    </message>
    <message>
        <source>Scans are not recorded until it can be: %1</source>
        <translation>D’ici là, les analyses ne sont pas enregistrées&#xa0;: %1</translation>
    </message>
    <message>
        <source>Scan completed</source>
        <translation>L’analyse est terminée</translation>
    </message>
    <message>
        <source>Scan canceled</source>
        <translation>L’analyse a été annulée</translation>
    </message>
    <message>
        <source>the record names no file</source>
        <translation>l’entrée ne nomme aucun fichier</translation>
    </message>
    <message>
        <source>the history could not be written</source>
        <translation>l’historique n’a pas pu être écrit</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENViewController</name>
    <message>
        <source>Canceled</source>
        <translation>Annulé</translation>
    </message>
    <message>
        <source>Drill down</source>
        <translation>Entrer</translation>
    </message>
    <message>
        <source>Quick look</source>
        <translation>Aperçu rapide</translation>
    </message>
    <message>
        <source>%1, folder, %2, %3</source>
        <translation>%1, dossier, %2, %3</translation>
    </message>
    <message>
        <source>%1, file, %2, %3</source>
        <translation>%1, fichier, %2, %3</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENWindow</name>
    <message>
        <source>Menu</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Agrandir</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>tessaly::KORVENWindowController</name>
    <message>
        <source>Tessaly Message</source>
        <translation>Message de Tessaly</translation>
    </message>
    <message>
        <source>There is a scan currently running.
Please try again after the scan completes.</source>
        <translation>Une analyse est en cours.
Veuillez réessayer quand elle sera terminée.</translation>
    </message>
    <message>
        <source>Saving changes and exiting.
Please restart the app.</source>
        <translation>Les modifications sont enregistrées, puis Tessaly se ferme.
Veuillez relancer l’application.</translation>
    </message>
    <message>
        <source>Tessaly %1</source>
        <translation>Tessaly %1</translation>
    </message>
    <message>
        <source>Shows where the space on your disks has gone.
Licensed under the Apache License 2.0.</source>
        <translation>Montre où est passée la place sur vos disques.
Sous licence Apache License 2.0.</translation>
    </message>
</context>
<context>
    <name>tessaly::MediaView</name>
    <message>
        <source>Play</source>
        <translation>Lire</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Player</source>
        <translation>Lecteur</translation>
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
        <translation>Aucun appareil ne peut jouer de sons.</translation>
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
        <translation>Copier</translation>
    </message>
</context>
<context>
    <name>tessaly::Pages</name>
    <message>
        <source>&amp;Drives</source>
        <translation>&amp;Disques</translation>
    </message>
    <message>
        <source>&amp;Home Folder</source>
        <translation>Dossier &amp;personnel</translation>
    </message>
    <message>
        <source>&amp;Folder Scan</source>
        <translation>&amp;Analyse de dossier</translation>
    </message>
    <message>
        <source>H&amp;istory</source>
        <translation>&amp;Historique</translation>
    </message>
</context>
<context>
    <name>tessaly::PdfView</name>
    <message>
        <source>Document</source>
        <translation>Document</translation>
    </message>
</context>
<context>
    <name>tessaly::PreferenceSheet</name>
    <message>
        <source>Preferences</source>
        <translation>Préférences</translation>
    </message>
</context>
<context>
    <name>tessaly::PreviewHeader</name>
    <message>
        <source>Previous file</source>
        <translation>Fichier précédent</translation>
    </message>
    <message>
        <source>Next file</source>
        <translation>Fichier suivant</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Leave full screen</source>
        <translation>Quitter le plein écran</translation>
    </message>
</context>
<context>
    <name>tessaly::PreviewWindow</name>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>This cannot be played: %1</source>
        <translation>Ceci ne peut pas être lu&#xa0;: %1</translation>
    </message>
    <message>
        <source>%1 — %2 of %3</source>
        <extracomment>The title of a preview: a file&apos;s name, its place among the files, and their number</extracomment>
        <translation>%1 — %2 sur %3</translation>
    </message>
    <message>
        <source>Loading…</source>
        <translation>Chargement…</translation>
    </message>
    <message>
        <source>Nothing to preview</source>
        <translation>Rien à prévisualiser</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>… first 256 KB of %1</source>
        <translation>… les premiers 256 KB sur %1</translation>
    </message>
    <message>
        <source>… first %1 lines of %2</source>
        <translation>… les %1 premières lignes sur %2</translation>
    </message>
    <message numerus="yes">
        <source>first %1 of %2 pages</source>
        <translation>
            <numerusform>%1 page sur %2</numerusform>
            <numerusform>les %1 premières pages sur %2</numerusform>
        </translation>
    </message>
    <message>
        <source>1 page</source>
        <translation>1 page</translation>
    </message>
    <message numerus="yes">
        <source>%1 pages</source>
        <translation>
            <numerusform>%1 page</numerusform>
            <numerusform>%1 pages</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessaly::ResultViewController</name>
    <message>
        <source>Scanning…</source>
        <translation>Analyse en cours…</translation>
    </message>
    <message>
        <source>The scan was canceled</source>
        <translation>L’analyse a été annulée</translation>
    </message>
    <message>
        <source>Nothing of it was kept.</source>
        <translation>Rien n’en a été conservé.</translation>
    </message>
    <message>
        <source>Sort by name</source>
        <translation>Trier par nom</translation>
    </message>
    <message>
        <source>Sort by size</source>
        <translation>Trier par taille</translation>
    </message>
    <message>
        <source>Scanning %1</source>
        <translation>Analyse de %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Stopping…</source>
        <translation>Arrêt…</translation>
    </message>
    <message>
        <source>This folder is empty</source>
        <translation>Ce dossier est vide</translation>
    </message>
    <message>
        <source>Nothing to list here</source>
        <translation>Rien à lister ici</translation>
    </message>
    <message>
        <source>All items of this folder are hidden by the preferences.</source>
        <translation>Tous les éléments de ce dossier sont masqués par les préférences.</translation>
    </message>
</context>
<context>
    <name>tessaly::Sidebar</name>
    <message>
        <source>Screens</source>
        <translation>Écrans</translation>
    </message>
</context>
<context>
    <name>tessaly::TextView</name>
    <message>
        <source>Text</source>
        <translation>Texte</translation>
    </message>
</context>
<context>
    <name>tessaly::WindowMenu</name>
    <message>
        <source>&amp;Restore</source>
        <translation>&amp;Restaurer</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Déplacer</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>&amp;Taille</translation>
    </message>
    <message>
        <source>Mi&amp;nimize</source>
        <translation>Réd&amp;uire</translation>
    </message>
    <message>
        <source>Ma&amp;ximize</source>
        <translation>A&amp;grandir</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>Window menu</source>
        <translation>Menu de la fenêtre</translation>
    </message>
</context>
</TS>
