<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>multiPathSelectDialog</name>
    <message>
        <source>N/A</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Verzeichnis</translation>
    </message>
    <message>
        <source>Browse...</source>
        <translation>Durchsuchen ...</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add All</source>
        <translation>Alle hinzufügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Alle entfernen</translation>
    </message>
</context>
<context>
    <name>zorbin_qt_gui::mdsDialog_t</name>
    <message>
        <source>Select Directories</source>
        <translation>Verzeichnisse auswählen</translation>
    </message>
    <message>
        <source>Select Directories From</source>
        <translation>Verzeichnisse auswählen aus</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Verzeichnisse</translation>
    </message>
    <message>
        <source>Selected Directories</source>
        <translation>Ausgewählte Verzeichnisse</translation>
    </message>
</context>
<context>
    <name>zorbin_qt_gui::mfsDialog_t</name>
    <message>
        <source>Select Files</source>
        <translation>Dateien auswählen</translation>
    </message>
    <message>
        <source>Select Files From</source>
        <translation>Dateien auswählen aus</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Selected Files</source>
        <translation>Ausgewählte Dateien</translation>
    </message>
</context>
</TS>
