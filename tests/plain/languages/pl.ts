<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl">
<context>
    <name>device</name>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Zdjęcia</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>sekunda</numerusform>
            <numerusform>sekundy</numerusform>
            <numerusform>sekund</numerusform>
        </translation>
    </message>
</context>
</TS>
