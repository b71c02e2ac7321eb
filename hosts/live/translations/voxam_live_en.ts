<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>LoadPanel</name>
    <message numerus="yes">
        <source>Deleted with %n load(s); undo brings them back</source>
        <translation>
            <numerusform>Deleted with %n load; undo brings it back</numerusform>
            <numerusform>Deleted with %n loads; undo brings them back</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n piece(s) selected. Select one to see its numbers.</source>
        <translation>
            <numerusform>%n piece selected. Select one to see its numbers.</numerusform>
            <numerusform>%n pieces selected. Select one to see its numbers.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ResultLine</name>
    <message numerus="yes">
        <source>%n second(s) on iteration %1</source>
        <translation>
            <numerusform>%n second on iteration %1</numerusform>
            <numerusform>%n seconds on iteration %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VariantStrip</name>
    <message numerus="yes">
        <source>Remove %n variant(s)? This cannot be undone.</source>
        <translation>
            <numerusform>Remove %n variant? This cannot be undone.</numerusform>
            <numerusform>Remove %n variants? This cannot be undone.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message numerus="yes">
        <source>%n piece(s) selected</source>
        <translation>
            <numerusform>%n piece selected</numerusform>
            <numerusform>%n pieces selected</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>AreaPanel</name>
    <message numerus="yes">
        <source>%n piece(s) selected. Select one to see its numbers.</source>
        <translation>
            <numerusform>%n piece selected. Select one to see its numbers.</numerusform>
            <numerusform>%n pieces selected. Select one to see its numbers.</numerusform>
        </translation>
    </message>
</context>
</TS>
