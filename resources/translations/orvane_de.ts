<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Orvane</name>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>(no label)</source>
        <translation>(ohne Bezeichnung)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>empty</source>
        <translation>leer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Counter</source>
        <translation>Zähler</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Last value</source>
        <translation>Letzter Wert</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Offered next</source>
        <translation>Nächster Vorschlag</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Used by</source>
        <translation>Verwendet von</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterValueField.cpp"/>
        <source>Value of %1</source>
        <translation>Wert von %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterValueField.cpp"/>
        <source>The preferences cannot hold one of these characters.</source>
        <translation>Eines dieser Zeichen kann in den Einstellungen nicht gespeichert werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>&amp;Reset</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>De&amp;lete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Variables whose names begin with “auto” count: each new folder is offered the number after the last one.</source>
        <translation>Variablen, deren Name mit „auto“ beginnt, zählen: Jedem neuen Ordner wird die Zahl nach der letzten vorgeschlagen.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Counters</source>
        <translation>Zähler</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>No counters yet</source>
        <translation>Noch keine Zähler</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>A counter appears here when a folder was made from a preset with a variable such as {AutoJob}.</source>
        <translation>Ein Zähler erscheint hier, sobald aus einer Vorlage mit einer Variablen wie {AutoJob} ein Ordner angelegt wurde.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>The next folder is offered 0</source>
        <translation>Dem nächsten Ordner wird 0 vorgeschlagen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>The value typed for “%1” was not stored: it holds characters that the preferences cannot.</source>
        <translation>Der für „%1“ eingegebene Wert wurde nicht gespeichert: Er enthält Zeichen, die in den Einstellungen nicht gespeichert werden können.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Reset Counter</source>
        <translation>Zähler zurücksetzen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Delete Counter</source>
        <translation>Zähler löschen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/DraggedPresets.cpp"/>
        <source>The preset cannot be exported: %1</source>
        <translation>Die Vorlage kann nicht exportiert werden: %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Import Folder</source>
        <translation>Ordner importieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Files in “%1”: %2, with %3 MB in all.</source>
        <translation>Dateien in „%1“: %2, zusammen %3 MB.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Files in “%1”: at least %2, with at least %3 MB in all.</source>
        <translation>Dateien in „%1“: mindestens %2, zusammen mindestens %3 MB.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Their contents can be copied, so that new folders get them, too. With the names only, new files are empty.</source>
        <translation>Ihre Inhalte können kopiert werden, sodass auch neue Ordner sie bekommen. Nur mit den Namen sind neue Dateien leer.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Copy C&amp;ontents</source>
        <translation>Inhalte &amp;kopieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>&amp;Names Only</source>
        <translation>Nur &amp;Namen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Show in the &amp;menu bar</source>
        <translation>In der Menü&amp;leiste anzeigen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Start &amp;at login</source>
        <translation>Beim Anmel&amp;den starten</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>&amp;Shortcut:</source>
        <translation>Tas&amp;tenkürzel:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Preset menu:</source>
        <translation>Vorlagenmenü:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>This could not be stored: the folder for programs that start at login cannot be written to.</source>
        <translation>Das konnte nicht gespeichert werden: In den Ordner für Programme, die beim Anmelden starten, kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Preferences:</source>
        <translation>Einstellungen:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Scripts:</source>
        <translation>Skripte:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>File contents:</source>
        <translation>Dateiinhalte:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Show</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Show %1</source>
        <translation>%1 anzeigen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Open the folder in the file manager</source>
        <translation>Öffnet den Ordner in der Dateiverwaltung</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>The folder “%1” cannot be opened.</source>
        <translation>Der Ordner „%1“ kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>&amp;Open Log</source>
        <translation>Protokoll ö&amp;ffnen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>&amp;Log:</source>
        <translation>P&amp;rotokoll:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>The log “%1” cannot be opened.</source>
        <translation>Das Protokoll „%1“ kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>The menu still comes up with the shortcut, with “orvane menu”, and in file managers.</source>
        <translation>Das Menü ist weiterhin mit dem Tastenkürzel, mit „orvane menu“ und in Dateiverwaltungen erreichbar.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Remove the shortcut</source>
        <translation>Tastenkürzel entfernen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>This key cannot be part of a shortcut. Press another one.</source>
        <translation>Diese Taste eignet sich nicht für ein Tastenkürzel. Drücken Sie eine andere.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Command to bind a key to</source>
        <translation>Befehl, dem eine Taste zugewiesen wird</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Hold down modifiers and press a key. Esc leaves everything as it is, Backspace removes the shortcut.</source>
        <translation>Halten Sie Umschalttasten gedrückt und drücken Sie eine Taste. Esc lässt alles, wie es ist, die Rücktaste entfernt das Tastenkürzel.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>A shortcut needs at least one of the keys Super, Alt, Ctrl and Shift. Hold it down and press the other key.</source>
        <translation>Ein Tastenkürzel braucht mindestens eine der Tasten Super, Alt, Strg und Umschalt. Halten Sie sie gedrückt und drücken Sie die andere Taste.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>With Shift alone, this key could not be typed any more. Hold down another modifier, too.</source>
        <translation>Mit der Umschalttaste allein ließe sich dieses Zeichen nicht mehr tippen. Halten Sie noch eine andere Taste gedrückt.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Another program has %1 (%2). Press another combination.</source>
        <translation>Ein anderes Programm verwendet %1 (%2). Drücken Sie eine andere Kombination.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>This keyboard has no such key or modifier. Press another combination.</source>
        <translation>Auf dieser Tastatur gibt es eine dieser Tasten nicht. Drücken Sie eine andere Kombination.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>The desktop refuses this combination. Press another one.</source>
        <translation>Die Arbeitsumgebung lehnt diese Kombination ab. Drücken Sie eine andere.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Click to record a shortcut</source>
        <translation>Klicken, um ein Tastenkürzel aufzunehmen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Shortcut</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Press Space to record a shortcut, Delete to remove it.</source>
        <translation>Leertaste: Tastenkürzel aufnehmen; Entf: Tastenkürzel entfernen.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Press the keys…</source>
        <translation>Tasten drücken …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecording.cpp"/>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecording.cpp"/>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecording.cpp"/>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecording.cpp"/>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>No Label</source>
        <translation>Kein Etikett</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Red</source>
        <translation>Rot</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Orange</source>
        <translation>Orange</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Yellow</source>
        <translation>Gelb</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Green</source>
        <translation>Grün</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Purple</source>
        <translation>Violett</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Gray</source>
        <translation>Grau</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Permissions as three octal digits</source>
        <translation>Rechte als drei Oktalziffern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>as usual</source>
        <translation>wie üblich</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Three octal digits, such as 755; empty for what a new item gets anyway</source>
        <translation>Drei Oktalziffern, etwa 755; leer für das, was ein neues Objekt ohnehin bekommt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>differ</source>
        <translation>verschieden</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Content file</source>
        <translation>Inhaltsdatei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>empty file</source>
        <translation>leere Datei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>&amp;Choose…</source>
        <translation>&amp;Wählen …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Copies a file to Orvane&apos;s content files, from where each new file gets its contents</source>
        <translation>Kopiert eine Datei zu den Inhaltsdateien von Orvane; von dort bekommt jede neue Datei ihren Inhalt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>%1 cannot be opened.</source>
        <translation>%1 kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>several files</source>
        <translation>mehrere Dateien</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Choose Content File</source>
        <translation>Inhaltsdatei wählen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>%1 cannot be used: %2</source>
        <translation>%1 kann nicht verwendet werden: %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Owner</source>
        <translation>Eigentümer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Group</source>
        <translation>Gruppe</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Others</source>
        <translation>Andere</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Read</source>
        <translation>Lesen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Write</source>
        <translation>Schreiben</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Execute</source>
        <translation>Ausführen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>&amp;Kind:</source>
        <translation>Ar&amp;t:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Label col&amp;our:</source>
        <translation>&amp;Etikettfarbe:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Per&amp;missions:</source>
        <translation>Re&amp;chte:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Content &amp;file:</source>
        <translation>&amp;Inhaltsdatei:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Open the content file</source>
        <translation>Inhaltsdatei öffnen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>No content file</source>
        <translation>Keine Inhaltsdatei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Change Permissions</source>
        <translation>Rechte ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/LogView.cpp"/>
        <source>Nothing has been logged yet.</source>
        <translation>Noch wurde nichts protokolliert.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/MessageBar.cpp"/>
        <source>Close message</source>
        <translation>Meldung schließen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/NodeDelegate.cpp"/>
        <source>(no name)</source>
        <translation>(kein Name)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/NodeDelegate.cpp"/>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/NodeDelegate.cpp"/>
        <source>Permissions</source>
        <translation>Rechte</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PathLabel.cpp"/>
        <source>&amp;Copy Path</source>
        <translation>Pfad &amp;kopieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Label of the preset</source>
        <translation>Bezeichnung der Vorlage</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Name of the top folder</source>
        <translation>Name des obersten Ordners</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>What stands in braces, as in {Title}, is asked for each time; names that begin with Auto count on by themselves</source>
        <translation>Was in Klammern steht, wie in {Title}, wird jedes Mal erfragt; Namen, die mit Auto beginnen, zählen von selbst weiter</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>&amp;Label:</source>
        <translation>Be&amp;zeichnung:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>&amp;Top folder:</source>
        <translation>&amp;Oberster Ordner:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Tr&amp;y It</source>
        <translation>Aus&amp;probieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Makes the preset in a temporary folder with the sample values and opens it. The script is not run and no counter counts on; the folder goes when this program ends.</source>
        <translation>Legt die Vorlage mit den Beispielwerten in einem temporären Ordner an und öffnet ihn. Das Skript wird nicht ausgeführt und kein Zähler zählt weiter; der Ordner verschwindet mit dem Ende dieses Programms.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>About the preset</source>
        <translation>Zur Vorlage</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Item</source>
        <translation>Objekt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Variables</source>
        <translation>Variablen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Script</source>
        <translation>Skript</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Gives: %1</source>
        <translation>Ergibt: %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Made for a look: %1</source>
        <translation>Zum Ansehen angelegt: %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>The preset cannot be made: %1</source>
        <translation>Aus der Vorlage kann nichts angelegt werden: %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetListModel.cpp"/>
        <source>The preferences cannot hold this text.</source>
        <translation>Dieser Text kann in den Einstellungen nicht gespeichert werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel.cpp"/>
        <source>Permissions as usual</source>
        <translation>Rechte wie üblich</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel.cpp"/>
        <source>Label</source>
        <translation>Etikett</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel.cpp"/>
        <source>Content</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>%1 cannot be added: %2</source>
        <translation>%1 kann nicht hinzugefügt werden: %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>Nothing was added: the folder for it is no longer there.</source>
        <translation>Nichts wurde hinzugefügt: Den Ordner dafür gibt es nicht mehr.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>Add Files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Folders and files of the preset</source>
        <translation>Ordner und Dateien der Vorlage</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Label</source>
        <translation>Et&amp;ikett</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New Folder</source>
        <translation>Neuer Ordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New File</source>
        <translation>Neue Datei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>The clipboard holds nothing that can be pasted here.</source>
        <translation>Die Zwischenablage enthält nichts, was hier eingefügt werden kann.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Chan&amp;ge to File</source>
        <translation>In Datei um&amp;wandeln</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Chan&amp;ge to Folder</source>
        <translation>In Ordner um&amp;wandeln</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Nothing in here yet.
Press Return to add a folder, or drop files and folders here.</source>
        <translation>Hier ist noch nichts.
Drücken Sie die Eingabetaste, um einen Ordner hinzuzufügen, oder legen Sie Dateien und Ordner hier ab.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New &amp;Folder</source>
        <translation>Neuer &amp;Ordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New F&amp;ile</source>
        <translation>Neue &amp;Datei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Add Files…</source>
        <translation>Dateien &amp;hinzufügen …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Rena&amp;me</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Duplicat&amp;e</source>
        <translation>Du&amp;plizieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Mo&amp;ve Up</source>
        <translation>Nach o&amp;ben</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Move Do&amp;wn</source>
        <translation>Nach un&amp;ten</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Move &amp;Out of Its Folder</source>
        <translation>Aus dem Ordner herau&amp;s</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Move I&amp;nto the Folder Above</source>
        <translation>In den Ordner darüber hi&amp;nein</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Add Fro&amp;m</source>
        <translation>Hinzufügen &amp;aus</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Presets</source>
        <translation>Vorlagen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Add from…</source>
        <translation>Hinzufügen aus …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>No preset is chosen</source>
        <translation>Keine Vorlage ausgewählt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>A preset is a folder with everything in it, made again whenever you need it. Begin with an empty one, with one that is ready made, or with a folder that you have.</source>
        <translation>Eine Vorlage ist ein Ordner mit allem, was hineingehört, der immer dann neu angelegt wird, wenn Sie ihn brauchen. Beginnen Sie mit einer leeren, mit einer fertigen oder mit einem Ordner, den Sie schon haben.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Ne&amp;w Preset</source>
        <translation>Neue Vorla&amp;ge</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>&amp;Ready-Made Presets</source>
        <translation>&amp;Fertige Vorlagen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>I&amp;mport Folder…</source>
        <translation>Ordner &amp;importieren …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>The presets cannot be shown</source>
        <translation>Die Vorlagen können nicht angezeigt werden</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>There are no presets yet</source>
        <translation>Noch gibt es keine Vorlagen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>%1 presets are chosen</source>
        <translation>%1 Vorlagen ausgewählt</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>New Preset</source>
        <translation>Neue Vorlage</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>{Name}</source>
        <translation>{Name}</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Add Preset File</source>
        <translation>Vorlagendatei hinzufügen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Orvane presets (*.orvpreset);;All files (*)</source>
        <translation>Orvane-Vorlagen (*.orvpreset);;Alle Dateien (*)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>“%1” brings a script along, “%2”, which will run after each creation.</source>
        <translation>„%1“ bringt ein Skript mit, „%2“, das nach jedem Anlegen läuft.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Export Preset</source>
        <translation>Vorlage exportieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Orvane presets (*.orvpreset)</source>
        <translation>Orvane-Vorlagen (*.orvpreset)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Exported to %1</source>
        <translation>Exportiert nach %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;New Preset</source>
        <translation>&amp;Neue Vorlage</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Rename</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Duplicate</source>
        <translation>Du&amp;plizieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Move &amp;Up</source>
        <translation>Nach &amp;oben</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Import Folder…</source>
        <translation>Ordner &amp;importieren …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Add Preset &amp;File…</source>
        <translation>Vorlagen&amp;datei hinzufügen …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Export…</source>
        <translation>&amp;Exportieren …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Try It</source>
        <translation>Ausp&amp;robieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>(nothing is left of the name)</source>
        <translation>(vom Namen bleibt nichts übrig)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>%1 (cannot be made)</source>
        <translation>%1 (kann nicht angelegt werden)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>(never comes to an end)</source>
        <translation>(kommt nie zu einem Ende)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>Preview of the names</source>
        <translation>Vorschau der Namen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemText.cpp"/>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemText.cpp"/>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemText.cpp"/>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemsPanel.cpp"/>
        <source>Problems</source>
        <translation>Probleme</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemsPanel.cpp"/>
        <source>1 p&amp;roblem</source>
        <translation>1 P&amp;roblem</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemsPanel.cpp"/>
        <source>%1 p&amp;roblems</source>
        <translation>%1 P&amp;robleme</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the label</source>
        <translation>die Bezeichnung</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the top folder&apos;s name</source>
        <translation>der Name des obersten Ordners</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the folders and files</source>
        <translation>die Ordner und Dateien</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the script</source>
        <translation>das Skript</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Another program holds the preferences. Your changes are saved as soon as it lets go.</source>
        <translation>Ein anderes Programm hält die Einstellungen fest. Ihre Änderungen werden gespeichert, sobald es sie freigibt.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Your changes are not saved. %1</source>
        <translation>Ihre Änderungen sind nicht gesichert. %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Try Aga&amp;in</source>
        <translation>Erne&amp;ut versuchen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Show in &amp;Folder</source>
        <translation>Im &amp;Ordner zeigen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Read A&amp;gain</source>
        <translation>&amp;Neu einlesen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>“%1” was deleted here and changed by another program.</source>
        <translation>„%1“ wurde hier gelöscht und von einem anderen Programm geändert.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>“%1” was changed here and deleted by another program.</source>
        <translation>„%1“ wurde hier geändert und von einem anderen Programm gelöscht.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>The presets were put into another order here and by another program.</source>
        <translation>Die Vorlagen wurden hier und von einem anderen Programm umgeordnet.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>A setting was changed here and by another program: %1.</source>
        <translation>Eine Einstellung wurde hier und von einem anderen Programm geändert: %1.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>In “%1”, %2 was changed here and by another program.</source>
        <translation>In „%1“ wurde Folgendes hier und von einem anderen Programm geändert: %2.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Here: “%1”. There: “%2”.</source>
        <translation>Hier: „%1“. Dort: „%2“.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Keep Mi&amp;ne</source>
        <translation>&amp;Meine behalten</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Take T&amp;heirs</source>
        <translation>Fremde überne&amp;hmen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Keep All Mine</source>
        <translation>Alle meine behalten</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>The program ended before it could save your last changes.</source>
        <translation>Das Programm endete, bevor es Ihre letzten Änderungen sichern konnte.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Restore Chan&amp;ges</source>
        <translation>Änderungen wiederher&amp;stellen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>&amp;Discard Them</source>
        <translation>Verwerfe&amp;n</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Re&amp;move from Preset</source>
        <translation>Aus der Vorlage &amp;entfernen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Make E&amp;xecutable</source>
        <translation>Ausführbar ma&amp;chen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Show &amp;Folder</source>
        <translation>Or&amp;dner anzeigen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Open the script in your editor</source>
        <translation>Öffnet das Skript in Ihrem Editor</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>New folders run no script; the file stays in the scripts folder</source>
        <translation>Neue Ordner führen kein Skript aus; die Datei bleibt im Skriptordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Make a folder with sample values in a temporary place and run the script on it</source>
        <translation>Legt mit Beispielwerten an einem temporären Ort einen Ordner an und führt das Skript damit aus</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Output of the script</source>
        <translation>Ausgabe des Skripts</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Script:</source>
        <translation>Skript:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Test:</source>
        <translation>Test:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>“%1” cannot be taken: %2</source>
        <translation>„%1“ kann nicht übernommen werden: %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Choose a Script</source>
        <translation>Skript wählen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>No program was found that opens “%1”.</source>
        <translation>Es wurde kein Programm gefunden, das „%1“ öffnet.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>None</source>
        <translation>Keines</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>There is no such file in the scripts folder. Choose it again, or remove it from the preset.</source>
        <translation>Diese Datei gibt es im Skriptordner nicht. Wählen Sie sie erneut oder entfernen Sie sie aus der Vorlage.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>The script is not executable, so it would not run.</source>
        <translation>Das Skript ist nicht ausführbar, es würde also nicht laufen.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>A name in this preset keeps every creation from ever ending, this test too.</source>
        <translation>Ein Name in dieser Vorlage lässt kein Anlegen je zu Ende kommen, auch diesen Test nicht.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Stopped after %1 s.</source>
        <translation>Nach %1 s angehalten.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Ended by signal %1 after %2 s.</source>
        <translation>Nach %2 s durch Signal %1 beendet.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status %1 after %2 s: the helper would report an error.</source>
        <translation>Rückgabewert %1 nach %2 s: Der Helfer würde einen Fehler melden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status 0 after %1 s, but the helper only waits for %2 s.</source>
        <translation>Rückgabewert 0 nach %1 s, aber der Helfer wartet nur %2 s.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status 0 after %1 s, but it writes more than %2 KiB: under the helper it would not come to its end.</source>
        <translation>Rückgabewert 0 nach %1 s, aber es schreibt mehr als %2 KiB: Unter dem Helfer käme es nicht zum Ende.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status 0 after %1 s.</source>
        <translation>Rückgabewert 0 nach %1 s.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>&amp;Stop</source>
        <translation>Anhal&amp;ten</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Te&amp;st Run</source>
        <translation>&amp;Testlauf</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Making a folder for the test…</source>
        <translation>Ordner für den Test wird angelegt …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Running for %1 s…</source>
        <translation>Läuft seit %1 s …</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>No temporary folder can be made: %1</source>
        <translation>Es kann kein temporärer Ordner angelegt werden: %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>The test cannot be started: the system allows no further thread.</source>
        <translation>Der Test kann nicht gestartet werden: Das System lässt keinen weiteren Thread zu.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>The script cannot be started: %1</source>
        <translation>Das Skript kann nicht gestartet werden: %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>The rest of the output is not shown.</source>
        <translation>Der Rest der Ausgabe wird nicht angezeigt.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>reading failed: %1</source>
        <translation>das Lesen schlug fehl: %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>line %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>the file is empty</source>
        <translation>die Datei ist leer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>this is no property list</source>
        <translation>das ist keine Property-Liste</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key works by %1 (%2).</source>
        <translation>Das Tastenkürzel funktioniert über %1 (%2).</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key works by %1.</source>
        <translation>Das Tastenkürzel funktioniert über %1.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key is asked of %1, which has yet to answer.</source>
        <translation>Das Tastenkürzel ist angefragt; %1 hat noch nicht geantwortet.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key does not work: by %1, another program has that combination.</source>
        <translation>Das Tastenkürzel funktioniert nicht: %1 meldet, dass ein anderes Programm diese Kombination hat.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key does not work: %1 knows no such key.</source>
        <translation>Das Tastenkürzel funktioniert nicht: %1 kennt keine solche Taste.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>%1 gives no hot key (%2).</source>
        <translation>%1 vergibt kein Tastenkürzel (%2).</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>%1 gives no hot key.</source>
        <translation>%1 vergibt kein Tastenkürzel.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>the desktop portal</source>
        <translation>das Desktop-Portal</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 works.</source>
        <translation>Das Tastenkürzel %1 funktioniert.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 does not work: another program has it. Choose another one, or bind a key to the command &apos;orvane menu&apos;.</source>
        <translation>Das Tastenkürzel %1 funktioniert nicht: Ein anderes Programm hat es. Wählen Sie ein anderes oder belegen Sie eine Taste mit dem Befehl „orvane menu“.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 does not work: this keyboard has no such key or modifier. Choose another one, or bind a key to the command &apos;orvane menu&apos;.</source>
        <translation>Das Tastenkürzel %1 funktioniert nicht: Diese Tastatur hat keine solche Taste oder Zusatztaste. Wählen Sie ein anderes oder belegen Sie eine Taste mit dem Befehl „orvane menu“.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 does not work (status %2). Choose another one, or bind a key to the command &apos;orvane menu&apos;.</source>
        <translation>Das Tastenkürzel %1 funktioniert nicht (Status %2). Wählen Sie ein anderes oder belegen Sie eine Taste mit dem Befehl „orvane menu“.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Orvane Settings</source>
        <translation>Orvane-Einstellungen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Sections</source>
        <translation>Bereiche</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Preset</source>
        <translation>&amp;Vorlage</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>What another program had changed is undone, too. Redo brings it back.</source>
        <translation>Was ein anderes Programm geändert hatte, ist jetzt auch rückgängig gemacht. „Wiederholen“ bringt es zurück.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>“%1” was added by another program and is taken away again. Redo brings it back.</source>
        <translation>„%1“, von einem anderen Programm hinzugefügt, ist jetzt wieder entfernt. „Wiederholen“ bringt die Vorlage zurück.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>%1 presets were added by another program and are taken away again. Redo brings them back.</source>
        <translation>%1 Vorlagen, von einem anderen Programm hinzugefügt, sind jetzt wieder entfernt. „Wiederholen“ bringt sie zurück.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Another program holds the preferences. This window closes as soon as your changes are saved. Close it once more to be offered them at the next start.</source>
        <translation>Ein anderes Programm hält die Einstellungen fest. Dieses Fenster schließt sich, sobald Ihre Änderungen gespeichert sind. Schließen Sie es noch einmal, um sie beim nächsten Start angeboten zu bekommen.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Your last changes can be stored nowhere. Close once more to give them up.</source>
        <translation>Ihre letzten Änderungen können nirgends gesichert werden. Schließen Sie noch einmal, um sie aufzugeben.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Changes by Another Program</source>
        <translation>Änderungen eines anderen Programms</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Presets</source>
        <translation>&amp;Vorlagen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Counters</source>
        <translation>&amp;Zähler</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;General</source>
        <translation>&amp;Allgemein</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Variables of &amp;all presets</source>
        <translation>Variablen a&amp;ller Vorlagen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>&amp;Make Variable</source>
        <translation>Variable anle&amp;gen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Sample</source>
        <translation>Beispiel</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Uses</source>
        <translation>Vorkommen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>F2 or a double click renames a variable wherever it is used.</source>
        <translation>F2 oder ein Doppelklick benennt eine Variable überall um, wo sie vorkommt.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>A text that stands in names, such as the client&apos;s name in a folder that was imported</source>
        <translation>Ein Text, der in Namen steht, etwa der Name des Auftraggebers in einem importierten Ordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Te&amp;xt in names:</source>
        <translation>Te&amp;xt in Namen:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>&amp;Becomes:</source>
        <translation>&amp;Wird zu:</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>“%1” is the variable “%2” now. Names that changed: %3</source>
        <translation>„%1“ ist jetzt die Variable „%2“. Geänderte Namen: %3</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>A variable cannot be called “%1”.</source>
        <translation>„%1“ kann keine Variable heißen.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>A text with a brace or a backslash cannot become a variable.</source>
        <translation>Ein Text mit geschweifter Klammer oder umgekehrtem Schrägstrich kann keine Variable werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>No name of this preset has the text “%1”.</source>
        <translation>Kein Name dieser Vorlage enthält den Text „%1“.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>%1: top folder</source>
        <translation>%1: oberster Ordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Top folder</source>
        <translation>Oberster Ordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Counts on by itself with each creation</source>
        <translation>Zählt bei jedem Anlegen von selbst weiter</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>There is a variable “%1” already; both would become one.</source>
        <translation>Es gibt schon eine Variable „%1“; beide würden zu einer.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/CounterList.cpp"/>
        <source>Change Counter</source>
        <translation>Zähler ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/GeneralSettings.cpp"/>
        <source>Show in Menu Bar</source>
        <translation>In der Menüleiste anzeigen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/GeneralSettings.cpp"/>
        <source>Hide from Menu Bar</source>
        <translation>Aus der Menüleiste ausblenden</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/GeneralSettings.cpp"/>
        <source>Change Shortcut</source>
        <translation>Tastenkürzel ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Duplicate Preset</source>
        <translation>Vorlage duplizieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Duplicate Presets</source>
        <translation>Vorlagen duplizieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Rename Preset</source>
        <translation>Vorlage umbenennen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Delete Preset</source>
        <translation>Vorlage löschen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Delete Presets</source>
        <translation>Vorlagen löschen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Move Preset</source>
        <translation>Vorlage verschieben</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Move Presets</source>
        <translation>Vorlagen verschieben</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Folder Name</source>
        <translation>Ordnernamen ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Script</source>
        <translation>Skript ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Duplicate Items</source>
        <translation>Objekte duplizieren</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Move Items</source>
        <translation>Objekte verschieben</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change to Folder</source>
        <translation>In Ordner umwandeln</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change to File</source>
        <translation>In Datei umwandeln</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Add Preset</source>
        <translation>Vorlage hinzufügen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Colour</source>
        <translation>Farbe ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Content File</source>
        <translation>Inhaltsdatei ändern</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences file cannot be read. It is left as it is.</source>
        <translation>Die Einstellungsdatei kann nicht gelesen werden. Sie bleibt, wie sie ist.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences hold something else than a list of presets. It is left as it is.</source>
        <translation>In den Einstellungen steht etwas anderes als eine Liste von Vorlagen. Es bleibt, wie es ist.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>Another program holds the preferences.</source>
        <translation>Ein anderes Programm hält die Einstellungen fest.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences cannot be written.</source>
        <translation>Die Einstellungen können nicht gespeichert werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences cannot hold the text &apos;%1&apos;.</source>
        <translation>Der Text „%1“ kann in den Einstellungen nicht gespeichert werden.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/VariableIndex.cpp"/>
        <source>Rename Variable</source>
        <translation>Variable umbenennen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/VariableMaking.cpp"/>
        <source>Make Variable</source>
        <translation>Variable anlegen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>it is a folder</source>
        <translation>es ist ein Ordner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>it is no ordinary file</source>
        <translation>es ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>its name cannot be used</source>
        <translation>der Name kann nicht verwendet werden</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>it is not an ordinary file</source>
        <translation>es ist keine gewöhnliche Datei</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>the preset is no dictionary</source>
        <translation>die Vorlage ist kein Wörterbuch</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/TrialCreation.cpp"/>
        <source>The folder for contents and scripts cannot be made.</source>
        <translation>Der Ordner für Inhalte und Skripte kann nicht angelegt werden.</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderImport.cpp"/>
        <source>%1: its contents are left out: %2</source>
        <translation>%1: der Inhalt wird ausgelassen: %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderImport.cpp"/>
        <source>the contents of %1 cannot be stored: %2</source>
        <translation>der Inhalt von %1 kann nicht gespeichert werden: %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderImport.cpp"/>
        <source>%1: a preset&apos;s top-level folder takes no label and no permissions of its own</source>
        <translation>%1: Der oberste Ordner einer Vorlage bekommt weder ein Etikett noch eigene Rechte</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>%1: left out: %2</source>
        <translation>%1: ausgelassen: %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a symbolic link</source>
        <translation>eine symbolische Verknüpfung</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a FIFO</source>
        <translation>eine FIFO</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a socket</source>
        <translation>ein Socket</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a device</source>
        <translation>ein Gerät</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>it holds more than 1,000,000 items</source>
        <translation>es enthält mehr als 1.000.000 Objekte</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>it was changed while it was read</source>
        <translation>es wurde während des Lesens geändert</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>%1: left out: its name is not UTF-8</source>
        <translation>%1: ausgelassen: der Name ist kein UTF-8</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>%1: left out: its name holds a character that XML cannot hold</source>
        <translation>%1: ausgelassen: der Name enthält ein Zeichen, das es in XML nicht gibt</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>it is larger than 1 GiB</source>
        <translation>sie ist größer als 1 GiB</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the content file &apos;%1&apos; is left out: %2</source>
        <translation>die Inhaltsdatei „%1“ wird ausgelassen: %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; is left out: %2</source>
        <translation>das Skript „%1“ wird ausgelassen: %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the content file &apos;%1&apos; is not used by the preset: left out</source>
        <translation>die Inhaltsdatei „%1“ wird von der Vorlage nicht verwendet: ausgelassen</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the content file &apos;%1&apos; cannot be stored: %2</source>
        <translation>die Inhaltsdatei „%1“ kann nicht gespeichert werden: %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the contents of &apos;%1&apos; are not in the file</source>
        <translation>der Inhalt von „%1“ fehlt in der Datei</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; is not the preset&apos;s: left out</source>
        <translation>das Skript „%1“ ist nicht das der Vorlage: ausgelassen</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; is not in the file</source>
        <translation>das Skript „%1“ fehlt in der Datei</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; cannot be stored: %2</source>
        <translation>das Skript „%1“ kann nicht gespeichert werden: %2</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>its ORVFileContents is no dictionary</source>
        <translation>ORVFileContents darin ist kein Wörterbuch</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>the content file &apos;%1&apos; in it has no data, or a mode that is none</source>
        <translation>die Inhaltsdatei „%1“ darin hat keine Daten oder ungültige Zugriffsrechte</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>the script in it has no name or no data</source>
        <translation>das Skript darin hat keinen Namen oder keine Daten</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>it is not a preset file</source>
        <translation>es ist keine Vorlagendatei</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>it was made by a later version of Orvane</source>
        <translation>sie stammt von einer neueren Version von Orvane</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>its version is not known</source>
        <translation>die Version ist unbekannt</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>the preset in it is no dictionary</source>
        <translation>die Vorlage darin ist kein Wörterbuch</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>names that look like variables need a variable in the preset: &apos;{%1}&apos; was added to the name of the top-level folder; leave it empty when you use the preset</source>
        <translation>Namen, die wie Variablen aussehen, brauchen eine Variable in der Vorlage: „{%1}“ wurde an den Namen des obersten Ordners angehängt; lassen Sie sie leer, wenn Sie die Vorlage verwenden</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>&apos;%1&apos; in &apos;%2&apos; stays as it is: a variable behind a backslash would not be found</source>
        <translation>„%1“ in „%2“ bleibt, wie es ist: Eine Variable hinter einem umgekehrten Schrägstrich würde nicht gefunden</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>&apos;%1&apos; cannot be given back exactly: it becomes &apos;%2&apos;</source>
        <translation>„%1“ lässt sich nicht genau wiedergeben: Es wird zu „%2“</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>&apos;%1&apos; is checked and opened as &apos;%2&apos;</source>
        <translation>„%1“ wird als „%2“ geprüft und geöffnet</translation>
    </message>
    <message>
        <location filename="../../HelperSource/ports/Sentence.cpp"/>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <location filename="../../HelperSource/main.cpp"/>
        <source>Make a folder from a preset</source>
        <translation>Ordner aus einer Vorlage anlegen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/wiring/MissingStatusBar.cpp"/>
        <source>Orvane has no icon on this desktop</source>
        <translation>Orvane hat in dieser Arbeitsumgebung kein Symbol</translation>
    </message>
    <message>
        <location filename="../../HelperSource/wiring/MissingStatusBar.cpp"/>
        <source>It is running all the same: its menu opens with the hot key, from the file manager&apos;s context menu, and with the command “orvane menu”.</source>
        <translation>Es läuft trotzdem: Das Menü öffnet sich mit dem Tastenkürzel, über das Kontextmenü der Dateiverwaltung und mit dem Befehl „orvane menu“.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtAlerts.cpp"/>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtAlerts.cpp"/>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtFolderNameView.cpp"/>
        <source>in %1</source>
        <translation>in %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtFolderNameView.cpp"/>
        <source>Folder name: %1</source>
        <translation>Name des Ordners: %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtProgressWindow.cpp"/>
        <source>Creating the new folder…</source>
        <translation>Der neue Ordner wird angelegt …</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtProgressWindow.cpp"/>
        <source>Items so far: %1</source>
        <translation>Objekte bisher: %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptCells.cpp"/>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>The folder’s name is blank.</source>
        <translation>Der Name des Ordners ist leer.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>An item of this name already exists.</source>
        <translation>Ein Objekt dieses Namens gibt es schon.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>The folder’s name is too long.</source>
        <translation>Der Name des Ordners ist zu lang.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>A folder cannot have this name.</source>
        <translation>So kann kein Ordner heißen.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>1 file or folder can be removed.</source>
        <translation>1 Datei oder Ordner kann entfernt werden.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>%1 files and folders can be removed.</source>
        <translation>%1 Dateien und Ordner können entfernt werden.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Changed since, and never removed:</source>
        <translation>Seitdem geändert, wird nie entfernt:</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>The folder “%1” was not finished.</source>
        <translation>Der Ordner „%1“ wurde nicht fertig angelegt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>%1 folders were not finished.</source>
        <translation>%1 Ordner wurden nicht fertig angelegt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Orvane was ended while it was making the folder. What it made can be removed again. What was changed since stays.</source>
        <translation>Orvane wurde beendet, während es den Ordner anlegte. Was es angelegt hat, kann wieder entfernt werden. Was seitdem geändert wurde, bleibt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Orvane was ended while it was making the folders. What it made can be removed again. What was changed since stays.</source>
        <translation>Orvane wurde beendet, während es die Ordner anlegte. Was es angelegt hat, kann wieder entfernt werden. Was seitdem geändert wurde, bleibt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>If you just close this window, you will be asked again at the next start.</source>
        <translation>Wenn Sie dieses Fenster nur schließen, werden Sie beim nächsten Start wieder gefragt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Nothing was removed.</source>
        <translation>Es wurde nichts entfernt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>1 file or folder was removed.</source>
        <translation>1 Datei oder Ordner wurde entfernt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>%1 files and folders were removed.</source>
        <translation>%1 Dateien und Ordner wurden entfernt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Changed since, and so still there with the folders around it:</source>
        <translation>Seitdem geändert und deshalb noch da, samt den Ordnern, in denen es liegt:</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Not everything could be removed from:</source>
        <translation>Hieraus konnte nicht alles entfernt werden:</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>This had been dealt with already.</source>
        <translation>Das war bereits erledigt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Orvane: Unfinished Folder</source>
        <translation>Orvane: Unfertiger Ordner</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>&amp;Keep</source>
        <translation>&amp;Behalten</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Everything stays as it is, and you will not be asked again.</source>
        <translation>Alles bleibt, wie es ist, und Sie werden nicht noch einmal gefragt.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>&amp;Remove What Was Made</source>
        <translation>Angelegtes &amp;entfernen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/wayland/ChooserPopUpMenus.cpp"/>
        <source>Orvane presets</source>
        <translation>Orvane-Vorlagen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/wayland/KGlobalAccelHotKeys.cpp"/>
        <source>Show the presets</source>
        <translation>Vorlagen anzeigen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/wayland/MenuPanel.cpp"/>
        <source>Type to search</source>
        <translation>Tippen, um zu suchen</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument.h"/>
        <source>Delete Items</source>
        <translation>Objekte löschen</translation>
    </message>
    <message>
        <location filename="../../resources/MainMenu.ui"/>
        <source>Preferences…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <location filename="../../resources/MainMenu.ui"/>
        <source>Quit Orvane</source>
        <translation>Orvane beenden</translation>
    </message>
    <message>
        <location filename="../../resources/PromptWindow.ui"/>
        <source>New Folder from Preset</source>
        <translation>Neuer Ordner aus Vorlage</translation>
    </message>
    <message>
        <location filename="../../resources/PromptWindow.ui"/>
        <source>Values of the variables</source>
        <translation>Werte der Variablen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>This desktop gives programs no hot keys of their own.</source>
        <translation>Dieser Desktop gibt Programmen keine eigenen Tastenkürzel.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>Bind a key to the command &apos;%1&apos;:</source>
        <translation>Belegen Sie eine Taste mit dem Befehl „%1“:</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>where your desktop&apos;s settings or your compositor&apos;s configuration name keys for commands.</source>
        <translation>dort, wo in den Einstellungen des Desktops oder der Konfiguration des Compositors Tasten für Befehle stehen.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>In Settings, Keyboard, View and Customize Shortcuts, Custom Shortcuts, add one with the command &apos;%1&apos;.</source>
        <translation>Fügen Sie in den Einstellungen unter Tastatur, Tastenkürzel anzeigen und anpassen, Eigene Tastenkürzel eines mit dem Befehl „%1“ hinzu.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>in System Settings, Shortcuts, Add Command.</source>
        <translation>in den Systemeinstellungen unter Kurzbefehle, Befehl hinzufügen.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>add this line to ~/.config/sway/config and reload:
  bindsym Ctrl+Shift+h exec %1</source>
        <translation>Fügen Sie diese Zeile in ~/.config/sway/config ein und laden Sie neu:
  bindsym Ctrl+Shift+h exec %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>add this line to ~/.config/hypr/hyprland.conf:
  bind = CTRL SHIFT, H, exec, %1</source>
        <translation>Fügen Sie diese Zeile in ~/.config/hypr/hyprland.conf ein:
  bind = CTRL SHIFT, H, exec, %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>add this to the section binds of ~/.config/niri/config.kdl:
  Ctrl+Shift+H { spawn-sh &quot;%1&quot;; }</source>
        <translation>Fügen Sie dies im Abschnitt binds von ~/.config/niri/config.kdl ein:
  Ctrl+Shift+H { spawn-sh &quot;%1&quot;; }</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>weston has no keys for commands; a launcher in its panel (section [launcher] of ~/.config/weston.ini, path=) can start it.</source>
        <translation>Weston hat keine Tasten für Befehle; ein Starter in seiner Leiste (Abschnitt [launcher] in ~/.config/weston.ini, path=) kann ihn ausführen.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a boolean</source>
        <translation>ein Wahrheitswert</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>an integer</source>
        <translation>eine ganze Zahl</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a real number</source>
        <translation>eine Kommazahl</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a date</source>
        <translation>ein Datum</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a UID</source>
        <translation>eine UID</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a string</source>
        <translation>ein Text</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>an array</source>
        <translation>eine Liste</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a set</source>
        <translation>eine Menge</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a dictionary</source>
        <translation>ein Wörterbuch</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>there is no content file &apos;%1&apos;: the file will be empty</source>
        <translation>es gibt keine Inhaltsdatei „%1“: Die Datei wird leer</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the content file &apos;%1&apos; is a link that leads nowhere: the file will be empty</source>
        <translation>die Inhaltsdatei „%1“ ist eine Verknüpfung, die nirgendwohin führt: Die Datei wird leer</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the content file &apos;%1&apos; is a link to a folder: the file will be empty</source>
        <translation>die Inhaltsdatei „%1“ ist eine Verknüpfung mit einem Ordner: Die Datei wird leer</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the content file &apos;%1&apos; is not readable, or no ordinary file: the file will be empty</source>
        <translation>die Inhaltsdatei „%1“ ist nicht lesbar oder keine gewöhnliche Datei: Die Datei wird leer</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>there is no script &apos;%1&apos;</source>
        <translation>es gibt kein Skript „%1“</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is a folder, not a script</source>
        <translation>„%1“ ist ein Ordner, kein Skript</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the script &apos;%1&apos; is not executable</source>
        <translation>das Skript „%1“ ist nicht ausführbar</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the script &apos;%1&apos; starts neither with an interpreter line (#!) nor as a program: most likely it cannot be run</source>
        <translation>das Skript „%1“ beginnt weder mit einer Interpreterzeile (#!) noch als Programm: Höchstwahrscheinlich kann es nicht laufen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the interpreter in the first line of the script &apos;%1&apos; is missing or not executable</source>
        <translation>der Interpreter in der ersten Zeile des Skripts „%1“ fehlt oder ist nicht ausführbar</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>is %1, not %2: it is read as &apos;%3&apos;</source>
        <translation>ist %1, nicht %2: Gelesen wird „%3“</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>is %1, not %2: it counts as absent</source>
        <translation>ist %1, nicht %2: Gilt als nicht vorhanden</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the preset is %1, not a dictionary</source>
        <translation>die Vorlage ist %1, kein Wörterbuch</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the tree has more than %1 items: it is not looked at any further</source>
        <translation>der Baum hat mehr als %1 Objekte: Weiter wird er nicht betrachtet</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the preset has no label: menus show the name of its folder</source>
        <translation>die Vorlage hat keine Bezeichnung: Menüs zeigen den Namen ihres Ordners</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the label is empty</source>
        <translation>die Bezeichnung ist leer</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>%1 presets have the label &apos;%2&apos;</source>
        <translation>%1 Vorlagen haben die Bezeichnung „%2“</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the top-level folder has no name</source>
        <translation>der oberste Ordner hat keinen Namen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; leads out of the scripts folder</source>
        <translation>„%1“ führt aus dem Skriptordner hinaus</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is a path, not a file name</source>
        <translation>„%1“ ist ein Pfad, kein Dateiname</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the key &apos;%1&apos; is not known and not used</source>
        <translation>der Schlüssel „%1“ ist nicht bekannt und wird nicht verwendet</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the top-level folder takes none: it is not used</source>
        <translation>beim obersten Ordner hat das keine Wirkung: Es wird nicht verwendet</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the item is %1, not a dictionary: the creation will fail</source>
        <translation>das Objekt ist %1, kein Wörterbuch: Das Anlegen wird scheitern</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name is empty: the creation will fail</source>
        <translation>der Name ist leer: Das Anlegen wird scheitern</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a file has no contents of its own: %1 items will not be made</source>
        <translation>eine Datei enthält keine anderen Objekte: %1 Objekte werden nicht angelegt</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is no label colour: no label will be set</source>
        <translation>„%1“ ist keine Etikettfarbe: Es wird kein Etikett gesetzt</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is not three digits long: permissions will not be set</source>
        <translation>„%1“ ist nicht drei Ziffern lang: Es werden keine Rechte gesetzt</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is not three octal digits: the mode will be %2</source>
        <translation>„%1“ sind keine drei Oktalziffern: Die Rechte werden %2 sein</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a folder takes no content file: &apos;%1&apos; is not used</source>
        <translation>ein Ordner hat keine Inhaltsdatei: „%1“ wird nicht verwendet</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; leads out of the content folder</source>
        <translation>„%1“ führt aus dem Ordner der Inhalte hinaus</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name &apos;%1&apos; ends in &quot;{&quot; without a backslash before it: looking for its variables never ends</source>
        <translation>der Name „%1“ endet auf „{“ ohne einen umgekehrten Schrägstrich davor: Die Suche nach seinen Variablen kommt nie zu einem Ende</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name &apos;%1&apos; ends in &quot;}&quot; with a backslash before it, behind an open &quot;{&quot;: looking for its variables never ends</source>
        <translation>der Name „%1“ endet nach einer offenen „{“ auf „}“ mit einem umgekehrten Schrägstrich davor: Die Suche nach seinen Variablen kommt nie zu einem Ende</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a &quot;{&quot; in &apos;%1&apos; has no closing &quot;}&quot;: it stays in the name</source>
        <translation>eine „{“ in „%1“ hat keine schließende „}“: Sie bleibt im Namen stehen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variable &apos;%1&apos; is asked for as &apos;%2&apos; and not replaced here: names of variables in file names may not hold &quot;:&quot; or &quot;/&quot;</source>
        <translation>die Variable „%1“ wird als „%2“ erfragt und hier nicht ersetzt: Namen von Variablen in Dateinamen dürfen weder „:“ noch „/“ enthalten</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the preset uses no variables: the backslash before a brace in &apos;%1&apos; stays in the name</source>
        <translation>die Vorlage verwendet keine Variablen: Der umgekehrte Schrägstrich vor einer Klammer in „%1“ bleibt im Namen stehen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>backslashes before braces in &apos;%1&apos; are taken away twice: the folder is made under another name than the one that is checked and opened</source>
        <translation>umgekehrte Schrägstriche vor Klammern in „%1“ werden zweimal entfernt: Der Ordner wird unter einem anderen Namen angelegt als dem, der geprüft und geöffnet wird</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is a variable of this preset: it is replaced here, too, in spite of the backslash</source>
        <translation>„%1“ ist eine Variable dieser Vorlage: Sie wird auch hier ersetzt, trotz des umgekehrten Schrägstrichs</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name is %1 bytes long without its variables: no name may be longer than 255</source>
        <translation>der Name ist ohne seine Variablen %1 Byte lang: Länger als 255 darf kein Name sein</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name is %1 bytes long: no name may be longer than 255</source>
        <translation>der Name ist %1 Byte lang: Länger als 255 darf kein Name sein</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>nothing can be named &apos;%1&apos;: the creation will fail</source>
        <translation>nichts kann „%1“ heißen: Das Anlegen wird scheitern</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name consists of blanks only</source>
        <translation>der Name besteht nur aus Leerzeichen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name holds a NUL character: the creation will fail</source>
        <translation>der Name enthält ein NUL-Zeichen: Das Anlegen wird scheitern</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name holds a control character, such as a line feed</source>
        <translation>der Name enthält ein Steuerzeichen, etwa einen Zeilenvorschub</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name holds half of a surrogate pair, which is no character: many programs cannot show such a name</source>
        <translation>der Name enthält die Hälfte eines Surrogatpaars, die kein Zeichen ist: Viele Programme können einen solchen Namen nicht anzeigen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&quot;:&quot; and &quot;/&quot; become &quot;_&quot;: the folder is made as &apos;%1&apos;, but checked and opened under the name as it stands</source>
        <translation>„:“ und „/“ werden zu „_“: Der Ordner wird als „%1“ angelegt, aber unter dem Namen geprüft und geöffnet, wie er dasteht</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&quot;:&quot; and &quot;/&quot; become &quot;_&quot;: the name will be &apos;%1&apos;</source>
        <translation>„:“ und „/“ werden zu „_“: Der Name wird „%1“</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2]: both become one folder</source>
        <translation>„%1“ ist auch der Name von children[%2]: Beide werden zu einem Ordner</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2], a folder that is copied: both become one folder, in which a file that both hold is empty</source>
        <translation>„%1“ ist auch der Name von children[%2], einem Ordner, der kopiert wird: Beide werden ein Ordner, in dem eine Datei, die beide enthalten, leer ist</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2]: the creation will fail</source>
        <translation>„%1“ ist auch der Name von children[%2]: Das Anlegen wird scheitern</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2]: they become one empty file</source>
        <translation>„%1“ ist auch der Name von children[%2]: Sie werden zu einer leeren Datei</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variables &apos;%1&apos; and &apos;%2&apos; differ only in case and are two; the script sees only the later one</source>
        <translation>die Variablen „%1“ und „%2“ unterscheiden sich nur in der Groß- und Kleinschreibung und sind zwei; das Skript sieht nur die spätere</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variables &apos;%1&apos; and &apos;%2&apos; differ only in case and are two</source>
        <translation>die Variablen „%1“ und „%2“ unterscheiden sich nur in der Groß- und Kleinschreibung und sind zwei</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variables &apos;%1&apos; and &apos;%2&apos; both reach the script as %3: it sees only the later one</source>
        <translation>die Variablen „%1“ und „%2“ erreichen das Skript beide als %3: Es sieht nur die spätere</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variable &apos;%1&apos; cannot reach the script: its name holds &quot;=&quot; or a NUL character</source>
        <translation>die Variable „%1“ kann das Skript nicht erreichen: Ihr Name enthält „=“ oder ein NUL-Zeichen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name differs only in case from that of children[%1]: some file systems take them for one</source>
        <translation>der Name unterscheidet sich nur in der Groß- und Kleinschreibung von dem von children[%1]: Manche Dateisysteme halten beide für einen</translation>
    </message>
</context>
</TS>
