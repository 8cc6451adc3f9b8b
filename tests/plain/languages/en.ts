<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>device</name>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Pictures for a test</translation>
    </message>
</context>
</TS>
