<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>device</name>
    <message>
        <source>@1min</source>
        <translation>1&#xa0;Minute</translation>
    </message>
    <message>
        <source>@2min</source>
        <translation>2&#xa0;Minuten</translation>
    </message>
    <message>
        <source>@5min</source>
        <translation>5&#xa0;Minuten</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomLeft</source>
        <translation>Unten links</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningBottomRight</source>
        <translation>Unten rechts</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopLeft</source>
        <translation>Oben links</translation>
    </message>
    <message>
        <source>@AccessibilityPositioningTopRight</source>
        <translation>Oben rechts</translation>
    </message>
    <message>
        <source>@AddPhotos</source>
        <translation>Bilder hinzufügen</translation>
    </message>
    <message>
        <source>@AddPhotosToPlaylist</source>
        <translation>Bilder zur Playlist hinzufügen</translation>
    </message>
    <message>
        <source>@All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>@AutomaticBrightness</source>
        <translation>Automatische Helligkeit</translation>
    </message>
    <message>
        <source>@AutomaticColorTemperature</source>
        <translation>Automatische Lichtfarbe</translation>
    </message>
    <message>
        <source>@AvailableDiskSpace</source>
        <translation>%s frei&#xa;von %s</translation>
    </message>
    <message>
        <source>@Back</source>
        <extracomment>Leaves a playlist; read aloud</extracomment>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>@Bold</source>
        <translation>Fett</translation>
    </message>
    <message>
        <source>@BoldItalic</source>
        <translation>Fett kursiv</translation>
    </message>
    <message>
        <source>@Brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>@Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>@ChangePictureEvery</source>
        <translation>Anzeigedauer pro Bild</translation>
    </message>
    <message>
        <source>@Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>@ColorTemperature</source>
        <translation>Lichtfarbe</translation>
    </message>
    <message>
        <source>@Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>@CreatePlaylist</source>
        <translation>Playlist erstellen</translation>
    </message>
    <message>
        <source>@CurrentDateTime</source>
        <translation>Datum und Uhrzeit</translation>
    </message>
    <message>
        <source>@CustomTime</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>@CustomizeFontAndPositioning</source>
        <translation>Schrift und Position</translation>
    </message>
    <message>
        <source>@DefaultPlaylist</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>@Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>@DeviceWontTurnOffUntilYouStopPlayback</source>
        <translation>Das Gerät bleibt an, bis die Diashow endet</translation>
    </message>
    <message>
        <source>@DisplayMode</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>@FillScreen</source>
        <translation>Bildschirm füllen</translation>
    </message>
    <message>
        <source>@FitToScreenOnBlack</source>
        <translation>Mit schwarzem Rand</translation>
    </message>
    <message>
        <source>@FlashDir</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>@Font</source>
        <translation>Schrift</translation>
    </message>
    <message>
        <source>@FrontLight</source>
        <translation>Frontlicht</translation>
    </message>
    <message numerus="yes">
        <source>@Hour</source>
        <translation>
            <numerusform>Stunde</numerusform>
            <numerusform>Stunden</numerusform>
        </translation>
    </message>
    <message>
        <source>@Hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>@Italic</source>
        <translation>Kursiv</translation>
    </message>
    <message>
        <source>@KA_menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>@KA_next</source>
        <translation>Nächstes Bild</translation>
    </message>
    <message>
        <source>@KA_prev</source>
        <translation>Vorheriges Bild</translation>
    </message>
    <message>
        <source>@KeyDone</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>@KeyLanguage</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>@KeyShift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>@KeySpace</source>
        <translation>Leertaste</translation>
    </message>
    <message numerus="yes">
        <source>@Minute</source>
        <translation>
            <numerusform>Minute</numerusform>
            <numerusform>Minuten</numerusform>
        </translation>
    </message>
    <message>
        <source>@MonthOfDay</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>@New_playlist</source>
        <translation>Neue Playlist</translation>
    </message>
    <message>
        <source>@NextPage</source>
        <translation>Nächste Seite</translation>
    </message>
    <message>
        <source>@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining</source>
        <translation>Mit Frontlicht ist der Akku schneller leer</translation>
    </message>
    <message>
        <source>@OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>@OTG</source>
        <translation>USB-Stick</translation>
    </message>
    <message>
        <source>@PhotoCreatedDate</source>
        <translation>Aufnahmedatum</translation>
    </message>
    <message>
        <source>@PhotoWasAddedToPlaylist</source>
        <translation>%s Bild wurde zu „%s“ hinzugefügt</translation>
    </message>
    <message numerus="yes">
        <source>@PhotosWereAddedToPlaylist</source>
        <translation>
            <numerusform>%s Bild wurde zu „%s“ hinzugefügt</numerusform>
            <numerusform>%s Bilder wurden zu „%s“ hinzugefügt</numerusform>
        </translation>
    </message>
    <message>
        <source>@PlayItem</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>@Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>@PreviousPage</source>
        <translation>Vorherige Seite</translation>
    </message>
    <message>
        <source>@Regular</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>@Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>@SDcard</source>
        <translation>SD-Karte</translation>
    </message>
    <message>
        <source>@Save</source>
        <translation>Speichern</translation>
    </message>
    <message numerus="yes">
        <source>@Second</source>
        <translation>
            <numerusform>Sekunde</numerusform>
            <numerusform>Sekunden</numerusform>
        </translation>
    </message>
    <message>
        <source>@Second_2</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>@SelectBooks</source>
        <translation>Bilder auswählen</translation>
    </message>
    <message>
        <source>@SelectMultiple</source>
        <translation>Mehrere auswählen</translation>
    </message>
    <message>
        <source>@SetCustomInterval</source>
        <translation>Anzeigedauer festlegen</translation>
    </message>
    <message>
        <source>@ShowAsGrid</source>
        <extracomment>Shows the pictures of a playlist as a grid; read aloud</extracomment>
        <translation>Als Raster zeigen</translation>
    </message>
    <message>
        <source>@ShowAsList</source>
        <extracomment>Shows the pictures of a playlist as a list; read aloud</extracomment>
        <translation>Als Liste zeigen</translation>
    </message>
    <message>
        <source>@ShowPhotoCreatedDate</source>
        <translation>Aufnahmedatum anzeigen</translation>
    </message>
    <message>
        <source>@Show_panel_time</source>
        <translation>Datum und Uhrzeit anzeigen</translation>
    </message>
    <message>
        <source>@Shuffle</source>
        <translation>Zufällige Reihenfolge</translation>
    </message>
    <message>
        <source>@Size_B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>@Size_GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>@Size_KB</source>
        <translation>KB</translation>
    </message>
    <message>
        <source>@Size_MB</source>
        <translation>MB</translation>
    </message>
    <message>
        <source>@Size_TB</source>
        <translation>TB</translation>
    </message>
    <message>
        <source>@SlideshowSettings</source>
        <translation>Diashow-Einstellungen</translation>
    </message>
    <message>
        <source>@StartPlayback</source>
        <translation>Diashow starten</translation>
    </message>
    <message>
        <source>@StopSlideshow</source>
        <translation>Diashow beenden</translation>
    </message>
    <message>
        <source>@Storages</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>@Style</source>
        <translation>Stil</translation>
    </message>
    <message>
        <source>@ThereAreNoPicturesYet</source>
        <translation>Noch keine Bilder. Zum Hinzufügen auf + tippen.</translation>
    </message>
    <message>
        <source>@ThereAreNoPlaylistsYet</source>
        <translation>Noch keine Playlists. Zum Anlegen auf „Neue Playlist“ tippen.</translation>
    </message>
    <message>
        <source>@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff</source>
        <translation>Während der Diashow schaltet es sich nicht von selbst aus</translation>
    </message>
    <message>
        <source>@picture_stand</source>
        <translation>Bilderrahmen</translation>
    </message>
</context>
</TS>
