<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>device</name>
    <message>
        <source>@Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Photos</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <extracomment>First the number of pictures, then the title of the playlist</extracomment>
        <translation>%s picture was added to %s</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <extracomment>First the number of pictures, then the title of the playlist</extracomment>
        <translation>
            <numerusform>%s picture was added to %s</numerusform>
            <numerusform>%s pictures were added to %s</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Play</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Start playback</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>There are no playlists yet. Tap New playlist to make one.</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Picture frame</translation>
    </message>
</context>
</TS>
