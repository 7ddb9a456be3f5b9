<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>Orvane</name>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>(no label)</source>
        <translation>(sans libellé)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>none</source>
        <translation>aucun</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>empty</source>
        <translation>vide</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Counter</source>
        <translation>Compteur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Last value</source>
        <translation>Dernière valeur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Offered next</source>
        <translation>Prochaine proposition</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterTableModel.cpp"/>
        <source>Used by</source>
        <translation>Utilisé par</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterValueField.cpp"/>
        <source>Value of %1</source>
        <translation>Valeur de %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CounterValueField.cpp"/>
        <source>The preferences cannot hold one of these characters.</source>
        <translation>L’un de ces caractères ne peut pas être enregistré dans les préférences.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>&amp;Reset</source>
        <translation>&amp;Réinitialiser</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>De&amp;lete</source>
        <translation>Su&amp;pprimer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>&amp;Edit</source>
        <translation>Mod&amp;ifier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Variables whose names begin with “auto” count: each new folder is offered the number after the last one.</source>
        <translation>Les variables dont le nom commence par « auto » comptent : chaque nouveau dossier se voit proposer le nombre suivant.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Counters</source>
        <translation>Compteurs</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>No counters yet</source>
        <translation>Aucun compteur pour l’instant</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>A counter appears here when a folder was made from a preset with a variable such as {AutoJob}.</source>
        <translation>Un compteur apparaît ici dès qu’un dossier a été créé à partir d’un modèle avec une variable telle que {AutoJob}.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>The next folder is offered 0</source>
        <translation>0 sera proposé pour le prochain dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>The value typed for “%1” was not stored: it holds characters that the preferences cannot.</source>
        <translation>La valeur saisie pour « %1 » n’a pas été enregistrée : elle contient des caractères que les préférences n’acceptent pas.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Reset Counter</source>
        <translation>Réinitialiser le compteur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/CountersPage.cpp"/>
        <source>Delete Counter</source>
        <translation>Supprimer le compteur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/DraggedPresets.cpp"/>
        <source>The preset cannot be exported: %1</source>
        <translation>Le modèle ne peut pas être exporté : %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Import Folder</source>
        <translation>Importer un dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Files in “%1”: %2, with %3 MB in all.</source>
        <translation>Fichiers dans « %1 » : %2, en tout %3 Mo.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Files in “%1”: at least %2, with at least %3 MB in all.</source>
        <translation>Fichiers dans « %1 » : au moins %2, en tout au moins %3 Mo.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Their contents can be copied, so that new folders get them, too. With the names only, new files are empty.</source>
        <translation>Leur contenu peut être copié pour que les nouveaux dossiers l’obtiennent aussi. Avec les noms seuls, les nouveaux fichiers sont vides.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>Copy C&amp;ontents</source>
        <translation>Copier le c&amp;ontenu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/FolderContents.cpp"/>
        <source>&amp;Names Only</source>
        <translation>Noms &amp;seulement</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Show in the &amp;menu bar</source>
        <translation>Afficher dans la barre de men&amp;us</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Start &amp;at login</source>
        <translation>&amp;Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>&amp;Shortcut:</source>
        <translation>&amp;Raccourci :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Preset menu:</source>
        <translation>Menu des modèles :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>This could not be stored: the folder for programs that start at login cannot be written to.</source>
        <translation>Impossible d’enregistrer ce choix : le dossier des programmes lancés à l’ouverture de session n’est pas accessible en écriture.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Preferences:</source>
        <translation>Préférences :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Scripts:</source>
        <translation>Scripts :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>File contents:</source>
        <translation>Contenus de fichiers :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Show</source>
        <translation>Afficher</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Show %1</source>
        <translation>Afficher %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Open the folder in the file manager</source>
        <translation>Ouvre le dossier dans le gestionnaire de fichiers</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>The folder “%1” cannot be opened.</source>
        <translation>Le dossier « %1 » ne peut pas être ouvert.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>Log</source>
        <translation>Journal</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>&amp;Open Log</source>
        <translation>&amp;Ouvrir le journal</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>&amp;Log:</source>
        <translation>&amp;Journal :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>The log “%1” cannot be opened.</source>
        <translation>Le journal « %1 » ne peut pas être ouvert.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/GeneralPage.cpp"/>
        <source>The menu still comes up with the shortcut, with “orvane menu”, and in file managers.</source>
        <translation>Le menu reste accessible par le raccourci, par « orvane menu » et dans les gestionnaires de fichiers.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Remove the shortcut</source>
        <translation>Supprimer le raccourci</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>This key cannot be part of a shortcut. Press another one.</source>
        <translation>Cette touche ne peut pas faire partie d’un raccourci. Appuyez sur une autre.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Command to bind a key to</source>
        <translation>Commande à associer à une touche</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Hold down modifiers and press a key. Esc leaves everything as it is, Backspace removes the shortcut.</source>
        <translation>Maintenez des touches de modification et appuyez sur une touche. Échap laisse tout en l’état, Retour arrière supprime le raccourci.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>A shortcut needs at least one of the keys Super, Alt, Ctrl and Shift. Hold it down and press the other key.</source>
        <translation>Un raccourci a besoin d’au moins une des touches Super, Alt, Ctrl et Maj. Maintenez-la enfoncée et appuyez sur l’autre touche.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>With Shift alone, this key could not be typed any more. Hold down another modifier, too.</source>
        <translation>Avec Maj seule, cette touche ne permettrait plus d’écrire. Maintenez aussi une autre touche de modification.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>Another program has %1 (%2). Press another combination.</source>
        <translation>Un autre programme utilise %1 (%2). Appuyez sur une autre combinaison.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>This keyboard has no such key or modifier. Press another combination.</source>
        <translation>Ce clavier n’a pas l’une de ces touches. Appuyez sur une autre combinaison.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyField.cpp"/>
        <source>The desktop refuses this combination. Press another one.</source>
        <translation>L’environnement de bureau refuse cette combinaison. Appuyez sur une autre.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Click to record a shortcut</source>
        <translation>Cliquez pour enregistrer un raccourci</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Shortcut</source>
        <translation>Raccourci</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Press Space to record a shortcut, Delete to remove it.</source>
        <translation>Espace pour enregistrer un raccourci, Suppr pour le supprimer.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecorder.cpp"/>
        <source>Press the keys…</source>
        <translation>Appuyez sur les touches…</translation>
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
        <translation>Ctrl</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/HotKeyRecording.cpp"/>
        <source>Shift</source>
        <translation>Maj</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>No Label</source>
        <translation>Sans étiquette</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Red</source>
        <translation>Rouge</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Orange</source>
        <translation>Orange</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Yellow</source>
        <translation>Jaune</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Green</source>
        <translation>Vert</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Blue</source>
        <translation>Bleu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Purple</source>
        <translation>Violet</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Icons.cpp"/>
        <source>Gray</source>
        <translation>Gris</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Kind</source>
        <translation>Type</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Folder</source>
        <translation>Dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Permissions as three octal digits</source>
        <translation>Droits en trois chiffres octaux</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>as usual</source>
        <translation>par défaut</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Three octal digits, such as 755; empty for what a new item gets anyway</source>
        <translation>Trois chiffres octaux, par exemple 755 ; vide pour les droits habituels d’un nouvel élément</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>differ</source>
        <translation>différents</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Content file</source>
        <translation>Fichier de contenu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>empty file</source>
        <translation>fichier vide</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>&amp;Choose…</source>
        <translation>C&amp;hoisir…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Copies a file to Orvane&apos;s content files, from where each new file gets its contents</source>
        <translation>Copie un fichier parmi les contenus d’Orvane, d’où chaque nouveau fichier tire le sien</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>%1 cannot be opened.</source>
        <translation>%1 ne peut pas être ouvert.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>several files</source>
        <translation>plusieurs fichiers</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Choose Content File</source>
        <translation>Choisir un fichier de contenu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>%1 cannot be used: %2</source>
        <translation>%1 ne peut pas être utilisé : %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Owner</source>
        <translation>Propriétaire</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Group</source>
        <translation>Groupe</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Others</source>
        <translation>Autres</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Read</source>
        <translation>Lire</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Write</source>
        <translation>Écrire</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Execute</source>
        <translation>Exécuter</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>&amp;Kind:</source>
        <translation>&amp;Type :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Label col&amp;our:</source>
        <translation>&amp;Couleur d’étiquette :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Per&amp;missions:</source>
        <translation>&amp;Droits :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Content &amp;file:</source>
        <translation>Fichier de conten&amp;u :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Open the content file</source>
        <translation>Ouvrir le fichier de contenu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>No content file</source>
        <translation>Aucun fichier de contenu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ItemPanel.cpp"/>
        <source>Change Permissions</source>
        <translation>Modifier les droits</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/LogView.cpp"/>
        <source>Nothing has been logged yet.</source>
        <translation>Rien n’a encore été consigné.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/MessageBar.cpp"/>
        <source>Close message</source>
        <translation>Fermer le message</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/NodeDelegate.cpp"/>
        <source>(no name)</source>
        <translation>(sans nom)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/NodeDelegate.cpp"/>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/NodeDelegate.cpp"/>
        <source>Permissions</source>
        <translation>Droits</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PathLabel.cpp"/>
        <source>&amp;Copy Path</source>
        <translation>&amp;Copier le chemin</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Label of the preset</source>
        <translation>Libellé du modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Name of the top folder</source>
        <translation>Nom du dossier principal</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>What stands in braces, as in {Title}, is asked for each time; names that begin with Auto count on by themselves</source>
        <translation>Ce qui est entre accolades, comme dans {Title}, est demandé à chaque fois ; les noms qui commencent par Auto comptent d’eux-mêmes</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>&amp;Label:</source>
        <translation>&amp;Libellé :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>&amp;Top folder:</source>
        <translation>Dossier &amp;principal :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Tr&amp;y It</source>
        <translation>Essa&amp;yer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Makes the preset in a temporary folder with the sample values and opens it. The script is not run and no counter counts on; the folder goes when this program ends.</source>
        <translation>Crée le modèle dans un dossier temporaire avec les valeurs d’exemple et l’ouvre. Le script n’est pas exécuté et aucun compteur n’avance ; le dossier disparaît à la fin de ce programme.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>About the preset</source>
        <translation>À propos du modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Item</source>
        <translation>Élément</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Variables</source>
        <translation>Variables</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Script</source>
        <translation>Script</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Gives: %1</source>
        <translation>Donne : %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>Made for a look: %1</source>
        <translation>Créé pour essai : %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetEditor.cpp"/>
        <source>The preset cannot be made: %1</source>
        <translation>Le modèle ne peut pas être créé : %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetListModel.cpp"/>
        <source>The preferences cannot hold this text.</source>
        <translation>Ce texte ne peut pas être enregistré dans les préférences.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel.cpp"/>
        <source>Permissions as usual</source>
        <translation>Droits par défaut</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel.cpp"/>
        <source>Label</source>
        <translation>Étiquette</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel.cpp"/>
        <source>Content</source>
        <translation>Contenu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>%1 cannot be added: %2</source>
        <translation>%1 ne peut pas être ajouté : %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>Nothing was added: the folder for it is no longer there.</source>
        <translation>Rien n’a été ajouté : le dossier prévu n’existe plus.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>Add Files</source>
        <translation>Ajouter des fichiers</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeModel_drops.cpp"/>
        <source>Paste</source>
        <translation>Coller</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Folders and files of the preset</source>
        <translation>Dossiers et fichiers du modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Label</source>
        <translation>É&amp;tiquette</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New Folder</source>
        <translation>Nouveau dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New File</source>
        <translation>Nouveau fichier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>The clipboard holds nothing that can be pasted here.</source>
        <translation>Le presse-papiers ne contient rien qui puisse être collé ici.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Chan&amp;ge to File</source>
        <translation>Chan&amp;ger en fichier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Chan&amp;ge to Folder</source>
        <translation>Chan&amp;ger en dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Nothing in here yet.
Press Return to add a folder, or drop files and folders here.</source>
        <translation>Il n’y a encore rien ici.
Appuyez sur Entrée pour ajouter un dossier, ou déposez ici des fichiers et des dossiers.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New &amp;Folder</source>
        <translation>Nouveau &amp;dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>New F&amp;ile</source>
        <translation>Nouveau &amp;fichier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Add Files…</source>
        <translation>&amp;Ajouter des fichiers…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Rena&amp;me</source>
        <translation>Reno&amp;mmer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Paste</source>
        <translation>Co&amp;ller</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Duplicat&amp;e</source>
        <translation>Dupli&amp;quer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>&amp;Delete</source>
        <translation>Su&amp;pprimer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Mo&amp;ve Up</source>
        <translation>M&amp;onter</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Move Do&amp;wn</source>
        <translation>De&amp;scendre</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Move &amp;Out of Its Folder</source>
        <translation>Sort&amp;ir de son dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetTreeView.cpp"/>
        <source>Move I&amp;nto the Folder Above</source>
        <translation>&amp;Entrer dans le dossier au-dessus</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Add Fro&amp;m</source>
        <translation>Ajouter à p&amp;artir de</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Presets</source>
        <translation>Modèles</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Add from…</source>
        <translation>Ajouter à partir de…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>No preset is chosen</source>
        <translation>Aucun modèle choisi</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>A preset is a folder with everything in it, made again whenever you need it. Begin with an empty one, with one that is ready made, or with a folder that you have.</source>
        <translation>Un modèle est un dossier avec tout son contenu, recréé chaque fois que vous en avez besoin. Commencez par un modèle vide, par un modèle prêt à l’emploi ou par un dossier que vous avez déjà.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>Ne&amp;w Preset</source>
        <translation>Nou&amp;veau modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>&amp;Ready-Made Presets</source>
        <translation>Modèles &amp;prêts à l’emploi</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>I&amp;mport Folder…</source>
        <translation>Impor&amp;ter un dossier…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>The presets cannot be shown</source>
        <translation>Les modèles ne peuvent pas être affichés</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>There are no presets yet</source>
        <translation>Il n’y a pas encore de modèles</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage.cpp"/>
        <source>%1 presets are chosen</source>
        <translation>%1 modèles choisis</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>New Preset</source>
        <translation>Nouveau modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>{Name}</source>
        <translation>{Nom}</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Add Preset File</source>
        <translation>Ajouter un fichier de modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Orvane presets (*.orvpreset);;All files (*)</source>
        <translation>Modèles Orvane (*.orvpreset);;Tous les fichiers (*)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>“%1” brings a script along, “%2”, which will run after each creation.</source>
        <translation>« %1 » apporte un script, « %2 », qui sera exécuté après chaque création.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Export Preset</source>
        <translation>Exporter le modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Orvane presets (*.orvpreset)</source>
        <translation>Modèles Orvane (*.orvpreset)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Exported to %1</source>
        <translation>Exporté dans %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;New Preset</source>
        <translation>&amp;Nouveau modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Rename</source>
        <translation>&amp;Renommer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Duplicate</source>
        <translation>&amp;Dupliquer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Move &amp;Up</source>
        <translation>&amp;Monter</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Import Folder…</source>
        <translation>&amp;Importer un dossier…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>Add Preset &amp;File…</source>
        <translation>Ajouter un &amp;fichier de modèle…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Export…</source>
        <translation>E&amp;xporter…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PresetsPage_actions.cpp"/>
        <source>&amp;Try It</source>
        <translation>Essa&amp;yer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>(nothing is left of the name)</source>
        <translation>(il ne reste rien du nom)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>%1 (cannot be made)</source>
        <translation>%1 (ne peut pas être créé)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>(never comes to an end)</source>
        <translation>(n’aboutit jamais)</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/PreviewPanel.cpp"/>
        <source>Preview of the names</source>
        <translation>Aperçu des noms</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemText.cpp"/>
        <source>Note</source>
        <translation>Remarque</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemText.cpp"/>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemText.cpp"/>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemsPanel.cpp"/>
        <source>Problems</source>
        <translation>Problèmes</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemsPanel.cpp"/>
        <source>1 p&amp;roblem</source>
        <translation>1 p&amp;roblème</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ProblemsPanel.cpp"/>
        <source>%1 p&amp;roblems</source>
        <translation>%1 p&amp;roblèmes</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the label</source>
        <translation>le libellé</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the top folder&apos;s name</source>
        <translation>le nom du dossier principal</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the folders and files</source>
        <translation>les dossiers et fichiers</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>the script</source>
        <translation>le script</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Another program holds the preferences. Your changes are saved as soon as it lets go.</source>
        <translation>Un autre programme retient les préférences. Vos modifications seront enregistrées dès qu’il les libère.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Your changes are not saved. %1</source>
        <translation>Vos modifications ne sont pas enregistrées. %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Try Aga&amp;in</source>
        <translation>Rées&amp;sayer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Show in &amp;Folder</source>
        <translation>Afficher dans le &amp;dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Read A&amp;gain</source>
        <translation>R&amp;elire</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>“%1” was deleted here and changed by another program.</source>
        <translation>« %1 » a été supprimé ici et modifié par un autre programme.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>“%1” was changed here and deleted by another program.</source>
        <translation>« %1 » a été modifié ici et supprimé par un autre programme.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>The presets were put into another order here and by another program.</source>
        <translation>Les modèles ont été réordonnés ici et par un autre programme.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>A setting was changed here and by another program: %1.</source>
        <translation>Un réglage a été modifié ici et par un autre programme : %1.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>In “%1”, %2 was changed here and by another program.</source>
        <translation>Dans « %1 », ceci a été modifié ici et par un autre programme : %2.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Here: “%1”. There: “%2”.</source>
        <translation>Ici : « %1 ». Là-bas : « %2 ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Keep Mi&amp;ne</source>
        <translation>&amp;Garder les miens</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Take T&amp;heirs</source>
        <translation>Pre&amp;ndre les leurs</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Keep All Mine</source>
        <translation>Garder tous les miens</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>%1 of %2</source>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>The program ended before it could save your last changes.</source>
        <translation>Le programme s’est terminé avant d’avoir pu enregistrer vos dernières modifications.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>Restore Chan&amp;ges</source>
        <translation>Restaurer les modi&amp;fications</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Saving.cpp"/>
        <source>&amp;Discard Them</source>
        <translation>A&amp;bandonner</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>&amp;Open</source>
        <translation>&amp;Ouvrir</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Re&amp;move from Preset</source>
        <translation>R&amp;etirer du modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Make E&amp;xecutable</source>
        <translation>Rendre e&amp;xécutable</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Show &amp;Folder</source>
        <translation>Afficher le &amp;dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Open the script in your editor</source>
        <translation>Ouvre le script dans votre éditeur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>New folders run no script; the file stays in the scripts folder</source>
        <translation>Les nouveaux dossiers n’exécutent aucun script ; le fichier reste dans le dossier des scripts</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Make a folder with sample values in a temporary place and run the script on it</source>
        <translation>Crée un dossier avec des valeurs d’exemple dans un emplacement temporaire et y exécute le script</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Output of the script</source>
        <translation>Sortie du script</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Script:</source>
        <translation>Script :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Test:</source>
        <translation>Test :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>“%1” cannot be taken: %2</source>
        <translation>« %1 » ne peut pas être repris : %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Choose a Script</source>
        <translation>Choisir un script</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>No program was found that opens “%1”.</source>
        <translation>Aucun programme n’a été trouvé pour ouvrir « %1 ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>None</source>
        <translation>Aucun</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>There is no such file in the scripts folder. Choose it again, or remove it from the preset.</source>
        <translation>Ce fichier n’existe pas dans le dossier des scripts. Choisissez-le de nouveau ou retirez-le du modèle.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>The script is not executable, so it would not run.</source>
        <translation>Le script n’est pas exécutable : il ne serait pas lancé.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>A name in this preset keeps every creation from ever ending, this test too.</source>
        <translation>Un nom de ce modèle empêche toute création d’aboutir, ce test compris.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Stopped after %1 s.</source>
        <translation>Arrêté après %1 s.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Ended by signal %1 after %2 s.</source>
        <translation>Terminé par le signal %1 après %2 s.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status %1 after %2 s: the helper would report an error.</source>
        <translation>Code de retour %1 après %2 s : l’assistant signalerait une erreur.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status 0 after %1 s, but the helper only waits for %2 s.</source>
        <translation>Code de retour 0 après %1 s, mais l’assistant n’attend que %2 s.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status 0 after %1 s, but it writes more than %2 KiB: under the helper it would not come to its end.</source>
        <translation>Code de retour 0 après %1 s, mais il écrit plus de %2 Kio : sous l’assistant, il n’irait pas jusqu’au bout.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Exit status 0 after %1 s.</source>
        <translation>Code de retour 0 après %1 s.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>&amp;Stop</source>
        <translation>Arrê&amp;ter</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Te&amp;st Run</source>
        <translation>&amp;Tester</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Making a folder for the test…</source>
        <translation>Création d’un dossier pour le test…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptPanel.cpp"/>
        <source>Running for %1 s…</source>
        <translation>En cours depuis %1 s…</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>No temporary folder can be made: %1</source>
        <translation>Impossible de créer un dossier temporaire : %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>The test cannot be started: the system allows no further thread.</source>
        <translation>Le test ne peut pas être lancé : le système n’autorise aucun thread supplémentaire.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>The script cannot be started: %1</source>
        <translation>Le script ne peut pas être lancé : %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/ScriptTrial.cpp"/>
        <source>The rest of the output is not shown.</source>
        <translation>Le reste de la sortie n’est pas affiché.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>reading failed: %1</source>
        <translation>échec de la lecture : %1</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>line %1: %2</source>
        <translation>ligne %1 : %2</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>the file is empty</source>
        <translation>le fichier est vide</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>this is no property list</source>
        <translation>ce n’est pas une liste de propriétés</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key works by %1 (%2).</source>
        <translation>Le raccourci fonctionne par %1 (%2).</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key works by %1.</source>
        <translation>Le raccourci fonctionne par %1.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key is asked of %1, which has yet to answer.</source>
        <translation>Le raccourci est demandé ; %1 n’a pas encore répondu.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key does not work: by %1, another program has that combination.</source>
        <translation>Le raccourci ne fonctionne pas : selon %1, un autre programme a cette combinaison.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key does not work: %1 knows no such key.</source>
        <translation>Le raccourci ne fonctionne pas : %1 ne connaît pas cette touche.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>%1 gives no hot key (%2).</source>
        <translation>%1 ne donne pas de raccourci (%2).</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>%1 gives no hot key.</source>
        <translation>%1 ne donne pas de raccourci.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>the desktop portal</source>
        <translation>le portail du bureau</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 works.</source>
        <translation>Le raccourci %1 fonctionne.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 does not work: another program has it. Choose another one, or bind a key to the command &apos;orvane menu&apos;.</source>
        <translation>Le raccourci %1 ne fonctionne pas : un autre programme l’a déjà. Choisissez-en un autre, ou associez une touche à la commande « orvane menu ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 does not work: this keyboard has no such key or modifier. Choose another one, or bind a key to the command &apos;orvane menu&apos;.</source>
        <translation>Le raccourci %1 ne fonctionne pas : ce clavier n’a pas cette touche ou ce modificateur. Choisissez-en un autre, ou associez une touche à la commande « orvane menu ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/Sentences.cpp"/>
        <source>The hot key %1 does not work (status %2). Choose another one, or bind a key to the command &apos;orvane menu&apos;.</source>
        <translation>Le raccourci %1 ne fonctionne pas (état %2). Choisissez-en un autre, ou associez une touche à la commande « orvane menu ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Orvane Settings</source>
        <translation>Réglages d’Orvane</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Sections</source>
        <translation>Sections</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Undo</source>
        <translation>A&amp;nnuler</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Preset</source>
        <translation>&amp;Modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Close</source>
        <translation>F&amp;ermer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>What another program had changed is undone, too. Redo brings it back.</source>
        <translation>Ce qu’un autre programme avait modifié est annulé aussi. « Rétablir » le ramène.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>“%1” was added by another program and is taken away again. Redo brings it back.</source>
        <translation>« %1 », ajouté par un autre programme, est retiré. « Rétablir » le ramène.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>%1 presets were added by another program and are taken away again. Redo brings them back.</source>
        <translation>%1 modèles ajoutés par un autre programme sont retirés. « Rétablir » les ramène.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Another program holds the preferences. This window closes as soon as your changes are saved. Close it once more to be offered them at the next start.</source>
        <translation>Un autre programme retient les préférences. Cette fenêtre se ferme dès que vos modifications sont enregistrées. Fermez-la encore une fois pour qu’elles vous soient proposées au prochain démarrage.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Your last changes can be stored nowhere. Close once more to give them up.</source>
        <translation>Vos dernières modifications ne peuvent être enregistrées nulle part. Fermez encore une fois pour y renoncer.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>Changes by Another Program</source>
        <translation>Modifications par un autre programme</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Presets</source>
        <translation>&amp;Modèles</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;Counters</source>
        <translation>&amp;Compteurs</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/SettingsWindow.cpp"/>
        <source>&amp;General</source>
        <translation>&amp;Général</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Variables of &amp;all presets</source>
        <translation>Variables de &amp;tous les modèles</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>&amp;Make Variable</source>
        <translation>&amp;Créer la variable</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Sample</source>
        <translation>Exemple</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Uses</source>
        <translation>Emplois</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>F2 or a double click renames a variable wherever it is used.</source>
        <translation>F2 ou un double clic renomme une variable partout où elle est employée.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>A text that stands in names, such as the client&apos;s name in a folder that was imported</source>
        <translation>Un texte présent dans des noms, par exemple le nom du client dans un dossier importé</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Te&amp;xt in names:</source>
        <translation>Te&amp;xte dans les noms :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>&amp;Becomes:</source>
        <translation>D&amp;evient :</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>“%1” is the variable “%2” now. Names that changed: %3</source>
        <translation>« %1 » est maintenant la variable « %2 ». Noms modifiés : %3</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>A variable cannot be called “%1”.</source>
        <translation>Une variable ne peut pas s’appeler « %1 ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>A text with a brace or a backslash cannot become a variable.</source>
        <translation>Un texte contenant une accolade ou une barre oblique inverse ne peut pas devenir une variable.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>No name of this preset has the text “%1”.</source>
        <translation>Aucun nom de ce modèle ne contient le texte « %1 ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>%1: top folder</source>
        <translation>%1 : dossier principal</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Top folder</source>
        <translation>Dossier principal</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>Counts on by itself with each creation</source>
        <translation>Avance d’elle-même à chaque création</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/window/VariablesPanel.cpp"/>
        <source>There is a variable “%1” already; both would become one.</source>
        <translation>Il y a déjà une variable « %1 » ; les deux n’en feraient plus qu’une.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/CounterList.cpp"/>
        <source>Change Counter</source>
        <translation>Modifier le compteur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/GeneralSettings.cpp"/>
        <source>Show in Menu Bar</source>
        <translation>Afficher dans la barre de menus</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/GeneralSettings.cpp"/>
        <source>Hide from Menu Bar</source>
        <translation>Masquer de la barre de menus</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/GeneralSettings.cpp"/>
        <source>Change Shortcut</source>
        <translation>Modifier le raccourci</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Duplicate Preset</source>
        <translation>Dupliquer le modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Duplicate Presets</source>
        <translation>Dupliquer les modèles</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Rename Preset</source>
        <translation>Renommer le modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Delete Preset</source>
        <translation>Supprimer le modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Delete Presets</source>
        <translation>Supprimer les modèles</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Move Preset</source>
        <translation>Déplacer le modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Move Presets</source>
        <translation>Déplacer les modèles</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Folder Name</source>
        <translation>Modifier le nom du dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Script</source>
        <translation>Changer de script</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Duplicate Items</source>
        <translation>Dupliquer les éléments</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Move Items</source>
        <translation>Déplacer les éléments</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Rename</source>
        <translation>Renommer</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change to Folder</source>
        <translation>Changer en dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change to File</source>
        <translation>Changer en fichier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change</source>
        <translation>Modifier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Add Preset</source>
        <translation>Ajouter un modèle</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Colour</source>
        <translation>Changer de couleur</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument_edits.cpp"/>
        <source>Change Content File</source>
        <translation>Changer de fichier de contenu</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences file cannot be read. It is left as it is.</source>
        <translation>Le fichier des préférences ne peut pas être lu. Il reste tel quel.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences hold something else than a list of presets. It is left as it is.</source>
        <translation>Les préférences contiennent autre chose qu’une liste de modèles. Elles restent telles quelles.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>Another program holds the preferences.</source>
        <translation>Un autre programme retient les préférences.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences cannot be written.</source>
        <translation>Les préférences ne peuvent pas être enregistrées.</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/SettingsStore.cpp"/>
        <source>The preferences cannot hold the text &apos;%1&apos;.</source>
        <translation>Les préférences ne peuvent pas contenir le texte « %1 ».</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/VariableIndex.cpp"/>
        <source>Rename Variable</source>
        <translation>Renommer la variable</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/VariableMaking.cpp"/>
        <source>Make Variable</source>
        <translation>Créer une variable</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>it is a folder</source>
        <translation>c’est un dossier</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>it is no ordinary file</source>
        <translation>ce n’est pas un fichier ordinaire</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>its name cannot be used</source>
        <translation>son nom ne peut pas être utilisé</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>it is not an ordinary file</source>
        <translation>ce n’est pas un fichier ordinaire</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/PosixSupportFolder.cpp"/>
        <source>the preset is no dictionary</source>
        <translation>le modèle n’est pas un dictionnaire</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/platform/TrialCreation.cpp"/>
        <source>The folder for contents and scripts cannot be made.</source>
        <translation>Le dossier des contenus et des scripts ne peut pas être créé.</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderImport.cpp"/>
        <source>%1: its contents are left out: %2</source>
        <translation>%1 : son contenu est laissé de côté : %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderImport.cpp"/>
        <source>the contents of %1 cannot be stored: %2</source>
        <translation>le contenu de %1 ne peut pas être enregistré : %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderImport.cpp"/>
        <source>%1: a preset&apos;s top-level folder takes no label and no permissions of its own</source>
        <translation>%1 : le dossier principal d’un modèle ne prend ni étiquette ni droits propres</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>%1: left out: %2</source>
        <translation>%1 : laissé de côté : %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a symbolic link</source>
        <translation>un lien symbolique</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a FIFO</source>
        <translation>une FIFO</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a socket</source>
        <translation>un socket</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>a device</source>
        <translation>un périphérique</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>it holds more than 1,000,000 items</source>
        <translation>il contient plus de 1 000 000 d’éléments</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>it was changed while it was read</source>
        <translation>il a été modifié pendant la lecture</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>%1: left out: its name is not UTF-8</source>
        <translation>%1 : laissé de côté : son nom n’est pas en UTF-8</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/FolderWalk.cpp"/>
        <source>%1: left out: its name holds a character that XML cannot hold</source>
        <translation>%1 : laissé de côté : son nom contient un caractère que XML ne peut pas contenir</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>it is larger than 1 GiB</source>
        <translation>il dépasse 1 Gio</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the content file &apos;%1&apos; is left out: %2</source>
        <translation>le fichier de contenu « %1 » est laissé de côté : %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; is left out: %2</source>
        <translation>le script « %1 » est laissé de côté : %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the content file &apos;%1&apos; is not used by the preset: left out</source>
        <translation>le fichier de contenu « %1 » n’est pas utilisé par le modèle : laissé de côté</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the content file &apos;%1&apos; cannot be stored: %2</source>
        <translation>le fichier de contenu « %1 » ne peut pas être enregistré : %2</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the contents of &apos;%1&apos; are not in the file</source>
        <translation>le contenu de « %1 » ne se trouve pas dans le fichier</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; is not the preset&apos;s: left out</source>
        <translation>le script « %1 » n’est pas celui du modèle : laissé de côté</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; is not in the file</source>
        <translation>le script « %1 » ne se trouve pas dans le fichier</translation>
    </message>
    <message>
        <location filename="../../PresetFiles/PresetPacking.cpp"/>
        <source>the script &apos;%1&apos; cannot be stored: %2</source>
        <translation>le script « %1 » ne peut pas être enregistré : %2</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>its ORVFileContents is no dictionary</source>
        <translation>son ORVFileContents n’est pas un dictionnaire</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>the content file &apos;%1&apos; in it has no data, or a mode that is none</source>
        <translation>le fichier de contenu « %1 » qu’il contient est sans données, ou a des droits non valables</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>the script in it has no name or no data</source>
        <translation>le script qu’il contient est sans nom ou sans données</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>it is not a preset file</source>
        <translation>ce n’est pas un fichier de modèle</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>it was made by a later version of Orvane</source>
        <translation>il vient d’une version plus récente d’Orvane</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>its version is not known</source>
        <translation>sa version est inconnue</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetFile.cpp"/>
        <source>the preset in it is no dictionary</source>
        <translation>le modèle qu’il contient n’est pas un dictionnaire</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>names that look like variables need a variable in the preset: &apos;{%1}&apos; was added to the name of the top-level folder; leave it empty when you use the preset</source>
        <translation>les noms qui ressemblent à des variables exigent une variable dans le modèle : « {%1} » a été ajouté au nom du dossier principal ; laissez-la vide quand vous utilisez le modèle</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>&apos;%1&apos; in &apos;%2&apos; stays as it is: a variable behind a backslash would not be found</source>
        <translation>« %1 » dans « %2 » reste tel quel : une variable derrière une barre oblique inverse ne serait pas trouvée</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>&apos;%1&apos; cannot be given back exactly: it becomes &apos;%2&apos;</source>
        <translation>« %1 » ne peut pas être rendu exactement : il devient « %2 »</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVImportedNames.cpp"/>
        <source>&apos;%1&apos; is checked and opened as &apos;%2&apos;</source>
        <translation>« %1 » est vérifié et ouvert sous le nom « %2 »</translation>
    </message>
    <message>
        <location filename="../../HelperSource/ports/Sentence.cpp"/>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <location filename="../../HelperSource/main.cpp"/>
        <source>Make a folder from a preset</source>
        <translation>Créer un dossier à partir d’un modèle</translation>
    </message>
    <message>
        <location filename="../../HelperSource/wiring/MissingStatusBar.cpp"/>
        <source>Orvane has no icon on this desktop</source>
        <translation>Orvane n’a pas d’icône sur ce bureau</translation>
    </message>
    <message>
        <location filename="../../HelperSource/wiring/MissingStatusBar.cpp"/>
        <source>It is running all the same: its menu opens with the hot key, from the file manager&apos;s context menu, and with the command “orvane menu”.</source>
        <translation>Il fonctionne quand même : son menu s’ouvre avec le raccourci clavier, depuis le menu contextuel du gestionnaire de fichiers et avec la commande « orvane menu ».</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtAlerts.cpp"/>
        <source>Message</source>
        <translation>Message</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtAlerts.cpp"/>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtFolderNameView.cpp"/>
        <source>in %1</source>
        <translation>dans %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtFolderNameView.cpp"/>
        <source>Folder name: %1</source>
        <translation>Nom du dossier : %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtProgressWindow.cpp"/>
        <source>Creating the new folder…</source>
        <translation>Création du nouveau dossier…</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtProgressWindow.cpp"/>
        <source>Items so far: %1</source>
        <translation>Éléments créés : %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptCells.cpp"/>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>The folder’s name is blank.</source>
        <translation>Le nom du dossier est vide.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>An item of this name already exists.</source>
        <translation>Un élément de ce nom existe déjà.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>The folder’s name is too long.</source>
        <translation>Le nom du dossier est trop long.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtPromptWindow.cpp"/>
        <source>A folder cannot have this name.</source>
        <translation>Un dossier ne peut pas porter ce nom.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>1 file or folder can be removed.</source>
        <translation>1 fichier ou dossier peut être supprimé.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>%1 files and folders can be removed.</source>
        <translation>%1 fichiers et dossiers peuvent être supprimés.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>and %1 more</source>
        <translation>et %1 de plus</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Changed since, and never removed:</source>
        <translation>Modifié depuis, et jamais supprimé :</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>The folder “%1” was not finished.</source>
        <translation>Le dossier « %1 » n’a pas été terminé.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>%1 folders were not finished.</source>
        <translation>%1 dossiers n’ont pas été terminés.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Orvane was ended while it was making the folder. What it made can be removed again. What was changed since stays.</source>
        <translation>Orvane a été arrêté pendant la création du dossier. Ce qui a été créé peut être supprimé. Ce qui a été modifié depuis est conservé.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Orvane was ended while it was making the folders. What it made can be removed again. What was changed since stays.</source>
        <translation>Orvane a été arrêté pendant la création des dossiers. Ce qui a été créé peut être supprimé. Ce qui a été modifié depuis est conservé.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>If you just close this window, you will be asked again at the next start.</source>
        <translation>Si vous fermez simplement cette fenêtre, la question vous sera posée de nouveau au prochain démarrage.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Nothing was removed.</source>
        <translation>Rien n’a été supprimé.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>1 file or folder was removed.</source>
        <translation>1 fichier ou dossier a été supprimé.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>%1 files and folders were removed.</source>
        <translation>%1 fichiers et dossiers ont été supprimés.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Changed since, and so still there with the folders around it:</source>
        <translation>Modifié depuis, et donc toujours là avec les dossiers qui l’entourent :</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Not everything could be removed from:</source>
        <translation>Tout n’a pas pu être supprimé dans :</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>This had been dealt with already.</source>
        <translation>Cela avait déjà été réglé.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Orvane: Unfinished Folder</source>
        <translation>Orvane : dossier inachevé</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>&amp;Keep</source>
        <translation>&amp;Conserver</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>Everything stays as it is, and you will not be asked again.</source>
        <translation>Tout reste en l’état, et la question ne sera plus posée.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/qt/QtRemainsWindow.cpp"/>
        <source>&amp;Remove What Was Made</source>
        <translation>&amp;Supprimer ce qui a été créé</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/wayland/ChooserPopUpMenus.cpp"/>
        <source>Orvane presets</source>
        <translation>Modèles Orvane</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/wayland/KGlobalAccelHotKeys.cpp"/>
        <source>Show the presets</source>
        <translation>Afficher les modèles</translation>
    </message>
    <message>
        <location filename="../../HelperSource/platform/wayland/MenuPanel.cpp"/>
        <source>Type to search</source>
        <translation>Tapez pour chercher</translation>
    </message>
    <message>
        <location filename="../../PreferencePane/model/PresetDocument.h"/>
        <source>Delete Items</source>
        <translation>Supprimer les éléments</translation>
    </message>
    <message>
        <location filename="../../resources/MainMenu.ui"/>
        <source>Preferences…</source>
        <translation>Préférences…</translation>
    </message>
    <message>
        <location filename="../../resources/MainMenu.ui"/>
        <source>Quit Orvane</source>
        <translation>Quitter Orvane</translation>
    </message>
    <message>
        <location filename="../../resources/PromptWindow.ui"/>
        <source>New Folder from Preset</source>
        <translation>Nouveau dossier à partir d’un modèle</translation>
    </message>
    <message>
        <location filename="../../resources/PromptWindow.ui"/>
        <source>Values of the variables</source>
        <translation>Valeurs des variables</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>This desktop gives programs no hot keys of their own.</source>
        <translation>Ce bureau ne donne pas de raccourcis aux programmes.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>Bind a key to the command &apos;%1&apos;:</source>
        <translation>Associez une touche à la commande « %1 » :</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>where your desktop&apos;s settings or your compositor&apos;s configuration name keys for commands.</source>
        <translation>là où les réglages du bureau ou la configuration du compositeur associent des touches aux commandes.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>In Settings, Keyboard, View and Customize Shortcuts, Custom Shortcuts, add one with the command &apos;%1&apos;.</source>
        <translation>Dans les Paramètres, Clavier, Afficher et personnaliser les raccourcis, Raccourcis personnalisés, ajoutez-en un avec la commande « %1 ».</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>in System Settings, Shortcuts, Add Command.</source>
        <translation>dans la Configuration du système, Raccourcis, Ajouter une commande.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>add this line to ~/.config/sway/config and reload:
  bindsym Ctrl+Shift+h exec %1</source>
        <translation>ajoutez cette ligne à ~/.config/sway/config et rechargez :
  bindsym Ctrl+Shift+h exec %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>add this line to ~/.config/hypr/hyprland.conf:
  bind = CTRL SHIFT, H, exec, %1</source>
        <translation>ajoutez cette ligne à ~/.config/hypr/hyprland.conf :
  bind = CTRL SHIFT, H, exec, %1</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>add this to the section binds of ~/.config/niri/config.kdl:
  Ctrl+Shift+H { spawn-sh &quot;%1&quot;; }</source>
        <translation>ajoutez ceci à la section binds de ~/.config/niri/config.kdl :
  Ctrl+Shift+H { spawn-sh &quot;%1&quot;; }</translation>
    </message>
    <message>
        <location filename="../../HelperSource/hotkeys/HotKeyAdvice.cpp"/>
        <source>weston has no keys for commands; a launcher in its panel (section [launcher] of ~/.config/weston.ini, path=) can start it.</source>
        <translation>weston n’a pas de touches pour les commandes ; un lanceur de son panneau (section [launcher] de ~/.config/weston.ini, path=) peut la lancer.</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a boolean</source>
        <translation>un booléen</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>an integer</source>
        <translation>un entier</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a real number</source>
        <translation>un nombre réel</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a date</source>
        <translation>une date</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a UID</source>
        <translation>un UID</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a string</source>
        <translation>un texte</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>an array</source>
        <translation>un tableau</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a set</source>
        <translation>un ensemble</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a dictionary</source>
        <translation>un dictionnaire</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>there is no content file &apos;%1&apos;: the file will be empty</source>
        <translation>il n’y a pas de fichier de contenu « %1 » : le fichier sera vide</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the content file &apos;%1&apos; is a link that leads nowhere: the file will be empty</source>
        <translation>le fichier de contenu « %1 » est un lien qui ne mène nulle part : le fichier sera vide</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the content file &apos;%1&apos; is a link to a folder: the file will be empty</source>
        <translation>le fichier de contenu « %1 » est un lien vers un dossier : le fichier sera vide</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the content file &apos;%1&apos; is not readable, or no ordinary file: the file will be empty</source>
        <translation>le fichier de contenu « %1 » est illisible ou n’est pas un fichier ordinaire : le fichier sera vide</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>there is no script &apos;%1&apos;</source>
        <translation>il n’y a pas de script « %1 »</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is a folder, not a script</source>
        <translation>« %1 » est un dossier, pas un script</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the script &apos;%1&apos; is not executable</source>
        <translation>le script « %1 » n’est pas exécutable</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the script &apos;%1&apos; starts neither with an interpreter line (#!) nor as a program: most likely it cannot be run</source>
        <translation>le script « %1 » ne commence ni par une ligne d’interpréteur (#!) ni comme un programme : il ne pourra sans doute pas être lancé</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the interpreter in the first line of the script &apos;%1&apos; is missing or not executable</source>
        <translation>l’interpréteur indiqué à la première ligne du script « %1 » manque ou n’est pas exécutable</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>is %1, not %2: it is read as &apos;%3&apos;</source>
        <translation>est %1 et non %2 : il est lu comme « %3 »</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>is %1, not %2: it counts as absent</source>
        <translation>est %1 et non %2 : il compte comme absent</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the preset is %1, not a dictionary</source>
        <translation>le modèle est %1 et non un dictionnaire</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the tree has more than %1 items: it is not looked at any further</source>
        <translation>l’arborescence a plus de %1 éléments : elle n’est pas examinée plus loin</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the preset has no label: menus show the name of its folder</source>
        <translation>le modèle n’a pas de libellé : les menus affichent le nom de son dossier</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the label is empty</source>
        <translation>le libellé est vide</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>%1 presets have the label &apos;%2&apos;</source>
        <translation>%1 modèles ont le libellé « %2 »</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the top-level folder has no name</source>
        <translation>le dossier principal n’a pas de nom</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; leads out of the scripts folder</source>
        <translation>« %1 » sort du dossier des scripts</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is a path, not a file name</source>
        <translation>« %1 » est un chemin, pas un nom de fichier</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the key &apos;%1&apos; is not known and not used</source>
        <translation>la clé « %1 » est inconnue et n’est pas utilisée</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the top-level folder takes none: it is not used</source>
        <translation>le dossier principal n’en tient pas compte : ce n’est pas utilisé</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the item is %1, not a dictionary: the creation will fail</source>
        <translation>l’élément est %1 et non un dictionnaire : la création échouera</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name is empty: the creation will fail</source>
        <translation>le nom est vide : la création échouera</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a file has no contents of its own: %1 items will not be made</source>
        <translation>un fichier ne contient pas d’autres éléments : %1 éléments ne seront pas créés</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is no label colour: no label will be set</source>
        <translation>« %1 » n’est pas une couleur d’étiquette : aucune étiquette ne sera posée</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is not three digits long: permissions will not be set</source>
        <translation>« %1 » n’a pas trois chiffres : les droits ne seront pas fixés</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is not three octal digits: the mode will be %2</source>
        <translation>« %1 » n’est pas formé de trois chiffres octaux : les droits seront %2</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a folder takes no content file: &apos;%1&apos; is not used</source>
        <translation>un dossier n’a pas de fichier de contenu : « %1 » n’est pas utilisé</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; leads out of the content folder</source>
        <translation>« %1 » sort du dossier des contenus</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name &apos;%1&apos; ends in &quot;{&quot; without a backslash before it: looking for its variables never ends</source>
        <translation>le nom « %1 » se termine par « { » sans barre oblique inverse devant : la recherche de ses variables n’aboutit jamais</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name &apos;%1&apos; ends in &quot;}&quot; with a backslash before it, behind an open &quot;{&quot;: looking for its variables never ends</source>
        <translation>le nom « %1 » se termine, après une « { » ouverte, par « } » précédé d’une barre oblique inverse : la recherche de ses variables n’aboutit jamais</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>a &quot;{&quot; in &apos;%1&apos; has no closing &quot;}&quot;: it stays in the name</source>
        <translation>une « { » dans « %1 » n’a pas de « } » : elle reste dans le nom</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variable &apos;%1&apos; is asked for as &apos;%2&apos; and not replaced here: names of variables in file names may not hold &quot;:&quot; or &quot;/&quot;</source>
        <translation>la variable « %1 » est demandée sous le nom « %2 » et n’est pas remplacée ici : les noms de variables dans les noms de fichiers ne doivent contenir ni « : » ni « / »</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the preset uses no variables: the backslash before a brace in &apos;%1&apos; stays in the name</source>
        <translation>le modèle n’emploie pas de variables : la barre oblique inverse devant une accolade dans « %1 » reste dans le nom</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>backslashes before braces in &apos;%1&apos; are taken away twice: the folder is made under another name than the one that is checked and opened</source>
        <translation>les barres obliques inverses devant les accolades dans « %1 » sont retirées deux fois : le dossier est créé sous un autre nom que celui qui est vérifié et ouvert</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is a variable of this preset: it is replaced here, too, in spite of the backslash</source>
        <translation>« %1 » est une variable de ce modèle : elle est remplacée ici aussi, malgré la barre oblique inverse</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name is %1 bytes long without its variables: no name may be longer than 255</source>
        <translation>le nom fait %1 octets sans ses variables : aucun nom ne peut dépasser 255</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name is %1 bytes long: no name may be longer than 255</source>
        <translation>le nom fait %1 octets : aucun nom ne peut dépasser 255</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>nothing can be named &apos;%1&apos;: the creation will fail</source>
        <translation>rien ne peut s’appeler « %1 » : la création échouera</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name consists of blanks only</source>
        <translation>le nom n’est formé que d’espaces</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name holds a NUL character: the creation will fail</source>
        <translation>le nom contient un caractère NUL : la création échouera</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name holds a control character, such as a line feed</source>
        <translation>le nom contient un caractère de contrôle, par exemple un saut de ligne</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name holds half of a surrogate pair, which is no character: many programs cannot show such a name</source>
        <translation>le nom contient la moitié d’une paire de substitution, qui n’est pas un caractère : beaucoup de programmes ne peuvent pas afficher un tel nom</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&quot;:&quot; and &quot;/&quot; become &quot;_&quot;: the folder is made as &apos;%1&apos;, but checked and opened under the name as it stands</source>
        <translation>« : » et « / » deviennent « _ » : le dossier est créé sous le nom « %1 », mais vérifié et ouvert sous le nom tel qu’il est écrit</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&quot;:&quot; and &quot;/&quot; become &quot;_&quot;: the name will be &apos;%1&apos;</source>
        <translation>« : » et « / » deviennent « _ » : le nom sera « %1 »</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2]: both become one folder</source>
        <translation>« %1 » est aussi le nom de children[%2] : les deux ne feront qu’un dossier</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2], a folder that is copied: both become one folder, in which a file that both hold is empty</source>
        <translation>« %1 » est aussi le nom de children[%2], un dossier qui est copié : les deux deviennent un seul dossier, dans lequel un fichier présent dans les deux est vide</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2]: the creation will fail</source>
        <translation>« %1 » est aussi le nom de children[%2] : la création échouera</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>&apos;%1&apos; is also the name of children[%2]: they become one empty file</source>
        <translation>« %1 » est aussi le nom de children[%2] : ils deviennent un seul fichier vide</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variables &apos;%1&apos; and &apos;%2&apos; differ only in case and are two; the script sees only the later one</source>
        <translation>les variables « %1 » et « %2 » ne diffèrent que par la casse et sont deux ; le script ne voit que la dernière</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variables &apos;%1&apos; and &apos;%2&apos; differ only in case and are two</source>
        <translation>les variables « %1 » et « %2 » ne diffèrent que par la casse et sont deux</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variables &apos;%1&apos; and &apos;%2&apos; both reach the script as %3: it sees only the later one</source>
        <translation>les variables « %1 » et « %2 » parviennent toutes deux au script sous le nom %3 : il ne voit que la dernière</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the variable &apos;%1&apos; cannot reach the script: its name holds &quot;=&quot; or a NUL character</source>
        <translation>la variable « %1 » ne peut pas parvenir au script : son nom contient « = » ou un caractère NUL</translation>
    </message>
    <message>
        <location filename="../../HelperSource/presets/ORVPresetChecker.cpp"/>
        <source>the name differs only in case from that of children[%1]: some file systems take them for one</source>
        <translation>le nom ne diffère que par la casse de celui de children[%1] : certains systèmes de fichiers les confondent</translation>
    </message>
</context>
</TS>
